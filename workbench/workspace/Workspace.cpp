#include "Workspace.h"

#include "BroadCastSender.h"
#include "CDebugLog.h"
#include "CSelectMachineBox.h"
#include "CVarnokMessageBox.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseSignalHelper.h"
#include "CamBaseTextHelper.h"
#include "CompareTwoVersion.h"
#include "FilePageController.h"
#include "FolderSync.h"
#include "MachineFileService.h"
#include "LogColors.h"
#include "MachineCommandSender.h"
#include "MachineConnection.h"
#include "WorkbenchLog.h"
#include "device/DeviceBindDialog.h"
#include "device/DeviceUnbindDialog.h"
#include "filepanel/FileManager.h"
#include "filepanel/FileSelectPanel.h"
#include "machinestatus/MachineStatusFtpManager.h"
#include "machinestatus/MachineStatusProgramPanel.h"
#include "machinestatus/MachineStatusWidget.h"
#include "toolpage/ToolPage.h"
#include "transfer/TransManager.h"

#include <QDebug>
#include <QFileInfo>
#include <QSplitter>
#include <QStackedWidget>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

namespace {
const QString MinSystemVersion = QStringLiteral("1.4.7");
QString NoticeTitle()
{
    return Workspace::tr("提示");
}
// Where the file page keeps its splitter sizes and the local panel's folder.
constexpr char FilePageSizesKey[] = "FilePage/SplitterSizes";
constexpr char LocalFolderKey[] = "FilePage/LocalFolder";

QVariant Setting(const char* key, const QVariant& defaultValue)
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                               QString::fromLatin1(key), defaultValue);
}
} // namespace

Workspace::Workspace(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("Workspace"));
    RegisterWorkbenchMetaTypes();

    m_pConnection = new MachineConnection(this);
    m_pDiscoverySender = new BroadCastSender(this);
    m_pSelectDiscoverySender = new BroadCastSender(this);
    m_pSilentSearchTimer = new QTimer(this);
    m_pSilentSearchTimer->setSingleShot(true);

    BuildUi();
    ConnectStatusPage();

    connect(this, &Workspace::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(m_pConnection, &MachineConnection::SignalAppendLog, this, &Workspace::SignalAppendLog);
    connect(m_pConnection, &MachineConnection::SignalConnected, this, &Workspace::OnConnected);
    connect(m_pConnection, &MachineConnection::SignalOffline, this, &Workspace::OnOffline);
    connect(m_pConnection, &MachineConnection::SignalGaveUp, this, &Workspace::OnGaveUp);
    connect(m_pConnection, &MachineConnection::SignalNotice, this,
            [this](const QString& text) { ShowNotice(MsgIconFailure, text); });
    connect(m_pConnection, &MachineConnection::SignalFtpTestFinished, this, [this](bool ok) {
        if (m_pSelectBox)
            m_pSelectBox->OnConnectResult(ok);
    });
    connect(m_pConnection, &MachineConnection::SignalMachineInfoFinished, this, &Workspace::SlotGetMachineInfoFinished);
    connect(m_pConnection, &MachineConnection::SignalRealTimeData, this,
            &Workspace::SlotGetMachineRealTimeDataFinished);
    connect(m_pDiscoverySender, &BroadCastSender::discoveryResult, this, &Workspace::SlotSilentConnectMachine);
    connect(m_pSilentSearchTimer, &QTimer::timeout, this, &Workspace::OnSilentSearchEnded);

    CamBaseSignalHelper* signalHelper = CamBaseSignalHelper::instance();
    connect(signalHelper, &CamBaseSignalHelper::signalConnectSuccessToFile, this,
            &Workspace::SlotConnectSuccessFromSelectStock);
    connect(signalHelper, &CamBaseSignalHelper::signalFilePluginAppendLog, this, &Workspace::SlotAppendLog);
    ConnectFilePage();
}

