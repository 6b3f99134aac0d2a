#pragma once

#include <QHash>
#include <QObject>
#include <QTcpServer>
#include <functional>

class SimFtpSession;
struct SimOptions;

// Accepts FTP control connections; every client gets its own session.
class SimFtpServer : public QObject
{
    Q_OBJECT
public:
    SimFtpServer(const SimOptions& options, QObject* parent);

    bool Listen(const QHostAddress& address, quint16 port);
    quint16 Port() const { return m_server.serverPort(); }
    QString ErrorString() const { return m_server.errorString(); }
    // Closes the listener and drops every session at once.
    void Shutdown();
    // Control connections open now, the most open at once, and all accepted so far.
    int SessionCount() const { return m_iSessions; }
    int PeakSessionCount() const { return m_iPeakSessions; }
    int AcceptedSessionCount() const { return m_iAccepted; }
    // Logins refused because --max-sessions were already open (at the greeting or after PASS).
    int RefusedSessionCount() const { return m_iRefused; }
    // With --login-limit-reply: whether `asking` may log in beside the sessions logged in now.
    bool LoginAllowed(const SimFtpSession* asking);
    // Tells the sessions which local file the machine runs (for --busy-while-running).
    void SetRunningProgramProbe(std::function<QString()> probe) { m_runningProgram = std::move(probe); }
    QString RunningProgramFile() const { return m_runningProgram ? m_runningProgram() : QString(); }
    // Every command line the clients sent, by verb: how many exchanges a client needs per file.
    void CountCommand(const QByteArray& verb) { ++m_hashCommands[verb]; }
    qint64 CommandCount(const QByteArray& verb) const { return m_hashCommands.value(verb); }
    // "total=N FEAT=n ..." in alphabetical order of the verbs.
    QString CommandSummary() const;

private:
    const SimOptions& m_options;
    QTcpServer m_server;
    int m_iSessions = 0;
    int m_iPeakSessions = 0;
    int m_iAccepted = 0;
    int m_iRefused = 0;
    std::function<QString()> m_runningProgram;
    QHash<QByteArray, qint64> m_hashCommands;
};
