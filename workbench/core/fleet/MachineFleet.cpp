#include "MachineFleet.h"

#include "BroadCastSender.h"
#include "CamBaseTextHelper.h"
#include "MachineConnection.h"

#include <algorithm>

namespace {
constexpr int MinPollMs = 500;
constexpr int MaxPollMs = 60000;
constexpr int DiscoveryDurationMs = 30000;
constexpr int DiscoveryIntervalMs = 3000;

QVariant Setting(const char* key, const QVariant& defaultValue = QVariant())
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                               QString::fromLatin1(key), defaultValue);
}

MachineWatcher::Timing ConfiguredTiming()
{
    MachineWatcher::Timing timing;
    timing.iPollMs =
        qBound(MinPollMs, Setting(MachineFleet::PollIntervalKey, MachineFleet::DefaultPollMs).toInt(), MaxPollMs);
    // Three polls without an answer: one lost datagram or a slow moment is not "offline".
    timing.iOfflineAfterMs = 3 * timing.iPollMs;
    return timing;
}
} // namespace

MachineFleet::MachineFleet(MachineConnection* connection, QObject* parent)
    : QObject(parent), m_pConnection(connection), m_pDiscovery(new BroadCastSender(this)), m_timing(ConfiguredTiming())
{
    connect(m_pDiscovery, &BroadCastSender::discoveryResult, this, &MachineFleet::OnDiscoveryReply);
    connect(m_pConnection, &MachineConnection::SignalEndpointChanged, this, &MachineFleet::OnEndpointChanged);
    connect(m_pConnection, &MachineConnection::SignalRealTimeData, this,
            [this](bool ok, const StructRealTimeData& record) {
                if (ok && !m_strConnectedSn.isEmpty())
                    OnRecord(m_strConnectedSn, record);
            });
    connect(m_pConnection, &MachineConnection::SignalStateChanged, this, [this](MachineConnection::State state) {
        if (state == MachineConnection::State::Degraded && !m_strConnectedSn.isEmpty())
            OnUnreachable(m_strConnectedSn);
    });
}

MachineFleet::~MachineFleet() = default;

void MachineFleet::Start()
{
    if (m_bStarted)
        return;
    m_bStarted = true;
    for (const QString& entry : Setting(KnownMachinesKey).toStringList()) {
        const QString sn = entry.section(QLatin1Char('@'), 0, 0);
        const QString ip = entry.section(QLatin1Char('@'), 1);
        if (!sn.isEmpty() && !ip.isEmpty())
            AddMachine(ip, sn);
    }
    for (int row = 0; row < Count(); ++row)
        Watch(row);
    Discover();
}

void MachineFleet::Discover()
{
    m_pDiscovery->startDiscovery(DiscoveryDurationMs, DiscoveryIntervalMs);
}

int MachineFleet::RowOf(const QString& sn) const
{
    for (int row = 0; row < Count(); ++row) {
        if (m_listMachines.at(row).strSn == sn)
            return row;
    }
    return -1;
}

MachineEndpoint MachineFleet::EndpointOf(int row) const
{
    const FleetMachine& machine = m_listMachines.at(row);
    // The connected machine's endpoint carries what its connection learned (the login limit).
    if (machine.bConnected)
        return m_pConnection->Endpoint();
    return MachineEndpoint::For(machine.strIp, machine.strSn);
}

QString MachineFleet::RunningProgramOf(const QString& ip) const
{
    for (const FleetMachine& machine : m_listMachines) {
        if (machine.strIp == ip)
            return machine.RunningProgram();
    }
    return QString();
}

void MachineFleet::SetSendResult(int row, const QString& text)
{
    m_listMachines[row].strSendResult = text;
    Q_EMIT SignalChanged(row);
}

