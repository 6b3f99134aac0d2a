#pragma once

#include "FtpSettings.h"
#include "KorvBaseExport.h"

#include <QString>
#include <QThread>
#include <atomic>

class FtpSession;

// One FTP operation on its own thread: run() opens one libcurl session, logs in and calls
// Execute(); the outcome is always reported once through SignalTaskFinished, within the
// time-outs of the host settings. Settings are read when the task is created.
//
// Constructor strings of the subclasses: a plain URL "ftp://ip:21/path" and its fully
// encoded form (either may be empty; the encoded one is preferred). Only the host and port
// are taken from them, the port mapped through the "Ftp/PortMapping" setting; the remote
// path comes from the task's path argument where it has one, else from the URL.
class KORVBASE_EXPORT FtpTaskThread : public QThread
{
    Q_OBJECT

public:
    // Values of SetTransControl.
    enum TransControl
    {
        TransControlRun = 0,
        TransControlStop = 1, // abort as soon as possible; the task finishes with false
    };

    ~FtpTaskThread() override;

    // May be called from any thread while the task runs.
    void SetTransControl(const int& control);
    int GetTransControl() const { return m_iTransControl.load(); }
    // The path argument the task was created with (for transfers: the local file).
    QString GetCurFilePath() const { return m_strCurFilePath; }
    QString GetUrl() const { return m_strUrl; }

signals:
    // done/total in bytes; the third argument is the task's plain URL.
    void SignalTaskProgress(qint64 done, qint64 total, const QString& url);
    void SignalTaskFinished(bool ok, const QString& message);

protected:
    FtpTaskThread(const QString& url, const QString& encodedUrl, const QString& curFilePath, QObject* parent);

    void run() final;
    // Runs after a successful log-in; *message explains a failure.
    virtual bool Execute(FtpSession& session, QString* message) = 0;
    // Emits SignalTaskFinished; subclasses with extra result signals add theirs first.
    virtual void Finish(bool ok, const QString& message);

    bool IsStopRequested() const { return m_iTransControl.load() == TransControlStop; }
    // The remote path named by the URL, decoded.
    QString RemotePathFromUrl() const;
    // Checks the name a step is about to create against the machine's name rules; false with the
    // rule in *message. With `folder`, the folder's entries are returned where the rules make
    // further names in it depend on them (empty otherwise).
    bool CheckNewName(FtpSession& session, const QString& remotePath, QString* message,
                      QList<FtpFileInfo>* folder = nullptr) const;
    const FtpSettings& Settings() const { return m_settings; }
    // Emits SignalTaskProgress for the first bytes, then at most once a second, and always when bFinal.
    void ReportProgress(qint64 done, qint64 total, bool bFinal = false);

private:
    QString m_strUrl;
    QString m_strEncodedUrl;
    QString m_strCurFilePath;
    FtpSettings m_settings;
    std::atomic<int> m_iTransControl{TransControlRun};
    qint64 m_iLastProgressMs = -1;
};
