#include "MachineFileService.h"

#include "CDebugLog.h"
#include "CamBaseTextHelper.h"
#include "CompositeJob.h"
#include "LogColors.h"
#include "MachinePath.h"
#include "MachineTask.h"
#include "MachineTaskFactory.h"
#include "ProgramHistory.h"
#include "TaskJob.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QStandardPaths>
#include <QTimer>
#include <algorithm>

namespace {
const QString UploadSuffix = QStringLiteral("*Upload");
const QString DownloadSuffix = QStringLiteral("*Download");
const QString AutoCamMachineFolder = QStringLiteral("/FromLunarcHub/");

bool IsAllowedType(const QString& path)
{
    return MachineFileSuffixList.contains(QFileInfo(path).suffix().toLower());
}

int ConfiguredMaxTransfers()
{
    return CamBaseTextHelper::instance()
        ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(g_strSettingFtpMaxTransfers),
                               MachineFileService::DefaultMaxTransfers)
        .toInt();
}
} // namespace

struct MachineFileService::QueuedTransfer
{
    MachineEndpoint endpoint;
    TransferItem item;
    QString strUrl;
    QString strKey;
    bool bSilent = false;    // a private fetch: no row, no log line
    bool bCancelled = false; // the user stopped it from its row
    QPointer<TaskJob> job;
    TransferActivity::Hold hold;

    QString DisplayName() const
    {
        return MachinePath::Name(QDir::fromNativeSeparators(item.bUpload ? item.strLocalPath : item.strMachinePath));
    }
};

MachineFileService::MachineFileService(QObject* parent)
    : QObject(parent), m_pFactory(MachineTaskFactory::Default()), m_pActivity(new TransferActivity(this)), m_tasks(3000)
{
    RegisterWorkbenchMetaTypes();
    RegisterTanslateInfoMetaType();
    SetMaxTransfers(ConfiguredMaxTransfers());
    m_strAutoCamFolder =
        QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + QStringLiteral("/AutoCamFiles");
}

MachineFileService::~MachineFileService()
{
    m_tasks.StopAll();
}

void MachineFileService::SetEndpoint(const MachineEndpoint& endpoint)
{
    const bool bChanged = !(endpoint == m_endpoint);
    m_endpoint = endpoint;
    m_pActivity->SetConnectedIp(endpoint.strIp);
    if (bChanged)
        Q_EMIT SignalEndpointChanged();
}

MachineJob* MachineFileService::Refuse(const QString& reason, bool bNotice)
{
    CDebugLog::AddLog(reason);
    Q_EMIT SignalAppendLog(reason, LogColors::Warning);
    if (bNotice)
        Q_EMIT SignalNotice(reason);
    return MachineJob::MakeRefused(reason, this);
}

QString MachineFileService::CheckConnected(const MachineEndpoint& endpoint) const
{
    return endpoint.IsValid() ? QString() : tr("当前未与机床进行连接！");
}

bool MachineFileService::HitsRunningProgram(const QString& machinePath, bool bFolder) const
{
    if (m_strRunningProgram.isEmpty())
        return false;
    if (m_strRunningProgram.contains(QLatin1Char('/'))) {
        const QString program = QDir::cleanPath(QLatin1Char('/') + m_strRunningProgram);
        const QString path = QDir::cleanPath(machinePath);
        return bFolder ? (path == QStringLiteral("/") || program.startsWith(path + QLatin1Char('/'))) : program == path;
    }
    // The machine names the program without its folder: any file of that name is held back.
    return !bFolder && MachinePath::Name(machinePath) == m_strRunningProgram;
}

bool MachineFileService::IsPathBusy(const MachineEndpoint& endpoint, const QString& path, bool bFolder) const
{
    const QString url = MachineTaskFactory::Url(endpoint, path);
    for (const QList<std::shared_ptr<QueuedTransfer>>* list : {&m_listRunning, &m_listWaiting}) {
        for (const std::shared_ptr<QueuedTransfer>& transfer : *list) {
            if (transfer->strUrl == url || (bFolder && transfer->strUrl.startsWith(url + QLatin1Char('/'))))
                return true;
        }
    }
    return false;
}

