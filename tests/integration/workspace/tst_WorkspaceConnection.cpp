#include "CDebugLog.h"
#include "CSelectMachineBox.h"
#include "CVarnokMessageBox.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseSignalHelper.h"
#include "CamBaseTextHelper.h"
#include "CncSimulator.h"
#include "FileTransferClient.h"
#include "KorvBaseGlobals.h"
#include "MachinePortMap.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransInfo.h"
#include "transfer/TransLogModel.h"
#include "transfer/TransManager.h"
#include "MachineConnection.h"
#include "workspace/Workspace.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QListWidget>
#include <QSettings>
#include <QSignalSpy>
#include <QTabBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <memory>

namespace {
const QString Ip = QStringLiteral("127.0.0.1");
const QColor Green(0, 160, 0);
const QColor Red(220, 50, 50);
const QColor Orange(220, 150, 0);

struct LogLine
{
    QString text;
    QColor color;
};

void SetSetting(const QString& key, const QVariant& value)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, key, value, true);
}

QVariant GetSetting(const QString& key)
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, key);
}

void SetTimerInterval(const QString& value)
{
    QSettings test(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat);
    test.setValue(QStringLiteral("TimerInterval"), value);
}

// Forwards loopback connections to a port, each only after a delay: a machine that
// answers, but late.
class DelayedRelay : public QTcpServer
{
public:
    DelayedRelay(quint16 target, int delayMs) : m_nTarget(target), m_nDelayMs(delayMs)
    {
        listen(QHostAddress::LocalHost);
        connect(this, &QTcpServer::newConnection, this, [this]() {
            QTcpSocket* client = nextPendingConnection();
            ++m_nAccepted;
            QTimer::singleShot(m_nDelayMs, client, [this, client]() { Forward(client); });
        });
    }
    int Accepted() const { return m_nAccepted; }

private:
    void Forward(QTcpSocket* client)
    {
        auto* upstream = new QTcpSocket(client);
        connect(upstream, &QTcpSocket::readyRead, client, [=]() { client->write(upstream->readAll()); });
        connect(client, &QTcpSocket::readyRead, upstream, [=]() { upstream->write(client->readAll()); });
        connect(upstream, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
        upstream->connectToHost(QHostAddress::LocalHost, m_nTarget);
    }

    quint16 m_nTarget;
    int m_nDelayMs;
    int m_nAccepted = 0;
};
} // namespace

// Drives a real Workspace against the simulator on loopback, and reads what the user
// would see: log lines with their colours, and the message boxes.
class TestWorkspaceConnection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void connectsWithAKnownSerialNumber();
    void readsTheSerialNumberWhenUnknown();
    void serialNumberFailures_data();
    void serialNumberFailures();
    void lateSerialNumberReplyChangesNothing();
    void disconnectDuringConnect_data();
    void disconnectDuringConnect();
    void switchingMachines_data();
    void switchingMachines();
    void versionNotice();
    void boxesOpenAfterTheSlotReturns();
    void givesUpAboutEightTicksAfterTheMachineWentSilent();
    void recoversBeforeTheEighthFailure();
    void hiddenWorkspaceShowsTheNoticeOnNextShow();
    void pollsRealTimeDataOneRequestAtATime();
    void realTimeIntervalIsClamped_data();
    void realTimeIntervalIsClamped();
    void failedRealTimeRecordsArePassedOn();
    void silentConnectFindsTheSavedMachine();
    void silentConnectReportsAMissingMachine();
    void silentConnectNeedsASavedSerialNumber();
    void selectBoxDiscoversAndConnects();
    void pendingRequestRunsAfterTheConnect();
    void typeCSwitchAndHostLogLines();

private:
    void StartSimulator(const SimOptions& options);
    void PointAt(const CncSimulator& sim) const;
    SimOptions DefaultOptions() const;
    std::unique_ptr<Workspace> MakeWorkspace();
    QList<LogLine> Log() const;
    bool HasLine(const QString& text, const QColor& color) const;
    int CountLines(const QString& prefix) const;
    QStringList BoxTexts() const;
    bool ConnectAndWait(const QString& sn);

    QTemporaryDir m_configDir;
    QTemporaryDir m_rootDir;
    std::unique_ptr<CncSimulator> m_sim;
    std::unique_ptr<Workspace> m_workspace;
    QList<StructMsgBoxRequest> m_listBoxes;
    bool m_bTickBoxes = false;
};

