#include "Workspace.h"

#include "BroadCastSender.h"
#include "CDebugLog.h"
#include "CProgressWidget.h"
#include "CSelectMachineBox.h"
#include "CVarnokMessageBox.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseSignalHelper.h"
#include "CamBaseTextHelper.h"
#include "CamBaseToolBitHelper.h"
#include "CompareTwoVersion.h"
#include "FileTransferClient.h"
#include "FtpConnection.h"
#include "CheckConnect.h"
#include "LogColors.h"
#include "MachinePortMap.h"
#include "SerialNumberReader.h"
#include "TransferOrchestrator.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransList.h"
#include "transfer/TransManager.h"

#include <QAbstractButton>
#include <QClipboard>
#include <QDebug>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QSettings>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>
#include <QtConcurrent>

namespace {
constexpr quint16 FtpPort = 21;
constexpr quint16 InfoPort = 30001;
constexpr quint16 SnPort = 5002;
constexpr int MaxCheckFailures = 7; // the eighth failure in a row gives up
const QString MinSystemVersion = QStringLiteral("1.4.7");
const QString NoticeTitle = QStringLiteral("提示");
// Where the file page keeps its splitter sizes and the local panel's folder.
constexpr char FilePageSizesKey[] = "FilePage/SplitterSizes";
constexpr char LocalFolderKey[] = "FilePage/LocalFolder";
constexpr int RealTimeStatusRunning = 1;

// The model codes whose system version is checked against the minimum.
bool VersionRuleApplies(const QString& sn)
{
    for (const char* prefix : {"PB01", "PB03", "RW-100", "KT-100", "KT-E01"}) {
        if (sn.startsWith(QLatin1String(prefix)))
            return true;
    }
    return false;
}

QVariant Setting(const char* key, const QVariant& defaultValue)
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(key), defaultValue);
}
} // namespace

