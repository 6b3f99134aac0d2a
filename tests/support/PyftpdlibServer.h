#pragma once

#include "TestFtpServer.h"

// pyftpdlib from Debian (/usr/bin/python3), one user with full rights; MLSD.
class PyftpdlibServer : public TestFtpServer
{
public:
    PyftpdlibServer();

    FtpServerKind Kind() const override { return FtpServerKind::Pyftpdlib; }
    bool OffersMlsd() const override { return true; }
    QString MissingReason() const override;

protected:
    bool Prepare(QString*) override { return true; }
    QString Program() const override { return QStringLiteral("/usr/bin/python3"); }
    QStringList Arguments(quint16 port) const override;
};