QString MachineFileService::CheckTransfer(const MachineEndpoint& endpoint, const TransferItem& item) const
{
    const QString name =
        MachinePath::Name(QDir::fromNativeSeparators(item.bUpload ? item.strLocalPath : item.strMachinePath));
    if (item.bFolder)
        return tr("文件夹不能直接传输：%1。请打开文件夹选择其中的程序，或使用“同步”").arg(name);
    if (item.bUpload) {
        const QString rule = endpoint.nameRules.Violation(name);
        if (!rule.isEmpty())
            return rule;
    }
    if (!IsAllowedType(name))
        return tr("文件类型不符合要求：%1").arg(name);
    if (name.startsWith(QLatin1Char('.')))
        return tr("当前选择上传的文件名称以\".\"开头，请更改名称后重试！");
    // A name from the machine becomes a local path: it must not climb out of the folder.
    if (!item.bUpload && (name == QLatin1String("..") || name.contains(QLatin1Char('\\'))))
        return tr("机床文件名称不能用作本地文件名：%1").arg(name);
    if (IsPathBusy(endpoint, item.strMachinePath, false))
        return tr("当前文件正在被操作：%1").arg(item.strMachinePath);
    if (!item.bUpload)
        return QString();
    // Another machine of the shop is known by what its watcher last heard: the program's name.
    const bool bConnected = endpoint == m_endpoint;
    const QString program = bConnected ? m_strRunningProgram : RunningProgramOf(endpoint);
    const bool bHits = bConnected
                           ? HitsRunningProgram(item.strMachinePath, false)
                           : !program.isEmpty() && MachinePath::Name(program) == MachinePath::Name(item.strMachinePath);
    if (bHits)
        return tr("机床正在运行程序%1，不能覆盖、删除或重命名：%2").arg(program, item.strMachinePath);
    return QString();
}

QString MachineFileService::RunningProgramOf(const MachineEndpoint& endpoint) const
{
    return m_fnRunningProgramOf ? m_fnRunningProgramOf(endpoint.strIp) : QString();
}

QString MachineFileService::CheckChange(const QString& path, bool bFolder, RequestOrigin origin) const
{
    // The status page's file list stays away from the machine's files while anything moves.
    if (origin == RequestOrigin::StatusPage && IsBusy())
        return tr("当前FTP正在进行文件传输，请稍后再试");
    if (IsPathBusy(m_endpoint, path, bFolder))
        return bFolder ? tr("当前文件夹正在被操作：%1").arg(path) : tr("当前文件正在被操作：%1").arg(path);
    if (HitsRunningProgram(path, bFolder))
        return tr("机床正在运行程序%1，不能覆盖、删除或重命名：%2").arg(m_strRunningProgram, path);
    return QString();
}

MachineJob* MachineFileService::Upload(const MachineEndpoint& endpoint, const QString& localPath,
                                       const QString& machinePath, OperationType operation, RequestOrigin origin)
{
    return Transfer(endpoint, {TransferItem{true, localPath, machinePath, operation}}, origin);
}

MachineJob* MachineFileService::Download(const MachineEndpoint& endpoint, const QString& localPath,
                                         const QString& machinePath, RequestOrigin origin)
{
    return Transfer(endpoint, {TransferItem{false, localPath, machinePath, OperationCopy}}, origin);
}

MachineJob* MachineFileService::Transfer(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                                         RequestOrigin origin, bool bOverwriteDecided)
{
    const QString unconnected = CheckConnected(endpoint);
    if (!unconnected.isEmpty())
        return Refuse(unconnected, true);
    QList<TransferItem> accepted;
    QStringList refusals;
    for (const TransferItem& item : items) {
        const QString reason = CheckTransfer(endpoint, item);
        if (reason.isEmpty()) {
            accepted.append(item);
            continue;
        }
        CDebugLog::AddLog(reason);
        Q_EMIT SignalAppendLog(reason, LogColors::Warning);
        refusals.append(reason);
    }
    const QString firstReason = refusals.value(0);
    if (accepted.isEmpty()) {
        // Every file of the batch was refused: the user hears why once.
        if (origin != RequestOrigin::Sync && origin != RequestOrigin::Fleet)
            Q_EMIT SignalNotice(firstReason);
        return MachineJob::MakeRefused(firstReason, this);
    }
    auto* batch = new CompositeJob(this);
    // The batch counts the files it refused, so that its result can say how many went.
    for (const QString& reason : std::as_const(refusals))
        batch->AddSubjob(MachineJob::MakeRefused(reason, batch));
    if (bOverwriteDecided || origin == RequestOrigin::Retry || !m_fnAskOverwrite)
        KeepThenEnqueue(endpoint, accepted, batch);
    else
        AskOverwrite(endpoint, accepted, batch);
    return batch;
}

void MachineFileService::AskOverwrite(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                                      CompositeJob* batch)
{
    const QPointer<CompositeJob> guard(batch);
    CollectMachineTargets(endpoint, items, [=](bool ok, QList<OverwriteEntry> existing, FolderListings listings) {
        if (!guard || guard->IsFinished())
            return;
        // The downloads take their sizes from the listings the question was made from.
        const QList<TransferItem> sized = WithListedSizes(items, listings, endpoint.nameRules.bCaseInsensitive);
        if (!ok) {
            const QString reason = tr("无法读取机床文件夹，未传输任何文件");
            CDebugLog::AddLog(reason);
            Q_EMIT SignalAppendLog(reason, LogColors::Failure);
            guard->Cancel();
            return;
        }
        if (existing.isEmpty()) {
            KeepThenEnqueue(endpoint, sized, guard);
            return;
        }
        m_fnAskOverwrite(existing, [this, guard, endpoint, sized](bool bReplace) {
            if (!guard || guard->IsFinished())
                return;
            if (bReplace) {
                KeepThenEnqueue(endpoint, sized, guard);
                return;
            }
            CDebugLog::AddLog(QStringLiteral("用户取消覆盖，未传输任何文件"));
            guard->Cancel();
        });
    });
}

