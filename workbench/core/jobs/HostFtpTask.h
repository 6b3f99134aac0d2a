#pragma once

#include "MachineTask.h"

#include <QPointer>

class FtpTaskThread;

// A host FTP task thread seen as a MachineTask. The thread deletes itself once it ended,
// so a task given up on at exit still finishes cleanly on its own.
class HostFtpTask final : public MachineTask
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HostFtpTask)

public:
    // Takes the thread, which must not have been started.
    explicit HostFtpTask(FtpTaskThread* thread, QObject* parent = nullptr);
    ~HostFtpTask() override;

    void Start() override;
    void Stop() override;
    bool Wait(QDeadlineTimer deadline) override;
    QList<FtpFileInfo> Entries() const override { return m_listEntries; }
    QList<FtpFileInfo> Leftovers() const override { return m_listLeftovers; }

private:
    QPointer<FtpTaskThread> m_pThread;
    QList<FtpFileInfo> m_listEntries;
    QList<FtpFileInfo> m_listLeftovers;
};
