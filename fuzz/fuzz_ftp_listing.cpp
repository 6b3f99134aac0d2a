// Feeds arbitrary bytes through the FTP listing parser as a server's LIST or MLSD answer:
// nothing may crash, and every entry it keeps must be one the workbench can show.
#include "FtpListingParser.h"

#include <QTimeZone>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    // The first two bytes move "now", which decides the year of year-less Unix dates.
    const QDateTime now = QDateTime(QDate(2000, 1, 1), QTime(12, 0), QTimeZone::utc()).addDays(data[0] * 256 + data[1]);
    const QByteArray listing(reinterpret_cast<const char*>(data + 2), qsizetype(size - 2));
    for (const FtpFileInfo& entry : FtpListingParser(now).Parse(listing)) {
        const bool bNameOk = !entry.name.isEmpty() && entry.name != QLatin1String(".") &&
                             entry.name != QLatin1String("..") && !entry.name.contains(QLatin1Char('/'));
        const bool bTypeOk = entry.type == QLatin1String("dir") || entry.type == QLatin1String("file");
        if (!bNameOk || !bTypeOk || entry.size < 0)
            std::abort();
    }
    return 0;
}
