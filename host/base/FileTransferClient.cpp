#include "FileTransferClient.h"

#include "CDebugLog.h"
#include "FtpSettings.h"
#include "MachinePortMap.h"
#include "MachineRecordJson.h"
#include "ProtocolVocabulary.h"

#include <QDebug>
#include <QNetworkProxy>
#include <QTcpSocket>

using namespace Protocol;

FileTransferClient::FileTransferClient(QObject* parent) : QObject(parent), m_pSocket(new QTcpSocket(this))
{
    RegisterMachineRecordMetaTypes();
    m_pSocket->setProxy(QNetworkProxy::NoProxy);
    connect(m_pSocket, &QTcpSocket::connected, this, &FileTransferClient::SlotConnected);
    connect(m_pSocket, &QTcpSocket::readyRead, this, &FileTransferClient::SlotReadyRead);
    connect(m_pSocket, &QTcpSocket::disconnected, this, &FileTransferClient::SlotSocketGone);
    connect(m_pSocket, &QTcpSocket::errorOccurred, this, &FileTransferClient::SlotSocketGone);
    m_timeoutTimer.setSingleShot(true);
    connect(&m_timeoutTimer, &QTimer::timeout, this, &FileTransferClient::SlotRequestTimeout);
    m_connectTimer.setSingleShot(true);
    connect(&m_connectTimer, &QTimer::timeout, this,
            [this] { CloseWithReason(QStringLiteral("connect to %1 timed out").arg(m_strPeer)); });
}

FileTransferClient::~FileTransferClient()
{
    // Nobody listens any more: leave quietly.
    m_state = State::Idle;
    m_pSocket->abort();
}

bool FileTransferClient::connectToMachine(const QString& ip, quint16 port)
{
    if (ip.trimmed().isEmpty() || port == 0)
        return false;
    port = MachinePortMap::Resolve(port);
    if (m_state != State::Idle) {
        m_state = State::Idle;
        m_pSocket->abort();
        FailAllPending();
    }
    m_decoder.Reset();
    // Controllers write text in records the way they spell file names.
    m_decoder.SetTextEncoding(FtpSettings::NameEncodingFor(ip.trimmed()));
    m_strPeer = QStringLiteral("%1:%2").arg(ip).arg(port);
    m_state = State::Connecting;
    m_connectTimer.start(kConnectTimeoutMs);
    m_pSocket->connectToHost(ip.trimmed(), port);
    return true;
}

bool FileTransferClient::isConnected() const
{
    return m_state == State::Connected;
}

bool FileTransferClient::isConnecting() const
{
    return m_state == State::Connecting;
}

bool FileTransferClient::GetMachineInfo()
{
    return SendRequest(MsgGetMachineInfoReq, MsgGetMachineInfoRes);
}

bool FileTransferClient::GetMachineRealTimeData()
{
    return SendRequest(MsgRealTimeDataReq, MsgRealTimeDataRes);
}

bool FileTransferClient::StartProgram()
{
    return SendRequest(MsgStartProgramReq, MsgStartProgramRes);
}

bool FileTransferClient::StopProgram()
{
    return SendRequest(MsgStopProgramReq, MsgStopProgramRes);
}

bool FileTransferClient::ResetMachine()
{
    return SendRequest(MsgResetMachineReq, MsgResetMachineRes);
}

bool FileTransferClient::LoadProgram(const QString& machinePath)
{
    return SendRequest(MsgLoadProgramReq, MsgLoadProgramRes, QJsonObject{{QLatin1String(KeyName), machinePath}});
}

bool FileTransferClient::IsCommandReply(const QString& replyType)
{
    for (const char* type : {MsgStartProgramRes, MsgStopProgramRes, MsgResetMachineRes, MsgLoadProgramRes}) {
        if (replyType == QLatin1String(type))
            return true;
    }
    return false;
}

void FileTransferClient::disconnectFromMachine()
{
    m_connectTimer.stop();
    m_state = State::Idle;
    m_pSocket->abort();
    FailAllPending();
    emit SignalTcpConnectStatus(false);
}

bool FileTransferClient::SendRequest(const char* requestType, const char* replyType, QJsonObject request)
{
    if (m_state != State::Connected)
        return false;
    request.insert(QLatin1String(KeyType), QLatin1String(requestType));
    const QByteArray frame = MachineFrameDecoder::Encode(request);
    if (m_pSocket->write(frame) != frame.size())
        return false;
    m_listPending.append({QString::fromLatin1(replyType), QDeadlineTimer(m_nRequestTimeoutMs)});
    ArmTimeout();
    return true;
}

void FileTransferClient::SlotConnected()
{
    m_connectTimer.stop();
    m_state = State::Connected;
    qDebug() << "FileTransferClient connected to" << m_strPeer;
    emit SignalTcpConnectStatus(true);
}

