#pragma once

#include "KorvBaseExport.h"

#include <QtGlobal>

// Machines behind port forwarding (and the simulator, which runs unprivileged beside
// other instances) answer on other ports than the well-known ones. The setting
// "PortMap/<port>" (type 1) maps a well-known machine service port to the one to use;
// without it the port is unchanged. FTP has its own key, "Ftp/PortMapping".
class KORVBASE_EXPORT MachinePortMap
{
public:
    static quint16 Resolve(quint16 wellKnownPort);
    static void Set(quint16 wellKnownPort, quint16 actualPort);
};
