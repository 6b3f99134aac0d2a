#include "MachineRecordJson.h"

#include "ProtocolVocabulary.h"

#include <QJsonArray>
#include <algorithm>
#include <cmath>
#include <limits>

using namespace Protocol;

namespace {

int toInt(const QJsonValue& value)
{
    double number = 0;
    if (value.isDouble())
        number = value.toDouble();
    else if (value.isString())
        number = value.toString().toDouble();
    else if (value.isBool())
        number = value.toBool() ? 1 : 0;
    if (!std::isfinite(number))
        return 0;
    // Clamped before the conversion: an out-of-range double to int is undefined.
    return int(std::clamp(std::round(number), double(std::numeric_limits<int>::min()),
                          double(std::numeric_limits<int>::max())));
}

double toDouble(const QJsonValue& value)
{
    const double number = value.isString() ? value.toString().toDouble() : value.toDouble();
    return std::isfinite(number) ? number : 0.0;
}

QString toText(const QJsonValue& value)
{
    if (value.isDouble())
        return QString::number(value.toDouble());
    return value.toString();
}

Pose6Dof readPose(const QJsonValue& value)
{
    const QJsonObject o = value.toObject();
    Pose6Dof pose;
    pose.x = toDouble(o.value(QLatin1String("x")));
    pose.y = toDouble(o.value(QLatin1String("y")));
    pose.z = toDouble(o.value(QLatin1String("z")));
    pose.a = toDouble(o.value(QLatin1String("a")));
    pose.b = toDouble(o.value(QLatin1String("b")));
    pose.c = toDouble(o.value(QLatin1String("c")));
    return pose;
}

StructNetInterface readInterface(const QJsonValue& value)
{
    const QJsonObject o = value.toObject();
    return {toText(o.value(QLatin1String(KeyMac))), toText(o.value(QLatin1String(KeyIp))),
            toText(o.value(QLatin1String(KeyMask)))};
}

} // namespace

bool MachineRecordJson::ReadMachineInfo(const QJsonObject& data, StructMachineSystemInfo* system,
                                        StructMachineNetInfo* net)
{
    const QJsonValue systemValue = data.value(QLatin1String(KeySystem));
    if (!systemValue.isObject())
        return false;
    const QJsonObject s = systemValue.toObject();
    system->sn = toText(s.value(QLatin1String(KeySn)));
    system->SysVer = toText(s.value(QLatin1String(KeySysVer)));
    system->FwVer = toText(s.value(QLatin1String(KeyFwVer)));
    system->ProbeSendVer = toText(s.value(QLatin1String(KeyProbeSendVer)));
    system->ProbeRecvVer = toText(s.value(QLatin1String(KeyProbeRecvVer)));
    system->CameraVer = toText(s.value(QLatin1String(KeyCameraVer)));
    system->TotalRunTime = toInt(s.value(QLatin1String(KeyTotalRunTime)));
    system->TotalMachineTime = toInt(s.value(QLatin1String(KeyTotalMachineTime)));
    system->Mqtt = toInt(s.value(QLatin1String(KeyMqtt)));

    const QJsonObject n = data.value(QLatin1String(KeyNet)).toObject();
    net->eth = readInterface(n.value(QLatin1String(KeyEth)));
    net->wlan = readInterface(n.value(QLatin1String(KeyWlan)));
    net->usb = readInterface(n.value(QLatin1String(KeyUsb)));
    return true;
}

bool MachineRecordJson::ReadRealTimeData(const QJsonObject& data, StructRealTimeData* record)
{
    if (data.isEmpty())
        return false;
    StructRealTimeData r;
    r.sn = toText(data.value(QLatin1String(KeyRtSn)));
    r.mode = toInt(data.value(QLatin1String(KeyMode)));
    r.status = toInt(data.value(QLatin1String(KeyStatus)));

    const QJsonObject program = data.value(QLatin1String(KeyProgram)).toObject();
    r.program.curLine = toInt(program.value(QLatin1String(KeyCurLine)));
    r.program.totalLine = toInt(program.value(QLatin1String(KeyTotalLine)));
    r.program.name = toText(program.value(QLatin1String(KeyName)));
    r.program.timeUsed = toInt(program.value(QLatin1String(KeyTimeUsed)));
    r.program.timeLeft = toInt(program.value(QLatin1String(KeyTimeLeft)));
    r.program.isFinish = toInt(program.value(QLatin1String(KeyIsFinish)));
    const QJsonObject lines = program.value(QLatin1String(KeyCurrentLines)).toObject();
    r.program.currentLines.startLine = toInt(lines.value(QLatin1String(KeyStartLine)));
    r.program.currentLines.endLine = toInt(lines.value(QLatin1String(KeyEndLine)));
    for (const QJsonValue& line : lines.value(QLatin1String(KeyLines)).toArray())
        r.program.currentLines.lines << toText(line);

    r.MCS = readPose(data.value(QLatin1String(KeyMCS)));
    r.WCS = readPose(data.value(QLatin1String(KeyWCS)));
    r.csType = toInt(data.value(QLatin1String(KeyCsType)));
    r.G53DTG = readPose(data.value(QLatin1String(KeyG53DTG)));
    r.G5xDTG = readPose(data.value(QLatin1String(KeyG5xDTG)));
    for (const QJsonValue& load : data.value(QLatin1String(KeyLoad)).toArray())
        r.load << toDouble(load);
    r.feed = toInt(data.value(QLatin1String(KeyFeed)));
    r.feedRate = toInt(data.value(QLatin1String(KeyFeedRate)));
    r.spindleSpeed = toInt(data.value(QLatin1String(KeySpindleSpeed)));
    r.spindleRate = toInt(data.value(QLatin1String(KeySpindleRate)));
    r.spindleTemp = toDouble(data.value(QLatin1String(KeySpindleTemp)));

    const QJsonObject tool = data.value(QLatin1String(KeyToolInfo)).toObject();
    r.toolInfo.toolNo = toInt(tool.value(QLatin1String(KeyToolNo)));
    r.toolInfo.toolType = toInt(tool.value(QLatin1String(KeyToolType)));
    r.toolInfo.toolLengthOffset = toDouble(tool.value(QLatin1String(KeyToolLengthOffset)));
    r.toolInfo.toolRadiusOffset = toDouble(tool.value(QLatin1String(KeyToolRadiusOffset)));
    r.toolInfo.toolDiameter = toDouble(tool.value(QLatin1String(KeyToolDiameter)));
    for (const QJsonValue& inPos : tool.value(QLatin1String(KeyBInPos)).toArray())
        r.toolInfo.bInPos << toInt(inPos);

    const QJsonObject origin = data.value(QLatin1String(KeyOriginOffset)).toObject();
    r.originOffset.index = toText(origin.value(QLatin1String(KeyIndex)));
    r.originOffset.offset = readPose(origin.value(QLatin1String(KeyOffset)));
    r.runTime = toInt(data.value(QLatin1String(KeyRunTime)));
    r.alarm = toText(data.value(QLatin1String(KeyAlarm)));
    *record = r;
    return true;
}