void MachineFileService::CollectMachineTargets(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                                               std::function<void(bool, QList<OverwriteEntry>, FolderListings)> done)
{
    // One listing per machine folder tells which uploads would replace a machine file, and the
    // machine side of downloads that would replace a local one.
    QStringList folders;
    for (const TransferItem& item : items) {
        const QString folder = MachinePath::Folder(item.strMachinePath);
        if ((item.bUpload || QFileInfo::exists(item.strLocalPath)) && !folders.contains(folder))
            folders << folder;
    }
    const bool bAnyCase = endpoint.nameRules.bCaseInsensitive;
    ListFolders(endpoint, folders, [items, bAnyCase, done](bool ok, const FolderListings& listings) {
        QList<OverwriteEntry> entries;
        for (const TransferItem& item : items) {
            const auto listing = listings.constFind(MachinePath::Folder(item.strMachinePath));
            if (listing == listings.cend())
                continue;
            const QFileInfo local(item.strLocalPath);
            const FtpFileInfo* found = FileNamed(*listing, MachinePath::Name(item.strMachinePath), bAnyCase);
            if (item.bUpload && found)
                entries.append({true, item.strMachinePath, local.size(), local.lastModified(), found->size, found->time,
                                item.strLocalPath});
            else if (!item.bUpload && local.exists())
                entries.append({false, item.strLocalPath, found ? found->size : -1, found ? found->time : QDateTime(),
                                local.size(), local.lastModified(), item.strMachinePath});
        }
        done(ok, entries, listings);
    });
}

void MachineFileService::FindExisting(const MachineEndpoint& endpoint, const QList<TransferItem>& items, QObject* owner,
                                      std::function<void(bool, QList<OverwriteEntry>)> done)
{
    const QPointer<QObject> guard(owner);
    CollectMachineTargets(endpoint, items, [guard, done](bool ok, QList<OverwriteEntry> entries, FolderListings) {
        if (guard)
            done(ok, entries);
    });
}

void MachineFileService::ListFolders(const MachineEndpoint& endpoint, const QStringList& folders,
                                     std::function<void(bool, FolderListings)> done)
{
    if (folders.isEmpty()) {
        done(true, {});
        return;
    }
    struct Gathered
    {
        int iLeft = 0;
        bool bOk = true;
        FolderListings listings;
        std::function<void(bool, FolderListings)> done;
    };
    auto gathered = std::make_shared<Gathered>();
    gathered->iLeft = int(folders.size());
    gathered->done = std::move(done);
    for (const QString& folder : folders) {
        const QString key = endpoint.strIp + QLatin1Char('\n') + folder;
        const bool bListingDue = m_hashFolderListeners.contains(key);
        m_hashFolderListeners[key].append([gathered, folder](bool ok, const QList<FtpFileInfo>& entries) {
            gathered->bOk = gathered->bOk && ok;
            if (ok)
                gathered->listings.insert(folder, entries);
            if (--gathered->iLeft == 0)
                gathered->done(gathered->bOk, gathered->listings);
        });
        if (!bListingDue)
            QTimer::singleShot(0, this, [this, endpoint, folder, key]() { ListFolder(endpoint, folder, key); });
    }
}

void MachineFileService::ListFolder(const MachineEndpoint& endpoint, const QString& folder, const QString& key)
{
    const QList<FolderListener> listeners = m_hashFolderListeners.take(key);
    auto* listing = new TaskJob(
        &m_tasks, [this, endpoint, folder]() { return m_pFactory->List(endpoint, folder); }, this);
    connect(listing, &TaskJob::SignalTaskEnded, this, [listing, listeners](bool ok) {
        const QList<FtpFileInfo> entries = ok ? listing->Entries() : QList<FtpFileInfo>();
        for (const FolderListener& listener : listeners)
            listener(ok, entries);
        listing->deleteLater();
    });
    listing->Start();
}

