#pragma once

#include "TestFtpServer.h"

// pure-ftpd with one virtual user (puredb) writing as "nobody"; offers MLSD.
class PureFtpdServer : public TestFtpServer
{
public:
    PureFtpdServer();

    FtpServerKind Kind() const override { return FtpServerKind::PureFtpd; }
    bool OffersMlsd() const override { return true; }
    QString MissingReason() const override;

protected:
    bool Prepare(QString* error) override;
    QString Program() const override;
    QStringList Arguments(quint16 port) const override;
    int FileOwnerUid() const override;
};
