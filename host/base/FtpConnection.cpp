#include "FtpConnection.h"

#include "FtpSession.h"
#include "FtpSettings.h"

bool FtpConnection(const QString& ip)
{
    const FtpSettings settings = FtpSettings::Load();
    FtpSession session(ip, settings.MapPort(21), settings);
    return session.Connect();
}

bool makeFtpDirection(const QString& ip, const QString& path)
{
    const FtpSettings settings = FtpSettings::Load();
    FtpSession session(ip, settings.MapPort(21), settings);
    return session.Connect() && session.Command({QStringLiteral("MKD ") + path});
}
