#include "HistorySettings.h"

#include "CamBaseTextHelper.h"

namespace {
constexpr qint64 MegaByte = 1024 * 1024;

QVariant Value(const QString& key, const QVariant& fallback)
{
    return CamBaseTextHelper::instance()->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, key, fallback);
}

QString EnabledKey(const QString& sn)
{
    return QStringLiteral("History/Enabled/%1").arg(sn);
}
} // namespace

HistorySettings HistorySettings::Load(const QString& sn)
{
    HistorySettings settings;
    settings.bEnabled = Value(EnabledKey(sn), true).toBool();
    settings.iKeepPerProgram = qMax(1, Value(QStringLiteral("History/KeepPerProgram"), DefaultKeepPerProgram).toInt());
    settings.nTotalBytes =
        Value(QStringLiteral("History/TotalSizeMB"), DefaultTotalBytes / MegaByte).toLongLong() * MegaByte;
    settings.nMaxFileBytes =
        Value(QStringLiteral("History/MaxFileSizeMB"), DefaultMaxFileBytes / MegaByte).toLongLong() * MegaByte;
    return settings;
}

void HistorySettings::SetEnabled(const QString& sn, bool bEnabled)
{
    CamBaseTextHelper::instance()->SetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, EnabledKey(sn), bEnabled,
                                                        true);
}