Workspace::Workspace(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Workspace"));
    RegisterWorkbenchMetaTypes();

    m_pInfoClient = new FileTransferClient(this);
    m_pRealTimeClient = new FileTransferClient(this);
    m_pDiscoverySender = new BroadCastSender(this);
    m_pSelectDiscoverySender = new BroadCastSender(this);
    m_pCheckTimer = new QTimer(this);
    m_pSnReader = new SerialNumberReader(this);

    BuildUi();

    connect(this, &Workspace::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(m_pCheckTimer, &QTimer::timeout, this, &Workspace::SlotCheckConnectTimerOut);
    connect(m_pInfoClient, &FileTransferClient::SignalTcpConnectStatus, this, &Workspace::SlotTcpConnectStatus);
    connect(m_pInfoClient, &FileTransferClient::SignalGetMachineInfoFinished, this,
            &Workspace::SlotGetMachineInfoFinished);
    connect(m_pRealTimeClient, &FileTransferClient::SignalTcpConnectStatus, this,
            &Workspace::SlotRealTimeTcpConnectStatus);
    connect(m_pRealTimeClient, &FileTransferClient::SignalGetMachineRealTimeData, this,
            &Workspace::SlotGetMachineRealTimeDataFinished);
    connect(m_pDiscoverySender, &BroadCastSender::discoveryResult, this, &Workspace::SlotSilentConnectMachine);
    connect(m_pSnReader, &SerialNumberReader::SignalFinished, this, &Workspace::OnSerialNumberRead);

    CamBaseSignalHelper* signalHelper = CamBaseSignalHelper::instance();
    connect(signalHelper, &CamBaseSignalHelper::signalConnectSuccessToFile, this,
            &Workspace::SlotConnectSuccessFromSelectStock);
    connect(signalHelper, &CamBaseSignalHelper::signalFilePluginAppendLog, this, &Workspace::SlotAppendLog);
    ConnectFilePage();
}

Workspace::~Workspace()
{
    // The host outlives the workbench: it must not go on believing a machine is connected.
    if (!m_strSn.isEmpty())
        CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(false, QString(), QString());
    m_pCheckTimer->stop();
    if (m_pRealTimeTimer)
        m_pRealTimeTimer->stop();
}

void Workspace::BuildUi()
{
    auto* content = new QWidget;
    content->setObjectName(QStringLiteral("m_widgetContent"));
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(0, 0, 0, 0);
    contentLayout->setSpacing(0);

    m_pPageBar = new QTabBar(content);
    m_pPageBar->setObjectName(QStringLiteral("m_tabBarPages"));
    m_pPageBar->addTab(tr("文件传输"));
    m_pPageBar->addTab(tr("传输日志"));
    m_pPageBar->addTab(tr("设备状态"));
    m_pPageBar->setTabEnabled(PageMachineStatus, false);
    m_pPageBar->setDrawBase(false);
    m_pPageBar->setExpanding(false);
    m_pPageBar->setStyleSheet(QStringLiteral(
        "QTabBar::tab{background:#f2f2f2;color:#333333;padding:6px 18px;border:1px solid #d1d1d1;"
        "border-bottom:none;margin-right:2px;}"
        "QTabBar::tab:selected{background:#ffffff;color:#368bd4;}"
        "QTabBar::tab:disabled{color:#aaaaaa;}"));

    m_pPages = new QStackedWidget(content);
    m_pTransManager = new TransManager;

    QWidget* filePage = BuildFilePage();

    auto* listPage = new QWidget;
    listPage->setObjectName(QStringLiteral("m_widgetTransferListPage"));
    auto* listLayout = new QVBoxLayout(listPage);
    listLayout->setContentsMargins(0, 0, 0, 0);

    auto* statusPage = new QLabel(tr("离线"));
    statusPage->setObjectName(QStringLiteral("m_widgetMachineStatusPage"));
    statusPage->setAlignment(Qt::AlignCenter);

    m_pPages->addWidget(filePage);
    m_pPages->addWidget(listPage);
    m_pPages->addWidget(statusPage);

    contentLayout->addWidget(m_pPageBar);
    contentLayout->addWidget(m_pPages, 1);

    m_pToolPage = new ToolPage(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pToolPage);

    connect(m_pPageBar, &QTabBar::currentChanged, this, [this](int index) { ShowPage(static_cast<Page>(index)); });
    ConnectToolActions();
    ShowPage(PageFileTransfer);
}

void Workspace::ConnectToolActions()
{
    m_pToolPage->SetEnabled(ToolPage::ActionBindDevice, false);
    m_pToolPage->SetEnabled(ToolPage::ActionUnbindDevice, false);
    connect(m_pToolPage, &ToolPage::SignalActionTriggered, this, [this](int action) {
        switch (action) {
        case ToolPage::ActionNewConnection:
            OpenSelectMachineBox();
            break;
        case ToolPage::ActionDisconnect:
            if (!m_strIp.isEmpty())
                DisconnectMachine(false);
            break;
        case ToolPage::ActionMachineStatus:
            ShowPage(PageMachineStatus);
            break;
        case ToolPage::ActionFileTransfer:
            ShowPage(PageFileTransfer);
            break;
        default:
            break;
        }
    });
}

void Workspace::ShowPage(Page page)
{
    if (!m_pPageBar->isTabEnabled(page))
        page = PageFileTransfer;
    PlaceTransManager(page == PageTransferList);
    m_pPages->setCurrentIndex(page);
    {
        const QSignalBlocker blocker(m_pPageBar);
        m_pPageBar->setCurrentIndex(page);
    }
    m_pToolPage->SetChecked(ToolPage::ActionMachineStatus, page == PageMachineStatus);
    m_pToolPage->SetChecked(ToolPage::ActionFileTransfer, page != PageMachineStatus);
}

void Workspace::SetPluginObject(CamPlugin::CamPluginFile* plugin)
{
    m_pPluginObject = plugin;
}

bool Workspace::IsCheckTimerActive() const
{
    return m_pCheckTimer->isActive();
}

void Workspace::SetPendingRequest(const QString& first, const QString& second, int third,
                                  std::function<void(const QString&, const QString&, int)> replay)
{
    m_pendingRequest = PendingRequest{first, second, third, std::move(replay)};
}

void Workspace::OpenSelectMachineBox()
{
    if (!m_pSelectBox) {
        m_pSelectBox = new CSelectMachineBox(this);
        connect(m_pSelectBox, &CSelectMachineBox::SignalSelectRefresh, this, [this]() {
            m_pSelectBox->ClearBoxInfo();
            m_pSelectDiscoverySender->stopDiscovery();
            m_pSelectDiscoverySender->startDiscovery(30000, 3000);
        });
        connect(m_pSelectBox, &CSelectMachineBox::SignalMachineSelected, this,
                [this](const QString& ip, const QString& sn) { ConnectToMachine(ip, sn); });
        connect(m_pSelectDiscoverySender, &BroadCastSender::discoveryResult, m_pSelectBox,
                [this](const QString& reply) { m_pSelectBox->SetMachineInfo(reply, true); });
    }
    m_pSelectDiscoverySender->stopDiscovery();
    m_pSelectDiscoverySender->startDiscovery(30000, 3000);
    m_pSelectBox->show();
    m_pSelectBox->raise();
}

void Workspace::ConnectToMachine(const QString& ip, const QString& sn)
{
    m_strIp = ip;
    m_strSn = sn;
    qDebug() << QStringLiteral("ftp://%1:%2%3").arg(ip, QString::number(FtpPort), QStringLiteral("/"));
    Q_EMIT SignalAppendLog(tr("正在连接机床，请稍候..."), LogColors::Success);
    RunFtpTest(ip, sn, false);
}

void Workspace::RunFtpTest(const QString& ip, const QString& sn, bool silent)
{
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, ip, sn, silent]() {
        const bool result = watcher->result();
        watcher->deleteLater();
        if (!silent) {
            OnFtpTestResult(result, sn);
            return;
        }
        m_bSilentConnecting = false;
        CDebugLog::AddLog(QStringLiteral("静默连接机床result:%1,ip:%2,sn:%3").arg(result).arg(ip, sn));
        if (result)
            SlotConnectSuccessFromSelectStock(ip, sn);
    });
    watcher->setFuture(QtConcurrent::run([ip]() { return FtpConnection(ip); }));
}