Workspace::~Workspace() = default;

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
    m_pPageBar->setStyleSheet(
        QStringLiteral("QTabBar::tab{background:#f2f2f2;color:#333333;padding:6px 18px;border:1px solid #d1d1d1;"
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

    m_pStatusWidget = new MachineStatusWidget;
    m_pStatusWidget->setObjectName(QStringLiteral("m_widgetMachineStatusPage"));

    m_pPages->addWidget(filePage);
    m_pPages->addWidget(listPage);
    m_pPages->addWidget(m_pStatusWidget);

    contentLayout->addWidget(m_pPageBar);
    contentLayout->addWidget(m_pPages, 1);

    m_pToolPage = new ToolPage(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pToolPage);

    connect(m_pPageBar, &QTabBar::currentChanged, this, [this](int index) { ShowPage(static_cast<Page>(index)); });
    ConnectToolActions();
    ConnectDeviceActions();
    ShowPage(PageFileTransfer);
}

void Workspace::ConnectDeviceActions()
{
    // Binding needs the serial number of a machine that is connected right now.
    connect(this, &Workspace::SignalMachineConnected, this, [this]() {
        m_pToolPage->SetEnabled(ToolPage::ActionBindDevice, true);
        m_pToolPage->SetEnabled(ToolPage::ActionUnbindDevice, true);
    });
    connect(this, &Workspace::SignalMachineOffline, this, [this]() {
        m_pToolPage->SetEnabled(ToolPage::ActionBindDevice, false);
        m_pToolPage->SetEnabled(ToolPage::ActionUnbindDevice, false);
        if (m_pDeviceDialog)
            m_pDeviceDialog->reject();
    });
}

void Workspace::OpenDeviceDialog(int action)
{
    const QString sn = MachineSn();
    if (m_pDeviceDialog || sn.isEmpty())
        return;
    if (action == ToolPage::ActionBindDevice)
        m_pDeviceDialog = new DeviceBindDialog(sn, this);
    else
        m_pDeviceDialog = new DeviceUnbindDialog(sn, this);
    m_pDeviceDialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_pDeviceDialog, &DeviceVerifyDialog::SignalAppendLog, this, &Workspace::SlotAppendLog);
    // The tool button stays pressed while its dialog is open.
    connect(m_pDeviceDialog, &QDialog::finished, this, [this, action]() { m_pToolPage->SetChecked(action, false); });
    m_pToolPage->SetChecked(action, true);
    m_pDeviceDialog->open();
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
            if (m_pConnection->GetState() != MachineConnection::State::Disconnected)
                DisconnectMachine(false);
            break;
        case ToolPage::ActionMachineStatus:
            ShowPage(PageMachineStatus);
            break;
        case ToolPage::ActionFileTransfer:
            ShowPage(PageFileTransfer);
            break;
        case ToolPage::ActionFolderSync:
            SlotFileSyncBtnClicked();
            break;
        case ToolPage::ActionBindDevice:
        case ToolPage::ActionUnbindDevice:
            OpenDeviceDialog(action);
            break;
        default:
            break;
        }
    });
}

