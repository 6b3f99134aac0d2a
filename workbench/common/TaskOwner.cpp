#include "TaskOwner.h"

#include "FtpTaskThread.h"

#include <QDeadlineTimer>
#include <QThread>
#include <QtConcurrent>

TaskOwner::TaskOwner(int waitBoundMs) : m_nWaitBoundMs(waitBoundMs) {}

TaskOwner::~TaskOwner()
{
    StopAll();
}

void TaskOwner::Start(FtpTaskThread* task)
{
    Forget();
    QObject::connect(task, &QThread::finished, task, &QObject::deleteLater);
    m_listThreads.append(task);
    task->start();
}

QFuture<bool> TaskOwner::Run(std::function<bool(const StopCheck&)> work)
{
    Forget();
    auto stop = std::make_shared<std::atomic<bool>>(false);
    QFuture<bool> future =
        QtConcurrent::run([work = std::move(work), stop]() { return work([stop]() { return stop->load(); }); });
    m_listPoolTasks.append({future, stop});
    return future;
}

void TaskOwner::RequestStopAll()
{
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_listThreads)) {
        if (task)
            task->SetTransControl(FtpTaskThread::TransControlStop);
    }
    for (const PoolTask& task : std::as_const(m_listPoolTasks))
        task.stop->store(true);
}

void TaskOwner::StopAll()
{
    RequestStopAll();
    const QDeadlineTimer deadline(m_nWaitBoundMs);
    for (const QPointer<FtpTaskThread>& task : std::as_const(m_listThreads)) {
        if (task)
            task->wait(deadline);
    }
    // A pool future has no timed wait; its work notices the stop within milliseconds.
    for (const PoolTask& task : std::as_const(m_listPoolTasks)) {
        while (!task.future.isFinished() && !deadline.hasExpired())
            QThread::msleep(2);
    }
    Forget();
}

void TaskOwner::Forget()
{
    m_listThreads.removeIf([](const QPointer<FtpTaskThread>& task) { return !task || task->isFinished(); });
    m_listPoolTasks.removeIf([](const PoolTask& task) { return task.future.isFinished(); });
}
