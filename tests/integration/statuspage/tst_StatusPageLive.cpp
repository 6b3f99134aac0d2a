#include "CamBaseTextHelper.h"
#include "MachineFileService.h"
#include "SimMachine.h"
#include "SimWorkspaceFixture.h"
#include "WorkspaceLogProbe.h"
#include "machinestatus/MachineStatusFtpManager.h"
#include "machinestatus/MachineStatusProgramPanel.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QAbstractScrollArea>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QTabBar>
#include <QTableWidget>
#include <QTest>

namespace {
using LogColors::Failure;
using LogColors::Success;
constexpr int Wait = 10000;
constexpr int PollMs = 100;
} // namespace

// The status page of a Workspace connected to the simulator: what the operator sees
// while a program runs, and what the commands do to the machine.
class TestStatusPageLive : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init()
    {
        ResetFixture();
        m_iCheckIntervalMs = 50;
    }
    void cleanup() { TearDownFixture(); }
    void runningProgramAndCommands();
    void alarmShowsUntilReset();
    void staleOutageAndOffline();
    void fileListWhileAProgramRuns();

private:
    // The demo programs on the machine, bracket_6061.nc loaded; the status page shown once enabled.
    void Start(const std::function<void(SimOptions&)>& adjust = {});
    template <typename T> T* Find(const char* name) { return m_workspace->findChild<T*>(QLatin1String(name)); }
    QString Text(const char* name) { return Find<QLabel>(name)->text(); }
    void Click(const char* button) { QTest::mouseClick(Find<QWidget>(button), Qt::LeftButton); }
    QString Badge() { return Find<QPushButton>("BtnCNCStatus")->text(); }
    SimMachine::Status SimStatus() const { return m_sim->Machine().CurrentStatus(); }
    bool HasLog(const QString& text, const QColor& color) const { return WorkspaceLogHas(*m_workspace, text, color); }
    MachineStatusWidget& Page() { return *m_workspace->StatusWidget(); }
};

void TestStatusPageLive::initTestCase()
{
    SetUpFixture();
    // The machine model is copied beside the host executable, not beside the tests.
    qputenv("KORV_RESOURCE_DIR", (qgetenv("KORV_BINARY_DIR") + "/bin/resources"));
    QSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat)
        .setValue(QStringLiteral("TimerInterval"), PollMs);
}

void TestStatusPageLive::Start(const std::function<void(SimOptions&)>& adjust)
{
    CopyDemoPrograms();
    SimOptions options = DefaultSimOptions();
    options.runProgram = QStringLiteral("bracket_6061.nc");
    if (adjust)
        adjust(options);
    StartSimulator(options);
    if (QTest::currentTestFailed())
        return;
    ConnectWorkspace();
    if (QTest::currentTestFailed())
        return;
    QTRY_VERIFY_WITH_TIMEOUT(m_workspace->PageBar()->isTabEnabled(Workspace::PageMachineStatus), Wait);
    m_workspace->ShowPage(Workspace::PageMachineStatus);
}

