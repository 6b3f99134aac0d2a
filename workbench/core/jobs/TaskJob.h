#pragma once

#include "MachineJob.h"
#include "MachineRecords.h"

#include <QPointer>
#include <functional>

class MachineTask;
class TaskOwner;

// A job of one machine task. It may wait before it starts (a transfer queued behind others);
// a cancel then ends it at once, while a cancel of a running task stops the task and the job
// ends cancelled when the task reports back.
class TaskJob final : public MachineJob
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TaskJob)

public:
    using TaskMaker = std::function<MachineTask*()>;

    TaskJob(TaskOwner* owner, TaskMaker maker, QObject* parent = nullptr);

    void Start();
    bool IsStarted() const { return m_bStarted; }
    // Someone asked the job to stop: a task that ends without success was stopped, not failed.
    // The entries of a listing task, once it finished.
    QList<FtpFileInfo> Entries() const { return m_listEntries; }

Q_SIGNALS:
    // Before SignalResult, on the turn the task ended: ok, and the task's message.
    void SignalTaskEnded(bool ok, const QString& message);
    // Cancelled before it started: whoever queued it takes it out.
    void SignalCancelledWaiting();

protected:
    void DoCancel() override;

private:
    TaskOwner* m_pOwner;
    TaskMaker m_fnMake;
    QPointer<MachineTask> m_pTask;
    bool m_bStarted = false;
    bool m_bCancelRequested = false;
    QList<FtpFileInfo> m_listEntries;
};
