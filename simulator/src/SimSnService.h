#pragma once

#include <QObject>
#include <QTcpServer>

struct SimOptions;

// The serial-number service: one JSON request {"action": "GET_SN_FROM_3255"}, one
// unframed JSON answer {"errorCode", "msg", "data"} written in a single piece.
class SimSnService : public QObject
{
    Q_OBJECT
public:
    static constexpr int kMaxRequest = 4096;

    SimSnService(const SimOptions& options, QObject* parent);

    bool Listen(const QHostAddress& address, quint16 port);
    quint16 Port() const { return m_server.serverPort(); }
    QString ErrorString() const { return m_server.errorString(); }
    void Shutdown();

    // The answer to one complete request text; empty when none is due.
    QByteArray Answer(const QByteArray& request) const;

private:
    const SimOptions& m_options;
    QTcpServer m_server;
};