void TestWorkspaceConnection::initTestCase()
{
    QVERIFY(m_configDir.isValid());
    QVERIFY(m_rootDir.isValid());
    qputenv("KORV_CONFIG_DIR", m_configDir.path().toUtf8());
    CVarnokMessageBox::SetTestResponder([this](const StructMsgBoxRequest& request) {
        m_listBoxes.append(request);
        return StructMsgBoxAnswer{MsgButtonConfirm, m_bTickBoxes};
    });
}

void TestWorkspaceConnection::init()
{
    m_listBoxes.clear();
    m_bTickBoxes = false;
    SetSetting(QString::fromLatin1(g_strSettingNoRemindMachineVersion), false);
    SetSetting(QString::fromLatin1(g_strSettingLastConnectMachineSN), QString());
    SetSetting(QString::fromLatin1(g_strSettingFtpConnectTimeoutMs), 1500);
    QFile::remove(CamBaseTextHelper::instance()->GetLocalTestIniFilePath());
    CamBaseRegisterHelper::instance()->ClearDiscoveredMachines();
}

void TestWorkspaceConnection::cleanup()
{
    m_workspace.reset();
    m_sim.reset();
    // Tasks of a workspace that is gone may still be finishing.
    QTest::qWait(50);
}

SimOptions TestWorkspaceConnection::DefaultOptions() const
{
    SimOptions options;
    options.rootDir = m_rootDir.path();
    options.ftpPort = options.infoPort = options.snPort = options.discoveryPort = 0;
    options.serialNumber = QStringLiteral("PB01SIM0001");
    options.sysVersion = QStringLiteral("1.4.7");
    return options;
}

void TestWorkspaceConnection::StartSimulator(const SimOptions& options)
{
    m_sim = std::make_unique<CncSimulator>(options);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));
    PointAt(*m_sim);
}

// Every machine of a test is on 127.0.0.1: the port mapping says which one answers.
void TestWorkspaceConnection::PointAt(const CncSimulator& sim) const
{
    SetSetting(QString::fromLatin1(g_strSettingFtpPortMapping), sim.FtpPort());
    MachinePortMap::Set(30001, sim.InfoPort());
    MachinePortMap::Set(5002, sim.SnPort());
    MachinePortMap::Set(30002, sim.DiscoveryPort());
}

std::unique_ptr<Workspace> TestWorkspaceConnection::MakeWorkspace()
{
    auto workspace = std::make_unique<Workspace>();
    workspace->SetCheckInterval(50);
    workspace->SetSerialNumberTimeout(400);
    return workspace;
}

QList<LogLine> TestWorkspaceConnection::Log() const
{
    QList<LogLine> lines;
    const TransLogModel* model = m_workspace->GetTransManager()->LogPane()->LogModel();
    for (int row = 0; row < model->rowCount(); ++row) {
        const QModelIndex index = model->index(row, TransLogModel::ColumnMessage);
        lines.append({index.data().toString(), index.data(Qt::ForegroundRole).value<QColor>()});
    }
    return lines;
}

bool TestWorkspaceConnection::HasLine(const QString& text, const QColor& color) const
{
    for (const LogLine& line : Log()) {
        if (line.text == text && line.color == color)
            return true;
    }
    return false;
}

int TestWorkspaceConnection::CountLines(const QString& prefix) const
{
    int count = 0;
    for (const LogLine& line : Log())
        count += line.text.startsWith(prefix) ? 1 : 0;
    return count;
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
    return QTest::qWaitFor([&]() { return HasLine(expected, Green); }, 10000);
}

