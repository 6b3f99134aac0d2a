#include "SimMachine.h"
#include "StatusPageFixture.h"
#include "machinestatus/MachineStatusProgramPanel.h"
#include "machinestatus/MachineStatusWidget.h"

#include <QLabel>
#include <QPushButton>
#include <QStandardItemModel>
#include <QTableWidget>
#include <QTest>

namespace {
const QColor Green(0, 160, 0);
const QColor Red(220, 50, 50);
constexpr int Wait = 10000;
} // namespace

// The status page of a Workspace connected to the simulator: what the operator sees
// while a program runs, and what the commands do to the machine.
class TestStatusPageLive : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runningProgramAndCommands();
    void alarmShowsUntilReset();
    void staleThenOffline();
    void loadProgramFromTheFileList();

private:
    static void Click(StatusPageFixture& fixture, const char* button)
    {
        QTest::mouseClick(fixture.Find<QWidget>(button), Qt::LeftButton);
    }
    static QString Badge(StatusPageFixture& fixture) { return fixture.Find<QPushButton>("BtnCNCStatus")->text(); }
    static SimMachine::Status SimStatus(StatusPageFixture& fixture) { return fixture.Sim().Machine().CurrentStatus(); }
};

void TestStatusPageLive::runningProgramAndCommands()
{
    StatusPageFixture fixture;
    SimOptions options = fixture.Options();
    options.autorun = true;
    QString error;
    QVERIFY2(fixture.Start(options, &error), qPrintable(error));

    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("运行中"), Wait);
    QCOMPARE(fixture.Text("LabelSN"), QStringLiteral("SN:PB01SIM0001"));
    auto* table = fixture.Find<QTableWidget>("tableWidgetPos");
    auto* line = fixture.Find<QLabel>("LabelNowNumber");
    const QString x = table->item(0, 1)->text();
    const QString y = table->item(1, 1)->text();
    const int firstLine = line->text().toInt();
    QTRY_VERIFY_WITH_TIMEOUT(table->item(0, 1)->text() != x || table->item(1, 1)->text() != y, Wait);
    QTRY_VERIFY_WITH_TIMEOUT(line->text().toInt() > firstLine, Wait);
    QVERIFY(fixture.Page().ProgramPanel()->ProgramModel()->rowCount() > 0);

    // A start while the machine runs is refused without a question.
    Click(fixture, "BtnStart");
    QTRY_VERIFY(fixture.HasLog(QStringLiteral("启动命令未发送：机床不在等待状态"), Red));

    // Stop: no question, the machine halts where it is.
    Click(fixture, "BtnStop");
    QTRY_COMPARE_WITH_TIMEOUT(SimStatus(fixture), SimMachine::Waiting, Wait);
    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("等待"), Wait);
    QVERIFY(fixture.HasLog(QStringLiteral("停止命令已执行"), Green));
    QVERIFY(fixture.Boxes().isEmpty());
    const int stoppedLine = line->text().toInt();

    // Start: asks, naming the program; a cancelled box sends nothing.
    fixture.SetAnswer(MsgButtonCancel);
    Click(fixture, "BtnStart");
    QTRY_COMPARE(fixture.Boxes().size(), 1);
    QCOMPARE(fixture.Boxes().first(), QStringLiteral("确定启动加工程序 \"bracket_6061.nc\" 吗？"));
    QTest::qWait(3 * StatusPageFixture::PollMs);
    QCOMPARE(SimStatus(fixture), SimMachine::Waiting);
    fixture.SetAnswer(MsgButtonConfirm);
    Click(fixture, "BtnStart");
    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("运行中"), Wait);
    QVERIFY(line->text().toInt() >= stoppedLine);

    // Reset: asks, then the program is back at its start.
    QTRY_VERIFY_WITH_TIMEOUT(fixture.Text("LabelTimeUsed") != QStringLiteral("00:00:00"), Wait);
    Click(fixture, "BtnReset");
    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("等待"), Wait);
    QCOMPARE(fixture.Boxes().size(), 3);
    QTRY_COMPARE_WITH_TIMEOUT(fixture.Text("LabelTimeUsed"), QStringLiteral("00:00:00"), Wait);
}