void Workspace::SlotConnectSuccessFromSelectStock(QString ip, QString sn)
{
    m_strIp = ip;
    m_strSn = sn;
    OnFtpTestResult(true, sn);
}

void Workspace::OnFtpTestResult(bool result, const QString& sn)
{
    qDebug() << "result = " << result;
    if (result) {
        StartCheckTimer();
        if (!sn.isEmpty())
            OnConnectedWithSn();
        else
            m_pSnReader->Start(m_strIp, MachinePortMap::Resolve(SnPort), m_nSnTimeoutMs);
    } else {
        CDebugLog::AddLog(QStringLiteral("FTP连接机床失败，IP: %1").arg(m_strIp));
        Q_EMIT SignalAppendLog(tr("连接机床失败，IP: %1").arg(m_strIp), LogColors::Failure);
        ShowNotice(MsgIconFailure, tr("连接机床失败，请检查网络连接和机床IP地址！"));
        m_strIp.clear();
        m_strSn.clear();
    }
    if (m_pSelectBox)
        m_pSelectBox->OnConnectResult(result);
}

void Workspace::OnSerialNumberRead(bool ok, const QString& sn, const QString& errorText)
{
    if (!ok) {
        ShowNotice(MsgIconFailure, errorText);
        return;
    }
    m_strSn = sn;
    OnConnectedWithSn();
}

