#include "SimDiscoveryResponder.h"

#include "SimOptions.h"

#include <QNetworkDatagram>

SimDiscoveryResponder::SimDiscoveryResponder(const SimOptions& options, std::function<QString()> reportedIp,
                                             QObject* parent)
    : QObject(parent), m_options(options), m_reportedIp(std::move(reportedIp))
{
    connect(&m_socket, &QUdpSocket::readyRead, this, [this] {
        while (m_socket.hasPendingDatagrams()) {
            const QNetworkDatagram datagram = m_socket.receiveDatagram(512);
            if (datagram.data().trimmed() == kRequest)
                m_socket.writeDatagram(Reply(), datagram.senderAddress(), quint16(datagram.senderPort()));
        }
    });
}

bool SimDiscoveryResponder::Listen(const QHostAddress& address, quint16 port)
{
    return m_socket.bind(address, port, QUdpSocket::ShareAddress | QUdpSocket::ReuseAddressHint);
}

QByteArray SimDiscoveryResponder::Reply() const
{
    const QStringList fields = {
        QStringLiteral("CNC_MACHINE"),       m_options.serialNumber, m_options.sysVersion, m_reportedIp(),
        QStringLiteral("02:4b:56:00:10:01"), m_options.interfaceName};
    return fields.join(QLatin1Char('*')).toUtf8();
}
