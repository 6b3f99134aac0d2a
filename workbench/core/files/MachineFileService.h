#pragma once

#include "FileRequest.h"
#include "MachineEndpoint.h"
#include "TanslateInfo.h"
#include "TaskOwner.h"
#include "TransferActivity.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QVariant>
#include <memory>

class CompositeJob;
class MachineJob;
class ProgramHistory;
struct HistoryLoss;
class MachineTaskFactory;
class TaskJob;

// The one way a machine file request is made, whatever view or act it comes from. Every request
// names the machine's endpoint and goes through the checks of its kind, in one order:
//   upload:          connected, name rules, file type, busy path, running program, overwrite question
//   download:        connected, file type and a safe local name, busy path, overwrite question
//   delete, rename:  connected, busy path, running program (the status page: no transfer running)
//   new folder:      connected, name rules
// then the machine's queue (a few transfers at once, the rest wait in order). Each request
// returns a job that reports progress and one result and can be cancelled; a refused request's
// job ends at once with the reason, which is also logged. Rows of the transfer list and log lines
// of transfers are written here; the running transfers are counted by one TransferActivity.
class MachineFileService final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineFileService)

public:
    static constexpr int DefaultMaxTransfers = 5;
    // Downloads from one folder in a batch from which their sizes are taken from one listing.
    static constexpr int SizesByListingFrom = 4;

    explicit MachineFileService(QObject* parent = nullptr);
    ~MachineFileService() override;

    void SetTaskFactory(std::shared_ptr<MachineTaskFactory> factory) { m_pFactory = std::move(factory); }
    const std::shared_ptr<MachineTaskFactory>& TaskFactory() const { return m_pFactory; }
    // Where programs are kept before they are replaced, renamed over or deleted; none when unset.
    // It must outlive the funnel.
    void SetHistory(ProgramHistory* history) { m_pHistory = history; }
    // The connected machine; an empty endpoint when none is.
    void SetEndpoint(const MachineEndpoint& endpoint);
    const MachineEndpoint& Endpoint() const { return m_endpoint; }
    void SetMaxTransfers(int count) { m_iMaxTransfers = qMax(1, count); }
    int MaxTransfers() const { return m_iMaxTransfers; }
    // Transfers to the machine at `ip` under way now (waiting ones not counted).
    int RunningCount(const QString& ip) const;
    // While a returned hold lives, no waiting transfer to the machine at `ip` starts: a
    // synchronisation that saw a failure asks whether the machine still answers before more go.
    std::shared_ptr<void> HoldWaiting(const QString& ip);
    // The program the machine runs now (a name or a machine path), empty when it runs none.
    void SetRunningProgram(const QString& program) { m_strRunningProgram = program; }
    // The program another machine runs, by its address (the shop's watched machines).
    void SetRunningProgramSource(std::function<QString(const QString& ip)> source)
    {
        m_fnRunningProgramOf = std::move(source);
    }
    QString RunningProgram() const { return m_strRunningProgram; }
    void SetOverwriteAsker(OverwriteAsker asker) { m_fnAskOverwrite = std::move(asker); }
    // Where uploads from the CAM side are written before they are sent.
    void SetAutoCamFolder(const QString& folder) { m_strAutoCamFolder = folder; }

    TransferActivity* Activity() const { return m_pActivity; }
    // A transfer of the connected machine runs or waits.
    bool IsBusy() const { return m_pActivity->IsBusy(); }
    int RunningCount() const { return int(m_listRunning.size()); }
    int WaitingCount() const { return int(m_listWaiting.size()); }
    // Whether a change to this machine path would touch the program the machine runs.
    bool HitsRunningProgram(const QString& machinePath, bool bFolder) const;

    // Which uploads of `items` would replace a file on the machine, for a caller that asks one
    // overwrite question over several machines; nothing is told once `owner` is gone.
    void FindExisting(const MachineEndpoint& endpoint, const QList<TransferItem>& items, QObject* owner,
                      std::function<void(bool, QList<OverwriteEntry>)> done);
    // Machine folders' entries, by folder.
    using FolderListings = QHash<QString, QList<FtpFileInfo>>;
    // The first file (not folder) of `entries` called `name`, as the machine compares names; null
    // when there is none.
    static const FtpFileInfo* FileNamed(const QList<FtpFileInfo>& entries, const QString& name, bool bCaseInsensitive);
    // Lists each folder once through the funnel's own tasks. Requests for one folder made in the
    // same turn of the event loop share one listing (a synchronisation hands its files over one at
    // a time). `done` gets the entries by folder; one that could not be listed is missing, and ok
    // is false.
    void ListFolders(const MachineEndpoint& endpoint, const QStringList& folders,
                     std::function<void(bool ok, FolderListings listings)> done);
    // Uploads and downloads as one batch with one overwrite question. bOverwriteDecided: the
    // caller has asked the user already (a synchronisation's conflict question).
    MachineJob* Transfer(const MachineEndpoint& endpoint, const QList<TransferItem>& items, RequestOrigin origin,
                         bool bOverwriteDecided = false);
    MachineJob* Upload(const MachineEndpoint& endpoint, const QString& localPath, const QString& machinePath,
                       OperationType operation, RequestOrigin origin);
    MachineJob* Download(const MachineEndpoint& endpoint, const QString& localPath, const QString& machinePath,
                         RequestOrigin origin);
    // A private copy of a machine file (content comparison): no row and no log line, but it
    // waits for a free transfer slot and counts as a running transfer like any other.
    MachineJob* Fetch(const MachineEndpoint& endpoint, const QString& machinePath, const QString& localPath);
    MachineJob* Delete(const MachineEndpoint& endpoint, const QStringList& files, const QStringList& folders,
                       RequestOrigin origin);
    MachineJob* Rename(const MachineEndpoint& endpoint, const QString& oldPath, const QString& newPath,
                       RequestOrigin origin);
    MachineJob* MakeDir(const MachineEndpoint& endpoint, const QString& path, RequestOrigin origin);
    // Writes a program sent by the CAM side to a file and uploads it.
    MachineJob* UploadAutoCamFiles(const QVariant& fileData, const QString& filePath, const QString& modelName);
    // Runs the failed transfer of a row again, through the checks of a new request.
    MachineJob* Retry(const QString& strKey);
    // Stops the running or waiting transfer of a row; its row ends cancelled, ready for a retry.
    // A stopped upload leaves no temporary file behind and a cut keeps its source. False when
    // no transfer of that row runs or waits.
    bool Cancel(const QString& strKey);
    // The machine went away: every transfer stops and its row ends failed, ready for a retry.
    void StopAll();
    // Deletes temporary files of this installation's uploads that are surely dead: old enough,
    // and no transfer runs that could still be writing one. Quiet but for one log line.
    void RemoveLeftovers(const MachineEndpoint& endpoint, const QString& folder, const QList<FtpFileInfo>& leftovers);
    // A machine-panel navigation: now when idle, else once the last transfer ended.
    void NavigateMachinePanel(const QString& folder, const QString& entry);

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    void SignalTransferUpdated(const TanslateInfo& info, const QString& strKey);
    // A refusal the user must read (title "提示").
    void SignalNotice(QString text);
    void SignalUploaded(QString machinePath);
    void SignalDownloaded(QString localPath);
    void SignalMachineNavigation(QString folder, QString entry);
    // The machine's files changed (delete, rename, new folder): every view lists them again.
    void SignalMachineChanged();
    // Another machine is connected, or none: views made for the old one close.
    void SignalEndpointChanged();
    void SignalProgressStarted(QString title, QString text);
    void SignalProgressFinished();
    // A cut's upload succeeded and its local source is gone; after a failure the source and
    // the clipboard are left as they were, so that the user can paste again.
    void SignalCutSucceeded(QString localPath);

