#pragma once

#include "KorvBaseExport.h"

#include <QDateTime>
#include <QDebug>
#include <QList>
#include <QMetaType>
#include <QString>
#include <QStringList>

// Value records that travel between the machine clients, the FTP tasks and the
// workbench. Plain copyable values; a default record is all zeros and empties.

struct StructItemInfo
{
    int type = 0;
    QString path;
    QString name;
};

struct FtpFileInfo
{
    QString name;
    QString type; // "dir" (exactly) marks a folder
    qint64 size = 0;
    QDateTime time;

    bool isDir() const { return type == QLatin1String("dir"); }
};

struct StructNetInterface
{
    QString mac;
    QString ip;
    QString mask;
};

struct StructMachineNetInfo
{
    StructNetInterface eth;
    StructNetInterface wlan;
    StructNetInterface usb;
};

struct StructMachineSystemInfo
{
    QString sn;
    QString SysVer;
    QString FwVer;
    QString ProbeSendVer;
    QString ProbeRecvVer;
    QString CameraVer;
    int TotalRunTime = 0;
    int TotalMachineTime = 0;
    int Mqtt = 0;
};

struct Pose6Dof
{
    double x = 0;
    double y = 0;
    double z = 0;
    double a = 0;
    double b = 0;
    double c = 0;
};

struct StructCurrentLines
{
    int startLine = 0;
    int endLine = 0;
    QStringList lines;
};

struct StructProgramInfo
{
    int curLine = 0;
    int totalLine = 0;
    QString name;
    int timeUsed = 0;
    int timeLeft = 0;
    int isFinish = 0;
    StructCurrentLines currentLines;
};

struct StructToolInfo
{
    int toolNo = 0;
    int toolType = 0;
    double toolLengthOffset = 0;
    double toolRadiusOffset = 0;
    double toolDiameter = 0;
    QList<int> bInPos;
};

struct StructOriginOffset
{
    QString index;
    Pose6Dof offset;
};

struct StructRealTimeData
{
    QString sn;
    int mode = 0;
    int status = 0;
    StructProgramInfo program;
    Pose6Dof MCS;
    Pose6Dof WCS;
    int csType = 0;
    Pose6Dof G53DTG;
    Pose6Dof G5xDTG;
    QList<double> load;
    int feed = 0;
    int feedRate = 0;
    int spindleSpeed = 0;
    int spindleRate = 0;
    double spindleTemp = 0;
    StructToolInfo toolInfo;
    StructOriginOffset originOffset;
    int runTime = 0;
    // Text of the active alarm while status is 2; not part of the debug print.
    QString alarm;
};

KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructItemInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const FtpFileInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructNetInterface& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructMachineNetInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructMachineSystemInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const Pose6Dof& pose);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructCurrentLines& lines);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructProgramInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructToolInfo& info);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructOriginOffset& offset);
KORVBASE_EXPORT QDebug operator<<(QDebug debug, const StructRealTimeData& data);

// Registers the records carried by queued signals; safe to call more than once.
KORVBASE_EXPORT void RegisterMachineRecordMetaTypes();

Q_DECLARE_METATYPE(StructItemInfo)
Q_DECLARE_METATYPE(FtpFileInfo)
Q_DECLARE_METATYPE(StructMachineNetInfo)
Q_DECLARE_METATYPE(StructMachineSystemInfo)
Q_DECLARE_METATYPE(StructRealTimeData)
