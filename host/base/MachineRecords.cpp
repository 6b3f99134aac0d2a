#include "MachineRecords.h"

QDebug operator<<(QDebug debug, const StructItemInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructItemInfo("
                    << "type=" << info.type << ", path=" << info.path << ", name=" << info.name << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const FtpFileInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "FtpFileInfo(name=" << info.name << ", type=" << info.type << ", size=" << info.size
                    << ", time=" << info.time << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructNetInterface& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructNetInterface(mac=" << info.mac << ", ip=" << info.ip << ", mask=" << info.mask << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructMachineNetInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructMachineNetInfo(eth=" << info.eth << ", wlan=" << info.wlan << ", usb=" << info.usb << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructMachineSystemInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructMachineSystemInfo(sn=" << info.sn << ", SysVer=" << info.SysVer
                    << ", FwVer=" << info.FwVer << ", ProbeSendVer=" << info.ProbeSendVer
                    << ", ProbeRecvVer=" << info.ProbeRecvVer << ", CameraVer=" << info.CameraVer
                    << ", TotalRunTime=" << info.TotalRunTime << ", TotalMachineTime=" << info.TotalMachineTime
                    << ", Mqtt=" << info.Mqtt << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const Pose6Dof& pose)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "Pose6Dof(x=" << pose.x << ", y=" << pose.y << ", z=" << pose.z << ", a=" << pose.a
                    << ", b=" << pose.b << ", c=" << pose.c << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructCurrentLines& lines)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructCurrentLines(startLine=" << lines.startLine << ", endLine=" << lines.endLine
                    << ", linesCount=" << static_cast<qint64>(lines.lines.size()) << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructProgramInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructProgramInfo(curLine=" << info.curLine << ", totalLine=" << info.totalLine
                    << ", name=" << info.name << ", timeUsed=" << info.timeUsed << ", timeLeft=" << info.timeLeft
                    << ", isFinish=" << info.isFinish << ", currentLines=" << info.currentLines << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructToolInfo& info)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructToolInfo(toolNo=" << info.toolNo << ", toolType=" << info.toolType
                    << ", toolLengthOffset=" << info.toolLengthOffset << ", toolRadiusOffset=" << info.toolRadiusOffset
                    << ", toolDiameter=" << info.toolDiameter << ", bInPos=" << info.bInPos << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructOriginOffset& offset)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructOriginOffset(index=" << offset.index << ", offset=" << offset.offset << ")";
    return debug;
}

QDebug operator<<(QDebug debug, const StructRealTimeData& data)
{
    QDebugStateSaver saver(debug);
    debug.nospace() << "StructRealTimeData(sn=" << data.sn << ", mode=" << data.mode << ", status=" << data.status
                    << ", program=" << data.program << ", MCS=" << data.MCS << ", WCS=" << data.WCS
                    << ", csType=" << data.csType << ", G53DTG=" << data.G53DTG << ", G5xDTG=" << data.G5xDTG
                    << ", load=" << data.load << ", feed=" << data.feed << ", feedRate=" << data.feedRate
                    << ", spindleSpeed=" << data.spindleSpeed << ", spindleRate=" << data.spindleRate
                    << ", spindleTemp=" << data.spindleTemp << ", toolInfo=" << data.toolInfo
                    << ", originOffset=" << data.originOffset << ", runTime=" << data.runTime << ")";
    return debug;
}

void RegisterMachineRecordMetaTypes()
{
    qRegisterMetaType<StructRealTimeData>("StructRealTimeData");
    qRegisterMetaType<StructItemInfo>("StructItemInfo");
    qRegisterMetaType<StructMachineSystemInfo>("StructMachineSystemInfo");
    qRegisterMetaType<StructMachineNetInfo>("StructMachineNetInfo");
    qRegisterMetaType<FtpFileInfo>("FtpFileInfo");
    qRegisterMetaType<QList<FtpFileInfo>>("QList<FtpFileInfo>");
}

namespace {
// Queued signals of the host's workers carry these records before any widget exists.
[[maybe_unused]] const bool g_bRecordsRegistered = (RegisterMachineRecordMetaTypes(), true);
} // namespace
