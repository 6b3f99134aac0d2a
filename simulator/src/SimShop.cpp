#include "SimShop.h"

#include "CncSimulator.h"

#include <QDir>

QHostAddress SimShop::AddressOf(int index)
{
    return QHostAddress(QHostAddress(QHostAddress::LocalHost).toIPv4Address() + 1 + quint32(index));
}

QString SimShop::SerialOf(const QString& baseSerial, int index)
{
    return baseSerial.left(qMax(0, baseSerial.size() - 3)) + QString::number(100 + index + 1);
}

SimOptions SimShop::MachineOptions(const SimOptions& shop, int index)
{
    SimOptions options = shop;
    options.machines = 0;
    options.bindAddress = AddressOf(index);
    options.serialNumber = SerialOf(shop.serialNumber, index);
    options.rootDir = QDir(shop.rootDir).filePath(options.serialNumber);
    // Machines of a shop do not run in step: each waits a little longer between programs.
    options.idleSeconds = shop.idleSeconds + index % 7;
    return options;
}

SimShop::SimShop(const SimOptions& options, Tweak tweak, QObject* parent)
    : QObject(parent), m_options(options), m_fnTweak(std::move(tweak))
{}

SimShop::~SimShop() = default;

bool SimShop::Start(QString* error)
{
    for (int index = 0; index < m_options.machines; ++index) {
        SimOptions options = MachineOptions(m_options, index);
        if (m_fnTweak)
            m_fnTweak(index, options);
        if (!QDir().mkpath(options.rootDir)) {
            *error = QStringLiteral("cannot create %1").arg(options.rootDir);
            return false;
        }
        m_machines.push_back(std::make_unique<CncSimulator>(options));
        if (!m_machines.back()->Start(error)) {
            *error = QStringLiteral("%1: %2").arg(options.bindAddress.toString(), *error);
            return false;
        }
        if (index == 0) {
            CncSimulator& first = *m_machines.front();
            m_options.ftpPort = first.FtpPort();
            m_options.infoPort = first.InfoPort();
            m_options.snPort = first.SnPort();
            m_options.discoveryPort = first.DiscoveryPort();
        }
    }
    return true;
}