void TestWorkspaceConnection::connectsWithAKnownSerialNumber()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QSignalSpy connected(m_workspace.get(), &Workspace::SignalMachineConnected);
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));

    QVERIFY(HasLine(QStringLiteral("正在连接机床，请稍候..."), Green));
    QCOMPARE(connected.count(), 1);
    QVERIFY(m_workspace->IsCheckTimerActive());
    QVERIFY(m_workspace->PageBar()->isTabEnabled(Workspace::PageMachineStatus));
    QVERIFY(CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
    QCOMPARE(CamBaseRegisterHelper::instance()->GetCurrentMachineSN(), QStringLiteral("PB01SIM0001"));
    QCOMPARE(GetSetting(QString::fromLatin1(g_strSettingLastConnectMachineSN)).toString(),
             QStringLiteral("PB01SIM0001"));
    // The version rule of this model is reported; 1.4.7 needs no notice.
    QVERIFY(QTest::qWaitFor(
        [&]() {
            return HasLine(QStringLiteral("机床系统版本: 当前版本 1.4.7  最低要求版本 1.4.7"), QColor(51, 51, 51));
        },
        5000));
    QVERIFY(m_listBoxes.isEmpty());

    m_workspace->DisconnectMachine(false);
    QVERIFY(HasLine(QStringLiteral("机床断开连接"), Orange));
    QVERIFY(!m_workspace->IsCheckTimerActive());
    QVERIFY(QTest::qWaitFor([&]() { return BoxTexts().contains(QStringLiteral("与当前设备已断开连接！")); }, 3000));
    QVERIFY(m_workspace->MachineIp().isEmpty());
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
}

void TestWorkspaceConnection::readsTheSerialNumberWhenUnknown()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QVERIFY(ConnectAndWait(QString()));
    QCOMPARE(m_workspace->MachineSn(), QStringLiteral("PB01SIM0001"));
    QVERIFY(m_listBoxes.isEmpty());
}

void TestWorkspaceConnection::serialNumberFailures_data()
{
    QTest::addColumn<int>("errorCode");
    QTest::addColumn<bool>("silent");
    QTest::addColumn<QByteArray>("rawReply");
    QTest::addColumn<QString>("expectedBox");

    QTest::newRow("error code 3 shows its msg") << 3 << false << QByteArray() << QString();
    QTest::newRow("no reply within the time-out")
        << 0 << true << QByteArray() << QStringLiteral("获取机床序列号失败：连接超时");
    QTest::newRow("reply that is not JSON")
        << 0 << false << QByteArray("hello machine") << QStringLiteral("获取机床序列号失败");
    // Broken inside, not cut short: nothing more can mend it, so it fails before the time-out.
    QTest::newRow("reply that starts like JSON but is not")
        << 0 << false << QByteArray(R"({"errorCode":0,,"data":"PB01"})") << QStringLiteral("获取机床序列号失败");
    QTest::newRow("empty serial number") << 0 << false << QByteArray(R"({"errorCode":0,"msg":"ok","data":""})")
                                         << QStringLiteral("获取机床序列号失败：序列号为空");
}

void TestWorkspaceConnection::serialNumberFailures()
{
    QFETCH(int, errorCode);
    QFETCH(bool, silent);
    QFETCH(QByteArray, rawReply);
    QFETCH(QString, expectedBox);

    SimOptions options = DefaultOptions();
    options.snErrorCode = errorCode;
    options.snSilent = silent;
    StartSimulator(options);

    // A reply the simulator would never send comes from a plain socket in its place.
    QTcpServer raw;
    if (!rawReply.isEmpty()) {
        QVERIFY(raw.listen(QHostAddress::LocalHost));
        MachinePortMap::Set(5002, raw.serverPort());
        connect(&raw, &QTcpServer::newConnection, &raw, [&raw, rawReply]() {
            QTcpSocket* socket = raw.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket, rawReply]() {
                socket->readAll();
                socket->write(rawReply);
            });
        });
    }

    m_workspace = MakeWorkspace();
    m_workspace->ConnectToMachine(Ip, QString());
    QVERIFY(QTest::qWaitFor([&]() { return !m_listBoxes.isEmpty(); }, 10000));
    const StructMsgBoxRequest box = m_listBoxes.first();
    QCOMPARE(box.strTitle, QStringLiteral("提示"));
    QCOMPARE(box.eIcon, MsgIconFailure);
    if (errorCode != 0) {
        QVERIFY2(box.strText.startsWith(QStringLiteral("获取机床序列号失败：")) && box.strText.size() > 10,
                 qPrintable(box.strText));
    } else {
        QCOMPARE(box.strText, expectedBox);
    }
    // Without a serial number nothing is announced.
    QCOMPARE(CountLines(QStringLiteral("机床连接成功")), 0);
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
}