void MachineFileService::Enqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items, CompositeJob* batch,
                                 bool bSilent)
{
    QList<std::shared_ptr<QueuedTransfer>> added;
    for (const TransferItem& item : items) {
        // The question may have taken a while: another request can have taken the path meanwhile.
        if (IsPathBusy(endpoint, item.strMachinePath, false)) {
            const QString reason = tr("当前文件正在被操作：%1").arg(item.strMachinePath);
            Q_EMIT SignalAppendLog(reason, LogColors::Warning);
            batch->AddSubjob(MachineJob::MakeRefused(reason, batch));
            continue;
        }
        auto transfer = std::make_shared<QueuedTransfer>();
        transfer->endpoint = endpoint;
        transfer->item = item;
        transfer->strUrl = MachineTaskFactory::Url(endpoint, item.strMachinePath);
        transfer->strKey = transfer->strUrl + (item.bUpload ? UploadSuffix : DownloadSuffix);
        transfer->bSilent = bSilent;
        transfer->hold = m_pActivity->Begin(endpoint.strIp);
        const std::weak_ptr<QueuedTransfer> weak = transfer;
        transfer->job = new TaskJob(
            &m_tasks,
            [this, weak]() -> MachineTask* {
                const std::shared_ptr<QueuedTransfer> t = weak.lock();
                return t->item.bUpload ? m_pFactory->Upload(t->endpoint, t->item.strLocalPath, t->item.strMachinePath)
                                       : m_pFactory->Download(t->endpoint, t->item.strMachinePath, t->item.strLocalPath,
                                                              t->item.iListedSize);
            },
            batch);
        connect(transfer->job, &MachineJob::SignalProgress, this, [this, weak](qint64 done, qint64 total) {
            if (const std::shared_ptr<QueuedTransfer> t = weak.lock(); t && !t->bSilent)
                Report(*t, TanslateInfo::StateRunning, done, total);
        });
        connect(transfer->job, &TaskJob::SignalTaskEnded, this,
                [this, transfer](bool ok, const QString& message) { OnTransferEnded(transfer, ok, message); });
        connect(transfer->job, &TaskJob::SignalCancelledWaiting, this, [this, transfer]() {
            m_listWaiting.removeAll(transfer);
            if (!transfer->bSilent) {
                Report(*transfer, transfer->bCancelled ? TanslateInfo::StateCancelled : TanslateInfo::StateFailed, 0,
                       0);
                m_hashFailed.insert(transfer->strKey, transfer->item);
            }
            transfer->hold.reset();
            if (!IsBusy())
                AfterLastTransfer();
        });
        batch->AddSubjob(transfer->job);
        m_listWaiting.append(transfer);
        added.append(transfer);
    }
    batch->Seal();
    StartWaiting();
    // Every file of the batch shows in the list at once: those that found no free slot as waiting.
    for (const std::shared_ptr<QueuedTransfer>& transfer : std::as_const(added)) {
        if (!transfer->bSilent && m_listWaiting.contains(transfer))
            Report(*transfer, TanslateInfo::StateWaiting, 0, 0);
    }
}

void MachineFileService::KeepThenEnqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                                         CompositeJob* batch)
{
    QList<HistoryLoss> losses;
    for (const TransferItem& item : items) {
        if (item.bUpload)
            losses.append({item.strMachinePath, HistoryCause::Replaced,
                           MachinePath::Name(QDir::fromNativeSeparators(item.strLocalPath))});
    }
    if (!m_pHistory || losses.isEmpty()) {
        ListSizesThenEnqueue(endpoint, items, batch);
        return;
    }
    const QPointer<CompositeJob> guard(batch);
    m_pHistory->Keep(endpoint, losses, [this, guard, endpoint, items](const QHash<QString, QString>& refused) {
        if (!guard || guard->IsFinished())
            return;
        QList<TransferItem> kept;
        bool bNoticed = false;
        for (const TransferItem& item : items) {
            const QString reason = refused.value(item.strMachinePath);
            if (reason.isEmpty()) {
                kept.append(item);
                continue;
            }
            // One box for the batch; every refused file is in the log.
            guard->AddSubjob(Refuse(reason, !bNoticed));
            bNoticed = true;
        }
        Enqueue(endpoint, kept, guard);
    });
}

void MachineFileService::ListSizesThenEnqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                                              CompositeJob* batch)
{
    // Many downloads from one folder: one listing gives every size, so that no task asks the
    // machine before it reads. A single file asks on its own step, which costs less than a listing.
    QHash<QString, int> perFolder;
    for (const TransferItem& item : items) {
        if (!item.bUpload && item.iListedSize < 0)
            ++perFolder[MachinePath::Folder(item.strMachinePath)];
    }
    QStringList folders;
    for (auto it = perFolder.cbegin(); it != perFolder.cend(); ++it) {
        if (it.value() >= SizesByListingFrom)
            folders << it.key();
    }
    if (folders.isEmpty()) {
        Enqueue(endpoint, items, batch);
        return;
    }
    const QPointer<CompositeJob> guard(batch);
    // A listing that failed leaves the sizes unknown: each task asks, as it would anyway.
    ListFolders(endpoint, folders, [this, endpoint, items, guard](bool, const FolderListings& listings) {
        if (guard && !guard->IsFinished())
            Enqueue(endpoint, WithListedSizes(items, listings, endpoint.nameRules.bCaseInsensitive), guard);
    });
}

