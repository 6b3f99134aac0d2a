#include "TaskJob.h"

#include "MachineTask.h"
#include "TaskOwner.h"

TaskJob::TaskJob(TaskOwner* owner, TaskMaker maker, QObject* parent)
    : MachineJob(parent), m_pOwner(owner), m_fnMake(std::move(maker))
{}

void TaskJob::Start()
{
    if (m_bStarted || IsFinished())
        return;
    m_bStarted = true;
    MachineTask* task = m_fnMake();
    m_pTask = task;
    connect(task, &MachineTask::SignalProgress, this, &TaskJob::SetProgress);
    connect(task, &MachineTask::SignalFinished, this, [this, task](bool ok, const QString& message) {
        m_listEntries = task->Entries();
        Q_EMIT SignalTaskEnded(ok, message);
        if (ok)
            Finish(Result::Succeeded);
        else
            Finish(m_bCancelRequested ? Result::Cancelled : Result::Failed, message);
    });
    m_pOwner->Start(task);
}

void TaskJob::DoCancel()
{
    m_bCancelRequested = true;
    if (m_pTask) {
        m_pTask->Stop();
        return;
    }
    if (!m_bStarted) {
        Finish(Result::Cancelled);
        Q_EMIT SignalCancelledWaiting();
    }
}
