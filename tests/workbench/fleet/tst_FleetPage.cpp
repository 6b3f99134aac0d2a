#include "BroadCastSender.h"
#include "CamBaseTextHelper.h"
#include "DiscoveryAddressList.h"
#include "FleetSendJob.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "MachineFleet.h"
#include "MachinePortMap.h"
#include "SimShop.h"
#include "SimWorkspaceFixture.h"
#include "fleetpage/FleetModel.h"
#include "fleetpage/FleetPage.h"
#include "fleetpage/FleetSendController.h"

#include <QItemSelectionModel>
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <algorithm>
#include <vector>

// The machines page against a shop of simulated machines on 127.0.0.2 and up.
class TestFleetPage : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init();
    void cleanup();
    void vanishedMachineGoesOfflineAndComesBack();
    void sendToThreeWhereOneRefuses();
    void connectedMachineIsPolledOnce();

private:
    static constexpr int PollMs = 200;
    static constexpr int OfflineAfterMs = 600;
    static constexpr int MaxBackoffMs = 800;

    // Starts `count` machines sharing one set of ports, as machines of a shop share the standard ones.
    void StartShop(int count, SimShop::Tweak tweak = {});
    // Shows the workspace on the machines page and waits until every machine of the shop answers.
    void ShowFleet();
    void ConnectTo(int machine);
    SimOptions MachineOptions(int machine) const;
    int RowOf(int machine) const;
    // The machine's row in the table as the user sees it (sorted, filtered).
    QModelIndex IndexOf(int machine) const;
    const FleetMachine& Row(int machine) const { return m_workspace->Fleet()->At(RowOf(machine)); }
    QString ShopFile(int machine, const QString& name) const
    {
        return QDir(MachineOptions(machine).rootDir).filePath(name);
    }

    std::unique_ptr<SimShop> m_shop;
    std::unique_ptr<CncSimulator> m_revived;
};

void TestFleetPage::init()
{
    ResetFixture();
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(MachineFleet::KnownMachinesKey), QStringList(), true);
}

void TestFleetPage::cleanup()
{
    TearDownFixture();
    m_revived.reset();
    m_shop.reset();
}

SimOptions TestFleetPage::MachineOptions(int machine) const
{
    return SimShop::MachineOptions(m_shop->Options(), machine);
}

void TestFleetPage::StartShop(int count, SimShop::Tweak tweak)
{
    SimOptions options = DefaultSimOptions();
    options.machines = count;
    m_shop = std::make_unique<SimShop>(options, std::move(tweak));
    QString error;
    QVERIFY2(m_shop->Start(&error), qPrintable(error));
    const SimOptions& used = m_shop->Options();
    CamBaseTextHelper* settings = CamBaseTextHelper::instance();
    settings->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpPortMapping),
                                   used.ftpPort, true);
    MachinePortMap::Set(30001, used.infoPort);
    MachinePortMap::Set(5002, used.snPort);
    MachinePortMap::Set(30002, used.discoveryPort);
    settings->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                   QString::fromLatin1(DiscoveryAddressList::SettingKey),
                                   QStringLiteral("127.0.0.2-%1").arg(1 + count), true);
}

void TestFleetPage::ShowFleet()
{
    ShowWorkspace();
    MachineFleet* fleet = m_workspace->Fleet();
    fleet->SetTiming({PollMs, OfflineAfterMs, MaxBackoffMs});
    fleet->DiscoverySender()->SetInterfaceFilter({QStringLiteral("lo")});
    m_workspace->ShowPage(Workspace::PageMachines);
    QTRY_COMPARE_WITH_TIMEOUT(fleet->Count(), m_shop->Count(), 10000);
    for (int machine = 0; machine < m_shop->Count(); ++machine)
        QTRY_VERIFY_WITH_TIMEOUT(Row(machine).bReachable, 10000);
}

void TestFleetPage::ConnectTo(int machine)
{
    // A double-click on the row goes the way of every connection. The view takes a double-click
    // only on the row its press chose.
    QTableView* table = m_workspace->GetFleetPage()->Table();
    const QModelIndex index = IndexOf(machine);
    QVERIFY(index.isValid());
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(index).center());
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, table->visualRect(index).center());
    QTRY_COMPARE_WITH_TIMEOUT(m_workspace->Connection()->GetState(), MachineConnection::State::Connected, 10000);
    QCOMPARE(m_workspace->MachineSn(), MachineOptions(machine).serialNumber);
    QTRY_VERIFY_WITH_TIMEOUT(Row(machine).bConnected, 5000);
}

QModelIndex TestFleetPage::IndexOf(int machine) const
{
    const QAbstractItemModel* model = m_workspace->GetFleetPage()->Table()->model();
    const QModelIndexList found = model->match(model->index(0, FleetModel::ColumnAddress), Qt::DisplayRole,
                                               MachineOptions(machine).bindAddress.toString());
    return found.size() == 1 ? found.first() : QModelIndex();
}

int TestFleetPage::RowOf(int machine) const
{
    return m_workspace->Fleet()->RowOf(MachineOptions(machine).serialNumber);
}