const FtpFileInfo* MachineFileService::FileNamed(const QList<FtpFileInfo>& entries, const QString& name,
                                                 bool bCaseInsensitive)
{
    const Qt::CaseSensitivity sensitivity = bCaseInsensitive ? Qt::CaseInsensitive : Qt::CaseSensitive;
    for (const FtpFileInfo& entry : entries) {
        if (!entry.isDir() && entry.name.compare(name, sensitivity) == 0)
            return &entry;
    }
    return nullptr;
}

QList<TransferItem> MachineFileService::WithListedSizes(QList<TransferItem> items, const FolderListings& listings,
                                                        bool bCaseInsensitive)
{
    for (TransferItem& item : items) {
        const auto listing = listings.constFind(MachinePath::Folder(item.strMachinePath));
        if (item.bUpload || item.iListedSize >= 0 || listing == listings.cend())
            continue;
        if (const FtpFileInfo* found = FileNamed(*listing, MachinePath::Name(item.strMachinePath), bCaseInsensitive))
            item.iListedSize = found->size;
    }
    return items;
}

MachineJob* MachineFileService::KeepThenChange(const MachineEndpoint& endpoint, const QList<HistoryLoss>& losses,
                                               std::function<MachineJob*()> change)
{
    if (!m_pHistory || losses.isEmpty())
        return change();
    auto* batch = new CompositeJob(this);
    const QPointer<CompositeJob> guard(batch);
    m_pHistory->Keep(endpoint, losses, [this, guard, change](const QHash<QString, QString>& refused) {
        if (!guard || guard->IsFinished())
            return;
        // Nothing is deleted or renamed over unless every program it would lose was kept.
        guard->AddSubjob(refused.isEmpty() ? change() : Refuse(refused.cbegin().value(), true));
        guard->Seal();
    });
    return batch;
}

int MachineFileService::RunningCount(const QString& ip) const
{
    return int(std::count_if(m_listRunning.cbegin(), m_listRunning.cend(),
                             [&ip](const auto& transfer) { return transfer->endpoint.strIp == ip; }));
}

std::shared_ptr<void> MachineFileService::HoldWaiting(const QString& ip)
{
    ++m_hashWaitingHolds[ip];
    const QPointer<MachineFileService> self(this);
    // Points at something, so that a holder can test whether it holds.
    static char held;
    return std::shared_ptr<void>(&held, [self, ip](void*) {
        if (!self)
            return;
        if (--self->m_hashWaitingHolds[ip] <= 0)
            self->m_hashWaitingHolds.remove(ip);
        self->StartWaiting();
    });
}

void MachineFileService::StartWaiting()
{
    // Each machine has its own slots: a send to many machines runs on all of them at once.
    for (int i = 0; i < m_listWaiting.size();) {
        const QString ip = m_listWaiting.at(i)->endpoint.strIp;
        if (RunningCount(ip) < m_iMaxTransfers && !m_hashWaitingHolds.contains(ip))
            StartTransfer(m_listWaiting.takeAt(i));
        else
            ++i;
    }
}

void MachineFileService::StartTransfer(const std::shared_ptr<QueuedTransfer>& transfer)
{
    m_listRunning.append(transfer);
    const bool bUpload = transfer->item.bUpload;
    if (!transfer->bSilent) {
        qDebug() << (bUpload ? "upload file:" : "下载文件到:") << transfer->strUrl << transfer->item.strLocalPath;
        Q_EMIT SignalAppendLog((bUpload ? tr("开始上传文件：%1") : tr("开始下载文件：%1")).arg(transfer->DisplayName()),
                               LogColors::Plain);
        Report(*transfer, TanslateInfo::StateRunning, 0, bUpload ? QFileInfo(transfer->item.strLocalPath).size() : 0);
    }
    transfer->job->Start();
}

