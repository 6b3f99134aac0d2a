#include "SimFtpServer.h"

#include "SimFtpSession.h"

#include <QTcpSocket>

SimFtpServer::SimFtpServer(const SimOptions& options, QObject* parent) : QObject(parent), m_options(options)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            auto* session = new SimFtpSession(socket, m_options, this);
            ++m_iAccepted;
            m_iPeakSessions = qMax(m_iPeakSessions, ++m_iSessions);
            connect(session, &QObject::destroyed, this, [this] { --m_iSessions; });
        }
    });
}

bool SimFtpServer::Listen(const QHostAddress& address, quint16 port)
{
    return m_server.listen(address, port);
}

void SimFtpServer::Shutdown()
{
    m_server.close();
    for (SimFtpSession* session : findChildren<SimFtpSession*>(Qt::FindDirectChildrenOnly))
        delete session;
}
