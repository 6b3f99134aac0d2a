#include "MachineEndpoint.h"

#include "FtpSessionBudget.h"
#include "FtpSettings.h"

MachineEndpoint MachineEndpoint::For(const QString& ip, const QString& sn)
{
    MachineEndpoint endpoint;
    endpoint.strIp = ip;
    endpoint.strSn = sn;
    if (ip.isEmpty())
        return endpoint;
    const FtpSettings settings = FtpSettings::Load(ip);
    endpoint.iFtpPort = settings.MapPort(WellKnownFtpPort);
    endpoint.nameEncoding = settings.nameEncoding;
    endpoint.nameRules = settings.nameRules;
    return endpoint;
}

int MachineEndpoint::LoginLimit() const
{
    return strIp.isEmpty() ? 0 : FtpSessionBudget::Instance().Limit(strIp);
}
