#include "CModule3DView.h"
#include "machinestatus/MachineStatusRingGauge.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTest>

namespace {
StructRealTimeData Record()
{
    StructRealTimeData data;
    data.sn = QStringLiteral("PB01SIM0001");
    data.status = 1;
    data.toolInfo.toolNo = 2;
    data.toolInfo.toolType = 1;
    data.toolInfo.toolDiameter = 3.175;
    data.toolInfo.toolLengthOffset = 47.902;
    data.toolInfo.toolRadiusOffset = 1.5875;
    return data;
}
} // namespace

// The status page as the user reads it, for the records that can go wrong.
class TestMachineStatusWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // The machine model is copied beside the host executable.
        qputenv("KORV_RESOURCE_DIR", qgetenv("KORV_BINARY_DIR") + "/bin/resources");
    }
    void init() { m_page = std::make_unique<MachineStatusWidget>(); }
    void cleanup() { m_page.reset(); }

    void loadBars_data();
    void loadBars();
    void coordinateTablesReuseTheirItems();
    void noToolAndOfflineClearTheValues();
    void staleDataKeepsTheLastGoodValues();
    void ringGaugeLimits();

private:
    template <typename T> T* Find(const char* name) const { return m_page->findChild<T*>(QLatin1String(name)); }
    QString Text(const char* name) const { return Find<QLabel>(name)->text(); }
    QPushButton* Badge() const { return Find<QPushButton>("BtnCNCStatus"); }

    std::unique_ptr<MachineStatusWidget> m_page;
};

void TestMachineStatusWidget::loadBars_data()
{
    QTest::addColumn<QList<double>>("loads");
    QTest::addColumn<QStringList>("labels"); // Main X Y Z A C
    QTest::addColumn<int>("mainBar");
    const QList<double> seven = {86, 58, 63, 35, 23, 99, 15};
    QTest::newRow("seven values, B skipped")
        << seven << QStringList{"86.0%", "58.0%", "63.0%", "35.0%", "23.0%", "15.0%"} << 860;
    QTest::newRow("six values keep C") << QList<double>{10, 20, 30, 40, 50, 60}
                                       << QStringList{"10.0%", "20.0%", "30.0%", "40.0%", "50.0%", "15.0%"} << 100;
    QTest::newRow("five values change nothing")
        << QList<double>{1, 2, 3, 4, 5} << QStringList{"86.0%", "58.0%", "63.0%", "35.0%", "23.0%", "15.0%"} << 860;
    QTest::newRow("120 fills the bar") << QList<double>{120, 0, 0, 0, 0, 0, 0}
                                       << QStringList{"120.0%", "0.0%", "0.0%", "0.0%", "0.0%", "0.0%"} << 1000;
}

void TestMachineStatusWidget::loadBars()
{
    QFETCH(QList<double>, loads);
    QFETCH(QStringList, labels);
    QFETCH(int, mainBar);
    StructRealTimeData data = Record();
    data.load = {86, 58, 63, 35, 23, 99, 15};
    m_page->SetRealTimeData(data);
    data.load = loads;
    m_page->SetRealTimeData(data);
    const char* names[] = {"LabelValueMain", "LabelValueX", "LabelValueY", "LabelValueZ", "LabelValueA", "LabelValueC"};
    for (int i = 0; i < 6; ++i)
        QCOMPARE(Text(names[i]), labels.at(i));
    QCOMPARE(Find<QProgressBar>("ProBarMain")->value(), mainBar);
}

