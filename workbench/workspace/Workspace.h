#pragma once

#include "CommonDefine.h"

#include <QColor>
#include <QPointer>
#include <QWidget>

#include <functional>

class BroadCastSender;
class CProgressWidget;
class CSelectMachineBox;
class FileManager;
class QSplitter;
class TransferOrchestrator;
class FileTransferClient;
class QStackedWidget;
class QTabBar;
class QTimer;
class SerialNumberReader;
class ToolPage;
class TransManager;
namespace CamPlugin {
class CamPluginFile;
}

// The workbench's main widget: the tool page on top, the pages below it, and the
// machine connection that every page relies on.
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
    };

    explicit Workspace(QWidget* parent = nullptr);
    ~Workspace() override;

    void SetPluginObject(CamPlugin::CamPluginFile* plugin);
    CamPlugin::CamPluginFile* PluginObject() const { return m_pPluginObject; }

    // Connects quietly to the machine used last time, if the user allowed it.
    void StartSilentConnect();
    // Connects to a machine chosen by the user; `sn` may be empty, it is then read from the machine.
    void ConnectToMachine(const QString& ip, const QString& sn);
    // Ends the connection; `netNotice` says the network was lost rather than the user leaving.
    void DisconnectMachine(bool netNotice);
    // A file operation that needs the machine and arrived while none was connected:
    // it runs once the next connection is made.
    void SetPendingRequest(const QString& first, const QString& second, int third,
                           std::function<void(const QString&, const QString&, int)> replay);
    void ShowPage(Page page);
    // Shorter waits for tests; the defaults are the machine's real timings.
    void SetCheckInterval(int milliseconds) { m_nCheckIntervalMs = milliseconds; }
    void SetSerialNumberTimeout(int milliseconds) { m_nSnTimeoutMs = milliseconds; }

    QString MachineIp() const { return m_strIp; }
    QString MachineSn() const { return m_strSn; }
    bool IsCheckTimerActive() const;
    int CheckFailCount() const { return m_nCheckFailCount; }
    bool NetNoticePending() const { return m_bNetNotice; }
    TransManager* GetTransManager() const { return m_pTransManager; }
    ToolPage* GetToolPage() const { return m_pToolPage; }
    QTabBar* PageBar() const { return m_pPageBar; }
    CSelectMachineBox* SelectMachineBox() const { return m_pSelectBox; }
    FileManager* GetFileManager() const { return m_pFileManager; }
    TransferOrchestrator* GetTransferOrchestrator() const { return m_pTransfers; }
    QSplitter* FilePageSplitter() const { return m_pFileSplitter; }

Q_SIGNALS:
    void SignalSilentConnectStarted();
    void SignalAppendLog(const QString& text, const QColor& color);
    // Real-time records for the status page, and word that the machine is gone.
    void SignalRealTimeData(const StructRealTimeData& data);
    void SignalMachineOffline();
    void SignalMachineConnected(const QString& ip, const QString& sn);

public Q_SLOTS:
    void SlotCheckConnectTimerOut();
    void SlotConnectSuccessFromSelectStock(QString ip, QString sn);
    void SlotTcpConnectStatus(bool bConnect);
    void SlotRealTimeTcpConnectStatus(bool bConnect);
    void SlotGetMachineInfoFinished(bool bSuccess, StructMachineSystemInfo systemInfo, StructMachineNetInfo netInfo);
    void SlotSilentConnectMachine(QString reply);
    void SlotGetMachineRealTimeDataFinished(bool success, StructRealTimeData data);
    void SlotAppendLog(QString text, QColor color);
    void SlotReConnectByTypeC(QString ip);

    // File requests of the file page, carried out by the transfer orchestrator.
    void SlotUpLoadFile(QString strLocalPath, QString strMachinePath, OperationType operation = OperationCopy);
    void SlotDownLoadFile(QString strLocalPath, QString strMachinePath);
    void SlotDeleteTriggered(QString path, int type);
    void SlotDeleteItemsTriggered(QStringList filePathList, QStringList foderPathList);
    void SlotRenameTriggered(QString strOldPath, QString strNewPath);
    void SlotMakeDirTriggered(QString path);
    void SlotUploadAutoCamFiles(QVariant fileData, QString filePath, QString modelName);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void BuildUi();
    void ConnectToolActions();
    void OpenSelectMachineBox();
    void RunFtpTest(const QString& ip, const QString& sn, bool silent);
    void OnFtpTestResult(bool result, const QString& sn);
    void OnConnectedWithSn();
    void OnSerialNumberRead(bool ok, const QString& sn, const QString& errorText);
    void OnCheckResult(bool bOk);
    void StartCheckTimer();
    void StartRealTimePolling();
    void StopRealTimePolling();
    void ResetMachineSide();
    void ShowNotice(int icon, const QString& text);

    // The file page: the file manager above the transfer strip, and the orchestrator behind them.
    QWidget* BuildFilePage();
    void ConnectFilePage();
    void ConnectOrchestratorToPanels();
    void PlaceTransManager(bool bFullPage);
    void SetMachineActionsOnline(bool online);

    CamPlugin::CamPluginFile* m_pPluginObject = nullptr;

    QString m_strIp;
    QString m_strSn;
    FileTransferClient* m_pInfoClient = nullptr;
    FileTransferClient* m_pRealTimeClient = nullptr;
    BroadCastSender* m_pDiscoverySender = nullptr;
    BroadCastSender* m_pSelectDiscoverySender = nullptr;
    QTimer* m_pCheckTimer = nullptr;
    int m_nCheckFailCount = 0;
    int m_nCheckIntervalMs = 1000;
    int m_nSnTimeoutMs = 5000;
    bool m_bCheckBusy = false;
    bool m_bNetNotice = false;
    bool m_bInfoRequested = false;
    QTimer* m_pRealTimeTimer = nullptr;
    int m_nRealTimeInterval = 1000;
    bool m_bRealTimeBusy = false;
    bool m_bSilentConnecting = false;
    SerialNumberReader* m_pSnReader = nullptr;

    struct PendingRequest
    {
        QString strFirst;
        QString strSecond;
        int iThird = 0;
        std::function<void(const QString&, const QString&, int)> replay;
    };
    PendingRequest m_pendingRequest;

    ToolPage* m_pToolPage = nullptr;
    QTabBar* m_pPageBar = nullptr;
    QStackedWidget* m_pPages = nullptr;
    TransManager* m_pTransManager = nullptr;
    CSelectMachineBox* m_pSelectBox = nullptr;
    FileManager* m_pFileManager = nullptr;
    TransferOrchestrator* m_pTransfers = nullptr;
    QSplitter* m_pFileSplitter = nullptr;
    QPointer<CProgressWidget> m_pProgressWidget;
};