void MachineFleet::AddMachine(const QString& ip, const QString& sn)
{
    const int known = RowOf(sn);
    if (known >= 0) {
        if (m_listMachines.at(known).strIp == ip)
            return;
        // The machine answers at another address now: watch it there.
        m_listMachines[known].strIp = ip;
        delete m_listWatchers[known];
        m_listWatchers[known] = nullptr;
        if (m_bStarted)
            Watch(known);
        Q_EMIT SignalChanged(known);
        return;
    }
    const int row = Count();
    Q_EMIT SignalAboutToAdd(row);
    FleetMachine machine;
    machine.strIp = ip;
    machine.strSn = sn;
    machine.bConnected = sn == m_strConnectedSn;
    m_listMachines.append(machine);
    m_listWatchers.append(nullptr);
    Q_EMIT SignalAdded(row);
    if (m_bStarted)
        Watch(row);
}

void MachineFleet::Watch(int row)
{
    MachineWatcher*& watcher = m_listWatchers[row];
    if (!watcher) {
        const QString sn = m_listMachines.at(row).strSn;
        watcher = new MachineWatcher(m_listMachines.at(row).strIp, m_timing, this);
        connect(watcher, &MachineWatcher::SignalRecord, this,
                [this, sn](const StructRealTimeData& record) { OnRecord(sn, record); });
        connect(watcher, &MachineWatcher::SignalUnreachable, this, [this, sn] { OnUnreachable(sn); });
    }
    if (m_listMachines.at(row).bConnected)
        watcher->Pause();
    else
        watcher->Start();
}

void MachineFleet::OnDiscoveryReply(const QString& reply)
{
    const QStringList parts = reply.split(QLatin1Char('*'));
    if (parts.size() >= 4 && !parts.at(1).isEmpty() && !parts.at(3).isEmpty())
        AddMachine(parts.at(3), parts.at(1));
}

void MachineFleet::Update(const QString& sn, const std::function<void(FleetMachine&)>& change)
{
    const int row = RowOf(sn);
    if (row < 0)
        return;
    FleetMachine& machine = m_listMachines[row];
    const int before = machine.Status();
    // A machine's first answer is no change worth pointing at.
    const bool bHeardBefore = machine.lastHeard.isValid();
    change(machine);
    if (bHeardBefore && machine.Status() != before)
        machine.stateSince = QDateTime::currentDateTime();
    Q_EMIT SignalChanged(row);
}

void MachineFleet::OnRecord(const QString& sn, const StructRealTimeData& record)
{
    Update(sn, [&record](FleetMachine& machine) {
        machine.record = record;
        machine.bReachable = true;
        machine.lastHeard = QDateTime::currentDateTime();
    });
}

void MachineFleet::OnUnreachable(const QString& sn)
{
    Update(sn, [](FleetMachine& machine) { machine.bReachable = false; });
}

void MachineFleet::OnEndpointChanged(const MachineEndpoint& endpoint)
{
    const QString before = m_strConnectedSn;
    m_strConnectedSn = endpoint.IsValid() ? endpoint.strSn : QString();
    if (before == m_strConnectedSn)
        return;
    if (!m_strConnectedSn.isEmpty()) {
        AddMachine(endpoint.strIp, endpoint.strSn);
        Remember(endpoint.strIp, endpoint.strSn);
    }
    for (const QString& sn : {before, m_strConnectedSn}) {
        const int row = sn.isEmpty() ? -1 : RowOf(sn);
        if (row < 0)
            continue;
        m_listMachines[row].bConnected = sn == m_strConnectedSn;
        if (m_bStarted)
            Watch(row);
        Q_EMIT SignalChanged(row);
    }
}

void MachineFleet::Remember(const QString& ip, const QString& sn)
{
    QStringList known = Setting(KnownMachinesKey).toStringList();
    const QString entry = sn + QLatin1Char('@') + ip;
    if (known.contains(entry))
        return;
    known.erase(std::remove_if(known.begin(), known.end(),
                               [&sn](const QString& text) { return text.section(QLatin1Char('@'), 0, 0) == sn; }),
                known.end());
    known.append(entry);
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal,
                                                        QString::fromLatin1(KnownMachinesKey), known, true);
}