void TestMachineStatusWidget::coordinateTablesReuseTheirItems()
{
    auto* machine = Find<QTableWidget>("tableWidgetPos");
    auto* work = Find<QTableWidget>("tableWidgetPosWork");
    QTableWidgetItem* before = machine->item(4, 1);
    StructRealTimeData data = Record();
    data.MCS = {-187.5, -146.0, -98.0, 10.0, 55.0, -0.482};
    data.G53DTG = {3.2, 0, 0, 0, 0, 0};
    data.WCS = {12.5, 4.0, 2.0, 10.0, 55.0, -0.482};
    m_page->SetRealTimeData(data);
    QCOMPARE(machine->item(4, 1), before);
    QCOMPARE(machine->item(4, 1)->text(), QStringLiteral("-0.4820"));
    QCOMPARE(machine->item(0, 2)->text(), QStringLiteral("3.2000"));
    QCOMPARE(work->item(0, 1)->text(), QStringLiteral("12.5000"));
    // The 3D view follows the machine coordinates and shows the stock.
    QVERIFY(m_page->View3D()->GetMachineReady());
    QCOMPARE(m_page->View3D()->MachinePos().c, -0.482);
    QTRY_COMPARE(m_page->View3D()->StockCount(), 1);
}

void TestMachineStatusWidget::noToolAndOfflineClearTheValues()
{
    StructRealTimeData data = Record();
    data.feedRate = 90;
    m_page->SetRealTimeData(data);
    QCOMPARE(Text("CutterLengthValue"), QStringLiteral("47.9020"));
    data.toolInfo.toolNo = -1;
    m_page->SetRealTimeData(data);
    QCOMPARE(Text("CutterLabelNumber"), QStringLiteral("#--"));
    QCOMPARE(Text("CutterLengthValue"), QStringLiteral("0.0000"));
    QVERIFY(Find<QLabel>("CutterLabelImage")->pixmap().isNull());

    m_page->SetRealTimeData(Record());
    m_page->ShowOffline();
    QCOMPARE(Text("LabelValueC"), QStringLiteral("0.0%"));
    QCOMPARE(Find<MachineStatusRingGauge>("DeviceFRing")->Value(), 0);
}

// The live status page shows the stale badge and the alarm; here, what a failed poll must not wipe.
void TestMachineStatusWidget::staleDataKeepsTheLastGoodValues()
{
    m_page->StartStaleWatch(QStringLiteral("PB01SIM0001"), 60);
    StructRealTimeData data = Record();
    data.feed = 3000;
    data.feedRate = 90;
    data.MCS.x = 12.5;
    m_page->SetRealTimeData(data);
    QTRY_VERIFY(m_page->IsStale());
    StructRealTimeData failed;
    failed.toolInfo.toolNo = -1;
    m_page->SetRealTimeData(failed);
    QVERIFY(Badge()->text().startsWith(QStringLiteral("数据已过期")));
    QCOMPARE(Text("DeviceFValue"), QStringLiteral("3000.00"));
    QCOMPARE(Find<MachineStatusRingGauge>("DeviceFRing")->Value(), 90);
    QCOMPARE(Text("CutterLabelNumber"), QStringLiteral("#2"));
    QCOMPARE(m_page->View3D()->MachinePos().x, 12.5);

    // An unknown status code reads as offline; after ShowOffline() the stale watch stays quiet.
    data.status = 7;
    m_page->SetRealTimeData(data);
    QCOMPARE(Badge()->text(), QStringLiteral("离线"));
    m_page->ShowOffline();
    QTest::qWait(120);
    QCOMPARE(Badge()->text(), QStringLiteral("离线"));
}

void TestMachineStatusWidget::ringGaugeLimits()
{
    MachineStatusRingGauge gauge;
    QSignalSpy changed(&gauge, &MachineStatusRingGauge::ValueChanged);
    gauge.SetValue(150);
    gauge.SetValue(130);
    QCOMPARE(gauge.Value(), 120);
    QCOMPARE(changed.count(), 1);
    gauge.SetValue(-4);
    QCOMPARE(gauge.Value(), 0);
    gauge.SetMaxValue(0);
    QCOMPARE(gauge.MaxValue(), 120);
    gauge.SetValue(100);
    gauge.SetMaxValue(60);
    QCOMPARE(gauge.Value(), 100);
    // A value above a lowered maximum still paints (a full ring), and so does every size.
    for (const QSize size : {QSize(60, 52), QSize(96, 84), QSize(300, 40)}) {
        gauge.resize(size);
        QVERIFY(!gauge.grab().isNull());
    }
}

QTEST_MAIN(TestMachineStatusWidget)
#include "tst_MachineStatusWidget.moc"