void MachineFileService::OnTransferEnded(const std::shared_ptr<QueuedTransfer>& transfer, bool ok,
                                         const QString& message)
{
    m_listRunning.removeAll(transfer);
    const TransferItem& item = transfer->item;
    const bool bUpload = item.bUpload;
    ApplyLearnedLoginLimit();
    if (transfer->bSilent) {
        transfer->hold.reset();
        StartWaiting();
        if (!IsBusy())
            AfterLastTransfer();
        return;
    }
    CDebugLog::AddLog(bUpload ? QStringLiteral("UploadToFtp result:%1, operation:%2, url:%3")
                                    .arg(ok)
                                    .arg(item.operation)
                                    .arg(transfer->strUrl)
                              : QStringLiteral("DownloadToLocal result:%1, url:%2").arg(ok).arg(transfer->strUrl));
    // The machine panel shows the connected machine: an upload to another one has nothing to point at there.
    if (ok && bUpload && !m_bNavigationWaiting && transfer->endpoint == m_endpoint)
        Q_EMIT SignalUploaded(item.strMachinePath);
    const qint64 size = QFileInfo(item.strLocalPath).size();
    // A task that completed before the stop reached it has succeeded all the same.
    const bool bCancelled = !ok && transfer->bCancelled;
    Report(*transfer,
           ok ? TanslateInfo::StateSucceeded : (bCancelled ? TanslateInfo::StateCancelled : TanslateInfo::StateFailed),
           ok ? size : 0, size);
    const QString name = transfer->DisplayName();
    if (bCancelled)
        Q_EMIT SignalAppendLog((bUpload ? tr("已取消上传文件：%1") : tr("已取消下载文件：%1")).arg(name),
                               LogColors::Warning);
    else if (bUpload)
        Q_EMIT SignalAppendLog((ok ? tr("上传文件完成：%1") : tr("上传文件失败：%1")).arg(name),
                               ok ? LogColors::Plain : LogColors::Failure);
    else
        Q_EMIT SignalAppendLog((ok ? tr("下载文件完成：%1") : tr("下载文件失败：%1")).arg(name),
                               ok ? LogColors::Plain : LogColors::Failure);
    if (bUpload) {
        CDebugLog::AddLog(QStringLiteral("FTP上传文件result：%1，operation %2").arg(ok).arg(item.operation));
        if (item.operation == OperationCut)
            FinishCut(*transfer, ok);
    } else if (ok) {
        Q_EMIT SignalDownloaded(item.strLocalPath);
    }
    // The reason, so that the operator can tell a full disk from a lost machine.
    if (!ok && !bCancelled && !message.isEmpty()) {
        CDebugLog::AddLog(message);
        Q_EMIT SignalAppendLog(message, LogColors::Failure);
    }
    if (ok)
        m_hashFailed.remove(transfer->strKey);
    else
        m_hashFailed.insert(transfer->strKey, item);
    transfer->hold.reset();
    StartWaiting();
    if (!IsBusy())
        AfterLastTransfer();
}

void MachineFileService::ApplyLearnedLoginLimit()
{
    // A machine that turned logins away takes fewer at once: the rest wait here, not in task threads.
    const int accepted = m_endpoint.LoginLimit();
    if (accepted <= 0 || accepted >= m_iMaxTransfers)
        return;
    SetMaxTransfers(accepted);
    const QString text = tr("机床最多同时接受%1个FTP连接，其余传输将排队进行").arg(accepted);
    CDebugLog::AddLog(text);
    Q_EMIT SignalAppendLog(text, LogColors::Warning);
}

void MachineFileService::FinishCut(const QueuedTransfer& transfer, bool ok)
{
    if (ok) {
        qDebug() << "剪切操作成功，删除本地源文件:" << transfer.item.strLocalPath;
        QFile::remove(transfer.item.strLocalPath);
        Q_EMIT SignalCutSucceeded(transfer.item.strLocalPath);
        qDebug() << "已清除剪贴板数据";
    } else {
        qDebug() << "剪切操作失败，恢复本地剪切板数据";
    }
}

void MachineFileService::AfterLastTransfer()
{
    CDebugLog::AddLog(QStringLiteral("当前FTP无文件传输，允许访问机器文件！"));
    if (m_bNavigationWaiting) {
        m_bNavigationWaiting = false;
        Q_EMIT SignalMachineNavigation(m_strNavigationFolder, m_strNavigationEntry);
        m_strNavigationFolder.clear();
        m_strNavigationEntry.clear();
    }
}

void MachineFileService::Report(const QueuedTransfer& transfer, int state, qint64 done, qint64 total)
{
    TanslateInfo info;
    info.totalSize = double(total);
    info.doneSize = double(done);
    info.fileName = transfer.DisplayName();
    info.direction = !transfer.item.bUpload;
    info.state = state;
    info.machinePath = transfer.item.strMachinePath;
    info.localPath = transfer.item.strLocalPath;
    Q_EMIT SignalTransferUpdated(info, transfer.strKey);
}

void MachineFileService::RemoveLeftovers(const MachineEndpoint& endpoint, const QString& folder,
                                         const QList<FtpFileInfo>& leftovers)
{
    // A younger one may belong to an upload of ours that is being retried or is still closing.
    constexpr qint64 MinAgeSecs = 10 * 60;
    if (!CheckConnected(endpoint).isEmpty() || IsBusy())
        return;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    QStringList dead;
    QStringList names;
    for (const FtpFileInfo& entry : leftovers) {
        const QString path = QDir::cleanPath(folder + QLatin1Char('/') + entry.name);
        if (entry.isDir() || !entry.time.isValid() || entry.time.secsTo(now) < MinAgeSecs ||
            m_setLeftoversGoing.contains(path))
            continue;
        dead.append(path);
        names.append(entry.name);
    }
    if (dead.isEmpty())
        return;
    for (const QString& path : dead)
        m_setLeftoversGoing.insert(path);
    MachineJob* job = StartChange(
        endpoint, [this, endpoint, dead]() { return m_pFactory->DeleteItems(endpoint, dead, {}); },
        QStringLiteral("DeleteLeftovers result:%1, url:%2"), QString(), QString(), false);
    connect(job, &MachineJob::SignalResult, this, [this, dead, names](MachineJob* ended) {
        for (const QString& path : dead)
            m_setLeftoversGoing.remove(path);
        if (ended->GetResult() != MachineJob::Result::Succeeded)
            return;
        const QString text = tr("已删除中断的上传留下的临时文件：%1").arg(names.join(QStringLiteral("、")));
        CDebugLog::AddLog(text);
        Q_EMIT SignalAppendLog(text, LogColors::Plain);
    });
}

