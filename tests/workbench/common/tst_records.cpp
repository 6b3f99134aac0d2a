#include "CommonDefine.h"

#include <QMetaType>
#include <QTest>

class TestRecords : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Queued signals between the transfer threads and the widgets carry these by name.
    void metaTypesAreRegisteredUnderTheirNames()
    {
        RegisterWorkbenchMetaTypes();
        for (const char* name : {"StructRealTimeData", "StructItemInfo", "StructMachineSystemInfo",
                                 "StructMachineNetInfo", "OperationType", "QList<FtpFileInfo>"})
            QVERIFY2(QMetaType::fromName(name).isValid(), name);
    }

    // A debug line must not grow with the program text the machine sends.
    void currentLinesPrintTheirCountNotTheirText()
    {
        StructCurrentLines lines;
        lines.startLine = 10;
        lines.endLine = 12;
        lines.lines = {QStringLiteral("G0 X1"), QStringLiteral("G1 Y2"), QStringLiteral("M5")};
        QString text;
        QDebug(&text) << lines;
        QCOMPARE(text.trimmed(), QStringLiteral("StructCurrentLines(startLine=10, endLine=12, linesCount=3)"));
    }
};

QTEST_APPLESS_MAIN(TestRecords)
#include "tst_records.moc"
