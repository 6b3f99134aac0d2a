#pragma once

#include "CompositeJob.h"
#include "FolderSyncPlan.h"
#include "MachineEndpoint.h"
#include "TaskOwner.h"
#include "TransferActivity.h"

#include <QColor>
#include <QHash>
#include <QQueue>
#include <functional>

class FolderSyncComparer;
class FolderSyncScanner;
class MachineFileService;

// One run of a folder synchronisation: lists both sides, compares, lets the user decide the
// files that differ, creates missing folders, then sends the transfers through the funnel a few
// at a time and ends with one summary. Its sub-jobs are those transfers. Questions are asked
// through callbacks that answer later, so nothing here runs a nested event loop.
class FolderSyncJob final : public CompositeJob
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FolderSyncJob)

public:
    enum class Phase
    {
        Scanning,
        Comparing,
        Deciding,
        MakingFolders,
        Transferring,
        Ended,
    };
    Q_ENUM(Phase)

    // Files handed to the funnel at a time; it runs as many at once as the machine takes and keeps
    // the rest waiting.
    static constexpr int MaxSyncQueued = 32;

    struct Options
    {
        bool bSubfolders = false;
        bool bPreview = false;
        bool bCompareContent = false;
    };
    // Answers one conflict with a message-box code (Yes keeps the local file, No the machine's).
    using ConflictAsker = std::function<void(const SyncConflict&, std::function<void(int)>)>;
    // Shows the whole plan; answers false to cancel, or true with the plan as the user left it.
    using PlanReviewer = std::function<void(const FolderSyncPlan&, std::function<void(bool, FolderSyncPlan)>)>;

    FolderSyncJob(MachineFileService* files, const MachineEndpoint& endpoint, const QString& localFolder,
                  const QString& machineFolder, const Options& options, QObject* parent = nullptr);
    ~FolderSyncJob() override;

    void SetConflictAsker(ConflictAsker asker) { m_fnAskConflict = std::move(asker); }
    void SetPlanReviewer(PlanReviewer reviewer) { m_fnReviewPlan = std::move(reviewer); }
    void Start();
    // The machine went away: end now, telling the user what was not sent.
    void Interrupt();

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    // A box titled "提示" with this icon (EnumMsgIcon).
    void SignalNotice(int icon, QString text);

protected:
    void DoCancel() override;
    void OnSubjobResult(MachineJob* job) override;

private:
    struct Item
    {
        bool bUpload = true;
        QString strRelPath;
        qint64 iMachineSize = -1; // a download's size as the scan listed it
    };

    void SetPhase(Phase phase);
    void Log(const QString& text, const QColor& color);
    void LogLeftOut();
    void OnScanned(bool ok, const QList<SyncEntry>& local, const QList<SyncEntry>& machine, const QString& error);
    void OnCompared(const QList<SyncConflict>& differing);
    void Decide();
    void AskConflict(int index);
    void AfterDecisions();
    void CreateMachineFolders();
    void StartTransfers();
    void TopUp();
    // After a failure: asks whether the machine still answers once a transfer slot is free.
    void ProbeWhenSlotFree();
    void ProbeMachine();
    void End();
    void StopWork();
    QString LocalPath(const QString& rel) const;
    QString MachinePath(const QString& rel) const;

    MachineFileService* m_pFiles;
    MachineEndpoint m_endpoint;
    QString m_strLocalFolder;
    QString m_strMachineFolder;
    Options m_options;
    ConflictAsker m_fnAskConflict;
    PlanReviewer m_fnReviewPlan;
    FolderSyncScanner* m_pScanner;
    FolderSyncComparer* m_pComparer;
    Phase m_ePhase = Phase::Scanning;

    FolderSyncPlan m_plan;
    QQueue<Item> m_queue;
    // Set from a failure until the probe answers: nothing more of the run starts meanwhile.
    std::shared_ptr<void> m_waitingHold;
    bool m_bProbing = false;
    int m_nFailCount = 0;
    int m_nDone = 0;
    int m_nSkipped = 0;
    QStringList m_listFailures;
    QHash<const MachineJob*, QString> m_hashPathOfJob;
    // Counts the whole run as one running transfer, so the panels stay locked between two files.
    TransferActivity::Hold m_hold;
    TaskOwner m_tasks;
};