void TestWorkspaceConnection::lateSerialNumberReplyChangesNothing()
{
    StartSimulator(DefaultOptions());
    QTcpServer slow;
    QVERIFY(slow.listen(QHostAddress::LocalHost));
    MachinePortMap::Set(5002, slow.serverPort());
    QList<QTcpSocket*> sockets;
    connect(&slow, &QTcpServer::newConnection, &slow, [&]() { sockets.append(slow.nextPendingConnection()); });

    m_workspace = MakeWorkspace();
    m_workspace->ConnectToMachine(Ip, QString());
    QVERIFY(QTest::qWaitFor([&]() { return !m_listBoxes.isEmpty(); }, 10000));
    QCOMPARE(BoxTexts(), QStringList{QStringLiteral("获取机床序列号失败：连接超时")});
    for (QTcpSocket* socket : sockets)
        socket->write(R"({"errorCode":0,"msg":"ok","data":"PB01LATE"})");
    QTest::qWait(300);
    QCOMPARE(m_listBoxes.size(), 1);
    QVERIFY(m_workspace->MachineSn().isEmpty());
    QCOMPARE(CountLines(QStringLiteral("机床连接成功")), 0);
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
    StartSimulator(DefaultOptions());
    // The step under test answers only after the user has pressed "断开连接".
    DelayedRelay lateFtp(m_sim->FtpPort(), 600);
    DelayedRelay lateSn(m_sim->SnPort(), 600);
    DelayedRelay& late = duringFtpTest ? lateFtp : lateSn;
    if (duringFtpTest)
        SetSetting(QString::fromLatin1(g_strSettingFtpPortMapping), lateFtp.serverPort());
    else
        MachinePortMap::Set(5002, lateSn.serverPort());

    m_workspace = MakeWorkspace();
    m_workspace->SetSerialNumberTimeout(5000);
    QSignalSpy connected(m_workspace.get(), &Workspace::SignalMachineConnected);
    QSignalSpy offline(m_workspace.get(), &Workspace::SignalMachineOffline);
    m_workspace->ConnectToMachine(Ip, duringFtpTest ? QStringLiteral("PB01SIM0001") : QString());
    QVERIFY(QTest::qWaitFor([&]() { return late.Accepted() > 0; }, 5000));
    m_workspace->GetToolPage()->Button(ToolPage::ActionDisconnect)->click();
    QCOMPARE(offline.count(), 1);

    QTest::qWait(1200); // the late answer has come and gone
    QCOMPARE(CountLines(QStringLiteral("机床连接成功")), 0);
    QCOMPARE(connected.count(), 0);
    QCOMPARE(m_workspace->Connection()->GetState(), MachineConnection::State::Disconnected);
    QVERIFY(m_workspace->MachineIp().isEmpty());
    QVERIFY(m_workspace->MachineSn().isEmpty());
    QVERIFY(!m_workspace->IsCheckTimerActive());
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
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
    StartSimulator(DefaultOptions());
    int firstRequests = 0;
    connect(m_sim.get(), &CncSimulator::SignalInfoRequest, this, [&]() { ++firstRequests; });
    m_workspace = MakeWorkspace();
    QStringList recordSns;
    connect(m_workspace.get(), &Workspace::SignalRealTimeData, this,
            [&](const StructRealTimeData& record) { recordSns << record.sn; });
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QVERIFY(QTest::qWaitFor([&]() { return recordSns.size() >= 2; }, 5000));

    SimOptions secondOptions = DefaultOptions();
    secondOptions.serialNumber = QStringLiteral("PB01SIM0002");
    CncSimulator second(secondOptions);
    QString error;
    QVERIFY2(second.Start(&error), qPrintable(error));
    PointAt(second);
    if (!secondAnswers)
        second.Vanish();
    QSignalSpy offline(m_workspace.get(), &Workspace::SignalMachineOffline);
    m_workspace->ConnectToMachine(Ip, QStringLiteral("PB01SIM0002"));
    QCOMPARE(offline.count(), 1);

    if (secondAnswers) {
        QVERIFY(QTest::qWaitFor(
            [&]() { return HasLine(QStringLiteral("机床连接成功，IP: %1, SN: PB01SIM0002").arg(Ip), Green); }, 10000));
        recordSns.clear();
        QVERIFY(QTest::qWaitFor([&]() { return recordSns.size() >= 3; }, 5000));
        QCOMPARE(recordSns.count(QStringLiteral("PB01SIM0002")), recordSns.size());
        QCOMPARE(CamBaseRegisterHelper::instance()->GetCurrentMachineSN(), QStringLiteral("PB01SIM0002"));
    } else {
        QVERIFY(QTest::qWaitFor([&]() { return HasLine(QStringLiteral("连接机床失败，IP: %1").arg(Ip), Red); }, 10000));
        QCOMPARE(offline.count(), 2);
        QCOMPARE(m_workspace->Connection()->GetState(), MachineConnection::State::Disconnected);
        QVERIFY(!m_workspace->IsCheckTimerActive());
        QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
    }
    // Nothing asks the first machine any more.
    QTest::qWait(200);
    const int settled = firstRequests;
    QTest::qWait(600);
    QCOMPARE(firstRequests, settled);
}