void MachineFileService::NavigateMachinePanel(const QString& folder, const QString& entry)
{
    if (!IsBusy()) {
        Q_EMIT SignalMachineNavigation(folder, entry);
        return;
    }
    m_bNavigationWaiting = true;
    m_strNavigationFolder = folder;
    m_strNavigationEntry = entry;
}

MachineJob* MachineFileService::Retry(const QString& strKey)
{
    const auto it = m_hashFailed.constFind(strKey);
    if (it == m_hashFailed.cend())
        return MachineJob::MakeRefused(tr("没有可重试的传输"), this);
    const TransferItem item = *it;
    m_hashFailed.erase(it);
    return Transfer(m_endpoint, {item}, RequestOrigin::Retry);
}

MachineJob* MachineFileService::Fetch(const MachineEndpoint& endpoint, const QString& machinePath,
                                      const QString& localPath)
{
    const QString unconnected = CheckConnected(endpoint);
    if (!unconnected.isEmpty())
        return MachineJob::MakeRefused(unconnected, this);
    auto* batch = new CompositeJob(this);
    Enqueue(endpoint, {TransferItem{false, localPath, machinePath, OperationCopy}}, batch, true);
    return batch;
}

bool MachineFileService::Cancel(const QString& strKey)
{
    for (const QList<std::shared_ptr<QueuedTransfer>>* list : {&m_listRunning, &m_listWaiting}) {
        for (const std::shared_ptr<QueuedTransfer>& transfer : *list) {
            if (transfer->bSilent || transfer->strKey != strKey || !transfer->job)
                continue;
            // A copy: cancelling a waiting job takes it out of the list being walked, at once.
            const std::shared_ptr<QueuedTransfer> keep = transfer;
            keep->bCancelled = true;
            keep->job->Cancel();
            return true;
        }
    }
    return false;
}

void MachineFileService::StopAll()
{
    const QList<std::shared_ptr<QueuedTransfer>> waiting = m_listWaiting;
    for (const std::shared_ptr<QueuedTransfer>& transfer : waiting)
        transfer->job->Cancel();
    const QList<std::shared_ptr<QueuedTransfer>> running = m_listRunning;
    for (const std::shared_ptr<QueuedTransfer>& transfer : running)
        transfer->job->Cancel();
}

MachineJob* MachineFileService::StartChange(const MachineEndpoint& endpoint, std::function<MachineTask*()> maker,
                                            const QString& hostLogFormat, const QString& progressTitle,
                                            const QString& progressText, bool bAnnounce)
{
    if (!progressTitle.isEmpty())
        Q_EMIT SignalProgressStarted(progressTitle, progressText);
    auto* job = new TaskJob(&m_tasks, std::move(maker), this);
    const QString url = MachineTaskFactory::Url(endpoint, QStringLiteral("/"));
    connect(
        job, &TaskJob::SignalTaskEnded, this,
        [this, hostLogFormat, url, bAnnounce, bProgress = !progressTitle.isEmpty()](bool ok, const QString& message) {
            CDebugLog::AddLog(hostLogFormat.arg(ok).arg(url));
            if (!ok && !message.isEmpty()) {
                CDebugLog::AddLog(message);
                Q_EMIT SignalAppendLog(message, LogColors::Failure);
            }
            if (bProgress)
                Q_EMIT SignalProgressFinished();
            if (bAnnounce)
                Q_EMIT SignalMachineChanged();
        });
    job->Start();
    return job;
}

