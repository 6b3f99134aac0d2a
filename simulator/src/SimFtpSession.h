#pragma once

#include "SimPathJail.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QDir;
class QIODevice;
class QTcpSocket;
class SimFtpDataChannel;
struct SimOptions;

// One FTP control connection: parses commands, keeps the login, working folder,
// rename source and restart offset, and runs one passive transfer at a time.
class SimFtpSession : public QObject
{
    Q_OBJECT
public:
    SimFtpSession(QTcpSocket* socket, const SimOptions& options, QObject* parent);

    bool IsLoggedIn() const { return m_bLoggedIn && !m_bClosing; }

signals:
    void SignalClosed();

private:
    using Handler = void (SimFtpSession::*)(const QString& argument);

    void SlotReadyRead();
    void ProcessLines();
    void Dispatch(const QByteArray& line);
    // A fault switch refuses this command (every use, or only for arguments holding a text).
    bool IsRefused(const QString& verb, const QString& argument) const;
    void Reply(int code, const QString& text);
    void ReplyRaw(const QByteArray& text);
    void Close();
    // The machine lost this login (--reset-idle-after): the peer gets a TCP reset, no reply.
    void Reset();
    void SlotIdle();
    // --name-rule: replies 553 and returns true when the name breaks it.
    bool RefuseName(const QString& local);

    // Resolves an argument to a local path inside the root; replies 550 and returns
    // false when it cannot.
    bool LocalFor(const QString& argument, QString* localPath, QString* virtualPath = nullptr);
    bool TakeDataChannel(SimFtpDataChannel** channel);
    void RunTransfer(SimFtpDataChannel* channel, QIODevice* device, bool send, const QString& opening);
    void SendListing(const QString& argument, int kind);
    void OpenPassive(bool extended);

    void CmdUser(const QString& argument);
    void CmdPass(const QString& argument);
    void CmdPwd(const QString& argument);
    void CmdCwd(const QString& argument);
    void CmdCdup(const QString& argument);
    void CmdType(const QString& argument);
    void CmdMode(const QString& argument);
    void CmdStru(const QString& argument);
    void CmdPasv(const QString& argument);
    void CmdEpsv(const QString& argument);
    void CmdPort(const QString& argument);
    void CmdList(const QString& argument);
    void CmdNlst(const QString& argument);
    void CmdMlsd(const QString& argument);
    void CmdMlst(const QString& argument);
    void CmdRetr(const QString& argument);
    void CmdStor(const QString& argument);
    void CmdAppe(const QString& argument);
    void CmdRest(const QString& argument);
    void CmdSize(const QString& argument);
    void CmdMdtm(const QString& argument);
    void CmdDele(const QString& argument);
    void CmdMkd(const QString& argument);
    void CmdRmd(const QString& argument);
    void CmdRnfr(const QString& argument);
    void CmdRnto(const QString& argument);
    void CmdFeat(const QString& argument);
    void CmdOpts(const QString& argument);
    void CmdSyst(const QString& argument);
    void CmdNoop(const QString& argument);
    void CmdAllo(const QString& argument);
    void CmdQuit(const QString& argument);
    void CmdAbor(const QString& argument);
    void CmdAuth(const QString& argument);
    void StoreFile(const QString& argument, bool append);

    // Names on the wire in the controller's encoding (--name-encoding).
    QByteArray ToWire(const QString& text) const;
    QString FromWire(const QByteArray& bytes) const;
    const char* WireEncodingName() const;
    // --busy-while-running: replies 452 and returns true when local is the running program.
    bool RefuseBusy(const QString& local);
    static qint64 UsedBytes(const QDir& dir);

    static const QHash<QByteArray, Handler>& Handlers();

    QPointer<QTcpSocket> m_pSocket;
    const SimOptions& m_options;
    SimPathJail m_jail;
    QByteArray m_buffer;
    struct PendingLine
    {
        QByteArray line;
        QDeadlineTimer due; // the --ftp-latency fault holds a command back until then
    };
    QList<PendingLine> m_listPending;
    QString m_strUser;
    QString m_strCwd = QStringLiteral("/");
    QString m_strRenameFrom;
    qint64 m_nRestOffset = 0;
    bool m_bLoggedIn = false;
    bool m_bBusy = false;
    bool m_bClosing = false;
    bool m_bStale = false;                  // the idle 421 went out; the next command ends the connection
    bool m_bForgotten = false;              // the login was lost while idle; the next command is reset
    QPointer<SimFtpDataChannel> m_pData;    // opened by PASV/EPSV, waiting for a command
    QPointer<SimFtpDataChannel> m_pRunning; // the transfer under way
    QTimer m_idleTimer;
    QTimer m_forgetTimer;
    QTimer m_latencyTimer;
};