void TestWorkspaceConnection::versionNotice()
{
    SimOptions options = DefaultOptions();
    options.sysVersion = QStringLiteral("1.4.6");
    StartSimulator(options);
    m_workspace = MakeWorkspace();
    m_bTickBoxes = true;
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QVERIFY(QTest::qWaitFor([&]() { return !m_listBoxes.isEmpty(); }, 5000));
    const StructMsgBoxRequest box = m_listBoxes.first();
    QCOMPARE(box.strText, QStringLiteral("当前机床系统版本为 1.4.6，低于最低要求版本 1.4.7，部分功能可能会受到影响，"
                                         "请升级机床系统版本！"));
    QVERIFY(box.bHasCheckBox);
    QCOMPARE(box.strCheckText, QStringLiteral("不再提醒"));
    QCOMPARE(box.eIcon, MsgIconWarning);
    QVERIFY(GetSetting(QString::fromLatin1(g_strSettingNoRemindMachineVersion)).toBool());

    // Next time the ticked choice is respected.
    m_workspace.reset();
    m_listBoxes.clear();
    m_workspace = MakeWorkspace();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QVERIFY(QTest::qWaitFor([&]() { return CountLines(QStringLiteral("机床系统版本")) > 0; }, 5000));
    QTest::qWait(100);
    QVERIFY(m_listBoxes.isEmpty());
}

void TestWorkspaceConnection::boxesOpenAfterTheSlotReturns()
{
    // A modal box inside a socket's slot would let the socket and the timers run again under it.
    m_workspace = MakeWorkspace();
    StructMachineSystemInfo old;
    old.SysVer = QStringLiteral("1.4.6");
    m_workspace->SlotGetMachineInfoFinished(true, old, StructMachineNetInfo());
    QVERIFY(m_listBoxes.isEmpty());
    QVERIFY(QTest::qWaitFor([&]() { return m_listBoxes.size() == 1; }, 2000));
}

