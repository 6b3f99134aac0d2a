#include "CommonDefine.h"

#include <QMetaType>
#include <QTest>

namespace {
template <typename T>
QString printed(const T& value)
{
    QString text;
    QDebug(&text) << value;
    return text.trimmed();
}
} // namespace

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultRealTimeDataPrintsZerosAndEmptyForms()
    {
        const QString text = printed(StructRealTimeData());
        QCOMPARE(text,
                 QStringLiteral(
                     "StructRealTimeData(sn=\"\", mode=0, status=0, program=StructProgramInfo(curLine=0, totalLine=0, "
                     "name=\"\", timeUsed=0, timeLeft=0, isFinish=0, currentLines=StructCurrentLines(startLine=0, "
                     "endLine=0, linesCount=0)), MCS=Pose6Dof(x=0, y=0, z=0, a=0, b=0, c=0), WCS=Pose6Dof(x=0, y=0, "
                     "z=0, a=0, b=0, c=0), csType=0, G53DTG=Pose6Dof(x=0, y=0, z=0, a=0, b=0, c=0), "
                     "G5xDTG=Pose6Dof(x=0, y=0, z=0, a=0, b=0, c=0), load=QList(), feed=0, feedRate=0, "
                     "spindleSpeed=0, spindleRate=0, spindleTemp=0, toolInfo=StructToolInfo(toolNo=0, toolType=0, "
                     "toolLengthOffset=0, toolRadiusOffset=0, toolDiameter=0, bInPos=QList()), "
                     "originOffset=StructOriginOffset(index=\"\", offset=Pose6Dof(x=0, y=0, z=0, a=0, b=0, c=0)), "
                     "runTime=0)"));
    }

    void printedForms_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");

        StructCurrentLines lines;
        lines.startLine = 10;
        lines.endLine = 12;
        lines.lines = {QStringLiteral("G0 X1"), QStringLiteral("G1 Y2"), QStringLiteral("M5")};
        QTest::newRow("current lines count, never texts")
            << printed(lines) << QStringLiteral("StructCurrentLines(startLine=10, endLine=12, linesCount=3)");

        StructItemInfo item{2, QStringLiteral("/nc/a b.nc"), QStringLiteral("a b.nc")};
        QTest::newRow("item") << printed(item)
                              << QStringLiteral("StructItemInfo(type=2, path=\"/nc/a b.nc\", name=\"a b.nc\")");

        StructMachineSystemInfo system;
        system.sn = QStringLiteral("SN01");
        system.SysVer = QStringLiteral("1.4.7");
        system.Mqtt = 1;
        QTest::newRow("system info uses lower-case sn")
            << printed(system)
            << QStringLiteral("StructMachineSystemInfo(sn=\"SN01\", SysVer=\"1.4.7\", FwVer=\"\", ProbeSendVer=\"\", "
                              "ProbeRecvVer=\"\", CameraVer=\"\", TotalRunTime=0, TotalMachineTime=0, Mqtt=1)");

        StructMachineNetInfo net;
        net.eth = {QStringLiteral("aa:bb"), QStringLiteral("10.0.0.2"), QStringLiteral("255.0.0.0")};
        QTest::newRow("net info nests interfaces")
            << printed(net)
            << QStringLiteral("StructMachineNetInfo(eth=StructNetInterface(mac=\"aa:bb\", ip=\"10.0.0.2\", "
                              "mask=\"255.0.0.0\"), wlan=StructNetInterface(mac=\"\", ip=\"\", mask=\"\"), "
                              "usb=StructNetInterface(mac=\"\", ip=\"\", mask=\"\"))");

        StructToolInfo tool;
        tool.toolNo = 3;
        tool.toolDiameter = 6.5;
        tool.bInPos = {1, 0};
        QTest::newRow("tool list form") << printed(tool)
                                        << QStringLiteral("StructToolInfo(toolNo=3, toolType=0, toolLengthOffset=0, "
                                                          "toolRadiusOffset=0, toolDiameter=6.5, bInPos=QList(1, 0))");

        StructProgramInfo program;
        program.isFinish = 1;
        program.name = QStringLiteral("零件.nc");
        QTest::newRow("finish prints as a number")
            << printed(program)
            << QStringLiteral("StructProgramInfo(curLine=0, totalLine=0, name=\"零件.nc\", timeUsed=0, timeLeft=0, "
                              "isFinish=1, currentLines=StructCurrentLines(startLine=0, endLine=0, linesCount=0))");
    }

    void printedForms()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        QCOMPARE(text, expected);
    }

    void printingLeavesTheStreamAsItWas()
    {
        QString text;
        QDebug debug(&text);
        debug << Pose6Dof() << 1;
        QCOMPARE(text.trimmed(), QStringLiteral("Pose6Dof(x=0, y=0, z=0, a=0, b=0, c=0) 1"));
    }

    void folderTypeIsCaseSensitive()
    {
        FtpFileInfo info;
        info.type = QStringLiteral("dir");
        QVERIFY(info.isDir());
        info.type = QStringLiteral("Dir");
        QVERIFY(!info.isDir());
        QVERIFY(!info.time.isValid());
    }

    void metaTypesAreRegisteredUnderTheirNames()
    {
        RegisterWorkbenchMetaTypes();
        for (const char* name : {"StructRealTimeData", "StructItemInfo", "StructMachineSystemInfo",
                                 "StructMachineNetInfo", "OperationType", "QList<FtpFileInfo>"})
            QVERIFY2(QMetaType::fromName(name).isValid(), name);
    }

    void vocabularyTables()
    {
        QCOMPARE(MachineFileSuffixList,
                 (QStringList{"nc", "ngc", "tap", "mpf", "txt", "znc", "zv", "zngc", "zsnc", "zconf", "tar"}));
        QVERIFY(!MachineFileSuffixList.contains(QStringLiteral("NC")));
        QCOMPARE(InterfaceRankMap.value(QString::fromLatin1(g_strInterfaceUsb)), 3);
        QCOMPARE(InterfaceRankMap.value(QString::fromLatin1(g_strInterfaceEth)), 2);
        QCOMPARE(InterfaceRankMap.value(QString::fromLatin1(g_strInterfaceWlan)), 1);
        QCOMPARE(int(OperationCopy), 1);
        QCOMPARE(int(OperationCut), 2);
    }
};

QTEST_APPLESS_MAIN(TestRecords)
#include "tst_records.moc"
