#include "SimFtpDataChannel.h"

#include <QIODevice>
#include <QRandomGenerator>
#include <QTcpServer>
#include <QTcpSocket>
#include <sys/socket.h>

namespace {
constexpr qint64 kChunk = 256 * 1024;
constexpr int kRefillMs = 50;
constexpr int kConnectTimeoutMs = 10000;
// Passive ports are handed out in turn from a range, as by a machine configured with one. A bind
// to port 0 makes the kernel search the ports in use, which grows slow once thousands of closed
// data connections wait out their time: it was a quarter of all the work of a small-file bench.
constexpr int kFirstPassivePort = 21000;
constexpr int kPassivePorts = 8000;
constexpr int kPortsTried = 64;

bool ListenInRange(QTcpServer* server, const QHostAddress& address)
{
    static int next = QRandomGenerator::global()->bounded(kPassivePorts);
    for (int tried = 0; tried < kPortsTried; ++tried) {
        const auto port = quint16(kFirstPassivePort + next);
        next = (next + 1) % kPassivePorts;
        if (server->listen(address, port))
            return true;
    }
    return server->listen(address, 0);
}
} // namespace

SimFtpDataChannel::SimFtpDataChannel(qint64 rateLimit, qint64 dropAfter, qint64 spaceLeft, QObject* parent)
    : QObject(parent), m_nRateLimit(rateLimit), m_nDropAfter(dropAfter), m_nSpaceLeft(spaceLeft)
{
    m_refillTimer.setInterval(kRefillMs);
    connect(&m_refillTimer, &QTimer::timeout, this, [this] {
        m_nBudget = m_nRateLimit * kRefillMs / 1000 + 1;
        Pump();
    });
    m_connectTimer.setSingleShot(true);
    m_connectTimer.setInterval(kConnectTimeoutMs);
    connect(&m_connectTimer, &QTimer::timeout, this,
            [this] { Finish(425, QStringLiteral("Can't open data connection.")); });
}

SimFtpDataChannel::~SimFtpDataChannel()
{
    if (m_pSocket)
        m_pSocket->abort();
}

quint16 SimFtpDataChannel::Listen(const QHostAddress& address, const QHostAddress& allowedPeer, int acceptWithinMs)
{
    m_allowedPeer = allowedPeer;
    m_pServer = new QTcpServer(this);
    connect(m_pServer, &QTcpServer::newConnection, this, &SimFtpDataChannel::SlotNewConnection);
    if (!ListenInRange(m_pServer, address))
        return 0;
    // A slow machine takes data no faster than it stores it; with the kernel's usual megabytes of
    // receive window a sender would see its upload "done" long before the machine had it.
    if (m_nRateLimit > 0) {
        const int window = int(qBound(qint64(4096), m_nRateLimit / 32, qint64(256 * 1024)));
        setsockopt(int(m_pServer->socketDescriptor()), SOL_SOCKET, SO_RCVBUF, &window, sizeof window);
    }
    if (acceptWithinMs > 0) {
        m_acceptTimer.setSingleShot(true);
        connect(&m_acceptTimer, &QTimer::timeout, this, [this] {
            if (m_pSocket)
                return;
            m_pServer->close();
            m_bAcceptExpired = true;
            if (m_mode != Mode::Idle)
                Finish(425, QStringLiteral("Can't open data connection."));
        });
        m_acceptTimer.start(acceptWithinMs);
    }
    return m_pServer->serverPort();
}

void SimFtpDataChannel::SlotNewConnection()
{
    while (QTcpSocket* socket = m_pServer->nextPendingConnection()) {
        // Only the client that asked for the port may use it, and only once.
        if (m_pSocket || socket->peerAddress().toIPv4Address() != m_allowedPeer.toIPv4Address()) {
            socket->abort();
            socket->deleteLater();
            continue;
        }
        m_pServer->close();
        Adopt(socket);
    }
}

void SimFtpDataChannel::ConnectTo(const QHostAddress& address, quint16 port)
{
    auto* socket = new QTcpSocket(this);
    connect(socket, &QTcpSocket::connected, this, [this, socket] { Adopt(socket); });
    connect(socket, &QTcpSocket::errorOccurred, this, [this] {
        if (m_pSocket)
            return;
        m_bAcceptExpired = true; // Start() answers 425 when the transfer command comes
        if (m_mode != Mode::Idle)
            Finish(425, QStringLiteral("Can't open data connection."));
    });
    socket->connectToHost(address, port);
}