void TestWorkspaceConnection::givesUpAboutEightTicksAfterTheMachineWentSilent()
{
    // The machine's real timings: a check every second, five seconds for an FTP log-in (a silent
    // machine's TCP connection is taken by its kernel, so the greeting's wait is what counts).
    SetSetting(QString::fromLatin1(g_strSettingFtpConnectTimeoutMs), 5000);
    SetSetting(QString::fromLatin1(g_strSettingFtpResponseTimeoutMs), 5000);
    SimOptions options = DefaultOptions();
    options.vanishAfter = 3;
    options.vanishSilently = true;
    StartSimulator(options);
    m_workspace = MakeWorkspace();
    m_workspace->SetCheckInterval(1000);
    m_workspace->show();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QSignalSpy offline(m_workspace.get(), &Workspace::SignalMachineOffline);
    QSignalSpy vanished(m_sim.get(), &CncSimulator::SignalVanished);
    QVERIFY(vanished.wait(5000));
    QElapsedTimer sinceVanished;
    sinceVanished.start();

    // Eight ticks plus one hanging log-in is about 13 s; checks that waited for each other took 40 s.
    QVERIFY(QTest::qWaitFor([&]() { return HasLine(QStringLiteral("超过最大重连次数，机床已断开连接"), Red); }, 20000));
    const qint64 givenUpAfter = sinceVanished.elapsed();
    qInfo("given up %lld ms after the machine went silent", static_cast<long long>(givenUpAfter));
    QVERIFY2(givenUpAfter < 16000, qPrintable(QString::number(givenUpAfter)));
    for (int count = 1; count <= 7; ++count)
        QVERIFY2(HasLine(QStringLiteral("机床连接失败，重新连接中，次数：%1").arg(count), Orange),
                 qPrintable(QString::number(count)));
    QCOMPARE(CountLines(QStringLiteral("机床连接失败，重新连接中")), 7);
    QVERIFY(!m_workspace->IsCheckTimerActive());
    QCOMPARE(m_workspace->CheckFailCount(), 0);
    QVERIFY(m_workspace->MachineIp().isEmpty());
    QVERIFY(m_workspace->MachineSn().isEmpty());
    QVERIFY(!CamBaseRegisterHelper::instance()->GetCurrentMachineConnectStatus());
    QVERIFY(QTest::qWaitFor([&]() { return BoxTexts().contains(QStringLiteral("与当前设备已断开连接，请检查网络！")); },
                            3000));
    QVERIFY(offline.count() >= 1);
    QVERIFY(!m_workspace->NetNoticePending());
}

void TestWorkspaceConnection::recoversBeforeTheEighthFailure()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    m_workspace->SetCheckInterval(150);
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));

    SimOptions again = m_sim->Options();
    again.ftpPort = m_sim->FtpPort();
    again.infoPort = m_sim->InfoPort();
    again.snPort = m_sim->SnPort();
    again.discoveryPort = m_sim->DiscoveryPort();
    m_sim->Vanish();
    QVERIFY(QTest::qWaitFor([&]() { return m_workspace->CheckFailCount() >= 2; }, 10000));
    m_sim = std::make_unique<CncSimulator>(again);
    QString error;
    QVERIFY2(m_sim->Start(&error), qPrintable(error));

    const QString reconnected = QStringLiteral("机床重连成功，IP: %1, SN: PB01SIM0001").arg(Ip);
    QVERIFY(QTest::qWaitFor([&]() { return HasLine(reconnected, Green); }, 10000));
    QTest::qWait(500);
    QCOMPARE(CountLines(QStringLiteral("机床重连成功")), 1);
    QCOMPARE(m_workspace->CheckFailCount(), 0);
    QVERIFY(m_workspace->IsCheckTimerActive());
    QCOMPARE(CountLines(QStringLiteral("超过最大重连次数")), 0);
}

void TestWorkspaceConnection::hiddenWorkspaceShowsTheNoticeOnNextShow()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    m_sim->Vanish();
    QVERIFY(QTest::qWaitFor([&]() { return m_workspace->NetNoticePending(); }, 15000));
    QTest::qWait(400);
    QVERIFY(m_listBoxes.isEmpty());

    m_workspace->show();
    QVERIFY(QTest::qWaitFor([&]() { return BoxTexts().contains(QStringLiteral("与当前设备已断开连接，请检查网络！")); },
                            5000));
    QVERIFY(!m_workspace->NetNoticePending());
}

