#pragma once

#include "FtpSettings.h"
#include "KorvBaseExport.h"
#include "MachineRecords.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

class QIODevice;

// One FTP control connection on one libcurl easy handle, reused by every step of a task.
// Remote paths are absolute server paths ("/dir/name"); they are percent-encoded here.
// Every call is blocking and bounded by the time-outs of FtpSettings; a stop request
// (IsStopRequested) aborts the step in progress at the next libcurl callback.
class KORVBASE_EXPORT FtpSession
{
public:
    using StopCheck = std::function<bool()>;
    // Returns false to abort the transfer.
    using ProgressFn = std::function<bool(qint64 done, qint64 total)>;

    FtpSession(const QString& host, int port, const FtpSettings& settings, StopCheck stopCheck = {});
    ~FtpSession();
    Q_DISABLE_COPY_MOVE(FtpSession)

    // Connects, logs in and asks FEAT once per connection (a cached login keeps what its FEAT told):
    // the TCP connection within the connect time-out, each reply (the greeting too) within the
    // response time-out. Logging in to the folder of the coming step spares the walk back to "/"
    // and into it again; a folder that does not exist (yet) falls back to "/".
    bool Connect(const QString& folder = QStringLiteral("/"));
    bool ListDirectory(const QString& dirPath, QList<FtpFileInfo>* entries);
    // Raw commands ("DELE /a", "RNFR /a" + "RNTO /b") sent in order; the first failing one ends the step
    // and names it. When the connection breaks before a DELE or RNTO is answered, the machine's
    // folder tells whether it ran; one that did not is sent again.
    bool Command(const QStringList& commands);
    // afterCommands run on the same connection once the data arrived whole (a "*SIZE" of the new
    // file costs no extra step then).
    bool Upload(QIODevice* source, qint64 size, const QString& remotePath, const ProgressFn& progress,
                const QStringList& afterCommands = {});
    // The size named by a "213" reply of the last step (a "*SIZE" among its commands).
    bool SizeReplied(qint64* size) const;
    // With listedSize (from a listing of the folder) the machine is not asked SIZE first; a count
    // that differs is settled by asking it then.
    bool Download(const QString& remotePath, QIODevice* sink, const ProgressFn& progress, qint64 listedSize = -1);
    // Deletes files first, then folders bottom-up.
    bool RemoveTree(const QString& dirPath);

    // The size of a remote file by SIZE, MLST or a LIST of that one name (which finds the hidden
    // dot-files that folder listings of some controllers leave out), else by its folder's listing.
    bool RemoteSize(const QString& filePath, qint64* size);

    bool OffersMlsd() const { return m_bMlsd; }
    // The last Connect() failed because the machine had no free login: a 421 greeting, a 421 after
    // USER/PASS, or a 530 that names a limit or follows a success of the same credentials.
    bool LoginRefusedAsBusy() const { return m_bLoginRefusedAsBusy; }
    bool WasStopped() const { return m_bStopped; }
    // Later steps run to their end within the time-outs even after a stop: the clean-up of a
    // stopped step (its temporary file) must not be stopped with it.
    void FinishDespiteStop();
    // Human-readable reason of the last failure, including the server's reply when there was one.
    QString ErrorMessage() const { return m_strError; }

    // A libcurl multi handle lent to one session at a time.
    struct PooledMulti
    {
        void* handle = nullptr;
        int tasksServed = 0;
    };

private:
    QByteArray UrlFor(const QString& remotePath) const;
    // Names on the wire in the machine's encoding (FtpSettings::nameEncoding).
    QByteArray ToWire(const QString& text) const;
    QList<QByteArray> WireCommands(const QStringList& commands) const;
    bool IsUtf8() const;
    static bool LooksLikeUtf8(const QByteArray& bytes);
    // FEAT and, for UTF-8 names, OPTS UTF8 ON: what every new login is asked first.
    QList<QByteArray> GreetingCommands() const;
    // Runs the greeting on the prepared log-in step and remembers the machine's features.
    bool Greet();
    // The features named by the FEAT reply of the last step, for this session and the later ones.
    void LearnFeatures();
    // The quote commands of the step from a list the session owns (Reset clears it).
    void SetStepQuote(const QList<QByteArray>& commands);
    // Before a step's first command: greets a new login, turns a stale cached one away.
    static int OnPrerequest(void* session, char* remoteIp, char* localIp, int remotePort, int localPort);
    QString MachineKey() const;
    // Later command steps run in the folder of this URL, where a successful step left the connection.
    void StayIn(const QByteArray& url);
    // Prepares the handle for one step; quote commands and callbacks are set by the caller.
    void Reset(const QByteArray& url, void* transfer);
    bool Perform(const QString& action);
    bool RunCommands(const QStringList& commands);
    // The command of the last Command() step that was refused.
    QString FailedCommand() const;
    // Switches the data connections to active mode on the control connection's own address.
    bool UseActiveMode();
    bool ListWith(const QString& dirPath, const QByteArray& request, QList<FtpFileInfo>* entries);
    bool Exists(const QString& path, bool* exists);
    // Runs the prepared step to its end on the session's own multi handle.
    int RunStep();
    bool Fail(const QString& message);
    static int OnCloseSocket(void* unused, int descriptor);
    static int OnSocketOpened(void* session, int descriptor, int purpose);
    // Reads a reply the server sent on the control connection that libcurl is closing unread
    // (a "552" during an upload), so the user learns the server's reason.
    void SalvageReply(int descriptor);

    void* m_pCurl = nullptr;
    int m_iLastCode = 0;
    PooledMulti m_multi;
    QString m_strHost;
    int m_iPort = 21;
    FtpSettings m_settings;
    StopCheck m_stopCheck;
    QList<QByteArray> m_listReplies;
    QByteArray m_errorBuffer;
    bool m_bMlsd = false;
    bool m_bSize = false;
    bool m_bLoginRefusedAsBusy = false;
    bool m_bConnected = false; // logged in once: later 421s come from reconnections
    bool m_bStopped = false;
    bool m_bActive = false;         // data connections in active mode (the machine refused passive)
    bool m_bStepRepeatable = true;  // the step's first command changes nothing on the machine
    bool m_bReused = false;         // the last step ran on a cached connection
    bool m_bOutcomeUnknown = false; // the connection broke before a changing command was answered
    bool m_bPassiveRefused = false;
    QByteArray m_lastRefusal; // the last 4xx/5xx reply of the last step
    QStringList m_listStepCommands;
    QList<QByteArray> m_listStepQuote; // the step's own commands, sent after a new login's greeting
    void* m_pStepQuote = nullptr;      // a curl_slist set by SetStepQuote
    bool m_bNewLogin = false;          // the step opened a new control connection
    bool m_bGreetedLogin = false;      // ... and greeted it
    bool m_bStaleLogin = false;        // the step found its cached login dropped by the machine
    bool m_bLoginStep = false;         // Connect's step: nothing to send on a cached login
    QByteArray m_lastFolderUrl;
    int m_iConnectingFd = -1;     // the control connection's socket until TCP has connected
    int m_iLastOpenedSocket = -1; // in the step running now
    QDeadlineTimer m_tcpDeadline;
    QString m_strError;
};
