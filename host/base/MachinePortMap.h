#pragma once

#include "KorvBaseExport.h"

#include <QtGlobal>

// Machines behind port forwarding (and the simulator, which cannot bind privileged
// ports) answer on other ports than the well-known ones. The host's settings map a
// well-known machine port to the one to use: key "PortMap/<port>", default unchanged.
class KORVBASE_EXPORT MachinePortMap
{
public:
    static quint16 Resolve(quint16 wellKnownPort);
    static void Set(quint16 wellKnownPort, quint16 actualPort);
};
