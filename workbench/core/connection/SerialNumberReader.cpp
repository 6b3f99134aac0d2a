#include "SerialNumberReader.h"

#include "CDebugLog.h"
#include "WorkbenchLog.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTimer>

SerialNumberReader::SerialNumberReader(QObject* parent) : QObject(parent) {}

SerialNumberReader::~SerialNumberReader()
{
    delete m_pSocket;
    delete m_pTimer;
}

void SerialNumberReader::Start(const QString& ip, quint16 port, int timeoutMs)
{
    if (IsRunning())
        return;
    m_baReply.clear();
    auto* socket = new QTcpSocket(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    auto* timer = new QTimer(this);
    timer->setSingleShot(true);
    m_pSocket = socket;
    m_pTimer = timer;
    connect(socket, &QTcpSocket::connected, this, &SerialNumberReader::OnConnected);
    connect(socket, &QTcpSocket::readyRead, this, &SerialNumberReader::OnReadyRead);
    connect(socket, &QTcpSocket::errorOccurred, this, &SerialNumberReader::OnError);
    connect(timer, &QTimer::timeout, this, &SerialNumberReader::OnTimeout);
    timer->start(timeoutMs);
    socket->connectToHost(ip, port, QIODevice::ReadWrite, QAbstractSocket::AnyIPProtocol);
}

void SerialNumberReader::OnConnected()
{
    if (!m_pSocket)
        return;
    CDebugLog::AddLog(QStringLiteral("获取SN - TCP连接已建立"));
    const QJsonObject request{{QStringLiteral("action"), QStringLiteral("GET_SN_FROM_3255")}};
    m_pSocket->write(QJsonDocument(request).toJson(QJsonDocument::Compact));
}

void SerialNumberReader::OnReadyRead()
{
    if (!m_pSocket)
        return;
    m_baReply += m_pSocket->readAll();
    qCDebug(lcWorkbench) << "获取SN - 收到响应：" << m_baReply;
    CDebugLog::AddLog(QStringLiteral("获取SN - 收到响应"));
    QJsonParseError parseError;
    const QByteArray reply = m_baReply.trimmed();
    const QJsonDocument document = QJsonDocument::fromJson(reply, &parseError);
    if (!document.isObject()) {
        // A reply may arrive in pieces: only one that breaks off at its end waits for the rest.
        const bool cutShort = parseError.error != QJsonParseError::NoError && parseError.offset >= reply.size();
        if (reply.startsWith('{') && cutShort && reply.size() < 64 * 1024)
            return;
        Settle(false, QString(), tr("获取机床序列号失败"));
        return;
    }
    const QJsonObject object = document.object();
    if (object.value(QStringLiteral("errorCode")).toInt(0) != 0) {
        Settle(false, QString(), tr("获取机床序列号失败：%1").arg(object.value(QStringLiteral("msg")).toString()));
        return;
    }
    const QString sn = object.value(QStringLiteral("data")).toString();
    if (sn.isEmpty()) {
        Settle(false, QString(), tr("获取机床序列号失败：序列号为空"));
        return;
    }
    CDebugLog::AddLog(QStringLiteral("获取SN成功"));
    Settle(true, sn, QString());
}

void SerialNumberReader::OnError()
{
    if (!m_pSocket)
        return;
    if (m_pTimer)
        m_pTimer->stop();
    CDebugLog::AddLog(QStringLiteral("获取SN - TCP连接错误：%1").arg(m_pSocket->errorString()));
    Settle(false, QString(), tr("获取机床序列号失败：网络连接错误"));
}

void SerialNumberReader::OnTimeout()
{
    if (!m_pSocket)
        return;
    CDebugLog::AddLog(QStringLiteral("获取SN - TCP连接超时"));
    Settle(false, QString(), tr("获取机床序列号失败：连接超时"));
}

void SerialNumberReader::Settle(bool ok, const QString& sn, const QString& errorText)
{
    // Released before anyone hears the outcome.
    Cancel();
    Q_EMIT SignalFinished(ok, sn, errorText);
}

void SerialNumberReader::Cancel()
{
    // Deleted later, never inside their own signal.
    QTcpSocket* socket = m_pSocket;
    QTimer* timer = m_pTimer;
    m_pSocket.clear();
    m_pTimer.clear();
    if (timer) {
        timer->stop();
        timer->deleteLater();
    }
    if (socket) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
}
