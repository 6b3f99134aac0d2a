#pragma once

#include <QFuture>
#include <QList>
#include <QPointer>
#include <atomic>
#include <functional>
#include <memory>

class FtpTaskThread;

// Keeps the background work that one object started: host FTP task threads and tasks of
// the global thread pool. Whatever is still running when the owner goes is asked to stop
// and waited for, up to a bound, so that no result outlives its receiver and no worker
// still runs the plug-in's code when the host unloads it.
class TaskOwner final
{
    Q_DISABLE_COPY_MOVE(TaskOwner)

public:
    using StopCheck = std::function<bool()>;

    explicit TaskOwner(int waitBoundMs = 1000);
    ~TaskOwner();

    // Starts a task created without a parent; it deletes itself once it finished.
    void Start(FtpTaskThread* task);
    // Runs work on the global thread pool; the work polls the stop check it is given.
    QFuture<bool> Run(std::function<bool(const StopCheck&)> work);
    // Asks everything running to stop, without waiting.
    void RequestStopAll();
    // Asks everything running to stop and waits for it, within the bound.
    void StopAll();

private:
    struct PoolTask
    {
        QFuture<bool> future;
        std::shared_ptr<std::atomic<bool>> stop;
    };

    void Forget();

    int m_nWaitBoundMs;
    QList<QPointer<FtpTaskThread>> m_listThreads;
    QList<PoolTask> m_listPoolTasks;
};
