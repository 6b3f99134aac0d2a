#include "MachineConnection.h"

#include "CDebugLog.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseTextHelper.h"
#include "CamBaseToolBitHelper.h"
#include "FileTransferClient.h"
#include "FtpConnection.h"
#include "KorvBaseGlobals.h"
#include "LogColors.h"
#include "MachinePortMap.h"
#include "MachineTask.h"
#include "MachineTaskFactory.h"
#include "SerialNumberReader.h"
#include "WorkbenchLog.h"

#include <QFutureWatcher>
#include <QSettings>
#include <QTimer>

namespace {
constexpr quint16 InfoPort = 30001;
constexpr quint16 SnPort = 5002;
const QString MinSystemVersion = QStringLiteral("1.4.7");

// The model codes whose system version is checked against the minimum.
bool VersionRuleApplies(const QString& sn)
{
    for (const char* prefix : {"PB01", "PB03", "RW-100", "KT-100", "KT-E01"}) {
        if (sn.startsWith(QLatin1String(prefix)))
            return true;
    }
    return false;
}
} // namespace

MachineConnection::MachineConnection(QObject* parent) : QObject(parent)
{
    RegisterWorkbenchMetaTypes();
    m_pCheckTimer = new QTimer(this);
    connect(m_pCheckTimer, &QTimer::timeout, this, &MachineConnection::CheckNow);
    m_pRealTimeTimer = new QTimer(this);
    connect(m_pRealTimeTimer, &QTimer::timeout, this, &MachineConnection::PollRealTime);
    m_pSnReader = new SerialNumberReader(this);
    connect(m_pSnReader, &SerialNumberReader::SignalFinished, this, &MachineConnection::OnSerialNumberRead);
    MakeClients();
}

MachineConnection::~MachineConnection()
{
    // The host outlives the workbench: it must not go on believing a machine is connected.
    if (!m_strSn.isEmpty())
        CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(false, QString(), QString());
    m_tasks.StopAll();
}

bool MachineConnection::IsCheckTimerActive() const
{
    return m_pCheckTimer->isActive();
}

FileTransferClient* MachineConnection::RealTimeClient() const
{
    return m_pRealTimeClient;
}

void MachineConnection::MakeClients()
{
    // May run inside a client's own signal: the old ones are silenced now and deleted later.
    for (FileTransferClient* client : {m_pInfoClient.data(), m_pRealTimeClient.data()}) {
        if (!client)
            continue;
        client->disconnect(this);
        client->disconnectFromMachine();
        client->deleteLater();
    }
    m_pInfoClient = new FileTransferClient(this);
    m_pRealTimeClient = new FileTransferClient(this);
    connect(m_pInfoClient, &FileTransferClient::SignalTcpConnectStatus, this, &MachineConnection::OnInfoClientStatus);
    connect(m_pInfoClient, &FileTransferClient::SignalGetMachineInfoFinished, this, &MachineConnection::OnMachineInfo);
    connect(m_pRealTimeClient, &FileTransferClient::SignalTcpConnectStatus, this,
            &MachineConnection::OnRealTimeClientStatus);
    connect(m_pRealTimeClient, &FileTransferClient::SignalGetMachineRealTimeData, this,
            &MachineConnection::OnRealTimeData);
}

void MachineConnection::SetState(State state)
{
    if (m_eState == state)
        return;
    m_eState = state;
    Q_EMIT SignalStateChanged(state);
}

quint64 MachineConnection::BeginAttempt(const QString& ip, const QString& sn)
{
    if (m_eState != State::Disconnected) {
        // Said before the attempt: if the new address is wrong, the user still learns why the
        // machine that worked is gone.
        if (m_eState == State::Connected || m_eState == State::Degraded) {
            const QString text = tr("断开与机床（IP: %1）的连接，改为连接 %2").arg(m_strIp, ip);
            CDebugLog::AddLog(text);
            Q_EMIT SignalAppendLog(text, LogColors::Warning);
        }
        TearDown();
        Q_EMIT SignalOffline();
    }
    m_strIp = ip;
    m_strSn = sn;
    SetState(State::Connecting);
    return m_nGeneration;
}

void MachineConnection::Connect(const QString& ip, const QString& sn, bool silent)
{
    BeginAttempt(ip, sn);
    qCDebug(lcWorkbench) << "connect to" << ip;
    Q_EMIT SignalAppendLog(tr("正在连接机床，请稍候..."), LogColors::Success);
    RunFtpTest(silent);
}

void MachineConnection::AcceptProvenMachine(const QString& ip, const QString& sn)
{
    OnFtpTestResult(BeginAttempt(ip, sn), true, false);
}

void MachineConnection::RunFtpTest(bool silent)
{
    const quint64 generation = m_nGeneration;
    const QString ip = m_strIp;
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, generation, silent]() {
        watcher->deleteLater();
        OnFtpTestResult(generation, watcher->result(), silent);
    });
    watcher->setFuture(m_tasks.Run([ip](const TaskOwner::StopCheck& stop) { return FtpConnection(ip, stop); }));
}

