#pragma once

#include "FleetMachine.h"
#include "MachineEndpoint.h"
#include "MachineWatcher.h"

#include <QList>
#include <QObject>
#include <functional>

class BroadCastSender;
class MachineConnection;

// The machines of the shop: those discovery finds and those the workbench connected to before.
// Each is watched by its own MachineWatcher, except the workbench's current machine, whose
// connection already polls it: its records feed the row, and it is never polled twice.
class MachineFleet final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MachineFleet)

public:
    static constexpr const char* KnownMachinesKey = "Fleet/KnownMachines";
    static constexpr const char* PollIntervalKey = "Fleet/PollIntervalMs";
    static constexpr int DefaultPollMs = 2000;

    explicit MachineFleet(MachineConnection* connection, QObject* parent = nullptr);
    ~MachineFleet() override;

    // The watchers' pace from the settings, or the given one (tests); before Start().
    void SetTiming(const MachineWatcher::Timing& timing) { m_timing = timing; }
    const MachineWatcher::Timing& Timing() const { return m_timing; }
    // Watches the remembered machines and asks the network for more.
    void Start();
    // One discovery run (a few rounds over half a minute).
    void Discover();
    void AddMachine(const QString& ip, const QString& sn);

    // Tests keep discovery on loopback through it.
    BroadCastSender* DiscoverySender() const { return m_pDiscovery; }
    bool IsStarted() const { return m_bStarted; }

    int Count() const { return int(m_listMachines.size()); }
    const FleetMachine& At(int row) const { return m_listMachines.at(row); }
    int RowOf(const QString& sn) const;
    MachineEndpoint EndpointOf(int row) const;
    QString RunningProgramOf(const QString& ip) const;
    void SetSendResult(int row, const QString& text);

Q_SIGNALS:
    void SignalAboutToAdd(int row);
    void SignalAdded(int row);
    void SignalChanged(int row);

private:
    void Watch(int row);
    void OnDiscoveryReply(const QString& reply);
    void OnRecord(const QString& sn, const StructRealTimeData& record);
    void OnUnreachable(const QString& sn);
    void OnEndpointChanged(const MachineEndpoint& endpoint);
    void Remember(const QString& ip, const QString& sn);
    // Changes a machine's row and notes when its state changed.
    void Update(const QString& sn, const std::function<void(FleetMachine&)>& change);

    MachineConnection* m_pConnection;
    BroadCastSender* m_pDiscovery;
    MachineWatcher::Timing m_timing;
    QList<FleetMachine> m_listMachines;
    // Row by row beside the machines; null for none (not started yet).
    QList<MachineWatcher*> m_listWatchers;
    QString m_strConnectedSn;
    bool m_bStarted = false;
};