void Workspace::OnConnectedWithSn()
{
    CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(true, m_strIp, m_strSn);
    CamBaseTextHelper::instance()->SetLocalSettingCache(
        CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingLastConnectMachineSN), m_strSn, false);
    Q_EMIT SignalMachineConnected(m_strIp, m_strSn);
    m_pPageBar->setTabEnabled(PageMachineStatus, true);
    StartRealTimePolling();
    Q_EMIT SignalAppendLog(tr("机床连接成功，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
    if (m_pendingRequest.replay) {
        PendingRequest pending = std::move(m_pendingRequest);
        m_pendingRequest = PendingRequest();
        QTimer::singleShot(100, this, [pending]() { pending.replay(pending.strFirst, pending.strSecond, pending.iThird); });
    }
    CamBaseToolBitHelper::instance()->SetConnectMachineType(m_strSn.startsWith(QLatin1String("PB01")));
    m_bInfoRequested = false;
    if (m_pInfoClient->isConnected()) {
        m_bInfoRequested = true;
        m_pInfoClient->GetMachineInfo();
    } else {
        m_pInfoClient->connectToMachine(m_strIp, InfoPort);
    }
}

void Workspace::SlotTcpConnectStatus(bool bConnect)
{
    if (bConnect && !m_bInfoRequested) {
        m_bInfoRequested = true;
        m_pInfoClient->GetMachineInfo();
    }
}

void Workspace::SlotGetMachineInfoFinished(bool bSuccess, StructMachineSystemInfo systemInfo,
                                           StructMachineNetInfo netInfo)
{
    if (!bSuccess) {
        CDebugLog::AddLog(QStringLiteral("获取设备信息失败!"));
        m_pInfoClient->disconnectFromMachine();
        return;
    }
    CamBaseRegisterHelper::instance()->SetCurrentCameraVer(systemInfo.CameraVer);
    qDebug() << systemInfo;
    CDebugLog::AddLog(QStringLiteral("设备信息获取成功,系统版本:%1,固件版本:%2,wlanIP:%3,ethIP:%4,sn:%5,mqtt:%6,cameraVer:%7")
                          .arg(systemInfo.SysVer, systemInfo.FwVer, netInfo.wlan.ip, netInfo.eth.ip, systemInfo.sn)
                          .arg(systemInfo.Mqtt)
                          .arg(systemInfo.CameraVer));
    if (VersionRuleApplies(m_strSn)) {
        Q_EMIT SignalAppendLog(tr("机床系统版本: 当前版本 %1  最低要求版本 %2").arg(systemInfo.SysVer, MinSystemVersion),
                               LogColors::Plain);
    }
    if (Setting(g_strSettingNoRemindMachineVersion, false).toBool())
        return;
    if (CompareTwoVersion(systemInfo.SysVer, MinSystemVersion) >= 0)
        return;
    const auto answer = CVarnokMessageBox::ShowWindowWithCheckBox(
        this, 1, MsgIconWarning, NoticeTitle,
        tr("当前机床系统版本为 %1，低于最低要求版本 %2，部分功能可能会受到影响，请升级机床系统版本！")
            .arg(systemInfo.SysVer, MinSystemVersion),
        tr("不再提醒"), false, {});
    if (answer.second) {
        CamBaseTextHelper::instance()->SetLocalSettingCache(
            CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingNoRemindMachineVersion), true, false);
    }
}

void Workspace::StartCheckTimer()
{
    if (!m_pCheckTimer->isActive())
        m_pCheckTimer->start(m_nCheckIntervalMs);
}

void Workspace::SlotCheckConnectTimerOut()
{
    // A check still waiting for its answer is not doubled by the next tick.
    if (g_bTranslating || m_bCheckBusy)
        return;
    m_bCheckBusy = true;
    QUrl url;
    url.setScheme(QStringLiteral("ftp"));
    url.setHost(m_strIp);
    url.setPath(QStringLiteral("/"));
    url.setPort(FtpPort);
    auto* task = new CheckConnect(url.toString(), nullptr);
    connect(task, &FtpTaskThread::SignalTaskFinished, this, [this](bool ok, const QString&) {
        m_bCheckBusy = false;
        OnCheckResult(ok);
    });
    connect(task, &QThread::finished, task, &QObject::deleteLater);
    task->start();
}

