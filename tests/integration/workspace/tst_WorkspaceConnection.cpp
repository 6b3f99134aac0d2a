#include "CamBaseRegisterHelper.h"
#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"
#include "MachineConnection.h"
#include "MachinePortMap.h"
#include "SimWorkspaceFixture.h"
#include "WorkspaceLogProbe.h"
#include "toolpage/ToolPage.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QSettings>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>
#include <QTimer>

namespace {
using LogColors::Failure;
using LogColors::Plain;
using LogColors::Success;
using LogColors::Warning;
const QString Ip = QStringLiteral("127.0.0.1");
const QString Sn = QString::fromLatin1(SimWorkspaceFixture::kSn);

void SetSetting(const char* key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key),
                                                        value, true);
}

void SetTimerInterval(const QString& value)
{
    QSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat)
        .setValue(QStringLiteral("TimerInterval"), value);
}

// Forwards loopback connections to a port, each only after a delay: a machine that
// answers, but late.
class DelayedRelay : public QTcpServer
{
public:
    DelayedRelay(quint16 target, int delayMs)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this, target, delayMs]() {
            QTcpSocket* client = nextPendingConnection();
            ++m_nAccepted;
            QTimer::singleShot(delayMs, client, [client, target]() {
                auto* upstream = new QTcpSocket(client);
                connect(upstream, &QTcpSocket::readyRead, client, [=]() { client->write(upstream->readAll()); });
                connect(client, &QTcpSocket::readyRead, upstream, [=]() { upstream->write(client->readAll()); });
                connect(upstream, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
                upstream->connectToHost(QHostAddress::LocalHost, target);
            });
        });
    }
    int Accepted() const { return m_nAccepted; }

private:
    int m_nAccepted = 0;
};
} // namespace

// Drives a real Workspace against the simulator on loopback, and reads what the user
// would see: log lines with their colours, and the message boxes.
class TestWorkspaceConnection : public QObject, public SimWorkspaceFixture
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpFixture(); }
    void init();
    void cleanup();

    void connectReadsTheSerialNumberAndDisconnects();
    void serialNumberFailures_data();
    void serialNumberFailures();
    void disconnectDuringConnect_data();
    void disconnectDuringConnect();
    void switchingMachines_data();
    void switchingMachines();
    void versionNoticeUntilTicked();
    void givesUpAfterEightFailuresAndTellsWhenShown();
    void pollsRealTimeDataOneRequestAtATime();
    void realTimeIntervalIsClamped_data();
    void realTimeIntervalIsClamped();
    void silentConnect_data();
    void silentConnect();

private:
    void StartSimulator(const std::function<void(SimOptions&)>& adjust = {});
    void MakeWorkspace();
    bool HasLine(const QString& text, const QColor& color) const { return WorkspaceLogHas(*m_workspace, text, color); }
    int CountLines(QStringView prefix) const { return WorkspaceLogCount(*m_workspace, prefix); }
    QStringList BoxTexts() const;
    bool ConnectAndWait(const QString& sn);
};

void TestWorkspaceConnection::init()
{
    ResetFixture();
    SetSetting(g_strSettingNoRemindMachineVersion, false);
    SetSetting(g_strSettingLastConnectMachineSN, QString());
    SetSetting(g_strSettingFtpConnectTimeoutMs, 1500);
    QFile::remove(CamBaseTextHelper::instance()->GetLocalTestIniFilePath());
    CamBaseRegisterHelper::instance()->ClearDiscoveredMachines();
}

void TestWorkspaceConnection::cleanup()
{
    TearDownFixture();
    // Tasks of a workspace that is gone may still be finishing.
    QTest::qWait(50);
}

void TestWorkspaceConnection::StartSimulator(const std::function<void(SimOptions&)>& adjust)
{
    SimOptions options = DefaultSimOptions();
    options.sysVersion = QStringLiteral("1.4.7");
    if (adjust)
        adjust(options);
    SimWorkspaceFixture::StartSimulator(options);
}

void TestWorkspaceConnection::MakeWorkspace()
{
    m_workspace.reset();
    m_workspace = std::make_unique<Workspace>();
    m_workspace->SetCheckInterval(50);
    m_workspace->SetSerialNumberTimeout(400);
}

QStringList TestWorkspaceConnection::BoxTexts() const
{
    QStringList texts;
    for (const StructMsgBoxRequest& box : m_listBoxes)
        texts.append(box.strText);
    return texts;
}

bool TestWorkspaceConnection::ConnectAndWait(const QString& sn)
{
    m_workspace->ConnectToMachine(Ip, sn);
    const QString expected = QStringLiteral("机床连接成功，IP: %1, SN: %2").arg(Ip, m_sim->Options().serialNumber);
    return QTest::qWaitFor([&]() { return HasLine(expected, Success); }, 10000);
}

