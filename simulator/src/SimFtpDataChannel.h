#pragma once

#include <QHostAddress>
#include <QObject>
#include <QPointer>
#include <QTimer>

class QIODevice;
class QTcpServer;
class QTcpSocket;

// One data connection of an FTP session: listens and accepts the client's connection
// (passive mode) or connects to the client (active mode), and moves the bytes of one transfer in either direction, with
// the rate limit and the cut-after-N-bytes fault applied. Deletes nothing it did not create; the session owns the
// source or sink device.
class SimFtpDataChannel : public QObject
{
    Q_OBJECT
public:
    // spaceLeft: bytes an upload may write before it is refused as if the disk were full (-1: no limit).
    SimFtpDataChannel(qint64 rateLimit, qint64 dropAfter, qint64 spaceLeft, QObject* parent);
    ~SimFtpDataChannel() override;

    // Opens the passive listener on `address`; returns the port or 0. With acceptWithinMs > 0 the
    // port closes when the client has not connected by then, as impatient controllers do.
    quint16 Listen(const QHostAddress& address, const QHostAddress& allowedPeer, int acceptWithinMs = 0);
    // Active mode: connects to the port the client named.
    void ConnectTo(const QHostAddress& address, quint16 port);
    // An upload keeps only its first `bytes` and still ends in 226 (-1: keeps all).
    void SetTruncateAt(qint64 bytes) { m_nTruncateAt = bytes; }
    void SetSendShortAt(qint64 bytes) { m_nSendShortAt = bytes; }
    // Narrows the space left for an upload (a disk quota).
    void LimitSpace(qint64 bytes)
    {
        m_nSpaceLeft = m_nSpaceLeft < 0 ? qMax<qint64>(0, bytes) : qMin(m_nSpaceLeft, qMax<qint64>(0, bytes));
    }

    // Sends everything `source` yields, then closes the connection.
    void StartSend(QIODevice* source);
    // Writes everything the client sends into `sink` until it closes the connection.
    void StartReceive(QIODevice* sink);
    void Abort();

    qint64 BytesMoved() const { return m_nMoved; }

signals:
    // code is the control connection's final reply: 226 when every byte moved.
    void SignalFinished(int code, const QString& reason);

private:
    enum class Mode
    {
        Idle,
        Send,
        Receive
    };

    void SlotNewConnection();
    void Adopt(QTcpSocket* socket);
    void Start(QIODevice* device, Mode mode);
    void Pump();
    void PumpSend();
    void PumpReceive();
    void Finish(int code, const QString& reason);
    qint64 Allowance() const;

    QTcpServer* m_pServer = nullptr;
    QPointer<QTcpSocket> m_pSocket;
    QHostAddress m_allowedPeer;
    QIODevice* m_pDevice = nullptr;
    Mode m_mode = Mode::Idle;
    qint64 m_nRateLimit;
    qint64 m_nDropAfter;
    qint64 m_nSpaceLeft;
    qint64 m_nTruncateAt = -1;
    qint64 m_nSendShortAt = -1;
    bool m_bAcceptExpired = false;
    qint64 m_nMoved = 0;
    qint64 m_nBudget = 0;
    bool m_bFinished = false;
    bool m_bPeerClosed = false;
    QTimer m_refillTimer;
    QTimer m_connectTimer;
    QTimer m_acceptTimer;
};