void Workspace::OnCheckResult(bool bOk)
{
    if (m_strSn.isEmpty())
        return;
    if (bOk) {
        if (m_nCheckFailCount > 0) {
            Q_EMIT SignalAppendLog(tr("机床重连成功，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
            CDebugLog::AddLog(QStringLiteral("CheckConnect 重新连接成功"));
        }
        m_nCheckFailCount = 0;
        return;
    }
    if (m_nCheckFailCount >= MaxCheckFailures) {
        CDebugLog::AddLog(QStringLiteral("CheckConnect 超过最大次数, 准备断开"));
        Q_EMIT SignalAppendLog(tr("超过最大重连次数，机床已断开连接"), LogColors::Failure);
        if (m_pCheckTimer->isActive()) {
            m_pCheckTimer->stop();
            CDebugLog::AddLog(QStringLiteral("CheckConnect 定时器已停止"));
        }
        m_nCheckFailCount = 0;
        CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(false, QString(), QString());
        StopRealTimePolling();
        m_strIp.clear();
        m_strSn.clear();
        if (isVisible()) {
            DisconnectMachine(true);
        } else {
            m_bNetNotice = true;
            CDebugLog::AddLog(QStringLiteral("CheckConnect 界面不可见, 设置m_bNetNotice=true"));
        }
        return;
    }
    ++m_nCheckFailCount;
    CDebugLog::AddLog(QStringLiteral("检测机床连接失败，失败次数：%1").arg(m_nCheckFailCount));
    Q_EMIT SignalAppendLog(tr("机床连接失败，重新连接中，次数：%1").arg(m_nCheckFailCount), LogColors::Warning);
}

void Workspace::StartRealTimePolling()
{
    const QSettings testSettings(CamBaseTextHelper::instance()->GetLocalTestIniFilePath(), QSettings::IniFormat);
    m_nRealTimeInterval = testSettings.contains(QStringLiteral("TimerInterval"))
                              ? testSettings.value(QStringLiteral("TimerInterval")).toInt()
                              : 1000;
    if (!m_pRealTimeTimer) {
        m_pRealTimeTimer = new QTimer(this);
        connect(m_pRealTimeTimer, &QTimer::timeout, this, [this]() {
            if (m_bRealTimeBusy || !m_pRealTimeClient->isConnected())
                return;
            m_bRealTimeBusy = true;
            if (!m_pRealTimeClient->GetMachineRealTimeData())
                m_bRealTimeBusy = false;
        });
    }
    if (!m_pRealTimeClient->isConnected())
        m_pRealTimeClient->connectToMachine(m_strIp, InfoPort);
    else
        m_pRealTimeTimer->start(m_nRealTimeInterval);
}

void Workspace::StopRealTimePolling()
{
    if (m_pRealTimeTimer)
        m_pRealTimeTimer->stop();
    m_bRealTimeBusy = false;
    m_pRealTimeClient->disconnectFromMachine();
    Q_EMIT SignalMachineOffline();
}

void Workspace::SlotRealTimeTcpConnectStatus(bool bConnect)
{
    if (!m_pRealTimeTimer)
        return;
    if (bConnect) {
        m_pRealTimeTimer->start(m_nRealTimeInterval);
    } else {
        m_pRealTimeTimer->stop();
        m_bRealTimeBusy = false;
    }
}

void Workspace::SlotGetMachineRealTimeDataFinished(bool success, StructRealTimeData data)
{
    m_bRealTimeBusy = false;
    if (success)
        Q_EMIT SignalRealTimeData(data);
}

void Workspace::ResetMachineSide()
{
    CamBaseRegisterHelper::instance()->SetCurrentMachineConnectStatus(false, QString(), QString());
    StopRealTimePolling();
    m_pInfoClient->disconnectFromMachine();
    m_bInfoRequested = false;
    m_nCheckFailCount = 0;
    m_strIp.clear();
    m_strSn.clear();
    m_pPageBar->setTabEnabled(PageMachineStatus, false);
    if (m_pPages->currentIndex() == PageMachineStatus)
        ShowPage(PageFileTransfer);
}

void Workspace::DisconnectMachine(bool netNotice)
{
    ResetMachineSide();
    if (m_pSelectBox)
        m_pSelectBox->ClearBoxInfo();
    if (m_pCheckTimer->isActive()) {
        m_pCheckTimer->stop();
        CDebugLog::AddLog(QStringLiteral("onDisconnect 定时器已停止"));
    }
    Q_EMIT SignalAppendLog(tr("机床断开连接"), LogColors::Warning);
    CDebugLog::AddLog(QStringLiteral("onDisconnect 断开连接"));
    QTimer::singleShot(300, this, [this, netNotice]() {
        ShowNotice(MsgIconInformation,
                   netNotice ? tr("与当前设备已断开连接，请检查网络！") : tr("与当前设备已断开连接！"));
        Q_EMIT SignalMachineOffline();
    });
    m_bNetNotice = false;
}

void Workspace::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    qDebug() << "Workspace showEvent";
    if (m_bNetNotice)
        QTimer::singleShot(1000, this, [this]() {
            if (m_bNetNotice)
                DisconnectMachine(true);
        });
}

void Workspace::StartSilentConnect()
{
    const bool autoConnect = Setting(g_strSettingAutoConnectLastMachine, true).toBool();
    const QString savedSn = Setting(g_strSettingLastConnectMachineSN, QString()).toString();
    if (!autoConnect || savedSn.isEmpty())
        return;
    CamBaseRegisterHelper::instance()->ClearDiscoveredMachines();
    m_pDiscoverySender->startDiscovery(30000, 3000);
    QTimer::singleShot(15000, m_pDiscoverySender, &BroadCastSender::stopDiscovery);
    Q_EMIT SignalSilentConnectStarted();
}

void Workspace::SlotSilentConnectMachine(QString reply)
{
    const QStringList parts = reply.split(QLatin1Char('*'));
    if (parts.size() < 4)
        return;
    const QString sn = parts.at(1);
    const QString ip = parts.at(3);
    const QString iface = parts.size() >= 6 ? parts.at(5) : QString::fromLatin1(g_strInterfaceWlan);
    if (sn.isEmpty())
        return;
    CamBaseRegisterHelper::instance()->AddDiscoveredMachine(ip, sn);
    CamBaseRegisterHelper::instance()->SaveMachineInterfaceAndIP(iface, ip, sn);
    // One machine may answer on several links; the first answer is enough.
    if (sn != Setting(g_strSettingLastConnectMachineSN, QString()).toString() || !m_strSn.isEmpty() ||
        m_bSilentConnecting)
        return;
    m_bSilentConnecting = true;
    m_pDiscoverySender->stopDiscovery();
    Q_EMIT SignalAppendLog(tr("正在连接机床，请稍候..."), LogColors::Success);
    RunFtpTest(ip, sn, true);
}

void Workspace::SlotReConnectByTypeC(QString ip)
{
    m_strIp = ip;
    Q_EMIT SignalAppendLog(tr("机床切换为Type-C连接，IP: %1, SN: %2").arg(m_strIp, m_strSn), LogColors::Success);
}

void Workspace::SlotAppendLog(QString text, QColor color)
{
    m_pTransManager->AddLog(text, color);
}

void Workspace::ShowNotice(int icon, const QString& text)
{
    CVarnokMessageBox::ShowWindow(this, 1, static_cast<EnumMsgIcon>(icon), NoticeTitle, text, {});
}

QWidget* Workspace::BuildFilePage()
{
    m_pFileManager = new FileManager;
    m_pTransfers = new TransferOrchestrator(this);
    m_pFileSplitter = new QSplitter(Qt::Vertical);
    m_pFileSplitter->setObjectName(QStringLiteral("m_splitterFilePage"));
    m_pFileSplitter->setChildrenCollapsible(false);
    m_pFileSplitter->setHandleWidth(4);
    m_pFileSplitter->addWidget(m_pFileManager);
    connect(m_pFileSplitter, &QSplitter::splitterMoved, this, [this]() {
        QStringList sizes;
        for (const int size : m_pFileSplitter->sizes())
            sizes.append(QString::number(size));
        CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                            QString::fromLatin1(FilePageSizesKey),
                                                            sizes.join(QLatin1Char(',')), false);
    });
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("m_widgetFileTransferPage"));
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pFileSplitter);
    return page;
}

