#include "MachineStatusFtpManager.h"

#include "CDebugLog.h"
#include "KorvBaseGlobals.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "MachineTask.h"
#include "MachineTaskFactory.h"

MachineStatusFtpManager::MachineStatusFtpManager(QObject* parent) : QObject(parent) {}

MachineStatusFtpManager::~MachineStatusFtpManager() = default;

void MachineStatusFtpManager::RequestList(const QString& dirPath)
{
    if (!m_endpoint.IsValid()) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestList 未设置机床IP，忽略请求"));
        return;
    }
    QString path = dirPath;
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    if (g_bTranslating) {
        CDebugLog::AddLog(QStringLiteral("MachineStatusFtpManager::RequestList FTP传输进行中，忽略列表请求 ") + path);
        return;
    }
    // The answer of the listing already on its way serves this request too.
    if (m_mapListings.contains(path))
        return;
    const QString taskPath = path == QLatin1String("/") ? path : path + QLatin1Char('/');
    MachineTask* task = MachineTaskFactory::Default()->List(m_endpoint, taskPath);
    m_mapListings.insert(path, task);
    connect(task, &MachineTask::SignalFinished, this, [this, path, task](bool success) {
        m_mapListings.remove(path);
        Q_EMIT SignalListResult(path, success, task->Entries());
    });
    m_tasks.Start(task);
}

void MachineStatusFtpManager::RequestRename(const QString& oldPath, const QString& newPath)
{
    if (!m_pFiles || !m_endpoint.IsValid()) {
        Q_EMIT SignalRenameResult(false, oldPath, newPath);
        return;
    }
    MachineJob* job = m_pFiles->Rename(m_pFiles->Endpoint(), oldPath, newPath, RequestOrigin::StatusPage);
    connect(job, &MachineJob::SignalResult, this, [this, oldPath, newPath](MachineJob* ended) {
        Q_EMIT SignalRenameResult(ended->GetResult() == MachineJob::Result::Succeeded, oldPath, newPath);
    });
}

void MachineStatusFtpManager::RequestDelete(const QStringList& filePaths, const QStringList& folderPaths)
{
    if (!m_pFiles || !m_endpoint.IsValid() || m_bDeleting) {
        Q_EMIT SignalDeleteResult(false);
        return;
    }
    if (filePaths.isEmpty() && folderPaths.isEmpty())
        return;
    m_bDeleting = true;
    MachineJob* job = m_pFiles->Delete(m_pFiles->Endpoint(), filePaths, folderPaths, RequestOrigin::StatusPage);
    connect(job, &MachineJob::SignalResult, this, [this](MachineJob* ended) {
        m_bDeleting = false;
        Q_EMIT SignalDeleteResult(ended->GetResult() == MachineJob::Result::Succeeded);
    });
}
