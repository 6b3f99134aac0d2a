#pragma once

#include "KorvBaseExport.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QObject>
#include <QSet>
#include <QStringList>
#include <QTimer>

class QUdpSocket;

// Finds machines by broadcasting the discovery datagram (docs/protocol.md) to every
// IPv4 interface's broadcast address, to loopback and to the addresses of the discovery
// setting (DiscoveryAddressList), repeatedly until the duration ends. Each distinct answer
// is reported once per run. GUI thread only.
class KORVBASE_EXPORT BroadCastSender : public QObject
{
    Q_OBJECT
public:
    static constexpr quint16 kDefaultPort = 30002;
    static constexpr char kRequest[] = "CNC_DISCOVER";

    explicit BroadCastSender(QObject* parent = nullptr);

    // Broadcasts every `intervalMs` for `durationMs`, the first time at once.
    void startDiscovery(int durationMs, int intervalMs);
    void stopDiscovery();
    bool isDiscovering() const { return m_intervalTimer.isActive(); }

    void SetDiscoveryPort(quint16 port) { m_nPort = port; }
    // Limits the broadcast to the named interfaces (loopback is always asked).
    void SetInterfaceFilter(const QStringList& names) { m_listInterfaces = names; }
    QList<QHostAddress> TargetAddresses() const;

signals:
    void discoveryResult(QString reply);

private:
    void SendRound();
    void ReadReplies();

    QUdpSocket* m_pSocket;
    QTimer m_intervalTimer;
    QTimer m_durationTimer;
    QSet<QString> m_setSeen;
    QStringList m_listInterfaces;
    quint16 m_nPort = kDefaultPort;
};