void SimFtpDataChannel::Adopt(QTcpSocket* socket)
{
    m_pSocket = socket;
    socket->setParent(this);
    socket->setReadBufferSize(kChunk);
    socket->setSocketOption(QAbstractSocket::LowDelayOption, 1); // the last short segment goes out at once
    connect(socket, &QTcpSocket::readyRead, this, &SimFtpDataChannel::Pump);
    connect(socket, &QTcpSocket::bytesWritten, this, &SimFtpDataChannel::Pump);
    connect(socket, &QTcpSocket::disconnected, this, [this] {
        m_bPeerClosed = true;
        Pump();
    });
    m_connectTimer.stop();
    m_acceptTimer.stop();
    Pump();
}

void SimFtpDataChannel::StartSend(QIODevice* source)
{
    Start(source, Mode::Send);
}

void SimFtpDataChannel::StartReceive(QIODevice* sink)
{
    Start(sink, Mode::Receive);
}

void SimFtpDataChannel::Start(QIODevice* device, Mode mode)
{
    m_pDevice = device;
    m_mode = mode;
    if (m_nRateLimit > 0) {
        m_nBudget = m_nRateLimit * kRefillMs / 1000 + 1;
        m_refillTimer.start();
    }
    if (m_bAcceptExpired) {
        Finish(425, QStringLiteral("Can't open data connection."));
        return;
    }
    if (!m_pSocket)
        m_connectTimer.start();
    Pump();
}

void SimFtpDataChannel::Abort()
{
    Finish(426, QStringLiteral("Transfer aborted."));
}

qint64 SimFtpDataChannel::Allowance() const
{
    qint64 allowed = kChunk;
    if (m_nRateLimit > 0)
        allowed = qMin(allowed, m_nBudget);
    if (m_nDropAfter >= 0)
        allowed = qMin(allowed, m_nDropAfter - m_nMoved);
    return allowed;
}

void SimFtpDataChannel::Pump()
{
    if (m_bFinished || !m_pSocket || m_mode == Mode::Idle)
        return;
    if (m_mode == Mode::Send)
        PumpSend();
    else
        PumpReceive();
}

void SimFtpDataChannel::PumpSend()
{
    if (m_bPeerClosed) {
        Finish(426, QStringLiteral("Connection closed; transfer aborted."));
        return;
    }
    while (m_pSocket->bytesToWrite() < kChunk) {
        if (m_nDropAfter >= 0 && m_nMoved >= m_nDropAfter) {
            Finish(426, QStringLiteral("Connection closed; transfer aborted."));
            return;
        }
        const qint64 allowed = Allowance();
        if (allowed <= 0)
            return; // the refill timer resumes
        const bool bShortDone = m_nSendShortAt >= 0 && m_nMoved >= m_nSendShortAt;
        const QByteArray chunk =
            bShortDone ? QByteArray()
                       : m_pDevice->read(m_nSendShortAt < 0 ? allowed : qMin(allowed, m_nSendShortAt - m_nMoved));
        if (chunk.isEmpty()) {
            if (m_pSocket->bytesToWrite() == 0) {
                QTcpSocket* socket = m_pSocket;
                Finish(226, QString());
                socket->disconnectFromHost();
            }
            return;
        }
        m_pSocket->write(chunk);
        m_nMoved += chunk.size();
        m_nBudget -= chunk.size();
    }
}

void SimFtpDataChannel::PumpReceive()
{
    for (;;) {
        if (m_nDropAfter >= 0 && m_nMoved >= m_nDropAfter) {
            Finish(426, QStringLiteral("Connection closed; transfer aborted."));
            return;
        }
        const qint64 allowed = Allowance();
        if (allowed <= 0)
            return;
        const QByteArray chunk = m_pSocket->read(allowed);
        if (chunk.isEmpty())
            break;
        if (m_nSpaceLeft >= 0 && m_nMoved + chunk.size() > m_nSpaceLeft) {
            Finish(552, QStringLiteral("Disk full; requested file action aborted."));
            return;
        }
        // --truncate-at: the bytes beyond are read and dropped, and the client still hears 226.
        const qint64 keep =
            m_nTruncateAt < 0 ? chunk.size() : qBound<qint64>(0, m_nTruncateAt - m_nMoved, chunk.size());
        if (m_pDevice->write(chunk.constData(), keep) != keep) {
            Finish(451, QStringLiteral("Write failed; transfer aborted."));
            return;
        }
        m_nMoved += chunk.size();
        m_nBudget -= chunk.size();
    }
    if (m_bPeerClosed && m_pSocket->bytesAvailable() == 0)
        Finish(226, QString());
}

void SimFtpDataChannel::Finish(int code, const QString& reason)
{
    if (m_bFinished)
        return;
    m_bFinished = true;
    m_refillTimer.stop();
    m_connectTimer.stop();
    m_acceptTimer.stop();
    // The reply goes out first, so a client still sending learns why before its data link breaks.
    emit SignalFinished(code, reason);
    if (code != 226 && m_pSocket)
        m_pSocket->abort();
}