void TestWorkspaceConnection::connectReadsTheSerialNumberAndDisconnects()
{
    StartSimulator();
    MakeWorkspace();
    QSignalSpy connected(m_workspace.get(), &Workspace::SignalMachineConnected);
    QVERIFY(ConnectAndWait(QString()));
    QCOMPARE(connected.count(), 1);
    QCOMPARE(m_workspace->MachineSn(), Sn);
    QCOMPARE(CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                 QString::fromLatin1(g_strSettingLastConnectMachineSN)),
             QVariant(Sn));
    // The version rule of this model is reported; 1.4.7 needs no notice.
    QTRY_VERIFY(HasLine(QStringLiteral("机床系统版本: 当前版本 1.4.7  最低要求版本 1.4.7"), Plain));
    QVERIFY(m_listBoxes.isEmpty());

    m_workspace->DisconnectMachine(false);
    QVERIFY(!m_workspace->IsCheckTimerActive());
    QTRY_VERIFY(BoxTexts().contains(QStringLiteral("与当前设备已断开连接！")));
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
}

void TestWorkspaceConnection::serialNumberFailures_data()
{
    QTest::addColumn<int>("errorCode");
    QTest::addColumn<QByteArray>("rawReply");
    QTest::addColumn<bool>("late");
    QTest::addColumn<QString>("expectedBox");
    QTest::newRow("error code 3 shows its msg")
        << 3 << QByteArray() << false << QStringLiteral("获取机床序列号失败：机床序列号未配置");
    // Broken inside, not cut short: nothing more can mend it, so it fails before the time-out.
    QTest::newRow("reply that starts like JSON but is not")
        << 0 << QByteArray(R"({"errorCode":0,,"data":"PB01"})") << false << QStringLiteral("获取机床序列号失败");
    QTest::newRow("empty serial number") << 0 << QByteArray(R"({"errorCode":0,"msg":"ok","data":""})") << false
                                         << QStringLiteral("获取机床序列号失败：序列号为空");
    QTest::newRow("reply after the time-out changes nothing")
        << 0 << QByteArray(R"({"errorCode":0,"msg":"ok","data":"PB01LATE"})") << true
        << QStringLiteral("获取机床序列号失败：连接超时");
}

void TestWorkspaceConnection::serialNumberFailures()
{
    QFETCH(int, errorCode);
    QFETCH(QByteArray, rawReply);
    QFETCH(bool, late);
    QFETCH(QString, expectedBox);
    StartSimulator([&](SimOptions& o) { o.snErrorCode = errorCode; });
    // A reply the simulator would never send comes from a plain socket in its place.
    QTcpServer raw;
    QList<QTcpSocket*> held;
    if (!rawReply.isEmpty()) {
        QVERIFY(raw.listen(QHostAddress::LocalHost));
        MachinePortMap::Set(5002, raw.serverPort());
        connect(&raw, &QTcpServer::newConnection, &raw, [&]() {
            QTcpSocket* socket = raw.nextPendingConnection();
            held.append(socket);
            if (!late)
                connect(socket, &QTcpSocket::readyRead, socket, [socket, rawReply]() {
                    socket->readAll();
                    socket->write(rawReply);
                });
        });
    }
    MakeWorkspace();
    m_workspace->ConnectToMachine(Ip, QString());
    QTRY_VERIFY_WITH_TIMEOUT(!m_listBoxes.isEmpty(), 10000);
    if (late)
        for (QTcpSocket* socket : held)
            socket->write(rawReply);
    QTest::qWait(300);
    QCOMPARE(BoxTexts(), QStringList{expectedBox});
    // Without a serial number nothing is announced.
    QVERIFY(m_workspace->MachineSn().isEmpty());
    QCOMPARE(CountLines(u"机床连接成功"), 0);
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
}

void TestWorkspaceConnection::disconnectDuringConnect_data()
{
    QTest::addColumn<bool>("duringFtpTest");
    QTest::newRow("during the FTP test") << true;
    QTest::newRow("during the serial-number read") << false;
}

void TestWorkspaceConnection::disconnectDuringConnect()
{
    QFETCH(bool, duringFtpTest);
    StartSimulator();
    // The step under test answers only after the user has pressed "断开连接".
    DelayedRelay late(duringFtpTest ? m_sim->FtpPort() : m_sim->SnPort(), 600);
    if (duringFtpTest)
        SetSetting(g_strSettingFtpPortMapping, late.serverPort());
    else
        MachinePortMap::Set(5002, late.serverPort());

    MakeWorkspace();
    m_workspace->SetSerialNumberTimeout(5000);
    QSignalSpy connected(m_workspace.get(), &Workspace::SignalMachineConnected);
    QSignalSpy offline(m_workspace.get(), &Workspace::SignalMachineOffline);
    m_workspace->ConnectToMachine(Ip, duringFtpTest ? Sn : QString());
    QTRY_VERIFY(late.Accepted() > 0);
    m_workspace->GetToolPage()->Button(ToolPage::ActionDisconnect)->click();
    QCOMPARE(offline.count(), 1);

    QTest::qWait(1200); // the late answer has come and gone
    QCOMPARE(CountLines(u"机床连接成功"), 0);
    QCOMPARE(connected.count(), 0);
    QCOMPARE(m_workspace->Connection()->GetState(), MachineConnection::State::Disconnected);
}

