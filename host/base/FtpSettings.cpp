#include "FtpSettings.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"

FtpSettings FtpSettings::Load()
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    const int type = CamBaseTextHelper::SettingTypeLocal;
    FtpSettings settings;
    settings.user = helper->GetLocalSettingCache(type, g_strSettingFtpUser, settings.user).toString();
    settings.password = helper->GetLocalSettingCache(type, g_strSettingFtpPassword, settings.password).toString();
    settings.portMapping = helper->GetLocalSettingCache(type, g_strSettingFtpPortMapping, settings.portMapping).toInt();
    settings.connectTimeoutMs =
        helper->GetLocalSettingCache(type, g_strSettingFtpConnectTimeoutMs, settings.connectTimeoutMs).toInt();
    settings.responseTimeoutMs =
        helper->GetLocalSettingCache(type, g_strSettingFtpResponseTimeoutMs, settings.responseTimeoutMs).toInt();
    return settings;
}

int FtpSettings::MapPort(int urlPort) const
{
    if (urlPort <= 0 || urlPort == 21)
        return portMapping > 0 ? portMapping : 21;
    return urlPort;
}
