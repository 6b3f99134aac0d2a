#pragma once

#include "TestFtpServer.h"

// vsftpd in anonymous mode with write rights, writing as "daemon"; LIST only (no MLSD).
// The binary comes from scripts/bootstrap (<source>/.deps/vsftpd). vsftpd refuses a
// writable chroot root, so "/" is read-only and tests work in folders below it.
class VsftpdServer : public TestFtpServer
{
public:
    VsftpdServer();

    FtpServerKind Kind() const override { return FtpServerKind::Vsftpd; }
    bool OffersMlsd() const override { return false; }
    QString MissingReason() const override;

protected:
    bool Prepare(QString* error) override;
    QString Program() const override;
    QStringList Arguments(quint16 port) const override;
    int FileOwnerUid() const override;
};