void Workspace::ConnectStatusPage()
{
    // Commands go over the polling client: it is the connection kept open all the time.
    m_pCommandSender = new MachineCommandSender([this]() { return m_pConnection->RealTimeClient(); }, this, this);
    MachineStatusWidget* page = m_pStatusWidget;
    MachineStatusProgramPanel* panel = page->ProgramPanel();
    connect(this, &Workspace::SignalRealTimeData, page, &MachineStatusWidget::SetRealTimeData);
    connect(this, &Workspace::SignalRealTimeData, m_pCommandSender, &MachineCommandSender::SetRealTimeData);
    connect(this, &Workspace::SignalMachineOffline, page, &MachineStatusWidget::ShowOffline);
    connect(this, &Workspace::SignalMachineOffline, this, [this, panel]() {
        panel->SetMachineIp(QString());
        m_pCommandSender->SetConnected(false);
    });
    connect(this, &Workspace::SignalMachineConnected, this, [this, page, panel](const QString& ip, const QString& sn) {
        panel->SetMachineIp(ip);
        m_pCommandSender->SetConnected(true);
        // Polling reads its interval once the connect step is through: two of them without
        // an answer make the shown data stale.
        QTimer::singleShot(0, page, [this, page, sn]() {
            if (m_pConnection->Sn() == sn)
                page->StartStaleWatch(sn, 2 * m_pConnection->RealTimeInterval());
        });
    });
    // The program list's renames and deletes go through the same funnel as the file page's, and
    // every change to the machine's files shows in both.
    panel->FtpManager()->SetFileService(m_pFiles);
    connect(m_pFiles, &MachineFileService::SignalMachineChanged, panel, &MachineStatusProgramPanel::RefreshFiles);
    connect(page, &MachineStatusWidget::signalStartRequested, m_pCommandSender,
            &MachineCommandSender::SlotStartRequested);
    connect(page, &MachineStatusWidget::signalStopRequested, m_pCommandSender,
            &MachineCommandSender::SlotStopRequested);
    connect(page, &MachineStatusWidget::signalResetRequested, m_pCommandSender,
            &MachineCommandSender::SlotResetRequested);
    connect(page, &MachineStatusWidget::signalLoadProgramRequested, m_pCommandSender,
            &MachineCommandSender::SlotLoadProgramRequested);
    connect(m_pCommandSender, &MachineCommandSender::SignalAppendLog, this, &Workspace::SignalAppendLog);
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
    return m_pConnection->IsCheckTimerActive();
}

int Workspace::CheckFailCount() const
{
    return m_pConnection->CheckFailCount();
}

QString Workspace::MachineIp() const
{
    return m_pConnection->Ip();
}

QString Workspace::MachineSn() const
{
    return m_pConnection->Sn();
}

void Workspace::SetCheckInterval(int milliseconds)
{
    m_pConnection->SetCheckInterval(milliseconds);
}

void Workspace::SetSerialNumberTimeout(int milliseconds)
{
    m_pConnection->SetSerialNumberTimeout(milliseconds);
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
    m_pConnection->Connect(ip, sn, false);
}

void Workspace::SlotConnectSuccessFromSelectStock(QString ip, QString sn)
{
    m_pConnection->AcceptProvenMachine(ip, sn);
}

void Workspace::OnConnected()
{
    m_pPageBar->setTabEnabled(PageMachineStatus, true);
    Q_EMIT SignalMachineConnected(m_pConnection->Ip(), m_pConnection->Sn());
}

void Workspace::OnOffline()
{
    m_pPageBar->setTabEnabled(PageMachineStatus, false);
    if (m_pPages->currentIndex() == PageMachineStatus)
        ShowPage(PageFileTransfer);
    Q_EMIT SignalMachineOffline();
}

void Workspace::SlotTcpConnectStatus(bool bConnect)
{
    m_pConnection->OnInfoClientStatus(bConnect);
}

void Workspace::SlotRealTimeTcpConnectStatus(bool bConnect)
{
    m_pConnection->OnRealTimeClientStatus(bConnect);
}

void Workspace::SlotCheckConnectTimerOut()
{
    m_pConnection->CheckNow();
}

void Workspace::SlotGetMachineInfoFinished(bool bSuccess, StructMachineSystemInfo systemInfo,
                                           StructMachineNetInfo netInfo)
{
    Q_UNUSED(netInfo)
    if (!bSuccess || Setting(g_strSettingNoRemindMachineVersion, false).toBool())
        return;
    if (CompareTwoVersion(systemInfo.SysVer, MinSystemVersion) >= 0)
        return;
    const QString text = tr("当前机床系统版本为 %1，低于最低要求版本 %2，部分功能可能会受到影响，请升级机床系统版本！")
                             .arg(systemInfo.SysVer, MinSystemVersion);
    StructMsgBoxRequest request;
    request.strTitle = NoticeTitle();
    request.strText = text;
    request.eIcon = MsgIconWarning;
    request.bHasCheckBox = true;
    request.strCheckText = tr("不再提醒");
    CVarnokMessageBox::Open(this, request, [](const StructMsgBoxAnswer& answer) {
        if (answer.bChecked)
            CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                QString::fromLatin1(g_strSettingNoRemindMachineVersion),
                                                                true, false);
    });
}

