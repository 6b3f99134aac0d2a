#include "CncSimulator.h"

#include "SimDiscoveryResponder.h"
#include "SimFtpServer.h"
#include "SimInfoService.h"
#include "SimMachine.h"
#include "SimRequestHandler.h"
#include "SimSnService.h"

#include <QNetworkInterface>
#include <QTcpServer>

CncSimulator::CncSimulator(const SimOptions& options, QObject* parent)
    : QObject(parent), m_options(options), m_pMachine(std::make_unique<SimMachine>(m_options)),
      m_pHandler(std::make_unique<SimRequestHandler>(m_options, *m_pMachine, [this] { return ReportedIp(); })),
      m_pFtp(new SimFtpServer(m_options, this)), m_pInfo(new SimInfoService(*m_pHandler, this)),
      m_pSn(new SimSnService(m_options, this)), m_pDiscovery(new SimDiscoveryResponder(
                                                    m_options, [this] { return ReportedIp(); }, this))
{
    m_pFtp->SetRunningProgramProbe([this] { return m_pMachine->RunningProgramFile(); });
    connect(m_pInfo, &SimInfoService::SignalRequest, this, &CncSimulator::SignalInfoRequest);
    m_tick.setInterval(kTickMs);
    connect(&m_tick, &QTimer::timeout, this, [this] {
        const qint64 elapsed = m_clock.restart();
        m_pMachine->Advance(elapsed / 1000.0);
    });
}

CncSimulator::~CncSimulator()
{
    // The services refer to the handler and the machine: they go first.
    delete m_pFtp;
    delete m_pInfo;
    delete m_pSn;
    delete m_pDiscovery;
}

bool CncSimulator::Start(QString* error)
{
    const QHostAddress address = m_options.bindAddress;
    if (!m_pFtp->Listen(address, m_options.ftpPort)) {
        *error = QStringLiteral("FTP port %1: %2").arg(m_options.ftpPort).arg(m_pFtp->ErrorString());
        return false;
    }
    if (!m_pInfo->Listen(address, m_options.infoPort)) {
        *error = QStringLiteral("info port %1: %2").arg(m_options.infoPort).arg(m_pInfo->ErrorString());
        return false;
    }
    if (!m_pSn->Listen(address, m_options.snPort)) {
        *error = QStringLiteral("serial-number port %1: %2").arg(m_options.snPort).arg(m_pSn->ErrorString());
        return false;
    }
    if (!m_pDiscovery->Listen(address, m_options.discoveryPort)) {
        *error = QStringLiteral("discovery port %1: %2").arg(m_options.discoveryPort).arg(m_pDiscovery->ErrorString());
        return false;
    }
    m_clock.start();
    m_tick.start();
    if (m_options.vanishAfter >= 0)
        QTimer::singleShot(int(m_options.vanishAfter * 1000), this, &CncSimulator::Vanish);
    return true;
}

void CncSimulator::Vanish()
{
    const QList<quint16> tcpPorts{FtpPort(), InfoPort(), SnPort()};
    m_tick.stop();
    m_pFtp->Shutdown();
    m_pInfo->Shutdown();
    m_pSn->Shutdown();
    m_pDiscovery->Shutdown();
    if (m_options.vanishSilently) {
        for (quint16 port : tcpPorts) {
            // Never asked for its pending connections: the kernel completes the handshake, then silence.
            (new QTcpServer(this))->listen(m_options.bindAddress, port);
        }
    }
    emit SignalVanished();
}

quint16 CncSimulator::FtpPort() const
{
    return m_pFtp->Port();
}

quint16 CncSimulator::InfoPort() const
{
    return m_pInfo->Port();
}

quint16 CncSimulator::SnPort() const
{
    return m_pSn->Port();
}

quint16 CncSimulator::DiscoveryPort() const
{
    return m_pDiscovery->Port();
}

QString CncSimulator::ReportedIp() const
{
    const QHostAddress address = m_options.bindAddress;
    if (address != QHostAddress::AnyIPv4 && address != QHostAddress::Any)
        return address.toString();
    // Listening everywhere: report the address a client on the network would use.
    for (const QHostAddress& candidate : QNetworkInterface::allAddresses()) {
        if (candidate.protocol() == QAbstractSocket::IPv4Protocol && !candidate.isLoopback())
            return candidate.toString();
    }
    return QStringLiteral("127.0.0.1");
}
