#pragma once

#include "FtpNameRules.h"
#include "KorvBaseExport.h"

#include <QByteArray>
#include <QString>

// The FTP account, port mapping and time-outs of the host settings (keys in
// CamBaseTextHelper.h), read once per task on the thread that creates it.
struct KORVBASE_EXPORT FtpSettings
{
    QString user = QStringLiteral("anonymous");
    QString password = QStringLiteral("korv@");
    int portMapping = 21;
    int connectTimeoutMs = 5000;
    int responseTimeoutMs = 15000;
    // How the machine spells file names on the wire (a QStringConverter name).
    QByteArray nameEncoding = "UTF-8";
    FtpNameRules nameRules;

    // With a host, that machine's own settings (the name encoding) are read too.
    static FtpSettings Load(const QString& host = QString());
    // The encoding set for the machine at ip; "UTF-8" when none is.
    static QByteArray NameEncodingFor(const QString& ip);
    static void SetNameEncodingFor(const QString& ip, const QByteArray& encoding);
    // Machines are addressed on port 21; the mapping redirects that port (forwarding, simulator).
    int MapPort(int urlPort) const;
};
