#include "FtpSettings.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"

FtpSettings FtpSettings::Load(const QString& host)
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
    if (!host.isEmpty()) {
        settings.nameEncoding = NameEncodingFor(host);
        settings.nameRules = FtpNameRules::Load(host);
    }
    return settings;
}

namespace {
QString nameEncodingKey(const QString& ip)
{
    return QString::fromLatin1(g_strSettingFtpNameEncoding) + QLatin1Char('/') + ip;
}
} // namespace

QByteArray FtpSettings::NameEncodingFor(const QString& ip)
{
    const QString value =
        CamBaseTextHelper::instance()
            ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, nameEncodingKey(ip), QStringLiteral("UTF-8"))
            .toString();
    return value.isEmpty() ? QByteArray("UTF-8") : value.toLatin1();
}

void FtpSettings::SetNameEncodingFor(const QString& ip, const QByteArray& encoding)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, nameEncodingKey(ip),
                                                        QString::fromLatin1(encoding), true);
}

int FtpSettings::MapPort(int urlPort) const
{
    if (urlPort <= 0 || urlPort == 21)
        return portMapping > 0 ? portMapping : 21;
    return urlPort;
}
