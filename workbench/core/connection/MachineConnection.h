#pragma once

#include "CommonDefine.h"
#include "MachineEndpoint.h"
#include "TaskOwner.h"

#include <QColor>
#include <QObject>
#include <QPointer>

class FileTransferClient;
class QTimer;
class SerialNumberReader;

// The connection to one machine, without widgets: the FTP test, the serial-number read,
// the two request/response clients, real-time polling and the periodic check that gives
// up after the eighth failure in a row.
//
// Every attempt gets a new generation number. Answers carry the number of the attempt
// they belong to, and an answer of an abandoned attempt (the user disconnected, or chose
// another machine meanwhile) is dropped instead of bringing that attempt back to life.
class MachineConnection final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineConnection)

public:
    enum class State
    {
        Disconnected, // no IP, no serial number
        Connecting,   // FTP test or serial-number read running
        Connected,    // serial number known, checks running
        Degraded,     // one to seven checks in a row failed
    };
    Q_ENUM(State)

    static constexpr int MaxCheckFailures = 7; // the eighth failure in a row gives up
    static constexpr int MinRealTimeIntervalMs = 100;
    static constexpr int MaxRealTimeIntervalMs = 60000;

    explicit MachineConnection(QObject* parent = nullptr);
    ~MachineConnection() override;

    State GetState() const { return m_eState; }
    QString Ip() const { return m_strIp; }
    QString Sn() const { return m_strSn; }
    // The connected machine as one value; empty until the connection is established.
    MachineEndpoint Endpoint() const { return m_endpoint; }
    int CheckFailCount() const { return m_nCheckFailCount; }
    bool IsCheckTimerActive() const;
    int RealTimeInterval() const { return m_nRealTimeInterval; }
    // The polling client of the current attempt (a new one per attempt); null before the first.
    FileTransferClient* RealTimeClient() const;

    // Shorter waits for tests; the defaults are the machine's real timings.
    void SetCheckInterval(int milliseconds) { m_nCheckIntervalMs = milliseconds; }
    void SetSerialNumberTimeout(int milliseconds) { m_nSnTimeoutMs = milliseconds; }

    // Abandons whatever ran before and connects to `ip`; `sn` may be empty, it is then
    // read from the machine. A silent attempt (the last machine, found at start) opens no
    // box when it fails.
    void Connect(const QString& ip, const QString& sn, bool silent);
    // A machine whose FTP service another part of the host has already proven.
    void AcceptProvenMachine(const QString& ip, const QString& sn);
    // Ends the connection or the attempt; true if the check timer was running.
    bool Disconnect();
    // The machine answers on another link now; nothing is restarted.
    void SwitchIp(const QString& ip);

    // One tick of the check timer: starts a check whether or not earlier ones answered,
    // so a machine whose checks hang is still given up about eight ticks after it went.
    void CheckNow();
    void OnInfoClientStatus(bool bConnect);
    void OnRealTimeClientStatus(bool bConnect);

Q_SIGNALS:
    void SignalStateChanged(MachineConnection::State state);
    void SignalAppendLog(const QString& text, const QColor& color);
    // The FTP test of a user's attempt answered (for the machine selection box).
    void SignalFtpTestFinished(bool ok);
    // Fully established: the serial number is known and the host was told.
    void SignalConnected(const QString& ip, const QString& sn);
    // The connected machine's endpoint changed (established, switched link, or ended: empty).
    void SignalEndpointChanged(const MachineEndpoint& endpoint);
    // Every end of a connection or an attempt, including a failed connect.
    void SignalOffline();
    // The eighth failed check in a row ended the connection.
    void SignalGaveUp();
    // A failure the user has to acknowledge.
    void SignalNotice(const QString& text);
    void SignalMachineInfoFinished(bool ok, const StructMachineSystemInfo& systemInfo,
                                   const StructMachineNetInfo& netInfo);
    // Every real-time record, whether its delivery reported success or not.
    void SignalRealTimeData(bool ok, const StructRealTimeData& data);

private:
    quint64 BeginAttempt(const QString& ip, const QString& sn);
    void RunFtpTest(bool silent);
    void OnFtpTestResult(quint64 generation, bool ok, bool silent);
    void OnSerialNumberRead(bool ok, const QString& sn, const QString& errorText);
    void Establish();
    void OnCheckResult(quint64 generation, bool ok);
    void GiveUp();
    void OnMachineInfo(bool ok, const StructMachineSystemInfo& systemInfo, const StructMachineNetInfo& netInfo);
    void OnRealTimeData(bool ok, const StructRealTimeData& data);
    void StartRealTimePolling();
    // After a recovery every client is live again: what dropped with the machine reconnects.
    void ReviveClients();
    void PollRealTime();
    // Stops everything of the current attempt and forgets the machine.
    void TearDown();
    void MakeClients();
    void SetState(State state);
    void Fail(const QString& text, bool showBox);

    State m_eState = State::Disconnected;
    quint64 m_nGeneration = 0;
    QString m_strIp;
    QString m_strSn;
    MachineEndpoint m_endpoint;
    int m_nCheckFailCount = 0;
    int m_nCheckIntervalMs = 1000;
    int m_nSnTimeoutMs = 5000;
    bool m_bInfoRequested = false;
    bool m_bRealTimeBusy = false;
    int m_nRealTimeInterval = 1000;

    QTimer* m_pCheckTimer = nullptr;
    QTimer* m_pRealTimeTimer = nullptr;
    // Fresh clients for every attempt: a late answer of the last machine's clients has
    // nobody left to reach.
    QPointer<FileTransferClient> m_pInfoClient;
    QPointer<FileTransferClient> m_pRealTimeClient;
    SerialNumberReader* m_pSnReader = nullptr;
    TaskOwner m_tasks;
};