void MachineConnection::OnFtpTestResult(quint64 generation, bool ok, bool silent)
{
    if (generation != m_nGeneration) {
        qCDebug(lcWorkbench) << "FTP test of an abandoned attempt ignored";
        return;
    }
    qCDebug(lcWorkbench) << "FTP test result" << ok;
    if (silent)
        CDebugLog::AddLog(QStringLiteral("静默连接机床result:%1,ip:%2,sn:%3").arg(ok).arg(m_strIp, m_strSn));
    else
        Q_EMIT SignalFtpTestFinished(ok);
    if (!ok) {
        CDebugLog::AddLog(QStringLiteral("FTP连接机床失败，IP: %1").arg(m_strIp));
        Q_EMIT SignalAppendLog(tr("连接机床失败，IP: %1").arg(m_strIp), LogColors::Failure);
        Fail(tr("连接机床失败，请检查网络连接和机床IP地址！"), !silent);
        return;
    }
    if (!m_pCheckTimer->isActive())
        m_pCheckTimer->start(m_nCheckIntervalMs);
    if (m_strSn.isEmpty())
        m_pSnReader->Start(m_strIp, MachinePortMap::Resolve(SnPort), m_nSnTimeoutMs);
    else
        Establish();
}

void MachineConnection::OnSerialNumberRead(bool ok, const QString& sn, const QString& errorText)
{
    if (m_eState != State::Connecting)
        return;
    if (!ok) {
        Fail(errorText, true);
        return;
    }
    m_strSn = sn;
    Establish();
}

void MachineConnection::Fail(const QString& text, bool showBox)
{
    TearDown();
    Q_EMIT SignalOffline();
    if (showBox)
        Q_EMIT SignalNotice(text);
}

