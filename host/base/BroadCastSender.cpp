#include "BroadCastSender.h"

#include "DiscoveryAddressList.h"
#include "MachinePortMap.h"

#include <QDebug>
#include <QNetworkDatagram>
#include <QNetworkInterface>
#include <QUdpSocket>

namespace {
constexpr int kMaxReply = 512;
constexpr int kMinFields = 4;
} // namespace

BroadCastSender::BroadCastSender(QObject* parent)
    : QObject(parent), m_pSocket(new QUdpSocket(this)), m_nPort(MachinePortMap::Resolve(kDefaultPort))
{
    connect(m_pSocket, &QUdpSocket::readyRead, this, &BroadCastSender::ReadReplies);
    connect(&m_intervalTimer, &QTimer::timeout, this, &BroadCastSender::SendRound);
    m_durationTimer.setSingleShot(true);
    connect(&m_durationTimer, &QTimer::timeout, this, &BroadCastSender::stopDiscovery);
}

void BroadCastSender::startDiscovery(int durationMs, int intervalMs)
{
    stopDiscovery();
    m_setSeen.clear();
    // Any address, so that answers arriving over every interface reach us.
    if (!m_pSocket->bind(QHostAddress::AnyIPv4, 0)) {
        qWarning() << "BroadCastSender: cannot bind:" << m_pSocket->errorString();
        return;
    }
    m_intervalTimer.start(qMax(100, intervalMs));
    m_durationTimer.start(qMax(0, durationMs));
    SendRound();
}

void BroadCastSender::stopDiscovery()
{
    m_intervalTimer.stop();
    m_durationTimer.stop();
    m_pSocket->close();
}

QList<QHostAddress> BroadCastSender::TargetAddresses() const
{
    QList<QHostAddress> targets{QHostAddress(QHostAddress::LocalHost)};
    for (const QNetworkInterface& iface : QNetworkInterface::allInterfaces()) {
        const auto flags = iface.flags();
        if (!flags.testFlag(QNetworkInterface::IsUp) || !flags.testFlag(QNetworkInterface::CanBroadcast))
            continue;
        if (!m_listInterfaces.isEmpty() && !m_listInterfaces.contains(iface.name()))
            continue;
        for (const QNetworkAddressEntry& entry : iface.addressEntries()) {
            const QHostAddress broadcast = entry.broadcast();
            if (entry.ip().protocol() == QAbstractSocket::IPv4Protocol && !broadcast.isNull() &&
                !targets.contains(broadcast))
                targets << broadcast;
        }
    }
    for (const QHostAddress& address : DiscoveryAddressList::Configured()) {
        if (!targets.contains(address))
            targets << address;
    }
    return targets;
}

void BroadCastSender::SendRound()
{
    for (const QHostAddress& target : TargetAddresses()) {
        if (m_pSocket->writeDatagram(QByteArray(kRequest), target, m_nPort) < 0)
            qDebug() << "BroadCastSender: send to" << target << "failed:" << m_pSocket->errorString();
    }
}

void BroadCastSender::ReadReplies()
{
    // A listener may stop discovery from its slot, which closes the socket under this loop.
    while (m_pSocket->state() == QAbstractSocket::BoundState && m_pSocket->hasPendingDatagrams()) {
        const QNetworkDatagram datagram = m_pSocket->receiveDatagram(kMaxReply + 1);
        const QByteArray data = datagram.data().trimmed();
        if (data.isEmpty() || data.size() > kMaxReply)
            continue;
        const QString reply = QString::fromUtf8(data);
        // Replies carry at least serial number and IP; anything shorter is noise.
        if (reply.split(QLatin1Char('*')).size() < kMinFields || reply.contains(QChar::ReplacementCharacter) ||
            m_setSeen.contains(reply))
            continue;
        m_setSeen.insert(reply);
        emit discoveryResult(reply);
    }
}
