#include "ProgramHistory.h"

#include "CDebugLog.h"
#include "CommonDefine.h"
#include "HistoryStore.h"
#include "KorvPaths.h"
#include "LogColors.h"
#include "MachineFileService.h"
#include "MachineJob.h"
#include "MachinePath.h"
#include "MachineTaskFactory.h"
#include "TaskJob.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QPointer>
#include <QUuid>
#ifdef Q_OS_UNIX
#include <unistd.h>
#endif

namespace {
// A serial number as a folder name: whatever a machine reports must not climb out of the root.
QString FolderName(const QString& sn)
{
    QString name = sn;
    for (QChar& c : name) {
        if (!c.isLetterOrNumber() && c != QLatin1Char('-') && c != QLatin1Char('_'))
            c = QLatin1Char('_');
    }
    return name.isEmpty() ? QStringLiteral("_") : name;
}
} // namespace

struct ProgramHistory::Pending
{
    HistorySettings settings;
    int iLeft = 0;
    QHash<QString, QString> refused;
    std::function<void(QHash<QString, QString>)> done;

    void Ended()
    {
        if (--iLeft == 0)
            done(refused);
    }
};

ProgramHistory::ProgramHistory(MachineFileService* files, QObject* parent)
    : QObject(parent), m_pFiles(files), m_strRoot(KorvPaths::ConfigDir() + QStringLiteral("/ProgramHistory")),
      m_tasks(3000)
{
    files->SetHistory(this);
}

ProgramHistory::~ProgramHistory()
{
    m_tasks.StopAll();
}

void ProgramHistory::Log(const QString& text, const QColor& color)
{
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, color);
}

HistoryStore* ProgramHistory::Store(const QString& sn, QString* error)
{
    const auto found = m_mapStores.find(sn);
    if (found != m_mapStores.end())
        return found->second.get();
    // A store that failed is tried again next time: another workbench may have let go of it.
    auto store = std::make_unique<HistoryStore>(m_strRoot + QLatin1Char('/') + FolderName(sn));
    if (!store->Open()) {
        if (error)
            *error = store->ErrorText();
        return nullptr;
    }
    return m_mapStores.emplace(sn, std::move(store)).first->second.get();
}

void ProgramHistory::Keep(const MachineEndpoint& endpoint, const QList<HistoryLoss>& losses,
                          std::function<void(QHash<QString, QString>)> done)
{
    const HistorySettings settings = HistorySettings::Load(endpoint.strSn);
    if (losses.isEmpty() || !settings.bEnabled) {
        done({});
        return;
    }
    QString error;
    if (!Store(endpoint.strSn, &error)) {
        QHash<QString, QString> refused;
        for (const HistoryLoss& loss : losses)
            refused.insert(loss.strMachinePath,
                           tr("无法保留%1的历史版本，未作改动：%2").arg(loss.strMachinePath, error));
        done(refused);
        return;
    }
    QHash<QString, QList<HistoryLoss>> byFolder;
    QList<HistoryLoss> folders;
    for (const HistoryLoss& loss : losses) {
        if (loss.bFolder)
            folders.append(loss);
        else
            byFolder[MachinePath::Folder(loss.strMachinePath)].append(loss);
    }
    auto pending = std::make_shared<Pending>();
    pending->settings = settings;
    pending->iLeft = int(byFolder.size() + folders.size());
    pending->done = std::move(done);
    for (auto it = byFolder.cbegin(); it != byFolder.cend(); ++it)
        KeepFolder(endpoint, it.key(), it.value(), pending);
    for (const HistoryLoss& loss : std::as_const(folders))
        KeepTree(endpoint, loss.strMachinePath, loss, pending);
}

void ProgramHistory::KeepFolder(const MachineEndpoint& endpoint, const QString& folder,
                                const QList<HistoryLoss>& losses, const std::shared_ptr<Pending>& pending)
{
    // One listing tells which of the paths exist, and how large they are.
    const QPointer<ProgramHistory> self(this);
    m_pFiles->ListFolders(endpoint, {folder}, [=](bool ok, const MachineFileService::FolderListings& listings) {
        if (!self)
            return;
        const QList<FtpFileInfo> entries = listings.value(folder);
        for (const HistoryLoss& loss : losses) {
            if (!ok) {
                pending->refused.insert(
                    loss.strMachinePath,
                    tr("无法读取机床文件夹，未能保留%1的历史版本，未作改动").arg(loss.strMachinePath));
                continue;
            }
            const FtpFileInfo* found = MachineFileService::FileNamed(entries, MachinePath::Name(loss.strMachinePath),
                                                                     endpoint.nameRules.bCaseInsensitive);
            if (!found || !WithinLimit(loss.strMachinePath, found->size, pending))
                continue;
            ++pending->iLeft;
            // Kept under the machine's spelling of the name, in case it ignores case.
            KeepFile(endpoint, loss, QDir::cleanPath(folder + QLatin1Char('/') + found->name), found->size, pending);
        }
        pending->Ended();
    });
}

void ProgramHistory::KeepTree(const MachineEndpoint& endpoint, const QString& folder, const HistoryLoss& loss,
                              const std::shared_ptr<Pending>& pending)
{
    const QPointer<ProgramHistory> self(this);
    m_pFiles->ListFolders(endpoint, {folder}, [=](bool ok, const MachineFileService::FolderListings& listings) {
        if (!self)
            return;
        if (!ok)
            pending->refused.insert(loss.strMachinePath,
                                    tr("无法读取机床文件夹，未能保留%1的历史版本，未作改动").arg(folder));
        for (const FtpFileInfo& entry : listings.value(folder)) {
            const QString path = QDir::cleanPath(folder + QLatin1Char('/') + entry.name);
            // Only programs: other files on the machine are not the workbench's to keep.
            const bool bProgram = MachineFileSuffixList.contains(QFileInfo(entry.name).suffix().toLower());
            if (entry.isDir()) {
                ++pending->iLeft;
                KeepTree(endpoint, path, loss, pending);
            } else if (bProgram && WithinLimit(path, entry.size, pending)) {
                ++pending->iLeft;
                KeepFile(endpoint, loss, path, entry.size, pending);
            }
        }
        pending->Ended();
    });
}

