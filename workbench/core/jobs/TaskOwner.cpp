#include "TaskOwner.h"

#include "MachineTask.h"
#include "WorkPool.h"

#include <QDeadlineTimer>
#include <QMutex>
#include <QPromise>
#include <QThreadPool>
#include <QWaitCondition>
#include <atomic>

// Shared between the owner and its pool job, so that either may go first.
struct TaskOwner::PoolState
{
    std::atomic<bool> stop{false};
    QMutex mutex;
    QWaitCondition ended;
    bool bDone = false;
};

TaskOwner::TaskOwner(int waitBoundMs) : m_nWaitBoundMs(waitBoundMs) {}

TaskOwner::~TaskOwner()
{
    StopAll();
}

void TaskOwner::Start(MachineTask* task)
{
    Forget();
    QObject::connect(task, &MachineTask::SignalFinished, task, &QObject::deleteLater);
    m_listTasks.append(task);
    task->Start();
}

QFuture<bool> TaskOwner::Run(std::function<bool(const StopCheck&)> work)
{
    Forget();
    auto state = std::make_shared<PoolState>();
    auto promise = std::make_shared<QPromise<bool>>();
    QFuture<bool> future = promise->future();
    promise->start();
    QThreadPool* pool = WorkPool::Instance();
    pool->start([work = std::move(work), state, promise]() {
        const bool result = work([state]() { return state->stop.load(); });
        promise->addResult(result);
        promise->finish();
        const QMutexLocker locker(&state->mutex);
        state->bDone = true;
        state->ended.wakeAll();
    });
    m_listPoolJobs.append(state);
    return future;
}

void TaskOwner::RequestStopAll()
{
    for (const QPointer<MachineTask>& task : std::as_const(m_listTasks)) {
        if (task)
            task->Stop();
    }
    for (const std::shared_ptr<PoolState>& state : std::as_const(m_listPoolJobs))
        state->stop.store(true);
}

void TaskOwner::StopAll()
{
    RequestStopAll();
    const QDeadlineTimer deadline(m_nWaitBoundMs);
    for (const QPointer<MachineTask>& task : std::as_const(m_listTasks)) {
        if (task)
            task->Wait(deadline);
    }
    for (const std::shared_ptr<PoolState>& state : std::as_const(m_listPoolJobs)) {
        QMutexLocker locker(&state->mutex);
        while (!state->bDone) {
            if (!state->ended.wait(&state->mutex, deadline))
                break;
        }
    }
    // A host thread that outran the bound still deletes itself once it ends.
    for (const QPointer<MachineTask>& task : std::as_const(m_listTasks))
        delete task.data();
    m_listTasks.clear();
    Forget();
}

void TaskOwner::Forget()
{
    m_listTasks.removeIf([](const QPointer<MachineTask>& task) { return task.isNull(); });
    m_listPoolJobs.removeIf([](const std::shared_ptr<PoolState>& state) {
        const QMutexLocker locker(&state->mutex);
        return state->bDone;
    });
}
