#include "SimFtpServer.h"

#include "SimFtpSession.h"
#include "SimOptions.h"

#include <QTcpSocket>
#include <map>

SimFtpServer::SimFtpServer(const SimOptions& options, QObject* parent) : QObject(parent), m_options(options)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            const bool bAtGreeting = m_options.loginLimitReply == QLatin1String("greeting");
            if (bAtGreeting && m_options.maxSessions > 0 && m_iSessions >= m_options.maxSessions) {
                // A controller with one login slot turns the next client away before the greeting.
                ++m_iRefused;
                socket->write("421 Too many connections.\r\n");
                socket->disconnectFromHost();
                connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
                continue;
            }
            auto* session = new SimFtpSession(socket, m_options, this);
            ++m_iAccepted;
            m_iPeakSessions = qMax(m_iPeakSessions, ++m_iSessions);
            connect(session, &QObject::destroyed, this, [this] { --m_iSessions; });
        }
    });
}

bool SimFtpServer::LoginAllowed(const SimFtpSession* asking)
{
    if (m_options.maxSessions <= 0)
        return true;
    int loggedIn = 0;
    for (const SimFtpSession* session : findChildren<SimFtpSession*>(Qt::FindDirectChildrenOnly))
        loggedIn += session != asking && session->IsLoggedIn() ? 1 : 0;
    if (loggedIn < m_options.maxSessions)
        return true;
    ++m_iRefused;
    return false;
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

QString SimFtpServer::CommandSummary() const
{
    const std::map<QByteArray, qint64> sorted(m_hashCommands.keyValueBegin(), m_hashCommands.keyValueEnd());
    qint64 total = 0;
    QString verbs;
    for (const auto& [verb, count] : sorted) {
        total += count;
        verbs += QStringLiteral(" %1=%2").arg(QString::fromLatin1(verb)).arg(count);
    }
    return QStringLiteral("total=%1").arg(total) + verbs;
}
