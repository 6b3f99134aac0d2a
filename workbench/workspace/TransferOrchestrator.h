#pragma once

#include "CommonDefine.h"
#include "transfer/TanslateInfo.h"

#include <QColor>
#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QVariant>

class FtpTaskThread;

// Turns the file requests of the file page into the host's FTP tasks and tracks them:
// one task per remote path at a time, at most a few transfers per machine (the rest
// wait in order), the transfer-list rows and log lines of each, cut semantics, retry of
// a failed row, and protection of the program the machine is running. No widgets: the
// workspace shows the boxes and the progress widget that the signals ask for.
class TransferOrchestrator final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(TransferOrchestrator)

public:
    static constexpr int DefaultMaxTransfers = 5;

    explicit TransferOrchestrator(QObject* parent = nullptr);
    // Stops every task it started and waits for them, within a bound.
    ~TransferOrchestrator() override;

    // The connected machine; empty when none is.
    void SetMachineIp(const QString& ip) { m_strIp = ip; }
    QString MachineIp() const { return m_strIp; }
    void SetMaxTransfers(int count) { m_iMaxTransfers = qMax(1, count); }
    int MaxTransfers() const { return m_iMaxTransfers; }
    // The program the machine runs now (a name or a machine path), empty when it runs none.
    void SetRunningProgram(const QString& program) { m_strRunningProgram = program; }
    QString RunningProgram() const { return m_strRunningProgram; }

    bool IsBusy() const { return !m_mapRunningTask.isEmpty() || !m_listWaiting.isEmpty(); }
    QStringList RunningUrls() const { return m_mapRunningTask.keys(); }
    int WaitingCount() const { return int(m_listWaiting.size()); }
    // The URL is running or waiting for a free transfer slot.
    bool IsQueued(const QString& url) const;
    // Whether a change to this machine path would touch the program the machine runs.
    bool HitsRunningProgram(const QString& machinePath, bool bFolder) const;

    void Upload(const QString& strLocalPath, const QString& strMachinePath, OperationType operation);
    void Download(const QString& strLocalPath, const QString& strMachinePath);
    void DeletePath(const QString& path, int type);
    void DeleteItems(const QStringList& filePathList, const QStringList& foderPathList);
    void Rename(const QString& strOldPath, const QString& strNewPath);
    void MakeDir(const QString& path);
    void UploadAutoCamFiles(const QVariant& fileData, const QString& filePath, const QString& modelName);
    // Runs the failed transfer of a row again, through the checks of a new request.
    void Retry(const QString& strKey);
    // The machine went away: every transfer stops and its row ends failed, ready for a retry.
    void StopAll();
    // A machine-panel navigation: now when idle, else once the last transfer ended.
    void NavigateMachinePanel(const QString& folder, const QString& entry);

    // Where uploads from the account side are written before they are sent.
    void SetAutoCamFolder(const QString& folder) { m_strAutoCamFolder = folder; }

Q_SIGNALS:
    void SignalAppendLog(QString text, QColor color);
    void SignalTransferUpdated(const TanslateInfo& info, const QString& strKey);
    // A refusal the user must read (title "提示").
    void SignalNotice(QString text);
    // True when the first transfer starts, false when the last one ended.
    void SignalBusyChanged(bool busy);
    void SignalUploaded(QString machinePath);
    void SignalDownloaded(QString localPath);
    void SignalMachineNavigation(QString folder, QString entry);
    // The machine's files changed (delete, rename, new folder): list them again.
    void SignalMachineChanged();
    void SignalProgressStarted(QString title, QString text);
    void SignalProgressFinished();
    // A cut's upload succeeded and its local source is gone; after a failure the source and
    // the clipboard are left as they were, so that the user can paste again.
    void SignalCutSucceeded(QString localPath);
    // Every upload or download that ended, after its row and log lines.
    void SignalTransferFinished(QString url, bool ok, QString message);

private:
    enum Direction
    {
        DirectionUpload,
        DirectionDownload,
    };
    struct Request
    {
        Direction direction = DirectionUpload;
        QString strLocalPath;
        QString strMachinePath;
        OperationType operation = OperationCopy;
        QString strUrl;
        QString strKey;
    };

    bool RefuseUnconnected();
    bool RefuseBadName(const QString& path);
    bool RefuseRunningProgram(const QString& machinePath, bool bFolder);
    void Enqueue(const Request& request);
    void StartWaiting();
    void Start(const Request& request);
    void OnTransferFinished(const QString& strKey, bool bResult, const QString& message);
    void FinishCut(const Request& request, bool bResult);
    void AfterLastTransfer();
    void Report(const Request& request, int state, qint64 done, qint64 total);
    static QString DisplayName(const Request& request);
    void StartTask(FtpTaskThread* task, const QString& hostLogFormat, bool bProgressWidget);
    // The task deletes itself when it ends; until then the destructor can stop and wait for it.
    void Track(FtpTaskThread* task);
    QString Url(const QString& path) const;
    QString EncodedUrl(const QString& path) const;

    QString m_strIp;
    int m_iMaxTransfers = DefaultMaxTransfers;
    QString m_strRunningProgram;
    QString m_strAutoCamFolder;
    QMap<QString, QPointer<FtpTaskThread>> m_mapRunningTask;
    QList<Request> m_listWaiting;
    // Every transfer by row key, kept after a failure so that the row can be retried.
    QHash<QString, Request> m_hashRequests;
    // Every task started, whatever its kind, for the destructor.
    QList<QPointer<FtpTaskThread>> m_listTasks;
    bool m_bNavigationWaiting = false;
    QString m_strNavigationFolder;
    QString m_strNavigationEntry;
};
