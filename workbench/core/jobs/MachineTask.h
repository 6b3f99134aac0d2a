#pragma once

#include "MachineRecords.h"

#include <QDeadlineTimer>
#include <QList>
#include <QObject>

// One piece of work on a machine (a transfer, a listing, a delete...). The funnel and its
// jobs see only this interface, so that tests can stand fake tasks in for the host's threads.
class MachineTask : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    virtual void Start() = 0;
    // Asks the task to end as soon as it can; it still reports SignalFinished (with false).
    virtual void Stop() = 0;
    // True once the task's work has ended, waiting at most until the deadline.
    virtual bool Wait(QDeadlineTimer deadline) = 0;
    // What a listing task found; empty for other tasks.
    virtual QList<FtpFileInfo> Entries() const { return {}; }
    // Temporary upload files of this installation that a listing found; never in Entries().
    virtual QList<FtpFileInfo> Leftovers() const { return {}; }

Q_SIGNALS:
    void SignalProgress(qint64 done, qint64 total);
    // Exactly once per started task.
    void SignalFinished(bool ok, const QString& message);
};
