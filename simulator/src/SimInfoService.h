#pragma once

#include <QObject>
#include <QTcpServer>

class SimRequestHandler;

// The request/response service: framed JSON messages over TCP, answered in order.
// A connection that sends a broken frame or something other than a JSON object is
// closed, as the machine cannot tell where the next message would start.
class SimInfoService : public QObject
{
    Q_OBJECT
public:
    SimInfoService(SimRequestHandler& handler, QObject* parent);

    bool Listen(const QHostAddress& address, quint16 port);
    quint16 Port() const { return m_server.serverPort(); }
    QString ErrorString() const { return m_server.errorString(); }
    void Shutdown();

private:
    void Serve(QTcpSocket* socket);

    SimRequestHandler& m_handler;
    QTcpServer m_server;
};
