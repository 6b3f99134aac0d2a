#include "FolderSyncComparer.h"

#include "MachineFileService.h"
#include "MachineJob.h"

#include <QDir>
#include <QFile>
#include <QFutureWatcher>

namespace {
bool SameContent(const QString& first, const QString& second)
{
    QFile a(first);
    QFile b(second);
    if (!a.open(QIODevice::ReadOnly) || !b.open(QIODevice::ReadOnly) || a.size() != b.size())
        return false;
    while (!a.atEnd()) {
        if (a.read(64 * 1024) != b.read(64 * 1024))
            return false;
    }
    return true;
}
} // namespace

FolderSyncComparer::FolderSyncComparer(MachineFileService* files, QObject* parent) : QObject(parent), m_pFiles(files) {}

FolderSyncComparer::~FolderSyncComparer() = default;

void FolderSyncComparer::Cancel()
{
    ++m_nGeneration;
    const QList<QPointer<MachineJob>> fetches = std::exchange(m_listFetches, {});
    for (const QPointer<MachineJob>& job : fetches) {
        if (job)
            job->Cancel();
    }
    m_tasks.RequestStopAll();
}

void FolderSyncComparer::Start(const MachineEndpoint& endpoint, const QString& localFolder,
                               const QString& machineFolder, const QList<SyncConflict>& pairs)
{
    Cancel();
    m_endpoint = endpoint;
    m_strLocalFolder = localFolder;
    m_strMachineFolder = machineFolder;
    m_listPairs = pairs;
    m_listDiffering.clear();
    m_iNext = 0;
    m_iRunning = 0;
    m_pTempDir = std::make_unique<QTemporaryDir>();
    StartNext();
}

void FolderSyncComparer::StartNext()
{
    while (m_iRunning < MaxAtOnce && m_iNext < m_listPairs.size()) {
        const int index = m_iNext++;
        const QString path =
            QDir::cleanPath(m_strMachineFolder + QLatin1Char('/') + m_listPairs.at(index).machine.strRelPath);
        MachineJob* job = m_pFiles->Fetch(m_endpoint, path, m_pTempDir->filePath(QString::number(index)));
        const quint64 generation = m_nGeneration;
        connect(job, &MachineJob::SignalResult, this, [this, generation, index](MachineJob* ended) {
            OnFetched(generation, index, ended->GetResult() == MachineJob::Result::Succeeded);
        });
        m_listFetches.removeAll(nullptr);
        m_listFetches.append(job);
        ++m_iRunning;
    }
    if (m_iRunning == 0) {
        m_pTempDir.reset();
        Q_EMIT SignalCompared(m_listDiffering);
    }
}

void FolderSyncComparer::OnFetched(quint64 generation, int index, bool ok)
{
    if (generation != m_nGeneration)
        return;
    const SyncConflict pair = m_listPairs.at(index);
    const QString fetched = m_pTempDir->filePath(QString::number(index));
    const QString local = QDir::cleanPath(m_strLocalFolder + QLatin1Char('/') + pair.local.strRelPath);
    // Programs can be large: the comparison reads on a pool thread.
    auto* watcher = new QFutureWatcher<bool>(this);
    connect(watcher, &QFutureWatcher<bool>::finished, this, [this, watcher, generation, pair]() {
        watcher->deleteLater();
        if (generation != m_nGeneration)
            return;
        --m_iRunning;
        if (!watcher->result())
            m_listDiffering.append(pair);
        StartNext();
    });
    watcher->setFuture(m_tasks.Run([ok, local, fetched](const TaskOwner::StopCheck&) {
        const bool bSame = ok && SameContent(local, fetched);
        QFile::remove(fetched);
        return bSame;
    }));
}
