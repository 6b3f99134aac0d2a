#pragma once

#include "SimOptions.h"

#include <QHostAddress>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

class CncSimulator;

// Several simulated machines in one process, each on its own loopback address with the
// machine's standard ports, so that a client reaches them exactly as it reaches machines
// on a shop network: one address per machine, no per-machine port settings.
class SimShop final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SimShop)

public:
    // 127.0.0.2 up to 127.0.0.251 stay inside one /24 and clear of 127.0.0.1.
    static constexpr int MaxMachines = 250;

    static QHostAddress AddressOf(int index);
    // The shop's serial numbers differ only in their last three digits.
    static QString SerialOf(const QString& baseSerial, int index);
    // The options of one machine of the shop: its address, serial number and program folder.
    static SimOptions MachineOptions(const SimOptions& shop, int index);

    // `tweak` may change one machine's options (a fault of that machine alone).
    using Tweak = std::function<void(int index, SimOptions& options)>;

    explicit SimShop(const SimOptions& options, Tweak tweak = {}, QObject* parent = nullptr);
    ~SimShop() override;

    // Creates the program folders and starts every machine; false with the first failure. Ports
    // given as 0 are chosen by the first machine, and the others take the same.
    bool Start(QString* error);
    // The shop's options, with the ports in use once started.
    const SimOptions& Options() const { return m_options; }
    int Count() const { return int(m_machines.size()); }
    CncSimulator& Machine(int index) { return *m_machines.at(size_t(index)); }

private:
    SimOptions m_options;
    Tweak m_fnTweak;
    std::vector<std::unique_ptr<CncSimulator>> m_machines;
};