void Workspace::PlaceTransManager(bool bFullPage)
{
    // The transfer strip sits under the file manager, or fills the transfer list page alone.
    if (bFullPage) {
        QWidget* holder = m_pPages->widget(PageTransferList);
        if (m_pTransManager->parentWidget() != holder)
            holder->layout()->addWidget(m_pTransManager);
        return;
    }
    if (m_pTransManager->parentWidget() == m_pFileSplitter)
        return;
    m_pFileSplitter->addWidget(m_pTransManager);
    const QStringList saved = Setting(FilePageSizesKey, QString()).toString().split(QLatin1Char(','));
    QList<int> sizes = {640, 300};
    if (saved.size() == 2 && saved.at(0).toInt() > 0 && saved.at(1).toInt() > 0)
        sizes = {saved.at(0).toInt(), saved.at(1).toInt()};
    m_pFileSplitter->setSizes(sizes);
}

void Workspace::SetMachineActionsOnline(bool online)
{
    m_pToolPage->SetEnabled(ToolPage::ActionDisconnect, online);
    m_pToolPage->SetEnabled(ToolPage::ActionMachineStatus, online);
}

void Workspace::ConnectFilePage()
{
    SetMachineActionsOnline(false);
    FileManager* manager = m_pFileManager;
    connect(manager, &FileManager::SignalUpLoadFile, this, &Workspace::SlotUpLoadFile);
    connect(manager, &FileManager::SignalDownLoadFile, this, &Workspace::SlotDownLoadFile);
    connect(manager, &FileManager::SignalDeleteTriggered, this, &Workspace::SlotDeleteTriggered);
    connect(manager, &FileManager::SignalDeleteItemsTriggered, this, &Workspace::SlotDeleteItemsTriggered);
    connect(manager, &FileManager::SignalRenameTriggered, this, &Workspace::SlotRenameTriggered);
    connect(manager, &FileManager::SignalMakeDirTriggered, this, &Workspace::SlotMakeDirTriggered);
    connect(manager, &FileManager::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(CamBaseSignalHelper::instance(), &CamBaseSignalHelper::signalJumpFileToUploadGCode, this,
            &Workspace::SlotUploadAutoCamFiles);

    connect(this, &Workspace::SignalMachineConnected, this, [this](const QString& ip, const QString& sn) {
        m_pTransfers->SetMachineIp(ip);
        m_pFileManager->SetMachineConnected(ip, sn);
        SetMachineActionsOnline(true);
    });
    connect(this, &Workspace::SignalMachineOffline, this, [this]() {
        m_pTransfers->StopAll();
        m_pTransfers->SetMachineIp(QString());
        m_pTransfers->SetRunningProgram(QString());
        if (m_pFileManager->IsConnected())
            m_pFileManager->SetMachineDisconnected();
        SetMachineActionsOnline(false);
    });
    connect(this, &Workspace::SignalRealTimeData, this, [this](const StructRealTimeData& record) {
        m_pTransfers->SetRunningProgram(record.status == RealTimeStatusRunning ? record.program.name : QString());
    });
    ConnectOrchestratorToPanels();

    // The local panel opens where the user left it.
    FileSelectPanel* local = manager->LocalPanel();
    const QString lastFolder = Setting(LocalFolderKey, QString()).toString();
    if (!lastFolder.isEmpty() && QFileInfo(lastFolder).isDir())
        local->OpenFolder(lastFolder);
    connect(local, &FileSelectPanel::SignalListingFinished, this, [](const QString& path, bool ok) {
        if (ok && path != QLatin1String("/"))
            CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                QString::fromLatin1(LocalFolderKey), path, false);
    });
}