void TestStatusPageLive::runningProgramAndCommands()
{
    Start([](SimOptions& o) { o.autorun = true; });
    QVERIFY(!QTest::currentTestFailed());

    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("运行中"), Wait);
    auto* table = Find<QTableWidget>("tableWidgetPos");
    auto* line = Find<QLabel>("LabelNowNumber");
    const QString x = table->item(0, 1)->text();
    const QString y = table->item(1, 1)->text();
    const int firstLine = line->text().toInt();
    QTRY_VERIFY_WITH_TIMEOUT(table->item(0, 1)->text() != x || table->item(1, 1)->text() != y, Wait);
    QTRY_VERIFY_WITH_TIMEOUT(line->text().toInt() > firstLine, Wait);
    QVERIFY(Page().ProgramPanel()->ProgramModel()->rowCount() > 0);

    // A start while the machine runs is refused without a question.
    Click("BtnStart");
    QTRY_VERIFY(HasLog(QStringLiteral("启动命令未发送：机床不在等待状态"), Failure));

    // Stop: no question, the machine halts where it is.
    Click("BtnStop");
    QTRY_COMPARE_WITH_TIMEOUT(SimStatus(), SimMachine::Waiting, Wait);
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("等待"), Wait);
    QVERIFY(HasLog(QStringLiteral("停止命令已执行"), Success));
    QVERIFY(m_listBoxes.isEmpty());
    const int stoppedLine = line->text().toInt();

    // Start: asks, naming the program; a cancelled box sends nothing.
    m_iAnswer = MsgButtonCancel;
    Click("BtnStart");
    QTRY_COMPARE(m_listBoxes.size(), 1);
    QCOMPARE(m_listBoxes.first().strText, QStringLiteral("确定启动加工程序 \"bracket_6061.nc\" 吗？"));
    QTest::qWait(3 * PollMs);
    QCOMPARE(SimStatus(), SimMachine::Waiting);
    m_iAnswer = MsgButtonYes;
    Click("BtnStart");
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("运行中"), Wait);
    QVERIFY(line->text().toInt() >= stoppedLine);

    // Reset: asks, then the program is back at its start.
    QTRY_VERIFY_WITH_TIMEOUT(Text("LabelTimeUsed") != QStringLiteral("00:00:00"), Wait);
    Click("BtnReset");
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("等待"), Wait);
    QCOMPARE(m_listBoxes.size(), 3);
    QTRY_COMPARE_WITH_TIMEOUT(Text("LabelTimeUsed"), QStringLiteral("00:00:00"), Wait);
}

void TestStatusPageLive::alarmShowsUntilReset()
{
    Start([](SimOptions& o) { o.alarmAfter = 0.5; });
    QVERIFY(!QTest::currentTestFailed());
    auto* alarm = Find<QLabel>("LabelAlarm");
    QTRY_VERIFY_WITH_TIMEOUT(alarm->isVisible(), Wait);
    QCOMPARE(Badge(), QStringLiteral("异常"));
    QVERIFY(alarm->text().contains(QStringLiteral("X轴伺服报警：跟随误差过大")));
    // A 1024 x 768 screen holds the host window (its side bar is 72 wide), alarm banner and all,
    // and no page needs a horizontal scroll bar there.
    QVERIFY(m_workspace->minimumSizeHint().width() <= 1024 - 72);
    QVERIFY(m_workspace->minimumSizeHint().height() <= 768 - 40);
    m_workspace->resize(1024 - 72, 768 - 40);
    for (const auto page : {Workspace::PageFileTransfer, Workspace::PageTransferList, Workspace::PageMachineStatus}) {
        m_workspace->ShowPage(page);
        QTest::qWait(50);
        for (const QAbstractScrollArea* area : m_workspace->findChildren<QAbstractScrollArea*>()) {
            QVERIFY2(!area->isVisible() || !area->horizontalScrollBar()->isVisible(),
                     qPrintable(QStringLiteral("%1 %2").arg(page).arg(area->objectName())));
        }
    }
    Click("BtnReset");
    QTRY_VERIFY_WITH_TIMEOUT(!alarm->isVisible(), Wait);
    QCOMPARE(Badge(), QStringLiteral("等待"));
}

