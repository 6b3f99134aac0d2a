#include "HostFtpTask.h"

#include "FtpTaskThread.h"
#include "FtpTemporaryName.h"
#include "ListFtpDirectory.h"

HostFtpTask::HostFtpTask(FtpTaskThread* thread, QObject* parent) : MachineTask(parent), m_pThread(thread)
{
    connect(thread, &QThread::finished, thread, &QObject::deleteLater);
    connect(thread, &FtpTaskThread::SignalTaskProgress, this,
            [this](qint64 done, qint64 total, const QString&) { Q_EMIT SignalProgress(done, total); });
    if (auto* listing = qobject_cast<ListFtpDirectory*>(thread)) {
        connect(listing, &ListFtpDirectory::SignalListFileFinished, this,
                [this](bool, const QList<FtpFileInfo>& entries) {
                    // Our own temporary files are set apart here, so that no view shows them as programs.
                    const QString marker = FtpTemporaryName::InstallationMarker();
                    for (const FtpFileInfo& entry : entries)
                        (FtpTemporaryName::IsOurs(entry.name, marker) ? m_listLeftovers : m_listEntries).append(entry);
                });
    }
    connect(thread, &FtpTaskThread::SignalTaskFinished, this, &MachineTask::SignalFinished);
}

HostFtpTask::~HostFtpTask()
{
    // Never started: nobody else will delete the thread.
    if (m_pThread && !m_pThread->isRunning() && !m_pThread->isFinished())
        delete m_pThread;
}

void HostFtpTask::Start()
{
    if (m_pThread)
        m_pThread->start();
}

void HostFtpTask::Stop()
{
    if (m_pThread)
        m_pThread->SetTransControl(FtpTaskThread::TransControlStop);
}

bool HostFtpTask::Wait(QDeadlineTimer deadline)
{
    return !m_pThread || m_pThread->wait(deadline);
}
