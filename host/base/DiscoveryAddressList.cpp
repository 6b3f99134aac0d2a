#include "DiscoveryAddressList.h"

#include "CamBaseTextHelper.h"

#include <QRegularExpression>
#include <QSet>

namespace {
bool ReadIpv4(const QString& text, quint32* address)
{
    // Four parts always: the resolver's short forms ("10.1" for 10.0.0.1) are typos here.
    static const QRegularExpression dotted(QStringLiteral("^\\d{1,3}(\\.\\d{1,3}){3}$"));
    QHostAddress parsed;
    if (!dotted.match(text).hasMatch() || !parsed.setAddress(text))
        return false;
    *address = parsed.toIPv4Address();
    return true;
}

// "a.b.c.d-e.f.g.h" or the short form "a.b.c.d-h", which keeps the first three parts.
bool ReadRange(const QString& part, quint32* first, quint32* last)
{
    const int dash = part.indexOf(QLatin1Char('-'));
    if (dash < 0)
        return ReadIpv4(part, first) && ReadIpv4(part, last);
    const QString from = part.left(dash);
    QString to = part.mid(dash + 1);
    if (!to.contains(QLatin1Char('.')))
        to = from.section(QLatin1Char('.'), 0, 2) + QLatin1Char('.') + to;
    return ReadIpv4(from, first) && ReadIpv4(to, last) && *first <= *last;
}
} // namespace

QList<QHostAddress> DiscoveryAddressList::Parse(const QString& text)
{
    static const QRegularExpression separators(QStringLiteral("[,;\\s]+"));
    QList<QHostAddress> addresses;
    QSet<quint32> seen;
    for (const QString& part : text.split(separators, Qt::SkipEmptyParts)) {
        quint32 first = 0;
        quint32 last = 0;
        if (!ReadRange(part, &first, &last))
            continue;
        for (quint64 address = first; address <= last; ++address) {
            if (addresses.size() >= MaxAddresses)
                return addresses;
            if (!seen.contains(quint32(address))) {
                seen.insert(quint32(address));
                addresses.append(QHostAddress(quint32(address)));
            }
        }
    }
    return addresses;
}

QList<QHostAddress> DiscoveryAddressList::Configured()
{
    return Parse(CamBaseTextHelper::instance()
                     ->GetLocalSettingCache(CamBaseTextHelper::SettingTypeLocal, QString::fromLatin1(SettingKey))
                     .toString());
}