bool ProgramHistory::WithinLimit(const QString& machinePath, qint64 size, const std::shared_ptr<Pending>& pending)
{
    if (size <= pending->settings.nMaxFileBytes)
        return true;
    Log(tr("%1超过历史版本的大小上限，不保留历史版本").arg(machinePath), LogColors::Warning);
    return false;
}

void ProgramHistory::KeepFile(const MachineEndpoint& endpoint, const HistoryLoss& loss, const QString& machinePath,
                              qint64 size, const std::shared_ptr<Pending>& pending)
{
    HistoryStore* store = Store(endpoint.strSn);
    const QString fetched =
        QStringLiteral("%1/%2").arg(store->IncomingFolder(), QUuid::createUuid().toString(QUuid::WithoutBraces));
    MachineJob* fetch = m_pFiles->Fetch(endpoint, machinePath, fetched);
    const QString sn = endpoint.strSn;
    connect(fetch, &MachineJob::SignalResult, this, [=](MachineJob* job) {
        if (job->GetResult() != MachineJob::Result::Succeeded) {
            QFile::remove(fetched);
            pending->refused.insert(
                loss.strMachinePath,
                tr("无法从机床取回%1的当前版本，未作改动：%2")
                    .arg(loss.strMachinePath, job->ErrorText().isEmpty() ? tr("读取失败") : job->ErrorText()));
            pending->Ended();
            return;
        }
        HistoryVersion version;
        version.strMachinePath = machinePath;
        version.time = QDateTime::currentDateTime();
        version.nSize = size;
        version.eCause = loss.eCause;
        version.strBy = loss.strBy;
        // Hashing a large program takes a while: off the window's thread.
        auto hash = std::make_shared<QString>();
        const QString folder = Store(sn)->Folder();
        auto* watcher = new QFutureWatcher<bool>(this);
        connect(watcher, &QFutureWatcher<bool>::finished, this, [=]() {
            watcher->deleteLater();
            HistoryVersion kept = version;
            kept.strHash = *hash;
            Record(sn, kept, loss.strMachinePath, pending);
        });
        watcher->setFuture(m_tasks.Run([hash, folder, fetched](const TaskOwner::StopCheck&) {
            *hash = HistoryStore::StoreContent(folder, fetched);
            return !hash->isEmpty();
        }));
    });
}

void ProgramHistory::Record(const QString& sn, HistoryVersion version, const QString& key,
                            const std::shared_ptr<Pending>& pending)
{
    HistoryStore* store = Store(sn);
    if (store && !version.strHash.isEmpty())
        version.nSize = QFileInfo(store->ContentPath(version.strHash)).size();
    if (!store || version.strHash.isEmpty() || !store->Add(version)) {
        pending->refused.insert(key, tr("无法保存%1的历史版本，未作改动").arg(version.strMachinePath));
        pending->Ended();
        return;
    }
    CDebugLog::AddLog(QStringLiteral("history kept: %1, %2 bytes, %3")
                          .arg(version.strMachinePath)
                          .arg(version.nSize)
                          .arg(version.strHash));
    if (!store->Prune(pending->settings.iKeepPerProgram, pending->settings.nTotalBytes))
        Log(tr("历史版本清理失败：%1").arg(store->Folder()), LogColors::Warning);
    Q_EMIT SignalChanged(sn);
    pending->Ended();
}

bool ProgramHistory::Export(const QString& sn, const HistoryVersion& version, const QString& localPath) const
{
    const auto found = m_mapStores.find(sn);
    if (found == m_mapStores.end())
        return false;
    QFile::remove(localPath);
    const QString content = found->second->ContentPath(version.strHash);
    if (!QDir().mkpath(QFileInfo(localPath).absolutePath()))
        return false;
#ifdef Q_OS_UNIX
    // A hard link costs nothing on the GUI thread, where copying a large kept program would stall
    // it, and its bytes stay even when keeping the copy a restore replaces drops this version.
    if (::link(QFile::encodeName(content).constData(), QFile::encodeName(localPath).constData()) == 0)
        return true;
#endif
    return QFile::copy(content, localPath);
}

MachineJob* ProgramHistory::Restore(const MachineEndpoint& endpoint, const HistoryVersion& version)
{
    HistoryStore* store = Store(endpoint.strSn);
    // The upload takes its name from the local file: a folder of its own keeps the program's name.
    const QString folder =
        store ? QStringLiteral("%1/restore/%2").arg(store->Folder(), QUuid::createUuid().toString(QUuid::WithoutBraces))
              : QString();
    const QString localPath = folder + QLatin1Char('/') + MachinePath::Name(version.strMachinePath);
    if (!store || !Export(endpoint.strSn, version, localPath)) {
        const QString reason = tr("无法读取历史版本：%1").arg(version.strMachinePath);
        Log(reason, LogColors::Failure);
        return MachineJob::MakeRefused(reason, this);
    }
    MachineJob* job =
        m_pFiles->Transfer(endpoint, {TransferItem{true, localPath, version.strMachinePath, OperationCopy}},
                           RequestOrigin::FilePage, true);
    connect(job, &MachineJob::SignalResult, this, [folder]() { QDir(folder).removeRecursively(); });
    return job;
}