void TestWorkspaceConnection::switchingMachines_data()
{
    QTest::addColumn<bool>("secondAnswers");
    QTest::newRow("second machine connects") << true;
    QTest::newRow("second machine refuses") << false;
}

void TestWorkspaceConnection::switchingMachines()
{
    QFETCH(bool, secondAnswers);
    SetTimerInterval(QStringLiteral("100"));
    StartSimulator();
    int firstRequests = 0;
    connect(m_sim.get(), &CncSimulator::SignalInfoRequest, this, [&]() { ++firstRequests; });
    MakeWorkspace();
    QStringList recordSns;
    connect(m_workspace.get(), &Workspace::SignalRealTimeData, this,
            [&](const StructRealTimeData& record) { recordSns << record.sn; });
    QVERIFY(ConnectAndWait(Sn));
    QTRY_VERIFY(recordSns.size() >= 2);

    // The second machine takes the fixture's place; the first keeps running unasked.
    std::unique_ptr<CncSimulator> first = std::move(m_sim);
    StartSimulator([](SimOptions& o) { o.serialNumber = QStringLiteral("PB01SIM0002"); });
    if (!secondAnswers)
        m_sim->Vanish();
    QSignalSpy offline(m_workspace.get(), &Workspace::SignalMachineOffline);
    m_workspace->ConnectToMachine(Ip, QStringLiteral("PB01SIM0002"));
    QCOMPARE(offline.count(), 1);

    if (secondAnswers) {
        QTRY_VERIFY_WITH_TIMEOUT(HasLine(QStringLiteral("机床连接成功，IP: %1, SN: PB01SIM0002").arg(Ip), Success),
                                 10000);
        recordSns.clear();
        QTRY_VERIFY(recordSns.size() >= 3);
        QCOMPARE(recordSns.count(QStringLiteral("PB01SIM0002")), recordSns.size());
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(HasLine(QStringLiteral("连接机床失败，IP: %1").arg(Ip), Failure), 10000);
        QCOMPARE(offline.count(), 2);
        QCOMPARE(m_workspace->Connection()->GetState(), MachineConnection::State::Disconnected);
    }
    // Nothing asks the first machine any more.
    QTest::qWait(200);
    const int settled = firstRequests;
    QTest::qWait(600);
    QCOMPARE(firstRequests, settled);
}

void TestWorkspaceConnection::versionNoticeUntilTicked()
{
    StartSimulator([](SimOptions& o) { o.sysVersion = QStringLiteral("1.4.6"); });
    MakeWorkspace();
    m_bTickBoxes = true;
    QVERIFY(ConnectAndWait(Sn));
    QTRY_VERIFY(!BoxTexts().filter(QStringLiteral("当前机床系统版本为 1.4.6，低于最低要求版本 1.4.7")).isEmpty());

    // Next time the ticked choice is respected.
    m_listBoxes.clear();
    MakeWorkspace();
    QVERIFY(ConnectAndWait(Sn));
    QTRY_VERIFY(CountLines(u"机床系统版本") > 0);
    QTest::qWait(100);
    QVERIFY(m_listBoxes.isEmpty());
}

void TestWorkspaceConnection::givesUpAfterEightFailuresAndTellsWhenShown()
{
    // The machine's real timings: a check every second, five seconds for an FTP log-in (a silent
    // machine's TCP connection is taken by its kernel, so the greeting's wait is what counts).
    SetSetting(g_strSettingFtpConnectTimeoutMs, 5000);
    SetSetting(g_strSettingFtpResponseTimeoutMs, 5000);
    StartSimulator([](SimOptions& o) {
        o.vanishAfter = 3;
        o.vanishSilently = true;
    });
    MakeWorkspace();
    m_workspace->SetCheckInterval(1000);
    QVERIFY(ConnectAndWait(Sn));
    QSignalSpy vanished(m_sim.get(), &CncSimulator::SignalVanished);
    QVERIFY(vanished.wait(5000));
    QElapsedTimer sinceVanished;
    sinceVanished.start();

    // Eight ticks plus one hanging log-in is about 13 s; checks that waited for each other took 40 s.
    QTRY_VERIFY_WITH_TIMEOUT(HasLine(QStringLiteral("超过最大重连次数，机床已断开连接"), Failure), 20000);
    const qint64 givenUpAfter = sinceVanished.elapsed();
    QVERIFY2(givenUpAfter < 16000, qPrintable(QString::number(givenUpAfter)));
    QCOMPARE(CountLines(u"机床连接失败，重新连接中"), 7);
    QVERIFY(HasLine(QStringLiteral("机床连接失败，重新连接中，次数：7"), Warning));
    QVERIFY(!m_workspace->IsCheckTimerActive());
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());

    // The workspace was hidden: the notice waits until the user sees it again.
    QTRY_VERIFY(m_workspace->NetNoticePending());
    QTest::qWait(400);
    QVERIFY(m_listBoxes.isEmpty());
    m_workspace->show();
    QTRY_VERIFY(BoxTexts().contains(QStringLiteral("与当前设备已断开连接，请检查网络！")));
    QVERIFY(!m_workspace->NetNoticePending());
}

