#include "FolderSyncScanner.h"

#include "MachineTask.h"
#include "MachineTaskFactory.h"

#include <QDirIterator>
#include <QFutureWatcher>

namespace {
QList<SyncEntry> WalkLocal(const QString& folder, bool bRecursive, const TaskOwner::StopCheck& stop)
{
    QList<SyncEntry> entries;
    const QDir root(folder);
    QDirIterator it(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden,
                    bRecursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
    while (it.hasNext() && !stop()) {
        it.next();
        const QFileInfo info = it.fileInfo();
        if (info.isSymLink())
            continue;
        entries.append({root.relativeFilePath(info.filePath()), info.isDir() ? 0 : info.size(), info.lastModified(),
                        info.isDir()});
    }
    return entries;
}

QString JoinMachinePath(const QString& folder, const QString& rel)
{
    QString path = folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
    return rel.isEmpty() ? path : path + rel + QLatin1Char('/');
}
} // namespace

FolderSyncScanner::FolderSyncScanner(QObject* parent) : QObject(parent) {}

FolderSyncScanner::~FolderSyncScanner() = default;

void FolderSyncScanner::Cancel()
{
    ++m_nGeneration;
    m_tasks.RequestStopAll();
}

void FolderSyncScanner::Start(const MachineEndpoint& endpoint, const QString& localFolder, const QString& machineFolder,
                              bool bRecursive)
{
    Cancel();
    const quint64 generation = m_nGeneration;
    m_endpoint = endpoint;
    m_strMachineFolder = machineFolder;
    m_bRecursive = bRecursive;
    m_bLocalDone = m_bMachineDone = m_bFailed = false;
    m_strError.clear();
    m_listLocal.clear();
    m_listMachine.clear();
    m_listPendingFolders = {QString()};

    auto result = std::make_shared<QList<SyncEntry>>();
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, result, generation]() {
        watcher->deleteLater();
        if (generation != m_nGeneration)
            return;
        m_listLocal = *result;
        m_bLocalDone = true;
        FinishIfDone();
    });
    watcher->setFuture(m_tasks.Run([localFolder, bRecursive, result](const TaskOwner::StopCheck& stop) {
        *result = WalkLocal(localFolder, bRecursive, stop);
        return true;
    }));
    ListNextMachineFolder();
}

void FolderSyncScanner::ListNextMachineFolder()
{
    if (m_listPendingFolders.isEmpty()) {
        m_bMachineDone = true;
        FinishIfDone();
        return;
    }
    const QString rel = m_listPendingFolders.takeFirst();
    const QString path = JoinMachinePath(m_strMachineFolder, rel);
    MachineTask* task = MachineTaskFactory::Default()->List(m_endpoint, path);
    const quint64 generation = m_nGeneration;
    connect(task, &MachineTask::SignalFinished, this, [this, generation, rel, task](bool ok, const QString& error) {
        OnMachineListed(generation, rel, ok, task->Entries(), error);
    });
    m_tasks.Start(task);
}

void FolderSyncScanner::OnMachineListed(quint64 generation, const QString& relFolder, bool ok,
                                        const QList<FtpFileInfo>& entries, const QString& error)
{
    if (generation != m_nGeneration)
        return;
    if (!ok) {
        m_bFailed = true;
        m_strError = error;
        m_bMachineDone = true;
        FinishIfDone();
        return;
    }
    const QString prefix = relFolder.isEmpty() ? QString() : relFolder + QLatin1Char('/');
    for (const FtpFileInfo& info : entries) {
        if (info.name == QLatin1String(".") || info.name == QLatin1String(".."))
            continue;
        const SyncEntry entry{prefix + info.name, info.isDir() ? 0 : info.size, info.time, info.isDir()};
        m_listMachine.append(entry);
        if (m_bRecursive && entry.bDir && FolderSyncPlan::IsSyncable(entry))
            m_listPendingFolders.append(entry.strRelPath);
    }
    ListNextMachineFolder();
}

void FolderSyncScanner::FinishIfDone()
{
    if (!m_bLocalDone || !m_bMachineDone)
        return;
    ++m_nGeneration;
    Q_EMIT SignalScanned(!m_bFailed, m_listLocal, m_listMachine, m_strError);
}
