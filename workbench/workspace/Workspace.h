#pragma once

#include "CommonDefine.h"
#include "FilePageController.h"
#include "FilePageWidget.h"
#include "MachineConnection.h"
#include "SilentConnector.h"

#include <QColor>
#include <QPointer>
#include <QWidget>

class BroadCastSender;
class CSelectMachineBox;
class FileManager;
class FolderSync;
class MachineFileService;
class ProgramHistory;
class HistoryController;
class SyncButtonLook;
class DeviceActions;
class FleetPage;
class FleetSendController;
class MachineFleet;
class MachineConnection;
class MachineStatusWidget;
class QSplitter;
class QStackedWidget;
class QTabBar;
class QTimer;
class ToolPage;
class TransManager;
namespace CamPlugin {
class CamPluginFile;
}

// The workbench's main widget: the tool page on top, the pages below it, and the
// machine connection that every page relies on. The connection itself lives in
// MachineConnection; the Workspace keeps the widgets, the boxes and the slots of its
// interface, and forwards.
//
// Other parts of the workbench follow the connection only through SignalMachineConnected,
// SignalMachineOffline and SignalRealTimeData, and reach the Workspace through MachineIp(),
// MachineSn(), GetTransManager(), GetToolPage() and ShowPage(): keep
// these names and their meaning.
class Workspace : public QWidget
{
    Q_OBJECT

public:
    // Pages of the page bar, by index.
    enum Page
    {
        PageFileTransfer = 0,
        PageTransferList = 1,
        PageMachineStatus = 2,
        PageMachines = 3,
    };

    explicit Workspace(QWidget* parent = nullptr);
    ~Workspace() override;

    void SetPluginObject(CamPlugin::CamPluginFile* plugin) { m_pPluginObject = plugin; }
    CamPlugin::CamPluginFile* PluginObject() const { return m_pPluginObject; }

    // Connects quietly to the machine used last time, if the user allowed it.
    void StartSilentConnect();
    // Connects to a machine chosen by the user; `sn` may be empty, it is then read from the machine.
    void ConnectToMachine(const QString& ip, const QString& sn) { m_pConnection->Connect(ip, sn, false); }
    // Ends the connection; `netNotice` says the network was lost rather than the user leaving.
    void DisconnectMachine(bool netNotice);
    void ShowPage(Page page);
    // Shorter waits for tests; the defaults are the machine's real timings.
    void SetCheckInterval(int milliseconds) { m_pConnection->SetCheckInterval(milliseconds); }
    void SetSerialNumberTimeout(int milliseconds) { m_pConnection->SetSerialNumberTimeout(milliseconds); }
    void SetSilentSearchDuration(int milliseconds) { m_pSilent->SetSearchDuration(milliseconds); }