void TestWorkspaceConnection::pollsRealTimeDataOneRequestAtATime()
{
    SetTimerInterval(QStringLiteral("100"));
    StartSimulator();
    MakeWorkspace();
    int requests = 0;
    int answers = 0;
    int mostInFlight = 0;
    connect(m_sim.get(), &CncSimulator::SignalInfoRequest, this, [&](const QString& type) {
        if (type == QLatin1String("RealTimeDataReq"))
            mostInFlight = qMax(mostInFlight, ++requests - answers);
    });
    connect(m_workspace.get(), &Workspace::SignalRealTimeData, this, [&]() { ++answers; });
    QVERIFY(ConnectAndWait(Sn));

    QTRY_VERIFY(answers >= 3);
    const int startRequests = requests;
    QTest::qWait(1000);
    const int perSecond = requests - startRequests;
    QVERIFY2(perSecond >= 5 && perSecond <= 12, qPrintable(QString::number(perSecond)));
    QCOMPARE(mostInFlight, 1);
}

void TestWorkspaceConnection::realTimeIntervalIsClamped_data()
{
    QTest::addColumn<QString>("setting");
    QTest::addColumn<int>("interval");
    // A sane value is kept: the polling test's rate shows it.
    QTest::newRow("zero would spin") << QStringLiteral("0") << 100;
    QTest::newRow("not a number") << QStringLiteral("fast") << 1000;
    QTest::newRow("an hour would never poll") << QStringLiteral("3600000") << 60000;
}

void TestWorkspaceConnection::realTimeIntervalIsClamped()
{
    QFETCH(QString, setting);
    QFETCH(int, interval);
    SetTimerInterval(setting);
    StartSimulator();
    MakeWorkspace();
    QVERIFY(ConnectAndWait(Sn));
    QCOMPARE(m_workspace->Connection()->RealTimeInterval(), interval);
    const QString line = QStringLiteral("实时数据刷新间隔“%1”无效，已改为%2毫秒").arg(setting).arg(interval);
    QVERIFY(HasLine(line, Warning));
}

void TestWorkspaceConnection::silentConnect_data()
{
    QTest::addColumn<QString>("savedSn");
    QTest::addColumn<QString>("line");
    QTest::newRow("saved machine answers") << Sn << QStringLiteral("机床连接成功，IP: %1, SN: %2").arg(Ip, Sn);
    QTest::newRow("saved machine is missing")
        << QStringLiteral("PB01GONE") << QStringLiteral("未找到上次连接的机床，SN: PB01GONE，请使用“新建连接”选择机床");
    QTest::newRow("nothing saved") << QString() << QString();
}

void TestWorkspaceConnection::silentConnect()
{
    QFETCH(QString, savedSn);
    QFETCH(QString, line);
    StartSimulator();
    SetSetting(g_strSettingLastConnectMachineSN, savedSn);
    MakeWorkspace();
    QSignalSpy started(m_workspace.get(), &Workspace::SignalSilentConnectStarted);
    m_workspace->SetSilentSearchDuration(2000);
    m_workspace->StartSilentConnect();
    QCOMPARE(started.count(), savedSn.isEmpty() ? 0 : 1);
    if (savedSn.isEmpty()) {
        QTest::qWait(300);
        QCOMPARE(m_workspace->GetTransManager()->LogPane()->LogModel()->rowCount(), 0);
        return;
    }
    QTRY_VERIFY_WITH_TIMEOUT(WorkspaceLogCount(*m_workspace, line) == 1, 10000);
    // A silent attempt opens no box, found or not; one found machine is connected once.
    QTest::qWait(300);
    QCOMPARE(CountLines(u"机床连接成功"), savedSn == Sn ? 1 : 0);
    QVERIFY(m_listBoxes.isEmpty());
}

QTEST_MAIN(TestWorkspaceConnection)
#include "tst_WorkspaceConnection.moc"
