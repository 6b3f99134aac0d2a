#include "FtpConnection.h"

#include "FtpSession.h"
#include "FtpSettings.h"

bool FtpConnection(const QString& ip)
{
    return FtpConnection(ip, {});
}

bool FtpConnection(const QString& ip, const std::function<bool()>& stopRequested)
{
    const FtpSettings settings = FtpSettings::Load();
    FtpSession session(ip, settings.MapPort(21), settings, stopRequested);
    return session.Connect();
}

bool makeFtpDirection(const QString& ip, const QString& path)
{
    const FtpSettings settings = FtpSettings::Load();
    FtpSession session(ip, settings.MapPort(21), settings);
    return session.Connect() && session.Command({QStringLiteral("MKD ") + path});
}