void TestWorkspaceConnection::pollsRealTimeDataOneRequestAtATime()
{
    SetTimerInterval(QStringLiteral("100"));
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    int requests = 0;
    int answers = 0;
    int mostInFlight = 0;
    connect(m_sim.get(), &CncSimulator::SignalInfoRequest, this, [&](const QString& type) {
        if (type == QLatin1String("RealTimeDataReq"))
            mostInFlight = qMax(mostInFlight, ++requests - answers);
    });
    connect(m_workspace.get(), &Workspace::SignalRealTimeData, this, [&]() { ++answers; });
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));

    QVERIFY(QTest::qWaitFor([&]() { return answers >= 3; }, 5000));
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
    QTest::addColumn<bool>("corrected");
    QTest::newRow("zero would spin") << QStringLiteral("0") << 100 << true;
    QTest::newRow("negative would spin") << QStringLiteral("-5") << 100 << true;
    QTest::newRow("not a number") << QStringLiteral("fast") << 1000 << true;
    QTest::newRow("an hour would never poll") << QStringLiteral("3600000") << 60000 << true;
    QTest::newRow("sane value kept") << QStringLiteral("250") << 250 << false;
}

void TestWorkspaceConnection::realTimeIntervalIsClamped()
{
    QFETCH(QString, setting);
    QFETCH(int, interval);
    QFETCH(bool, corrected);
    SetTimerInterval(setting);
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QCOMPARE(m_workspace->Connection()->RealTimeInterval(), interval);
    const QString line = QStringLiteral("实时数据刷新间隔“%1”无效，已改为%2毫秒").arg(setting).arg(interval);
    QCOMPARE(HasLine(line, Orange), corrected);
}

void TestWorkspaceConnection::failedRealTimeRecordsArePassedOn()
{
    SetTimerInterval(QStringLiteral("100"));
    SimOptions options = DefaultOptions();
    options.realTimeSilent = true;
    StartSimulator(options);
    m_workspace = MakeWorkspace();
    QSignalSpy records(m_workspace.get(), &Workspace::SignalRealTimeData);
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    // The request times out and its failure still reaches the status page, which counts misses.
    QVERIFY(records.wait(FileTransferClient::kDefaultRequestTimeoutMs + 3000));
}

void TestWorkspaceConnection::silentConnectFindsTheSavedMachine()
{
    StartSimulator(DefaultOptions());
    SetSetting(QString::fromLatin1(g_strSettingLastConnectMachineSN), QStringLiteral("PB01SIM0001"));
    m_workspace = MakeWorkspace();
    QSignalSpy started(m_workspace.get(), &Workspace::SignalSilentConnectStarted);

    // Replies too short to name a machine are ignored.
    m_workspace->SlotSilentConnectMachine(QStringLiteral("CNC_MACHINE*PB01SIM0001*1.4.7"));
    QVERIFY(CamBaseRegisterHelper::instance()->GetDiscoveredMachines().isEmpty());

    m_workspace->SetSilentSearchDuration(3000);
    m_workspace->StartSilentConnect();
    QCOMPARE(started.count(), 1);
    QVERIFY(HasLine(QStringLiteral("正在查找上次连接的机床，SN: PB01SIM0001"), QColor(51, 51, 51)));
    const QString expected = QStringLiteral("机床连接成功，IP: %1, SN: PB01SIM0001").arg(Ip);
    QVERIFY(QTest::qWaitFor([&]() { return HasLine(expected, Green); }, 10000));
    QCOMPARE(CountLines(QStringLiteral("机床连接成功")), 1);
    QVERIFY(!CamBaseRegisterHelper::instance()->GetDiscoveredMachines().isEmpty());
    QCOMPARE(CountLines(QStringLiteral("未找到上次连接的机床")), 0);
}

