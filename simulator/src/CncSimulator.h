#pragma once

#include "SimOptions.h"

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <memory>

class SimDiscoveryResponder;
class SimFtpServer;
class SimInfoService;
class SimMachine;
class SimRequestHandler;
class SimSnService;

// The whole simulated machine: its four network services and the machine model,
// driven by a wall-clock tick. Tests run it in-process with every port set to 0.
class CncSimulator : public QObject
{
    Q_OBJECT
public:
    static constexpr int kTickMs = 50;

    explicit CncSimulator(const SimOptions& options, QObject* parent = nullptr);
    ~CncSimulator() override;

    bool Start(QString* error);
    // Closes every port and drops every connection, as a machine switched off would. With
    // vanishSilently the TCP ports then accept connections that never hear a word, as a
    // machine behind a pulled cable seems to until the time-outs.
    void Vanish();

    quint16 FtpPort() const;
    quint16 InfoPort() const;
    quint16 SnPort() const;
    quint16 DiscoveryPort() const;
    QString ReportedIp() const;
    SimMachine& Machine() { return *m_pMachine; }
    const SimFtpServer& FtpServer() const { return *m_pFtp; }
    SimOptions& Options() { return m_options; }

signals:
    void SignalVanished();
    void SignalInfoRequest(const QString& type);

private:
    SimOptions m_options;
    std::unique_ptr<SimMachine> m_pMachine;
    std::unique_ptr<SimRequestHandler> m_pHandler;
    SimFtpServer* m_pFtp;
    SimInfoService* m_pInfo;
    SimSnService* m_pSn;
    SimDiscoveryResponder* m_pDiscovery;
    QTimer m_tick;
    QElapsedTimer m_clock;
};