void Workspace::SlotGetMachineRealTimeDataFinished(bool success, StructRealTimeData record)
{
    Q_UNUSED(success)
    Q_EMIT SignalRealTimeData(record);
}

void Workspace::OnGaveUp()
{
    if (isVisible()) {
        DisconnectMachine(true);
    } else {
        m_bNetNotice = true;
        CDebugLog::AddLog(QStringLiteral("CheckConnect 界面不可见, 设置m_bNetNotice=true"));
    }
}

void Workspace::DisconnectMachine(bool netNotice)
{
    const bool wasChecking = m_pConnection->Disconnect();
    if (m_pSelectBox)
        m_pSelectBox->ClearBoxInfo();
    if (wasChecking)
        CDebugLog::AddLog(QStringLiteral("onDisconnect 定时器已停止"));
    Q_EMIT SignalAppendLog(tr("机床断开连接"), LogColors::Warning);
    CDebugLog::AddLog(QStringLiteral("onDisconnect 断开连接"));
    const QString text = netNotice ? tr("与当前设备已断开连接，请检查网络！") : tr("与当前设备已断开连接！");
    QTimer::singleShot(300, this, [this, text]() { ShowNotice(MsgIconInformation, text); });
    m_bNetNotice = false;
}

void Workspace::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    qCDebug(lcWorkbench) << "Workspace showEvent";
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
    const QString line = tr("正在查找上次连接的机床，SN: %1").arg(savedSn);
    CDebugLog::AddLog(line);
    Q_EMIT SignalAppendLog(line, LogColors::Plain);
    m_pDiscoverySender->startDiscovery(30000, 3000);
    m_pSilentSearchTimer->start(m_nSilentSearchMs);
    Q_EMIT SignalSilentConnectStarted();
}

void Workspace::OnSilentSearchEnded()
{
    m_pDiscoverySender->stopDiscovery();
    const QString savedSn = Setting(g_strSettingLastConnectMachineSN, QString()).toString();
    const QString line = tr("未找到上次连接的机床，SN: %1，请使用“新建连接”选择机床").arg(savedSn);
    CDebugLog::AddLog(line);
    Q_EMIT SignalAppendLog(line, LogColors::Warning);
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
    // One machine may answer on several links; the first answer ends the search.
    if (!m_pSilentSearchTimer->isActive() || sn != Setting(g_strSettingLastConnectMachineSN, QString()).toString())
        return;
    m_pSilentSearchTimer->stop();
    m_pDiscoverySender->stopDiscovery();
    m_pConnection->Connect(ip, sn, true);
}

void Workspace::SlotReConnectByTypeC(QString ip)
{
    m_pConnection->SwitchIp(ip);
}

void Workspace::SlotAppendLog(QString text, QColor color)
{
    m_pTransManager->AddLog(text, color);
}

void Workspace::ShowNotice(int icon, const QString& text)
{
    CVarnokMessageBox::Open(this, MsgButtonConfirm, static_cast<EnumMsgIcon>(icon), NoticeTitle(), text);
}