void Workspace::ConnectOrchestratorToPanels()
{
    TransferOrchestrator* transfers = m_pTransfers;
    FileSelectPanel* machine = m_pFileManager->MachinePanel();
    FileSelectPanel* local = m_pFileManager->LocalPanel();
    connect(transfers, &TransferOrchestrator::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(transfers, &TransferOrchestrator::SignalTransferUpdated, m_pTransManager->TransferList(),
            &TransList::SlotUpdateTransfer);
    connect(m_pTransManager, &TransManager::SignalRestartTransfer, transfers, &TransferOrchestrator::Retry);
    // Refusals come from request paths that may run under a timer: the box waits for an empty stack.
    connect(transfers, &TransferOrchestrator::SignalNotice, this, [this](const QString& text) {
        QTimer::singleShot(0, this, [this, text]() { ShowNotice(MsgIconWarning, text); });
    });
    connect(transfers, &TransferOrchestrator::SignalBusyChanged, this, [this, machine](bool busy) {
        m_pFileManager->SetPanelLocked(busy);
        if (!busy && m_pFileManager->IsConnected())
            machine->RefreshPanel();
    });
    connect(transfers, &TransferOrchestrator::SignalUploaded, machine, [machine](const QString& machinePath) {
        machine->LocateAndHighlightFile(machinePath.mid(machinePath.lastIndexOf(QLatin1Char('/')) + 1));
    });
    connect(transfers, &TransferOrchestrator::SignalMachineNavigation, machine,
            &FileSelectPanel::NavigateAndHighlightFolder);
    connect(transfers, &TransferOrchestrator::SignalMachineChanged, machine, &FileSelectPanel::RefreshPanel);
    const auto refreshLocal = [local](const QString& localPath) {
        if (QFileInfo(localPath).absolutePath() == QFileInfo(local->CurrentPath()).absoluteFilePath())
            local->RefreshPanel();
    };
    connect(transfers, &TransferOrchestrator::SignalDownloaded, local, refreshLocal);
    connect(transfers, &TransferOrchestrator::SignalCutSucceeded, local, [local, refreshLocal](const QString& path) {
        const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
        if (mime && mime->hasFormat(QStringLiteral("MimeDataCopy")))
            QGuiApplication::clipboard()->clear();
        local->SlotClearLocalClipboardData();
        refreshLocal(path);
    });
    connect(transfers, &TransferOrchestrator::SignalProgressStarted, this,
            [this](const QString& title, const QString& text) {
                CProgressWidget::FreeAutoWidget(m_pProgressWidget, true);
                m_pProgressWidget = CProgressWidget::CreateAutoWidget(title, text);
            });
    connect(transfers, &TransferOrchestrator::SignalProgressFinished, this,
            [this]() { CProgressWidget::FreeAutoWidget(m_pProgressWidget); });
}

void Workspace::SlotUpLoadFile(QString strLocalPath, QString strMachinePath, OperationType operation)
{
    m_pTransfers->Upload(strLocalPath, strMachinePath, operation);
}

void Workspace::SlotDownLoadFile(QString strLocalPath, QString strMachinePath)
{
    m_pTransfers->Download(strLocalPath, strMachinePath);
}

void Workspace::SlotDeleteTriggered(QString path, int type)
{
    m_pTransfers->DeletePath(path, type);
}

void Workspace::SlotDeleteItemsTriggered(QStringList filePathList, QStringList foderPathList)
{
    m_pTransfers->DeleteItems(filePathList, foderPathList);
}

void Workspace::SlotRenameTriggered(QString strOldPath, QString strNewPath)
{
    m_pTransfers->Rename(strOldPath, strNewPath);
}

void Workspace::SlotMakeDirTriggered(QString path)
{
    m_pTransfers->MakeDir(path);
}

void Workspace::SlotUploadAutoCamFiles(QVariant fileData, QString filePath, QString modelName)
{
    m_pTransfers->UploadAutoCamFiles(fileData, filePath, modelName);
}
