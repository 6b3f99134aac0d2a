#pragma once

#include "TestFtpServer.h"

#include <QMap>

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
    // The FTP commands received so far by verb, with their sum under "total"; empty when the
    // simulator does not answer the request within a few seconds.
    QMap<QString, qint64> CommandCounts() const;

protected:
    bool Prepare(QString*) override { return true; }
    QString Program() const override;
    QStringList Arguments(quint16 port) const override;

private:
    QStringList m_listFaultSwitches;
};
