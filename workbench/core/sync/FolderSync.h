#pragma once

#include "FolderSyncJob.h"

#include <QColor>
#include <QObject>
#include <QPointer>

class MachineFileService;

// Runs folder synchronisations one at a time for the tool page's button: refuses a start that
// cannot work, keeps the job of the running one and the button's state (idle, running,
// finished), and ends the run when the machine goes or another one comes.
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

    explicit FolderSync(MachineFileService* files, QObject* parent = nullptr);

    void SetConflictAsker(FolderSyncJob::ConflictAsker asker) { m_fnAskConflict = std::move(asker); }
    void SetPlanReviewer(FolderSyncJob::PlanReviewer reviewer) { m_fnReviewPlan = std::move(reviewer); }
    void SetOptions(const FolderSyncJob::Options& options) { m_options = options; }

    bool IsSyncing() const { return m_pJob && !m_pJob->IsFinished(); }
    int GetButtonState() const { return m_iButtonState; }

    // Starts with the checks that need no widgets: another transfer, empty paths, a drive root.
    // Returns the run's job, or null when the start was refused (the notice says why).
    FolderSyncJob* Start(const QString& localPath, const QString& machinePath);

public Q_SLOTS:
    // The machine went or a new one came: whatever runs ends here.
    void StopSyncAndRestoreState();

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    // A box titled "提示" with this icon (EnumMsgIcon).
    void SignalNotice(int icon, QString text);
    void SignalButtonStateChanged(int state);

private:
    void SetButtonState(int state);

    MachineFileService* m_pFiles;
    FolderSyncJob::ConflictAsker m_fnAskConflict;
    FolderSyncJob::PlanReviewer m_fnReviewPlan;
    FolderSyncJob::Options m_options;
    QPointer<FolderSyncJob> m_pJob;
    int m_iButtonState = ButtonIdle;
};
