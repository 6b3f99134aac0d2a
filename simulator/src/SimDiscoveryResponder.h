#pragma once

#include <QObject>
#include <QUdpSocket>
#include <functional>

struct SimOptions;

// Answers discovery datagrams ("CNC_DISCOVER") with one line of fields separated by
// "*": marker, serial number, system version, IP, MAC, interface name.
class SimDiscoveryResponder : public QObject
{
    Q_OBJECT
public:
    static constexpr char kRequest[] = "CNC_DISCOVER";

    SimDiscoveryResponder(const SimOptions& options, std::function<QString()> reportedIp, QObject* parent);

    bool Listen(const QHostAddress& address, quint16 port);
    quint16 Port() const { return m_socket.localPort(); }
    QString ErrorString() const { return m_socket.errorString(); }
    void Shutdown() { m_socket.close(); }

    QByteArray Reply() const;

private:
    const SimOptions& m_options;
    std::function<QString()> m_reportedIp;
    QUdpSocket m_socket;
};
