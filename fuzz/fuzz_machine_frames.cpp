// Feeds arbitrary bytes, cut into arbitrary pieces, through the machine client's
// frame decoder and record reader: whatever arrives, nothing may crash or hang.
#include "MachineFrameDecoder.h"
#include "MachineRecordJson.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    // The first byte chooses how the rest is split, as TCP might split it.
    const size_t chunk = size_t(data[0]) + 1;
    const QByteArray bytes(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    MachineFrameDecoder decoder;
    for (qsizetype offset = 0; offset < bytes.size(); offset += qsizetype(chunk)) {
        const bool ok = decoder.Feed(bytes.mid(offset, qsizetype(chunk)));
        QJsonObject message;
        while (decoder.Next(&message)) {
            const QJsonObject payload = message.value(QLatin1String("data")).toObject();
            StructMachineSystemInfo system;
            StructMachineNetInfo net;
            StructRealTimeData record;
            MachineRecordJson::ReadMachineInfo(payload, &system, &net);
            MachineRecordJson::ReadRealTimeData(payload, &record);
            MachineRecordJson::ReadRealTimeData(message, &record);
        }
        if (!ok)
            break;
    }
    return 0;
}