void MachineConnection::Establish()
{
    m_endpoint = MachineEndpoint::For(m_strIp, m_strSn);
    Q_EMIT SignalEndpointChanged(m_endpoint);
    SetState(State::Connected);
    CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(true, m_strIp, m_strSn);
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingLastConnectMachineSN), m_strSn, false);
    Q_EMIT SignalConnected(m_strIp, m_strSn);
    StartRealTimePolling();
    Q_EMIT SignalAppendLog(tr("机床连接成功，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
    CamBaseToolBitHelper::instance()->SetConnectMachineType(m_strSn.startsWith(QLatin1String("PB01")));
    m_bInfoRequested = false;
    if (m_pInfoClient->isConnected()) {
        m_bInfoRequested = true;
        m_pInfoClient->GetMachineInfo();
    } else {
        m_pInfoClient->connectToMachine(m_strIp, InfoPort);
    }
}

void MachineConnection::OnInfoClientStatus(bool bConnect)
{
    if (bConnect && !m_bInfoRequested && (m_eState == State::Connected || m_eState == State::Degraded)) {
        m_bInfoRequested = true;
        m_pInfoClient->GetMachineInfo();
    }
}

void MachineConnection::OnMachineInfo(bool ok, const StructMachineSystemInfo& systemInfo,
                                      const StructMachineNetInfo& netInfo)
{
    if (!ok) {
        CDebugLog::AddLog(QStringLiteral("获取设备信息失败!"));
        m_pInfoClient->disconnectFromMachine();
        Q_EMIT SignalMachineInfoFinished(false, systemInfo, netInfo);
        return;
    }
    CamBaseRegisterHelper::instance()->SetCurrentCameraVer(systemInfo.CameraVer);
    qCDebug(lcWorkbench) << systemInfo;
    CDebugLog::AddLog(
        QStringLiteral("设备信息获取成功,系统版本:%1,固件版本:%2,wlanIP:%3,ethIP:%4,sn:%5,mqtt:%6,cameraVer:%7")
            .arg(systemInfo.SysVer, systemInfo.FwVer, netInfo.wlan.ip, netInfo.eth.ip, systemInfo.sn)
            .arg(systemInfo.Mqtt)
            .arg(systemInfo.CameraVer));
    if (VersionRuleApplies(m_strSn)) {
        Q_EMIT SignalAppendLog(
            tr("机床系统版本: 当前版本 %1  最低要求版本 %2").arg(systemInfo.SysVer, MinSystemVersion),
            LogColors::Plain);
    }
    Q_EMIT SignalMachineInfoFinished(true, systemInfo, netInfo);
}

void MachineConnection::CheckNow()
{
    if (g_bTranslating || m_strIp.isEmpty())
        return;
    MachineTask* task = MachineTaskFactory::Default()->Check(MachineEndpoint::For(m_strIp, m_strSn));
    const quint64 generation = m_nGeneration;
    connect(task, &MachineTask::SignalFinished, this, [this, generation](bool ok) { OnCheckResult(generation, ok); });
    m_tasks.Start(task);
}

void MachineConnection::OnCheckResult(quint64 generation, bool ok)
{
    if (generation != m_nGeneration || m_strSn.isEmpty())
        return;
    if (ok) {
        if (m_nCheckFailCount > 0) {
            Q_EMIT SignalAppendLog(tr("机床重连成功，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
            CDebugLog::AddLog(QStringLiteral("CheckConnect 重新连接成功"));
        }
        m_nCheckFailCount = 0;
        SetState(State::Connected);
        ReviveClients();
        return;
    }
    if (m_nCheckFailCount >= MaxCheckFailures) {
        GiveUp();
        return;
    }
    ++m_nCheckFailCount;
    SetState(State::Degraded);
    CDebugLog::AddLog(QStringLiteral("检测机床连接失败，失败次数：%1").arg(m_nCheckFailCount));
    Q_EMIT SignalAppendLog(tr("机床连接失败，重新连接中，次数：%1").arg(m_nCheckFailCount), LogColors::Warning);
}

void MachineConnection::GiveUp()
{
    CDebugLog::AddLog(QStringLiteral("CheckConnect 超过最大次数, 准备断开"));
    Q_EMIT SignalAppendLog(tr("超过最大重连次数，机床已断开连接"), LogColors::Failure);
    if (m_pCheckTimer->isActive()) {
        m_pCheckTimer->stop();
        CDebugLog::AddLog(QStringLiteral("CheckConnect 定时器已停止"));
    }
    TearDown();
    Q_EMIT SignalOffline();
    Q_EMIT SignalGaveUp();
}

bool MachineConnection::Disconnect()
{
    const bool wasChecking = m_pCheckTimer->isActive();
    const bool wasActive = m_eState != State::Disconnected;
    TearDown();
    if (wasActive)
        Q_EMIT SignalOffline();
    return wasChecking;
}

void MachineConnection::TearDown()
{
    ++m_nGeneration;
    m_pCheckTimer->stop();
    m_pRealTimeTimer->stop();
    m_pSnReader->Cancel();
    // Checks and FTP tests of the old attempt end on their own; their answers are dropped.
    m_tasks.RequestStopAll();
    if (m_eState == State::Connected || m_eState == State::Degraded)
        CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(false, QString(), QString());
    MakeClients();
    m_bRealTimeBusy = false;
    m_bInfoRequested = false;
    m_nCheckFailCount = 0;
    m_strIp.clear();
    m_strSn.clear();
    if (m_endpoint.IsValid()) {
        m_endpoint = MachineEndpoint();
        Q_EMIT SignalEndpointChanged(m_endpoint);
    }
    SetState(State::Disconnected);
}

void MachineConnection::SwitchIp(const QString& ip)
{
    m_strIp = ip;
    if (m_endpoint.IsValid()) {
        m_endpoint = MachineEndpoint::For(m_strIp, m_strSn);
        Q_EMIT SignalEndpointChanged(m_endpoint);
    }
    Q_EMIT SignalAppendLog(tr("机床切换为Type-C连接，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
}

void MachineConnection::StartRealTimePolling()
{
    m_nRealTimeInterval = 1000;
    const QSettings testSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat);
    if (testSettings.contains(QStringLiteral("TimerInterval"))) {
        const QString text = testSettings.value(QStringLiteral("TimerInterval")).toString();
        bool isNumber = false;
        const int requested = text.toInt(&isNumber);
        const int clamped = isNumber ? qBound(MinRealTimeIntervalMs, requested, MaxRealTimeIntervalMs) : 1000;
        if (!isNumber || clamped != requested) {
            const QString line = tr("实时数据刷新间隔“%1”无效，已改为%2毫秒").arg(text).arg(clamped);
            CDebugLog::AddLog(line);
            Q_EMIT SignalAppendLog(line, LogColors::Warning);
        }
        m_nRealTimeInterval = clamped;
    }
    if (m_pRealTimeClient->isConnected())
        m_pRealTimeTimer->start(m_nRealTimeInterval);
    else
        m_pRealTimeClient->connectToMachine(m_strIp, InfoPort);
}

void MachineConnection::ReviveClients()
{
    if (m_eState != State::Connected)
        return;
    if (m_pRealTimeClient->isConnected()) {
        if (!m_pRealTimeTimer->isActive())
            m_pRealTimeTimer->start(m_nRealTimeInterval);
    } else if (!m_pRealTimeClient->isConnecting()) {
        m_pRealTimeClient->connectToMachine(m_strIp, InfoPort);
    }
    if (!m_pInfoClient->isConnected() && !m_pInfoClient->isConnecting())
        m_pInfoClient->connectToMachine(m_strIp, InfoPort);
}

void MachineConnection::PollRealTime()
{
    if (m_bRealTimeBusy || !m_pRealTimeClient->isConnected())
        return;
    m_bRealTimeBusy = true;
    if (!m_pRealTimeClient->GetMachineRealTimeData())
        m_bRealTimeBusy = false;
}

void MachineConnection::OnRealTimeClientStatus(bool bConnect)
{
    if (bConnect && (m_eState == State::Connected || m_eState == State::Degraded)) {
        m_pRealTimeTimer->start(m_nRealTimeInterval);
    } else {
        m_pRealTimeTimer->stop();
        m_bRealTimeBusy = false;
    }
}

void MachineConnection::OnRealTimeData(bool ok, const StructRealTimeData& data)
{
    m_bRealTimeBusy = false;
    Q_EMIT SignalRealTimeData(ok, data);
}
