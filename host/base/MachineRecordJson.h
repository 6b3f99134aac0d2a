#pragma once

#include "KorvBaseExport.h"
#include "MachineRecords.h"

#include <QJsonObject>

// Fills the machine records from the "data" object of the service's replies. Keys
// that are missing or of the wrong kind leave the field at its default; numbers out
// of range are clamped. Nothing the network sends can make these fail badly.
class KORVBASE_EXPORT MachineRecordJson
{
public:
    // `data` holds "system" and "Net"; false when "system" is not an object.
    static bool ReadMachineInfo(const QJsonObject& data, StructMachineSystemInfo* system, StructMachineNetInfo* net);
    // `data` holds the real-time keys; false when it is empty.
    static bool ReadRealTimeData(const QJsonObject& data, StructRealTimeData* record);
};