MachineJob* MachineFileService::Delete(const MachineEndpoint& endpoint, const QStringList& files,
                                       const QStringList& folders, RequestOrigin origin)
{
    const QString unconnected = CheckConnected(endpoint);
    if (!unconnected.isEmpty())
        return Refuse(unconnected, true);
    for (const bool bFolder : {false, true}) {
        for (const QString& path : bFolder ? folders : files) {
            const QString reason = CheckChange(path, bFolder, origin);
            if (!reason.isEmpty())
                return Refuse(reason, true);
        }
    }
    CDebugLog::AddLog(
        QStringLiteral("SlotDeleteItemsTriggered fileCount:%1, folderCount:%2").arg(files.size()).arg(folders.size()));
    QList<HistoryLoss> losses;
    for (const bool bFolder : {false, true}) {
        for (const QString& path : bFolder ? folders : files)
            losses.append({path, HistoryCause::Deleted, QString(), bFolder});
    }
    if (files.size() + folders.size() == 1) {
        const bool bFolder = files.isEmpty();
        const QString path = bFolder ? folders.first() : files.first();
        qDebug() << (bFolder ? "删除文件夹:" : "删除文件:") << path;
        return KeepThenChange(endpoint, losses, [=]() {
            return StartChange(
                endpoint,
                [this, endpoint, path, bFolder]() {
                    return bFolder ? m_pFactory->DeleteFolder(endpoint, path) : m_pFactory->DeleteFile(endpoint, path);
                },
                bFolder ? QStringLiteral("DeleteFTPForder result:%1, url:%2")
                        : QStringLiteral("DeleteFTPFile result:%1, url:%2"),
                bFolder ? tr("删除文件夹") : tr("删除文件"),
                bFolder ? tr("正在删除文件夹，请稍候") : tr("正在删除文件，请稍候"), true);
        });
    }
    return KeepThenChange(endpoint, losses, [=]() {
        return StartChange(
            endpoint, [this, endpoint, files, folders]() { return m_pFactory->DeleteItems(endpoint, files, folders); },
            QStringLiteral("DeleteFtpItems result:%1, url:%2"), tr("删除"), tr("正在删除，请稍候"), true);
    });
}

MachineJob* MachineFileService::Rename(const MachineEndpoint& endpoint, const QString& oldPath, const QString& newPath,
                                       RequestOrigin origin)
{
    const QString unconnected = CheckConnected(endpoint);
    if (!unconnected.isEmpty())
        return Refuse(unconnected, true);
    qDebug() << "重命名:" << oldPath << " path " << newPath;
    QString reason = CheckChange(oldPath, !IsAllowedType(oldPath), origin);
    if (reason.isEmpty())
        reason = CheckChange(newPath, false, origin);
    if (reason.isEmpty())
        reason = endpoint.nameRules.Violation(MachinePath::Name(newPath));
    if (!reason.isEmpty())
        return Refuse(reason, true);
    // A rename onto an existing program replaces it: that one is kept first.
    return KeepThenChange(endpoint, {{newPath, HistoryCause::RenamedOver, MachinePath::Name(oldPath)}}, [=]() {
        return StartChange(
            endpoint, [this, endpoint, oldPath, newPath]() { return m_pFactory->Rename(endpoint, oldPath, newPath); },
            QStringLiteral("RenameFtpFile result:%1, url:%2"), QString(), QString(), true);
    });
}

MachineJob* MachineFileService::MakeDir(const MachineEndpoint& endpoint, const QString& path, RequestOrigin origin)
{
    QString reason = CheckConnected(endpoint);
    if (reason.isEmpty())
        reason = endpoint.nameRules.Violation(MachinePath::Name(path));
    if (!reason.isEmpty())
        return Refuse(reason, true);
    qDebug() << "create new forder:"
             << " path " << path;
    return StartChange(
        endpoint, [this, endpoint, path]() { return m_pFactory->MakeDir(endpoint, path); },
        QStringLiteral("MakeFtpDirection result:%1, url:%2"), QString(), QString(),
        // A synchronisation lists its folders itself once it ended.
        origin != RequestOrigin::Sync);
}

MachineJob* MachineFileService::UploadAutoCamFiles(const QVariant& fileData, const QString& filePath,
                                                   const QString& modelName)
{
    const QFileInfo source(filePath);
    const QString base = modelName.isEmpty() ? source.completeBaseName() : modelName;
    const QString suffix = source.suffix().isEmpty() ? QStringLiteral("nc") : source.suffix();
    const QString name =
        QStringLiteral("%1_%2").arg(base, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddHHmmss"))) +
        QLatin1Char('.') + suffix;
    const QString localPath = QDir(m_strAutoCamFolder).filePath(name);
    if (QFileInfo::exists(localPath))
        qDebug() << "文件已存在:" << localPath;
    if (!QDir().mkpath(m_strAutoCamFolder)) {
        qDebug() << "创建目录失败:" << m_strAutoCamFolder;
        return Refuse(tr("无法创建文件夹：%1").arg(m_strAutoCamFolder), false);
    }
    QFile file(localPath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        qDebug() << "文件创建失败:" << localPath;
        qDebug() << "错误信息:" << file.errorString();
        return Refuse(tr("无法写入文件：%1").arg(localPath), false);
    }
    file.write(fileData.toStringList().join(QLatin1Char('\n')).toUtf8());
    file.close();
    qDebug() << "文件创建成功:" << localPath;
    return Upload(m_endpoint, localPath, AutoCamMachineFolder + name, OperationCopy, RequestOrigin::AutoCam);
}
