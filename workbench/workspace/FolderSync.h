#pragma once

#include "FolderSyncPlan.h"
#include "TaskOwner.h"

#include <QColor>
#include <QObject>
#include <QQueue>
#include <QSet>
#include <functional>

class FolderSyncComparer;
class FolderSyncScanner;
class TransferOrchestrator;

// Makes a local folder and a machine folder hold the same files: lists both, asks about
// the files that differ, creates missing folders, then feeds the transfers to the
// orchestrator at most five at a time, counting failures, and ends with one summary.
// Widget-free: the boxes are asked for through the callbacks and signals.
class FolderSync final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSync)

public:
    enum ButtonState
    {
        ButtonIdle = 0,
        ButtonRunning = 1,
        ButtonFinished = 2,
    };
    static constexpr int MaxSyncTransfers = 5;

    // Returns the message-box answer for one conflict (Yes keeps the local file, No the machine's).
    using ConflictAsker = std::function<int(const SyncConflict&)>;
    // Shows the whole plan; may untick entries and decide conflicts; false cancels.
    using PlanReviewer = std::function<bool(FolderSyncPlan* plan)>;

    explicit FolderSync(TransferOrchestrator* transfers, QObject* parent = nullptr);
    ~FolderSync() override;

    void SetConflictAsker(ConflictAsker asker) { m_fnAskConflict = std::move(asker); }
    void SetPlanReviewer(PlanReviewer reviewer) { m_fnReviewPlan = std::move(reviewer); }
    void SetIncludeSubfolders(bool bInclude) { m_bSubfolders = bInclude; }
    void SetPreview(bool bPreview) { m_bPreview = bPreview; }
    void SetCompareContent(bool bCompare) { m_bCompareContent = bCompare; }

    bool IsSyncing() const { return m_bSyncing || m_bPreparing; }
    int GetButtonState() const { return m_iButtonState; }
    int ActiveCount() const { return m_nSyncActive; }

    // Starts with the checks that need no widgets: another transfer, empty paths, a drive root.
    void Start(const QString& localPath, const QString& machinePath);
    void ExecuteSyncTransmission(const QString& localPath, const QString& machinePath);

public Q_SLOTS:
    void SlotSyncStatusClear();
    // The machine went or a new one came: whatever runs ends here.
    void StopSyncAndRestoreState();

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    // A box titled "提示" with this icon (EnumMsgIcon).
    void SignalNotice(int icon, QString text);
    void SignalButtonStateChanged(int state);
    void SignalPanelsBusy(bool busy);

private:
    struct Item
    {
        bool bUpload = true;
        QString strLocalPath;
        QString strMachinePath;
        QString strUrl;
    };

    void SetButtonState(int state);
    void Log(const QString& text, const QColor& color);
    void OnScanned(bool ok, const QList<SyncEntry>& local, const QList<SyncEntry>& machine, const QString& error);
    void OnCompared(const QList<SyncConflict>& differing);
    void ResolveConflicts(quint64 generation);
    void CreateMachineFolders(quint64 generation);
    void TopUp();
    void OnTransferFinished(const QString& url, bool ok, const QString& message);
    void ProbeMachine();
    void ScheduleEnd();
    void ResetRun();
    QString LocalPath(const QString& rel) const;
    QString MachinePath(const QString& rel) const;

    TransferOrchestrator* m_pTransfers;
    FolderSyncScanner* m_pScanner;
    FolderSyncComparer* m_pComparer;
    ConflictAsker m_fnAskConflict;
    PlanReviewer m_fnReviewPlan;
    bool m_bSubfolders = false;
    bool m_bPreview = false;
    bool m_bCompareContent = false;

    QString m_strLocalFolder;
    QString m_strMachineFolder;
    // Bumped by every start and stop, so that a late answer of an ended run is dropped.
    quint64 m_nGeneration = 0;
    bool m_bPreparing = false;
    bool m_bHeld = false;
    bool m_bEndScheduled = false;
    int m_iButtonState = ButtonIdle;

    QList<SyncEntry> m_listSyncUpload;
    QList<SyncEntry> m_listSyncDownload;
    QList<SyncConflict> m_listSyncConflict;
    QStringList m_listMachineDirs;
    QStringList m_listLocalDirs;
    bool m_bSyncing = false;
    int m_nSyncFailCount = 0;
    int m_nSyncPending = 0;
    int m_nSyncActive = 0;
    int m_nSyncDone = 0;
    int m_nSyncSkipped = 0;
    QQueue<Item> m_queueSync;
    QSet<QString> m_setSyncUrls;
    QStringList m_listFailures;
    TaskOwner m_tasks;
};
