#include "FtpTemporaryName.h"

#include "CamBaseTextHelper.h"
#include "KorvBaseGlobals.h"

#include <QRandomGenerator>
#include <QRegularExpression>

namespace {
constexpr int kMarkerLength = 4;
constexpr int kTokensPerForm = 16;
const QLatin1String kAlphabet("0123456789abcdefghijklmnopqrstuvwxyz");

QString randomToken(int length)
{
    QString token;
    for (int i = 0; i < length; ++i)
        token += kAlphabet[int(QRandomGenerator::global()->bounded(int(kAlphabet.size())))];
    return token;
}

bool validMarker(const QString& marker)
{
    static const QRegularExpression form(QStringLiteral("^[0-9a-z]{%1}$").arg(kMarkerLength));
    return form.match(marker).hasMatch();
}
} // namespace

QString FtpTemporaryName::Make(const QString& targetName, const FtpNameRules& rules, const QString& marker,
                               const QStringList& existing)
{
    const QString mark = validMarker(marker) ? marker : QString();
    const int room = rules.maxLength > 0 ? rules.maxLength : 255;
    // From the most telling form to the most compact; the marker goes only where it fits.
    const auto form = [&](int kind) -> QString {
        switch (kind) {
        case 0:
            return QLatin1Char('.') + targetName + QLatin1Char('.') + mark + randomToken(6) + QStringLiteral(".part");
        case 1:
            return mark + randomToken(8 - mark.size()) + QStringLiteral(".tmp");
        case 2:
            return room > mark.size() + 1 ? mark + randomToken(qMin(8, room) - mark.size()) : QString();
        default:
            return randomToken(qMin(8, room));
        }
    };
    const QString fallback = form(0);
    for (int kind = 0; kind < 4; ++kind) {
        for (int attempt = 0; attempt < kTokensPerForm; ++attempt) {
            const QString lower = form(kind);
            if (lower.isEmpty())
                break;
            for (const QString& name : {lower, lower.toUpper()}) {
                if (rules.Violation(name).isEmpty() && !existing.contains(name, Qt::CaseInsensitive))
                    return name;
            }
        }
    }
    // No form passes the rules: the machine's refusal will name the problem.
    return fallback;
}

bool FtpTemporaryName::IsOurs(const QString& name, const QString& marker)
{
    // Listings of thousands of names pass through here: most are told apart without a pattern.
    if (!validMarker(marker) || !name.contains(marker, Qt::CaseInsensitive))
        return false;
    const QString mark = QRegularExpression::escape(marker);
    const QRegularExpression ours(
        QStringLiteral("^(\\..+\\.%1[0-9a-z]{6}\\.part|%1[0-9a-z]{4}\\.tmp|%1[0-9a-z]{2,4})$").arg(mark),
        QRegularExpression::CaseInsensitiveOption);
    return ours.match(name).hasMatch();
}

QString FtpTemporaryName::InstallationMarker()
{
    CamBaseTextHelper* helper = CamBaseTextHelper::instance();
    const int type = CamBaseTextHelper::SettingTypeLocal;
    QString marker = helper->GetLocalSettingCache(type, g_strSettingFtpTemporaryMarker, QString()).toString();
    if (!validMarker(marker)) {
        marker = randomToken(kMarkerLength);
        helper->SetLocalSettingCache(type, g_strSettingFtpTemporaryMarker, marker, true);
    }
    return marker;
}
