#include "PhoneNumberMask.h"

QString MaskPhoneNumber(const QString& number)
{
    const QString trimmed = number.trimmed();
    if (trimmed.size() <= 4)
        return QString(trimmed.size(), QLatin1Char('*'));
    return QString(trimmed.size() - 4, QLatin1Char('*')) + trimmed.right(4);
}