void FileTransferClient::SlotReadyRead()
{
    if (m_state != State::Connected)
        return;
    // Complete messages in front of a bad frame are still the machine's answers: deliver them first,
    // so the outcome does not depend on how TCP split the bytes.
    const bool bIntact = m_decoder.Feed(m_pSocket->readAll());
    QJsonObject message;
    bool bUsable = true;
    // A receiver may disconnect us from inside a signal: stop as soon as it does.
    while (m_state == State::Connected && m_decoder.Next(&message, &bUsable))
        HandleMessage(message, bUsable);
    if (!bIntact)
        CloseWithReason(QStringLiteral("bad frame from %1: %2").arg(m_strPeer, m_decoder.ErrorString()));
}

void FileTransferClient::HandleMessage(const QJsonObject& message, bool bUsable)
{
    const QString type = message.value(QLatin1String(KeyType)).toString();
    const bool ok = bUsable && message.value(QLatin1String(KeyCode)).toInt(-1) == 0;
    if (!bUsable)
        CDebugLog::AddLog(QStringLiteral("FileTransferClient: %1 from %2 dropped: a value JSON cannot hold (NaN, "
                                         "infinity or out of range)")
                              .arg(type, m_strPeer));
    if (!ok)
        qDebug() << "FileTransferClient:" << type << "code" << message.value(QLatin1String(KeyCode))
                 << message.value(QLatin1String(KeyMsg)).toString();
    // Command replies have no record: their reason is the envelope's "msg".
    FinishRequest(type, ok, IsCommandReply(type) ? message : message.value(QLatin1String(KeyData)).toObject());
}

void FileTransferClient::FinishRequest(const QString& replyType, bool ok, const QJsonObject& data)
{
    const auto it = std::find_if(m_listPending.begin(), m_listPending.end(),
                                 [&replyType](const Pending& p) { return p.replyType == replyType; });
    if (it == m_listPending.end()) {
        qDebug() << "FileTransferClient: unexpected message" << replyType;
        return;
    }
    m_listPending.erase(it);
    ArmTimeout();
    EmitFinished(replyType, ok, data);
}

void FileTransferClient::EmitFinished(const QString& replyType, bool ok, const QJsonObject& data)
{
    if (IsCommandReply(replyType)) {
        const QString message = data.value(QLatin1String(KeyMsg)).toString();
        emit SignalCommandFinished(replyType, ok, message);
    } else if (replyType == QLatin1String(MsgGetMachineInfoRes)) {
        StructMachineSystemInfo system;
        StructMachineNetInfo net;
        ok = ok && MachineRecordJson::ReadMachineInfo(data, &system, &net);
        emit SignalGetMachineInfoFinished(ok, ok ? system : StructMachineSystemInfo(),
                                          ok ? net : StructMachineNetInfo());
    } else {
        StructRealTimeData record;
        ok = ok && MachineRecordJson::ReadRealTimeData(data, &record);
        emit SignalGetMachineRealTimeData(ok, ok ? record : StructRealTimeData());
    }
}

void FileTransferClient::SlotSocketGone()
{
    if (m_state == State::Idle)
        return;
    CloseWithReason(QStringLiteral("connection to %1 lost: %2").arg(m_strPeer, m_pSocket->errorString()));
}

void FileTransferClient::SlotRequestTimeout()
{
    // Only the expired ones fail; later requests keep their own deadline.
    QList<Pending> expired;
    for (auto it = m_listPending.begin(); it != m_listPending.end();) {
        if (it->deadline.hasExpired()) {
            expired << *it;
            it = m_listPending.erase(it);
        } else {
            ++it;
        }
    }
    ArmTimeout();
    for (const Pending& pending : expired) {
        CDebugLog::AddLog(QStringLiteral("FileTransferClient: %1 from %2 timed out").arg(pending.replyType, m_strPeer));
        EmitFinished(pending.replyType, false, QJsonObject());
    }
}

void FileTransferClient::CloseWithReason(const QString& reason)
{
    if (m_state == State::Idle)
        return;
    CDebugLog::AddLog(QStringLiteral("FileTransferClient: ") + reason);
    qWarning() << "FileTransferClient:" << reason;
    m_connectTimer.stop();
    m_state = State::Idle;
    m_pSocket->abort();
    m_decoder.Reset();
    FailAllPending();
    emit SignalTcpConnectStatus(false);
}

void FileTransferClient::FailAllPending()
{
    const QList<Pending> pending = m_listPending;
    m_listPending.clear();
    m_timeoutTimer.stop();
    for (const Pending& p : pending)
        EmitFinished(p.replyType, false, QJsonObject());
}

void FileTransferClient::ArmTimeout()
{
    if (m_listPending.isEmpty()) {
        m_timeoutTimer.stop();
        return;
    }
    qint64 earliest = m_listPending.first().deadline.remainingTime();
    for (const Pending& p : m_listPending)
        earliest = qMin(earliest, p.deadline.remainingTime());
    m_timeoutTimer.start(int(qMax<qint64>(0, earliest)));
}
