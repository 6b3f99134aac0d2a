#include "FolderSyncComparer.h"

#include "DownloadToLocal.h"

#include <QDir>
#include <QFile>
#include <QFutureWatcher>
#include <QUrl>

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

FolderSyncComparer::FolderSyncComparer(QObject* parent) : QObject(parent) {}

FolderSyncComparer::~FolderSyncComparer() = default;

void FolderSyncComparer::Cancel()
{
    ++m_nGeneration;
    m_tasks.RequestStopAll();
}

void FolderSyncComparer::Start(const QString& ip, const QString& localFolder, const QString& machineFolder,
                               const QList<SyncConflict>& pairs)
{
    Cancel();
    m_strIp = ip;
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
        QUrl url;
        url.setScheme(QStringLiteral("ftp"));
        url.setHost(m_strIp);
        url.setPort(21);
        url.setPath(path);
        auto* task =
            new DownloadToLocal(QStringLiteral("ftp://%1:21%2").arg(m_strIp, path), url.toString(QUrl::FullyEncoded),
                                m_pTempDir->filePath(QString::number(index)), nullptr);
        const quint64 generation = m_nGeneration;
        connect(task, &FtpTaskThread::SignalTaskFinished, this,
                [this, generation, index](bool ok, const QString&) { OnFetched(generation, index, ok); });
        ++m_iRunning;
        m_tasks.Start(task);
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
