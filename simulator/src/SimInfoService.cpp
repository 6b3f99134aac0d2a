#include "SimInfoService.h"

#include "SimFrameCodec.h"
#include "SimRequestHandler.h"

#include <QJsonDocument>
#include <QTcpSocket>
#include <memory>

SimInfoService::SimInfoService(SimRequestHandler& handler, QObject* parent) : QObject(parent), m_handler(handler)
{
    connect(&m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server.nextPendingConnection())
            Serve(socket);
    });
}

bool SimInfoService::Listen(const QHostAddress& address, quint16 port)
{
    return m_server.listen(address, port);
}

void SimInfoService::Serve(QTcpSocket* socket)
{
    socket->setParent(this);
    auto codec = std::make_shared<SimFrameCodec>();
    connect(socket, &QTcpSocket::readyRead, socket, [this, socket, codec] {
        const QList<QByteArray> frames = codec->Feed(socket->readAll());
        for (const QByteArray& payload : frames) {
            QJsonParseError error;
            const QJsonDocument document = QJsonDocument::fromJson(payload, &error);
            if (error.error != QJsonParseError::NoError || !document.isObject()) {
                socket->abort();
                return;
            }
            emit SignalRequest(document.object().value(QStringLiteral("type")).toString());
            QJsonObject reply;
            if (m_handler.Handle(document.object(), &reply))
                socket->write(m_handler.Frame(reply));
        }
        if (codec->Broken())
            socket->abort();
    });
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
}

void SimInfoService::Shutdown()
{
    m_server.close();
    for (QTcpSocket* socket : findChildren<QTcpSocket*>(Qt::FindDirectChildrenOnly))
        delete socket;
}
