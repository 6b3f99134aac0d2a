#include "FileSizeText.h"

#include <array>

QString FileSizeText::Format(qint64 bytes)
{
    static const std::array<const char*, 5> units = {"B", "KB", "MB", "GB", "TB"};
    double value = static_cast<double>(bytes);
    size_t unit = 0;
    while (value >= 1024.0 && unit + 1 < units.size()) {
        value /= 1024.0;
        ++unit;
    }
    const int decimals = unit == 0 ? 0 : (value < 10.0 ? 2 : 1);
    return QStringLiteral("%1 %2").arg(QString::number(value, 'f', decimals), QLatin1String(units[unit]));
}
