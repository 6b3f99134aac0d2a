#pragma once

#include <QFuture>
#include <QList>
#include <QPointer>
#include <functional>
#include <memory>

class MachineTask;

// The one way an object owns background work: machine tasks (host FTP task threads among them)
// and jobs on the workbench's pool. Whatever still runs when the owner stops or goes is asked to stop and
// waited for, up to a bound, so that no result outlives its receiver and no worker runs the
// plug-in's code once the host unloads it. Nothing waits without that bound.
class TaskOwner final
{
    Q_DISABLE_COPY_MOVE(TaskOwner)

public:
    using StopCheck = std::function<bool()>;

    explicit TaskOwner(int waitBoundMs = 1000);
    ~TaskOwner();

    // Starts a task; the owner deletes it once it reported its end.
    void Start(MachineTask* task);
    // Runs work on the workbench's pool; the work polls the stop check it is given.
    QFuture<bool> Run(std::function<bool(const StopCheck&)> work);
    // Asks everything running to stop, without waiting.
    void RequestStopAll();
    // Asks everything running to stop and waits for it, within the bound.
    void StopAll();

private:
    struct PoolState;

    void Forget();

    int m_nWaitBoundMs;
    QList<QPointer<MachineTask>> m_listTasks;
    QList<std::shared_ptr<PoolState>> m_listPoolJobs;
};