QWidget* Workspace::BuildFilePage()
{
    m_pFileManager = new FileManager;
    m_pFiles = new MachineFileService(this);
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
    // The local panel opens where the user left it.
    FileSelectPanel* local = m_pFileManager->LocalPanel();
    const QString lastFolder = Setting(LocalFolderKey, QString()).toString();
    if (!lastFolder.isEmpty() && QFileInfo(lastFolder).isDir())
        local->OpenFolder(lastFolder);
    connect(local, &FileSelectPanel::SignalListingFinished, this, [](const QString& path, bool ok) {
        if (ok && !path.isEmpty()) // empty: the computer view
            CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                                QString::fromLatin1(LocalFolderKey), path, false);
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

void Workspace::ConnectFilePage()
{
    m_pToolPage->SetEnabled(ToolPage::ActionMachineStatus, false);
    // A connect still under way can be cancelled; without one there is nothing to disconnect.
    m_pToolPage->SetEnabled(ToolPage::ActionDisconnect, false);
    connect(m_pConnection, &MachineConnection::SignalStateChanged, this, [this](MachineConnection::State state) {
        m_pToolPage->SetEnabled(ToolPage::ActionDisconnect, state != MachineConnection::State::Disconnected);
    });
    connect(this, &Workspace::SignalMachineConnected, this,
            [this]() { m_pToolPage->SetEnabled(ToolPage::ActionMachineStatus, true); });
    connect(this, &Workspace::SignalMachineOffline, this,
            [this]() { m_pToolPage->SetEnabled(ToolPage::ActionMachineStatus, false); });
    m_pFilePage = new FilePageController(
        {this, m_pConnection, m_pFiles, m_pFileManager, m_pTransManager, m_pToolPage}, this);
    connect(m_pFilePage, &FilePageController::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(m_pFilePage, &FilePageController::SignalNotice, this, &Workspace::ShowNotice);
    connect(m_pFileManager, &FileManager::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(CamBaseSignalHelper::instance(), &CamBaseSignalHelper::signalJumpFileToUploadGCode, this,
            &Workspace::SlotUploadAutoCamFiles);
}

FolderSync* Workspace::GetFolderSync() const
{
    return m_pFilePage->GetFolderSync();
}

SyncButtonLook* Workspace::GetSyncButtonLook() const
{
    return m_pFilePage->GetSyncButtonLook();
}

void Workspace::SlotUpLoadFile(QString strLocalPath, QString strMachinePath, OperationType operation)
{
    m_pFiles->Upload(m_pConnection->Endpoint(), strLocalPath, strMachinePath, operation, RequestOrigin::FilePage);
}

void Workspace::SlotDownLoadFile(QString strLocalPath, QString strMachinePath)
{
    m_pFiles->Download(m_pConnection->Endpoint(), strLocalPath, strMachinePath, RequestOrigin::FilePage);
}

void Workspace::SlotDeleteTriggered(QString path, int type)
{
    const bool bFolder = type == 0;
    m_pFiles->Delete(m_pConnection->Endpoint(), bFolder ? QStringList() : QStringList{path},
                     bFolder ? QStringList{path} : QStringList(), RequestOrigin::FilePage);
}

void Workspace::SlotDeleteItemsTriggered(QStringList filePathList, QStringList foderPathList)
{
    m_pFiles->Delete(m_pConnection->Endpoint(), filePathList, foderPathList, RequestOrigin::FilePage);
}

void Workspace::SlotRenameTriggered(QString strOldPath, QString strNewPath)
{
    m_pFiles->Rename(m_pConnection->Endpoint(), strOldPath, strNewPath, RequestOrigin::FilePage);
}

void Workspace::SlotMakeDirTriggered(QString path)
{
    m_pFiles->MakeDir(m_pConnection->Endpoint(), path, RequestOrigin::FilePage);
}

void Workspace::SlotUploadAutoCamFiles(QVariant fileData, QString filePath, QString modelName)
{
    m_pFiles->UploadAutoCamFiles(fileData, filePath, modelName);
}

void Workspace::SlotFileSyncBtnClicked()
{
    m_pFilePage->StartFolderSync();
}

void Workspace::StopSyncAndRestoreState()
{
    m_pFilePage->GetFolderSync()->StopSyncAndRestoreState();
}
