#include "CompareTwoVersion.h"

#include <QStringList>

namespace {
QList<qlonglong> VersionParts(QString text)
{
    text = text.trimmed();
    if (text.startsWith(QLatin1Char('v'), Qt::CaseInsensitive))
        text.remove(0, 1);
    QList<qlonglong> parts;
    for (const QString& part : text.split(QLatin1Char('.'))) {
        qsizetype digits = 0;
        while (digits < part.size() && part[digits].isDigit())
            ++digits;
        parts.append(part.left(digits).toLongLong());
    }
    return parts;
}
} // namespace

int CompareTwoVersion(const QString& a, const QString& b)
{
    const QList<qlonglong> left = VersionParts(a);
    const QList<qlonglong> right = VersionParts(b);
    for (qsizetype i = 0; i < qMax(left.size(), right.size()); ++i) {
        const qlonglong x = left.value(i);
        const qlonglong y = right.value(i);
        if (x != y)
            return x < y ? -1 : 1;
    }
    return 0;
}