void TestFleetPage::vanishedMachineGoesOfflineAndComesBack()
{
    StartShop(3);
    ShowFleet();
    const QTableView* table = m_workspace->GetFleetPage()->Table();
    QCOMPARE(table->model()->rowCount(), 3);

    const QDateTime vanished = QDateTime::currentDateTime();
    m_shop->Machine(1).Vanish();
    // The bound: the offline time, one poll to notice, and slack for a loaded test machine.
    QTRY_VERIFY_WITH_TIMEOUT(!Row(1).bReachable, OfflineAfterMs + PollMs + 1500);
    QCOMPARE(IndexOf(1).siblingAtColumn(FleetModel::ColumnState).data().toString(),
             FleetModel::StateText(FleetMachine::StatusUnreachable));
    // Its neighbours went on answering meanwhile.
    for (int machine : {0, 2}) {
        QVERIFY(Row(machine).bReachable);
        QVERIFY(Row(machine).lastHeard > vanished);
    }

    // Switched on again, it is found by the retries alone.
    m_revived = std::make_unique<CncSimulator>(MachineOptions(1));
    QString error;
    QVERIFY2(m_revived->Start(&error), qPrintable(error));
    QTRY_VERIFY_WITH_TIMEOUT(Row(1).bReachable, MaxBackoffMs + OfflineAfterMs + 3000);
}

void TestFleetPage::sendToThreeWhereOneRefuses()
{
    // Machine 2 refuses every upload; machine 3 is the connected one and gets nothing.
    StartShop(4, [](int machine, SimOptions& options) {
        if (machine == 2)
            options.ftpRefused << QStringLiteral("STOR");
    });
    Write(ShopFile(1, "part.nc"), "old 1\n");
    Write(ShopFile(2, "part.nc"), "old 2\n");
    Write(LocalFile("part.nc"), "G0 X1\n");
    // Not a program: each machine refuses it, and its row says so beside what went.
    Write(LocalFile("sheet.pdf"), "setup sheet\n");
    ShowFleet();
    ConnectTo(3);
    QSignalSpy busy(m_workspace->FileService()->Activity(), &TransferActivity::SignalBusyChanged);

    QTableView* table = m_workspace->GetFleetPage()->Table();
    table->clearSelection();
    for (int machine : {0, 1, 2})
        table->selectionModel()->select(IndexOf(machine), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    FleetSendJob* job = m_workspace->FleetSender()->Send(m_workspace->GetFleetPage()->SelectedRows(),
                                                         {LocalFile("part.nc"), LocalFile("sheet.pdf")});
    QSignalSpy ended(job, &FleetSendJob::SignalMachineEnded);
    QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 3, 20000);

    // One question for the whole send, naming the machines whose file would be replaced.
    QCOMPARE(m_listBoxes.size(), 1);
    QVERIFY(!m_listBoxes.first().strText.contains(MachineOptions(0).serialNumber));
    for (int machine : {1, 2})
        QVERIFY(m_listBoxes.first().strText.contains(MachineOptions(machine).serialNumber));

    QCOMPARE(Read(ShopFile(0, "part.nc")), QByteArray("G0 X1\n"));
    QCOMPARE(Read(ShopFile(1, "part.nc")), QByteArray("G0 X1\n"));
    QCOMPARE(Read(ShopFile(2, "part.nc")), QByteArray("old 2\n"));
    QCOMPARE(QDir(MachineOptions(2).rootDir).entryList(QDir::Files | QDir::Hidden), QStringList{"part.nc"});
    QVERIFY(!QFileInfo::exists(ShopFile(3, "part.nc")));
    const QString partly = FleetSendJob::tr("已发送 %1 个程序，%2 个被拒绝：%3").arg(1).arg(1).arg(QString());
    for (int machine : {0, 1})
        QVERIFY2(Row(machine).strSendResult.startsWith(partly), qPrintable(Row(machine).strSendResult));
    QVERIFY2(Row(2).strSendResult.startsWith(FleetSendJob::tr("失败：%1").arg(QString())),
             qPrintable(Row(2).strSendResult));
    QVERIFY(Row(2).strSendResult.size() > FleetSendJob::tr("失败：%1").arg(QString()).size());
    // The connected machine's panels never saw a transfer of their own.
    QCOMPARE(busy.size(), 0);
}

void TestFleetPage::connectedMachineIsPolledOnce()
{
    StartShop(2);
    ShowFleet();
    ConnectTo(0);
    QSignalSpy connectedRequests(&m_shop->Machine(0), &CncSimulator::SignalInfoRequest);
    QSignalSpy watchedRequests(&m_shop->Machine(1), &CncSimulator::SignalInfoRequest);
    const QDateTime start = QDateTime::currentDateTime();
    const int windowMs = 3000;
    QTest::qWait(windowMs);
    auto polls = [](const QSignalSpy& spy) {
        return std::count_if(spy.cbegin(), spy.cend(), [](const QList<QVariant>& call) {
            return call.first().toString() == QLatin1String("RealTimeDataReq");
        });
    };
    const int interval = m_workspace->Connection()->RealTimeInterval();
    QVERIFY2(polls(connectedRequests) <= windowMs / interval + 1,
             qPrintable(QString::number(polls(connectedRequests))));
    // The watcher's own pace is much faster here: had it polled the connected machine, it would show.
    QVERIFY(polls(watchedRequests) >= windowMs / PollMs / 2);
    // The connection's records still reach the machine's row.
    QVERIFY(Row(0).lastHeard > start);
}

QTEST_MAIN(TestFleetPage)
#include "tst_FleetPage.moc"
