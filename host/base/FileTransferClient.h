#pragma once

#include "KorvBaseExport.h"
#include "MachineFrameDecoder.h"
#include "MachineRecords.h"

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>

class QTcpSocket;

// One TCP connection to the machine's request/response service (docs/protocol.md).
// Every request ends in exactly one finished signal: the answer, or a failure when
// the answer does not come within the time-out or the connection goes. Frames that
// cannot be trusted close the connection. GUI thread only.
class KORVBASE_EXPORT FileTransferClient : public QObject
{
    Q_OBJECT
public:
    static constexpr int kDefaultRequestTimeoutMs = 5000;
    static constexpr int kConnectTimeoutMs = 5000;

    explicit FileTransferClient(QObject* parent = nullptr);
    ~FileTransferClient() override;

    bool connectToMachine(const QString& ip, quint16 port);
    bool isConnected() const;
    // A connect was asked for and has not answered yet.
    bool isConnecting() const;
    bool GetMachineInfo();
    bool GetMachineRealTimeData();
    // Machine commands; each ends in one SignalCommandFinished. False when not sent.
    bool StartProgram();
    bool StopProgram();
    bool ResetMachine();
    bool LoadProgram(const QString& machinePath);
    void disconnectFromMachine();

    void SetRequestTimeout(int milliseconds) { m_nRequestTimeoutMs = milliseconds; }

signals:
    void SignalTcpConnectStatus(bool bConnect);
    void SignalGetMachineInfoFinished(bool ok, const StructMachineSystemInfo& systemInfo,
                                      const StructMachineNetInfo& netInfo);
    void SignalGetMachineRealTimeData(bool ok, const StructRealTimeData& data);
    // replyType names the command ("StartProgramRes", …); message is the machine's reason.
    void SignalCommandFinished(const QString& replyType, bool ok, const QString& message);

private:
    enum class State
    {
        Idle,
        Connecting,
        Connected
    };
    struct Pending
    {
        QString replyType;
        QDeadlineTimer deadline;
    };

    bool SendRequest(const char* requestType, const char* replyType, QJsonObject request = QJsonObject());
    static bool IsCommandReply(const QString& replyType);
    void SlotConnected();
    void SlotReadyRead();
    void SlotSocketGone();
    void SlotRequestTimeout();
    // An unusable message is that request's failure: the record is dropped, the connection stays.
    void HandleMessage(const QJsonObject& message, bool bUsable);
    void FinishRequest(const QString& replyType, bool ok, const QJsonObject& data);
    void EmitFinished(const QString& replyType, bool ok, const QJsonObject& data);
    // Drops the connection, fails what is pending and reports the loss once.
    void CloseWithReason(const QString& reason);
    void FailAllPending();
    void ArmTimeout();

    QTcpSocket* m_pSocket;
    MachineFrameDecoder m_decoder;
    State m_state = State::Idle;
    QList<Pending> m_listPending;
    QTimer m_timeoutTimer;
    QTimer m_connectTimer;
    int m_nRequestTimeoutMs = kDefaultRequestTimeoutMs;
    QString m_strPeer;
};
