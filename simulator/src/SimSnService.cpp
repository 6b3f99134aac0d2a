#include "SimSnService.h"

#include "SimOptions.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpSocket>
#include <QTimer>

namespace {
constexpr int kIdleMs = 30000;

QByteArray reply(int errorCode, const QString& msg, const QString& data)
{
    return QJsonDocument(QJsonObject{{"errorCode", errorCode}, {"msg", msg}, {"data", data}})
        .toJson(QJsonDocument::Compact);
}
} // namespace

SimSnService::SimSnService(const SimOptions& options, QObject* parent) : QObject(parent), m_options(options)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            socket->setParent(this);
            // The client closes when it has its answer; a forgotten connection is dropped.
            auto* idle = new QTimer(socket);
            idle->setSingleShot(true);
            connect(idle, &QTimer::timeout, socket, &QTcpSocket::abort);
            idle->start(kIdleMs);
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                QByteArray pending = socket->property("pending").toByteArray() + socket->readAll();
                if (pending.size() > kMaxRequest) {
                    socket->write(reply(2, QStringLiteral("请求过长"), QString()));
                    socket->disconnectFromHost();
                    return;
                }
                const QByteArray answer = Answer(pending);
                // A request may arrive in pieces: keep it until it parses or is plainly broken.
                const bool complete = !answer.isEmpty() || pending.trimmed().endsWith('}');
                socket->setProperty("pending", complete ? QByteArray() : pending);
                if (!answer.isEmpty())
                    socket->write(answer);
            });
        }
    });
}

bool SimSnService::Listen(const QHostAddress& address, quint16 port)
{
    return m_server.listen(address, port);
}

void SimSnService::Shutdown()
{
    m_server.close();
    for (QTcpSocket* socket : findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly))
        delete socket;
}

QByteArray SimSnService::Answer(const QByteArray& request) const
{
    const QJsonDocument document = QJsonDocument::fromJson(request);
    if (!document.isObject())
        return request.trimmed().endsWith('}') ? reply(2, QStringLiteral("请求格式错误"), QString()) : QByteArray();
    if (document.object().value(QLatin1String("action")).toString() != QLatin1String("GET_SN_FROM_3255"))
        return reply(1, QStringLiteral("未知请求"), QString());
    if (m_options.snSilent)
        return QByteArray();
    if (m_options.snErrorCode != 0)
        return reply(m_options.snErrorCode, QStringLiteral("机床序列号未配置"), QString());
    return reply(0, QStringLiteral("success"), m_options.serialNumber);
}
