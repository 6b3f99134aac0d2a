#include "SimFtpServer.h"

#include "SimFtpSession.h"

#include <QTcpSocket>

SimFtpServer::SimFtpServer(const SimOptions& options, QObject* parent) : QObject(parent), m_options(options)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            new SimFtpSession(socket, m_options, this);
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