    QString MachineIp() const { return m_pConnection->Ip(); }
    QString MachineSn() const { return m_pConnection->Sn(); }
    bool IsCheckTimerActive() const { return m_pConnection->IsCheckTimerActive(); }
    int CheckFailCount() const { return m_pConnection->CheckFailCount(); }
    bool NetNoticePending() const { return m_bNetNotice; }
    MachineConnection* Connection() const { return m_pConnection; }
    TransManager* GetTransManager() const { return m_pTransManager; }
    ToolPage* GetToolPage() const { return m_pToolPage; }
    QTabBar* PageBar() const { return m_pPageBar; }
    CSelectMachineBox* SelectMachineBox() const { return m_pSelectBox; }
    FileManager* GetFileManager() const { return m_pFileManager; }
    // The funnel every machine file request of the workbench goes through.
    MachineFileService* FileService() const { return m_pFiles; }
    ProgramHistory* History() const { return m_pHistory; }
    HistoryController* HistoryViews() const { return m_pHistoryViews; }
    FolderSync* GetFolderSync() const { return m_pFilePage->GetFolderSync(); }
    SyncButtonLook* GetSyncButtonLook() const { return m_pFilePage->GetSyncButtonLook(); }
    QSplitter* FilePageSplitter() const { return m_pFilePageWidget->Splitter(); }
    MachineStatusWidget* StatusWidget() const { return m_pStatusWidget; }
    MachineFleet* Fleet() const { return m_pFleet; }
    FleetPage* GetFleetPage() const { return m_pFleetPage; }
    FleetSendController* FleetSender() const { return m_pFleetSender; }

Q_SIGNALS:
    void SignalSilentConnectStarted();
    void SignalAppendLog(const QString& text, const QColor& color);
    // Every real-time record for the status page, whether its delivery succeeded or not.
    void SignalRealTimeData(const StructRealTimeData& data);
    // On every disconnect and every failed connect.
    void SignalMachineOffline();
    // Once a connection is fully established (serial number known).
    void SignalMachineConnected(const QString& ip, const QString& sn);

public Q_SLOTS:
    void SlotCheckConnectTimerOut() { m_pConnection->CheckNow(); }
    void SlotConnectSuccessFromSelectStock(QString ip, QString sn) { m_pConnection->AcceptProvenMachine(ip, sn); }
    void SlotTcpConnectStatus(bool bConnect) { m_pConnection->OnInfoClientStatus(bConnect); }
    void SlotRealTimeTcpConnectStatus(bool bConnect) { m_pConnection->OnRealTimeClientStatus(bConnect); }
    void SlotGetMachineInfoFinished(bool bSuccess, StructMachineSystemInfo systemInfo, StructMachineNetInfo netInfo);
    void SlotSilentConnectMachine(QString reply);
    void SlotGetMachineRealTimeDataFinished(bool success, StructRealTimeData record);
    void SlotAppendLog(QString text, QColor color);
    void SlotReConnectByTypeC(QString ip) { m_pConnection->SwitchIp(ip); }

    // File requests, carried out by the funnel for the connected machine.
    void SlotUpLoadFile(QString strLocalPath, QString strMachinePath, OperationType operation = OperationCopy);
    void SlotDownLoadFile(QString strLocalPath, QString strMachinePath);
    void SlotDeleteTriggered(QString path, int type);
    void SlotDeleteItemsTriggered(QStringList filePathList, QStringList foderPathList);
    void SlotRenameTriggered(QString strOldPath, QString strNewPath);
    void SlotMakeDirTriggered(QString path);
    void SlotUploadAutoCamFiles(QVariant fileData, QString filePath, QString modelName);

    // Folder synchronisation of the two panels' folders, from the tool page.
    void SlotFileSyncBtnClicked();
    void StopSyncAndRestoreState();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildUi();
    void ConnectToolActions();
    void ConnectStatusPage();
    void ConnectFleetPage();
    void OpenSelectMachineBox();
    void OnConnected();
    void OnOffline();
    void OnGaveUp();
    // Boxes open from their own zero-delay timer, never inside a socket's or timer's slot.
    void ShowNotice(int icon, const QString& text);

    // The file page: the file manager above the transfer strip, and the funnel behind them.
    void ConnectFilePage();
    void PlaceTransManager(bool bFullPage);

    CamPlugin::CamPluginFile* m_pPluginObject = nullptr;

    MachineConnection* m_pConnection = nullptr;
    SilentConnector* m_pSilent = nullptr;
    BroadCastSender* m_pSelectDiscoverySender = nullptr;
    bool m_bNetNotice = false;

    ToolPage* m_pToolPage = nullptr;
    QTabBar* m_pPageBar = nullptr;
    QStackedWidget* m_pPages = nullptr;
    TransManager* m_pTransManager = nullptr;
    CSelectMachineBox* m_pSelectBox = nullptr;
    FileManager* m_pFileManager = nullptr;
    MachineFileService* m_pFiles = nullptr;
    ProgramHistory* m_pHistory = nullptr;
    HistoryController* m_pHistoryViews = nullptr;
    FilePageController* m_pFilePage = nullptr;
    FilePageWidget* m_pFilePageWidget = nullptr;
    MachineStatusWidget* m_pStatusWidget = nullptr;
    DeviceActions* m_pDeviceActions = nullptr;
    MachineFleet* m_pFleet = nullptr;
    FleetPage* m_pFleetPage = nullptr;
    FleetSendController* m_pFleetSender = nullptr;
};
