#include "MachineWatcher.h"

#include "FileTransferClient.h"

namespace {
constexpr quint16 InfoPort = 30001;
}

MachineWatcher::MachineWatcher(const QString& ip, const Timing& timing, QObject* parent)
    : QObject(parent), m_strIp(ip), m_timing(timing), m_pClient(new FileTransferClient(this)),
      m_iBackoffMs(timing.iPollMs)
{
    // An answer later than the poll interval is as good as none: the next poll asks again.
    m_pClient->SetRequestTimeout(m_timing.iPollMs);
    m_pollTimer.setInterval(m_timing.iPollMs);
    m_retryTimer.setSingleShot(true);
    connect(&m_pollTimer, &QTimer::timeout, this, &MachineWatcher::Poll);
    connect(&m_retryTimer, &QTimer::timeout, this, [this] { m_pClient->connectToMachine(m_strIp, InfoPort); });
    connect(m_pClient, &FileTransferClient::SignalTcpConnectStatus, this, &MachineWatcher::OnClientStatus);
    connect(m_pClient, &FileTransferClient::SignalGetMachineRealTimeData, this, &MachineWatcher::OnRecord);
}

MachineWatcher::~MachineWatcher()
{
    m_pClient->disconnect(this);
}

void MachineWatcher::Start()
{
    if (m_pollTimer.isActive())
        return;
    m_sinceHeard.start();
    m_bUnreachableSaid = false;
    m_iBackoffMs = m_timing.iPollMs;
    m_pollTimer.start();
    m_pClient->connectToMachine(m_strIp, InfoPort);
}

void MachineWatcher::Pause()
{
    m_pollTimer.stop();
    m_retryTimer.stop();
    const QSignalBlocker blocker(m_pClient);
    m_pClient->disconnectFromMachine();
    m_bBusy = false;
}

void MachineWatcher::Poll()
{
    if (!m_bUnreachableSaid && m_sinceHeard.elapsed() > m_timing.iOfflineAfterMs) {
        m_bUnreachableSaid = true;
        Q_EMIT SignalUnreachable();
        // A machine that takes connections but never answers is dropped too, so that it is
        // retried with the same back-off as one that refuses them.
        if (m_pClient->isConnected())
            m_pClient->disconnectFromMachine();
    }
    if (m_bBusy || !m_pClient->isConnected())
        return;
    m_bBusy = m_pClient->GetMachineRealTimeData();
}

void MachineWatcher::OnClientStatus(bool bConnected)
{
    if (!m_pollTimer.isActive())
        return;
    if (bConnected) {
        Poll();
        return;
    }
    m_bBusy = false;
    ScheduleRetry();
}

void MachineWatcher::ScheduleRetry()
{
    if (m_retryTimer.isActive())
        return;
    m_retryTimer.start(m_iBackoffMs);
    m_iBackoffMs = qMin(m_iBackoffMs * 2, m_timing.iMaxBackoffMs);
}

void MachineWatcher::OnRecord(bool ok, const StructRealTimeData& record)
{
    m_bBusy = false;
    if (!ok || !m_pollTimer.isActive())
        return;
    m_sinceHeard.restart();
    m_bUnreachableSaid = false;
    m_iBackoffMs = m_timing.iPollMs;
    Q_EMIT SignalRecord(record);
}
