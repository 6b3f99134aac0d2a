#pragma once

#include "MachineRecords.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class FileTransferClient;

// Watches one machine of the shop over a request/response client of its own: a real-time record
// every poll interval, never an FTP session. A machine that has not answered for the offline
// bound is reported unreachable, and its connection is tried again after a wait that doubles up
// to the longest back-off, so a switched-off machine costs almost nothing. Nothing here blocks.
class MachineWatcher final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineWatcher)

public:
    struct Timing
    {
        int iPollMs = 2000;
        int iOfflineAfterMs = 6000;
        int iMaxBackoffMs = 30000;
    };

    MachineWatcher(const QString& ip, const Timing& timing, QObject* parent = nullptr);
    ~MachineWatcher() override;

    QString Ip() const { return m_strIp; }
    // Starts or resumes watching.
    void Start();
    // Stops watching and closes the client (the machine is watched by other means meanwhile).
    void Pause();
    bool IsActive() const { return m_pollTimer.isActive(); }

Q_SIGNALS:
    void SignalRecord(const StructRealTimeData& record);
    void SignalUnreachable();

private:
    void Poll();
    void OnClientStatus(bool bConnected);
    void OnRecord(bool ok, const StructRealTimeData& record);
    void ScheduleRetry();

    QString m_strIp;
    Timing m_timing;
    FileTransferClient* m_pClient;
    QTimer m_pollTimer;
    QTimer m_retryTimer;
    QElapsedTimer m_sinceHeard;
    int m_iBackoffMs;
    bool m_bBusy = false;
    bool m_bUnreachableSaid = false;
};
