#pragma once

#include <QObject>
#include <QTcpServer>

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

private:
    const SimOptions& m_options;
    QTcpServer m_server;
};