void TestStatusPageLive::staleOutageAndOffline()
{
    // A check a second, as on the machine: an outage of 3 s stays well short of giving up.
    m_iCheckIntervalMs = 1000;
    Start([](SimOptions& o) { o.realTimeSilent = true; });
    QVERIFY(!QTest::currentTestFailed());

    // Connected, but the machine gives no real-time data: within three polling intervals the badge says so.
    QTRY_VERIFY_WITH_TIMEOUT(Badge().startsWith(QStringLiteral("数据已过期")), 3 * PollMs);
    QCOMPARE(Text("LabelSN"), QStringLiteral("SN:PB01SIM0001"));
    m_sim->Options().realTimeSilent = false;
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("运行中"), Wait);

    // The machine is away for 3 s and comes back on the same ports with the same programs.
    SimOptions again = m_sim->Options();
    again.ftpPort = m_sim->FtpPort();
    again.infoPort = m_sim->InfoPort();
    again.snPort = m_sim->SnPort();
    again.discoveryPort = m_sim->DiscoveryPort();
    m_sim->Vanish();
    QTRY_VERIFY2_WITH_TIMEOUT(Badge().startsWith(QStringLiteral("数据已过期")), qPrintable(Badge()), Wait);
    QTest::qWait(3000);
    m_sim = std::make_unique<CncSimulator>(again);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
    QTRY_VERIFY_WITH_TIMEOUT(HasLog(QStringLiteral("机床重连成功，IP: 127.0.0.1, SN: PB01SIM0001"), Success), Wait);
    // The next check revives the real-time link: the page moves again a few records later.
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("运行中"), m_iCheckIntervalMs + 20 * PollMs);
    const QString line = Text("LabelNowNumber");
    QTRY_VERIFY_WITH_TIMEOUT(Text("LabelNowNumber") != line, Wait);
    QCOMPARE(WorkspaceLogCount(*m_workspace, u"机床重连成功"), 1);
    QCOMPARE(m_workspace->CheckFailCount(), 0);

    // Gone for good: after the failed checks the page shows the offline display.
    m_sim->Vanish();
    QTRY_COMPARE_WITH_TIMEOUT(Text("LabelSN"), QStringLiteral("设备未连接"), 20000);
    QCOMPARE(Badge(), QStringLiteral("离线"));
}

void TestStatusPageLive::fileListWhileAProgramRuns()
{
    Start();
    QVERIFY(!QTest::currentTestFailed());
    MachineStatusProgramPanel* panel = Page().ProgramPanel();
    QStandardItem* root = panel->FileModel()->invisibleRootItem();
    auto rowOf = [root](const QString& name) -> QStandardItem* {
        for (int row = 0; row < root->rowCount(); ++row) {
            if (root->child(row)->text() == name)
                return root->child(row);
        }
        return nullptr;
    };
    QTRY_VERIFY_WITH_TIMEOUT(rowOf(QStringLiteral("drill_plate.tap")), Wait);
    QTRY_COMPARE_WITH_TIMEOUT(Badge(), QStringLiteral("运行中"), Wait);
    QTRY_VERIFY_WITH_TIMEOUT(!m_workspace->FileService()->RunningProgram().isEmpty(), Wait);

    // The running program cannot be deleted (the box asking to confirm is answered yes).
    QSignalSpy deleted(panel->FtpManager(), &MachineStatusFtpManager::SignalDeleteResult);
    panel->SlotActionDelete(QPersistentModelIndex(rowOf(QStringLiteral("bracket_6061.nc"))->index()));
    QTRY_COMPARE(deleted.count(), 1);
    QCOMPARE(deleted.first().first().toBool(), false);
    QVERIFY(QFileInfo::exists(MachineFile(QStringLiteral("bracket_6061.nc"))));
    QTRY_VERIFY(HasLog(QStringLiteral("机床正在运行程序bracket_6061.nc，不能覆盖、删除或重命名：/bracket_6061.nc"),
                       LogColors::Warning));

    // While a program runs the machine refuses another one.
    panel->SlotActionLoadProgram(QPersistentModelIndex(rowOf(QStringLiteral("drill_plate.tap"))->index()));
    QTRY_VERIFY_WITH_TIMEOUT(HasLog(QStringLiteral("设为加工程序命令失败：a program is running"), Failure), Wait);

    Click("BtnStop");
    QTRY_COMPARE_WITH_TIMEOUT(SimStatus(), SimMachine::Waiting, Wait);
    panel->SlotActionLoadProgram(QPersistentModelIndex(rowOf(QStringLiteral("drill_plate.tap"))->index()));
    QTRY_VERIFY_WITH_TIMEOUT(HasLog(QStringLiteral("设为加工程序命令已执行"), Success), Wait);
    auto* name = Find<QLabel>("LabelProgram");
    QTRY_COMPARE_WITH_TIMEOUT(name->toolTip().isEmpty() ? name->text() : name->toolTip(),
                              QStringLiteral("drill_plate.tap"), Wait);
}

QTEST_MAIN(TestStatusPageLive)
#include "tst_StatusPageLive.moc"