void TestStatusPageLive::alarmShowsUntilReset()
{
    StatusPageFixture fixture;
    SimOptions options = fixture.Options();
    options.alarmAfter = 0.5;
    QString error;
    QVERIFY2(fixture.Start(options, &error), qPrintable(error));
    auto* alarm = fixture.Find<QLabel>("LabelAlarm");
    QTRY_VERIFY_WITH_TIMEOUT(alarm->isVisible(), Wait);
    QCOMPARE(Badge(fixture), QStringLiteral("异常"));
    QVERIFY(alarm->text().contains(QStringLiteral("X轴伺服报警：跟随误差过大")));
    Click(fixture, "BtnReset");
    QTRY_VERIFY_WITH_TIMEOUT(!alarm->isVisible(), Wait);
    QCOMPARE(Badge(fixture), QStringLiteral("等待"));
}

void TestStatusPageLive::staleThenOffline()
{
    StatusPageFixture fixture;
    QString error;
    SimOptions options = fixture.Options();
    options.realTimeSilent = true;
    QVERIFY2(fixture.Start(options, &error), qPrintable(error));

    // Connected, but the machine gives no real-time data: within three polling intervals the badge says so.
    QTRY_VERIFY_WITH_TIMEOUT(Badge(fixture).startsWith(QStringLiteral("数据已过期")), 3 * StatusPageFixture::PollMs);
    QCOMPARE(fixture.Text("LabelSN"), QStringLiteral("SN:PB01SIM0001"));
    fixture.Sim().Options().realTimeSilent = false;
    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("运行中"), Wait);

    // The machine goes away altogether (what --vanish-after does): the page shows the offline display.
    fixture.Sim().Vanish();
    QTRY_COMPARE_WITH_TIMEOUT(fixture.Text("LabelSN"), QStringLiteral("设备未连接"), 20000);
    QCOMPARE(Badge(fixture), QStringLiteral("离线"));
}

void TestStatusPageLive::loadProgramFromTheFileList()
{
    StatusPageFixture fixture;
    QString error;
    QVERIFY2(fixture.Start(fixture.Options(), &error), qPrintable(error));
    MachineStatusProgramPanel* panel = fixture.Page().ProgramPanel();
    QStandardItem* root = panel->FileModel()->invisibleRootItem();
    auto rowOf = [root](const QString& name) -> QStandardItem* {
        for (int row = 0; row < root->rowCount(); ++row) {
            if (root->child(row)->text() == name)
                return root->child(row);
        }
        return nullptr;
    };
    QTRY_VERIFY_WITH_TIMEOUT(rowOf(QStringLiteral("drill_plate.tap")), Wait);
    QTRY_COMPARE_WITH_TIMEOUT(Badge(fixture), QStringLiteral("运行中"), Wait);

    // While a program runs the machine refuses another one.
    panel->SlotActionLoadProgram(QPersistentModelIndex(rowOf(QStringLiteral("drill_plate.tap"))->index()));
    QTRY_VERIFY_WITH_TIMEOUT(fixture.HasLog(QStringLiteral("设为加工程序命令失败：a program is running"), Red), Wait);

    Click(fixture, "BtnStop");
    QTRY_COMPARE_WITH_TIMEOUT(SimStatus(fixture), SimMachine::Waiting, Wait);
    panel->SlotActionLoadProgram(QPersistentModelIndex(rowOf(QStringLiteral("drill_plate.tap"))->index()));
    QTRY_VERIFY_WITH_TIMEOUT(fixture.HasLog(QStringLiteral("设为加工程序命令已执行"), Green), Wait);
    auto* name = fixture.Find<QLabel>("LabelProgram");
    QTRY_COMPARE_WITH_TIMEOUT(name->toolTip().isEmpty() ? name->text() : name->toolTip(),
                              QStringLiteral("drill_plate.tap"), Wait);
}

QTEST_MAIN(TestStatusPageLive)
#include "tst_StatusPageLive.moc"
