#include "Workspace.h"

#include "BroadCastSender.h"
#include "CDebugLog.h"
#include "CSelectMachineBox.h"
#include "CVarnokMessageBox.h"
#include "CamBaseRegisterHelper.h"
#include "CamBaseSignalHelper.h"
#include "CamBaseTextHelper.h"
#include "CompareTwoVersion.h"
#include "DeviceActions.h"
#include "FolderSync.h"
#include "LogColors.h"
#include "MachineConnection.h"
#include "MachineFileService.h"
#include "MachineFleet.h"
#include "ProgramHistory.h"
#include "StatusPageController.h"
#include "WorkbenchLog.h"
#include "filepanel/FileManager.h"
#include "fleetpage/FleetPage.h"
#include "fleetpage/FleetSendController.h"
#include "history/HistoryController.h"
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
    m_pSilent = new SilentConnector(this);
    m_pSelectDiscoverySender = new BroadCastSender(this);

    BuildUi();
    ConnectStatusPage();
    ConnectFleetPage();

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
    connect(m_pSilent, &SilentConnector::SignalAppendLog, this, &Workspace::SignalAppendLog);
    connect(m_pSilent, &SilentConnector::SignalFound, this,
            [this](const QString& ip, const QString& sn) { m_pConnection->Connect(ip, sn, true); });

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
    m_pPageBar->addTab(tr("机床总览"));
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

    m_pFilePageWidget = new FilePageWidget;
    m_pFileManager = m_pFilePageWidget->GetFileManager();
    m_pFiles = new MachineFileService(this);
    m_pHistory = new ProgramHistory(m_pFiles, this);
    connect(m_pHistory, &ProgramHistory::SignalAppendLog, this, &Workspace::SlotAppendLog);

    auto* listPage = new QWidget;
    listPage->setObjectName(QStringLiteral("m_widgetTransferListPage"));
    auto* listLayout = new QVBoxLayout(listPage);
    listLayout->setContentsMargins(0, 0, 0, 0);

    m_pStatusWidget = new MachineStatusWidget;
    m_pStatusWidget->setObjectName(QStringLiteral("m_widgetMachineStatusPage"));

    m_pPages->addWidget(m_pFilePageWidget);
    m_pPages->addWidget(listPage);
    m_pPages->addWidget(m_pStatusWidget);
    m_pFleet = new MachineFleet(m_pConnection, this);
    m_pFleetPage = new FleetPage(m_pFleet);
    m_pPages->addWidget(m_pFleetPage);

    contentLayout->addWidget(m_pPageBar);
    contentLayout->addWidget(m_pPages, 1);

    m_pToolPage = new ToolPage(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pToolPage);

    connect(m_pPageBar, &QTabBar::currentChanged, this, [this](int index) { ShowPage(static_cast<Page>(index)); });
    m_pDeviceActions = new DeviceActions(this, m_pToolPage);
    connect(m_pDeviceActions, &DeviceActions::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(this, &Workspace::SignalMachineConnected, m_pDeviceActions,
            [this](const QString&, const QString& sn) { m_pDeviceActions->SetMachine(sn); });
    connect(this, &Workspace::SignalMachineOffline, m_pDeviceActions, [this]() { m_pDeviceActions->SetMachine({}); });
    ConnectToolActions();
    ShowPage(PageFileTransfer);
}

void Workspace::ConnectToolActions()
{
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
            m_pDeviceActions->Open(action);
            break;
        default:
            break;
        }
    });
}

void Workspace::ConnectStatusPage()
{
    auto* status = new StatusPageController(this, m_pConnection, m_pFiles, m_pStatusWidget);
    m_pHistoryViews =
        new HistoryController(this, m_pHistory, m_pFiles, m_pFileManager->Requests(), m_pStatusWidget->ProgramPanel());
    connect(status, &StatusPageController::SignalAppendLog, this, &Workspace::SignalAppendLog);
    connect(this, &Workspace::SignalRealTimeData, status, &StatusPageController::OnRealTimeData);
    connect(this, &Workspace::SignalMachineOffline, status, &StatusPageController::OnOffline);
    connect(this, &Workspace::SignalMachineConnected, status, &StatusPageController::OnConnected);
}

void Workspace::ConnectFleetPage()
{
    connect(m_pFleetPage, &FleetPage::SignalConnectRequested, this, &Workspace::ConnectToMachine);
    m_pFleetSender = new FleetSendController(this, m_pFleet, m_pFiles);
    connect(m_pFleetPage, &FleetPage::SignalSendRequested, m_pFleetSender, &FleetSendController::ChoosePrograms);
    connect(m_pFleetSender, &FleetSendController::SignalAppendLog, this, &Workspace::SlotAppendLog);
}

void Workspace::ShowPage(Page page)
{
    if (!m_pPageBar->isTabEnabled(page))
        page = PageFileTransfer;
    // Watching the shop starts when the user first looks at it.
    if (page == PageMachines)
        m_pFleet->Start();
    PlaceTransManager(page == PageTransferList);
    m_pPages->setCurrentIndex(page);
    {
        const QSignalBlocker blocker(m_pPageBar);
        m_pPageBar->setCurrentIndex(page);
    }
    m_pToolPage->SetChecked(ToolPage::ActionMachineStatus, page == PageMachineStatus);
    m_pToolPage->SetChecked(ToolPage::ActionFileTransfer, page == PageFileTransfer || page == PageTransferList);
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
    if (m_pSilent->Start())
        Q_EMIT SignalSilentConnectStarted();
}

void Workspace::SlotSilentConnectMachine(QString reply)
{
    m_pSilent->OnReply(reply);
}

void Workspace::SlotAppendLog(QString text, QColor color)
{
    m_pTransManager->AddLog(text, color);
}

void Workspace::ShowNotice(int icon, const QString& text)
{
    CVarnokMessageBox::Open(this, MsgButtonConfirm, static_cast<EnumMsgIcon>(icon), NoticeTitle(), text);
}

void Workspace::PlaceTransManager(bool bFullPage)
{
    if (!bFullPage) {
        m_pFilePageWidget->TakeTransferStrip(m_pTransManager);
        return;
    }
    QWidget* holder = m_pPages->widget(PageTransferList);
    if (m_pTransManager->parentWidget() != holder)
        holder->layout()->addWidget(m_pTransManager);
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
    m_pFilePage =
        new FilePageController({this, m_pConnection, m_pFiles, m_pFileManager, m_pTransManager, m_pToolPage}, this);
    connect(m_pFilePage, &FilePageController::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(m_pFilePage, &FilePageController::SignalNotice, this, &Workspace::ShowNotice);
    connect(m_pFileManager, &FileManager::SignalAppendLog, this, &Workspace::SlotAppendLog);
    connect(CamBaseSignalHelper::instance(), &CamBaseSignalHelper::signalJumpFileToUploadGCode, this,
            &Workspace::SlotUploadAutoCamFiles);
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
