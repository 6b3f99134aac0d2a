#include "FtpNameRules.h"

#include "CamBaseTextHelper.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace {
QString key(const QString& ip, const char* rule)
{
    return QStringLiteral("Ftp/NameRules/%1/%2").arg(ip, QLatin1String(rule));
}
} // namespace

FtpNameRules FtpNameRules::Load(const QString& ip)
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    const int type = CamBaseTextHelper::SettingTypeLocal;
    FtpNameRules rules;
    rules.maxLength = helper->GetLocalSettingCache(type, key(ip, "MaxLength"), 0).toInt();
    rules.allowedCharacters = helper->GetLocalSettingCache(type, key(ip, "AllowedCharacters"), QString()).toString();
    rules.bCaseInsensitive = helper->GetLocalSettingCache(type, key(ip, "CaseInsensitive"), false).toBool();
    rules.bEightDotThree = helper->GetLocalSettingCache(type, key(ip, "EightDotThree"), false).toBool();
    return rules;
}

void FtpNameRules::Save(const QString& ip, const FtpNameRules& rules)
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    const int type = CamBaseTextHelper::SettingTypeLocal;
    helper->SetLocalSettingCache(type, key(ip, "MaxLength"), rules.maxLength, false);
    helper->SetLocalSettingCache(type, key(ip, "AllowedCharacters"), rules.allowedCharacters, false);
    helper->SetLocalSettingCache(type, key(ip, "CaseInsensitive"), rules.bCaseInsensitive, false);
    helper->SetLocalSettingCache(type, key(ip, "EightDotThree"), rules.bEightDotThree, true);
}

QString FtpNameRules::Violation(const QString& name) const
{
    if (maxLength > 0 && name.size() > maxLength)
        return QCoreApplication::translate("FtpTask", "文件名“%1”超过机床允许的长度（最多%2个字符）")
            .arg(name)
            .arg(maxLength);
    static const QRegularExpression eightDotThree(QStringLiteral("^[^.]{1,8}(\\.[^.]{1,3})?$"));
    if (bEightDotThree && !eightDotThree.match(name).hasMatch())
        return QCoreApplication::translate("FtpTask",
                                           "文件名“%1”不是机床要求的8.3格式（主名最多8个字符，扩展名最多3个字符）")
            .arg(name);
    if (allowedCharacters.isEmpty())
        return QString();
    const QRegularExpression allowed(QStringLiteral("^[%1]*$").arg(allowedCharacters));
    if (!allowed.isValid())
        return QCoreApplication::translate("FtpTask", "机床的文件名字符规则无效：%1").arg(allowedCharacters);
    if (!allowed.match(name).hasMatch())
        return QCoreApplication::translate("FtpTask", "文件名“%1”含有机床不允许的字符（只允许：%2）")
            .arg(name, allowedCharacters);
    return QString();
}

QString FtpNameRules::Collision(const QString& name, const QList<FtpFileInfo>& entries) const
{
    if (!bCaseInsensitive)
        return QString();
    for (const FtpFileInfo& entry : entries) {
        if (entry.name != name && entry.name.compare(name, Qt::CaseInsensitive) == 0)
            return QCoreApplication::translate("FtpTask", "机床不区分文件名大小写，“%1”与已有的“%2”冲突")
                .arg(name, entry.name);
    }
    return QString();
}
