#pragma once

#include "TestFtpServer.h"

// The machine simulator built beside the tests, run as the cnc-sim child process with
// a user and password so that refused log-ins can be tested; MLSD. Its other services
// take free ports and stay unused.
class CncSimServer : public TestFtpServer
{
public:
    // faultSwitches: more cnc-sim options ("--ftp-disk-full", "65536").
    explicit CncSimServer(const QStringList& faultSwitches = {});

    FtpServerKind Kind() const override { return FtpServerKind::CncSim; }
    bool OffersMlsd() const override { return true; }
    QString MissingReason() const override;

protected:
    bool Prepare(QString*) override { return true; }
    QString Program() const override;
    QStringList Arguments(quint16 port) const override;

private:
    QStringList m_listFaultSwitches;
};
