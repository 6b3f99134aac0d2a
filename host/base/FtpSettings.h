#pragma once

#include "KorvBaseExport.h"

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

    static FtpSettings Load();
    // Machines are addressed on port 21; the mapping redirects that port (forwarding, simulator).
    int MapPort(int urlPort) const;
};