void TestWorkspaceConnection::silentConnectReportsAMissingMachine()
{
    StartSimulator(DefaultOptions());
    SetSetting(QString::fromLatin1(g_strSettingLastConnectMachineSN), QStringLiteral("PB01GONE"));
    m_workspace = MakeWorkspace();
    m_workspace->SetSilentSearchDuration(500);
    m_workspace->StartSilentConnect();
    QVERIFY(HasLine(QStringLiteral("正在查找上次连接的机床，SN: PB01GONE"), QColor(51, 51, 51)));
    QVERIFY(QTest::qWaitFor(
        [&]() {
            return HasLine(QStringLiteral("未找到上次连接的机床，SN: PB01GONE，请使用“新建连接”选择机床"), Orange);
        },
        3000));
    QCOMPARE(CountLines(QStringLiteral("正在连接机床")), 0);
}

void TestWorkspaceConnection::silentConnectNeedsASavedSerialNumber()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QSignalSpy started(m_workspace.get(), &Workspace::SignalSilentConnectStarted);
    m_workspace->StartSilentConnect();
    QCOMPARE(started.count(), 0);
    QTest::qWait(300);
    QVERIFY(Log().isEmpty());
}

void TestWorkspaceConnection::selectBoxDiscoversAndConnects()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    m_workspace->show();
    m_workspace->GetToolPage()->Button(ToolPage::ActionNewConnection)->click();
    CSelectMachineBox* box = m_workspace->SelectMachineBox();
    QVERIFY(box);
    QVERIFY(box->isVisible());
    QVERIFY(QTest::qWaitFor([&]() { return box->MachineCount() >= 1; }, 8000));

    // Refresh empties the list and asks again.
    Q_EMIT box->SignalSelectRefresh();
    QCOMPARE(box->MachineCount(), 0);
    QVERIFY(QTest::qWaitFor([&]() { return box->MachineCount() >= 1; }, 8000));

    auto* list = box->findChild<QListWidget*>();
    QVERIFY(list);
    list->setCurrentRow(0);
    box->SlotConfirm();
    const QString expected = QStringLiteral("机床连接成功，IP: %1, SN: PB01SIM0001").arg(Ip);
    QVERIFY(QTest::qWaitFor([&]() { return HasLine(expected, Green); }, 10000));
    QVERIFY(QTest::qWaitFor([&]() { return !box->isVisible(); }, 3000));

    m_workspace->GetToolPage()->Button(ToolPage::ActionDisconnect)->click();
    QVERIFY(HasLine(QStringLiteral("机床断开连接"), Orange));
    QCOMPARE(box->MachineCount(), 0);
}

void TestWorkspaceConnection::pendingRequestRunsAfterTheConnect()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QStringList replayed;
    m_workspace->SetPendingRequest(QStringLiteral("/tmp/a.nc"), QStringLiteral("/programs"), 2,
                                   [&](const QString& first, const QString& second, int third) {
                                       replayed << first << second << QString::number(third);
                                   });
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QVERIFY(QTest::qWaitFor([&]() { return !replayed.isEmpty(); }, 2000));
    QCOMPARE(replayed, (QStringList{"/tmp/a.nc", "/programs", "2"}));

    // The slot is empty afterwards: a second connect replays nothing.
    m_workspace->DisconnectMachine(false);
    replayed.clear();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    QTest::qWait(300);
    QVERIFY(replayed.isEmpty());
}

void TestWorkspaceConnection::typeCSwitchAndHostLogLines()
{
    StartSimulator(DefaultOptions());
    m_workspace = MakeWorkspace();
    QVERIFY(ConnectAndWait(QStringLiteral("PB01SIM0001")));
    m_workspace->SlotReConnectByTypeC(QStringLiteral("127.0.0.1"));
    QVERIFY(HasLine(QStringLiteral("机床切换为Type-C连接，IP: 127.0.0.1, SN: PB01SIM0001"), Green));
    QCOMPARE(m_workspace->MachineIp(), QStringLiteral("127.0.0.1"));

    Q_EMIT CamBaseSignalHelper::instance()->signalFilePluginAppendLog(QStringLiteral("来自主程序"), Orange);
    QVERIFY(HasLine(QStringLiteral("来自主程序"), Orange));
}

QTEST_MAIN(TestWorkspaceConnection)
#include "tst_WorkspaceConnection.moc"