private:
    struct QueuedTransfer;

    MachineJob* Refuse(const QString& reason, bool bNotice);
    QString CheckConnected(const MachineEndpoint& endpoint) const;
    QString CheckTransfer(const MachineEndpoint& endpoint, const TransferItem& item) const;
    QString CheckChange(const QString& path, bool bFolder, RequestOrigin origin) const;
    QString RunningProgramOf(const MachineEndpoint& endpoint) const;
    bool IsPathBusy(const MachineEndpoint& endpoint, const QString& path, bool bFolder) const;
    void AskOverwrite(const MachineEndpoint& endpoint, const QList<TransferItem>& items, CompositeJob* batch);
    // The entries of an overwrite question for `items`, and the listings they were read from.
    void CollectMachineTargets(const MachineEndpoint& endpoint, const QList<TransferItem>& items,
                               std::function<void(bool, QList<OverwriteEntry>, FolderListings)> done);
    // The one listing of `folder` for the requests gathered under `key`.
    void ListFolder(const MachineEndpoint& endpoint, const QString& folder, const QString& key);
    // `items` with each download's size from the listing of its folder, where there is one.
    static QList<TransferItem> WithListedSizes(QList<TransferItem> items, const FolderListings& listings,
                                               bool bCaseInsensitive);
    void Enqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items, CompositeJob* batch,
                 bool bSilent = false);
    // The history step: uploads whose machine copy could not be kept are refused, the rest queued.
    void KeepThenEnqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items, CompositeJob* batch);
    // Downloads: their sizes from one listing per folder where many come from it, then Enqueue.
    void ListSizesThenEnqueue(const MachineEndpoint& endpoint, const QList<TransferItem>& items, CompositeJob* batch);
    MachineJob* KeepThenChange(const MachineEndpoint& endpoint, const QList<HistoryLoss>& losses,
                               std::function<MachineJob*()> change);
    void StartWaiting();
    void StartTransfer(const std::shared_ptr<QueuedTransfer>& transfer);
    void OnTransferEnded(const std::shared_ptr<QueuedTransfer>& transfer, bool ok, const QString& message);
    void FinishCut(const QueuedTransfer& transfer, bool ok);
    void AfterLastTransfer();
    void Report(const QueuedTransfer& transfer, int state, qint64 done, qint64 total);
    void ApplyLearnedLoginLimit();
    MachineJob* StartChange(const MachineEndpoint& endpoint, std::function<MachineTask*()> maker,
                            const QString& hostLogFormat, const QString& progressTitle, const QString& progressText,
                            bool bAnnounce);

    std::shared_ptr<MachineTaskFactory> m_pFactory;
    MachineEndpoint m_endpoint;
    TransferActivity* m_pActivity;
    int m_iMaxTransfers = DefaultMaxTransfers;
    QString m_strRunningProgram;
    QString m_strAutoCamFolder;
    OverwriteAsker m_fnAskOverwrite;
    std::function<QString(const QString&)> m_fnRunningProgramOf;
    ProgramHistory* m_pHistory = nullptr;
    QList<std::shared_ptr<QueuedTransfer>> m_listWaiting;
    QList<std::shared_ptr<QueuedTransfer>> m_listRunning;
    using FolderListener = std::function<void(bool, const QList<FtpFileInfo>&)>;
    // Requests waiting for the next listing of a folder, by machine address and folder.
    QHash<QString, QList<FolderListener>> m_hashFolderListeners;
    // Holds on waiting transfers, by machine address.
    QHash<QString, int> m_hashWaitingHolds;
    // Every failed transfer by row key, so that the row can be retried.
    QHash<QString, TransferItem> m_hashFailed;
    // Machine URLs of cancelled uploads whose temporary file is being looked for.
    bool m_bNavigationWaiting = false;
    QString m_strNavigationFolder;
    QString m_strNavigationEntry;
    TaskOwner m_tasks;
    QSet<QString> m_setLeftoversGoing; // machine paths a clean-up deletes now
};
