#include "SimFtpListing.h"

namespace {
const char* const kMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
}

QByteArray SimFtpListing::UnixLine(const QFileInfo& info, const QDateTime& now)
{
    return LongLine(info, now, QStringLiteral("unix")) + info.fileName().toUtf8();
}

QByteArray SimFtpListing::LongLine(const QFileInfo& info, const QDateTime& now, const QString& style)
{
    const QDateTime modified = info.lastModified().toLocalTime();
    const QDate date = modified.date();
    if (style == QLatin1String("dos")) {
        const QByteArray when = modified.toString(QStringLiteral("MM-dd-yy  hh:mmAP")).toLatin1();
        const QByteArray size = info.isDir() ? QByteArray("<DIR>").leftJustified(14, ' ')
                                             : QByteArray::number(info.size()).rightJustified(14, ' ');
        return when + "       " + size + ' ';
    }
    // Like ls: the time of day for the last six months, the year for anything older.
    const bool recent =
        style != QLatin1String("unix-year") && modified <= now.addDays(1) && modified > now.addMonths(-6);
    const QByteArray when = recent ? modified.toString(QStringLiteral("hh:mm")).toLatin1()
                                   : QByteArray(" ") + QByteArray::number(date.year());
    const QByteArray perms = info.isDir() ? "drwxr-xr-x" : "-rw-r--r--";
    const qint64 size = info.isDir() ? 4096 : info.size();
    return perms + "    1 cnc      cnc      " + QByteArray::number(size).rightJustified(12, ' ') + ' ' +
           kMonths[date.month() - 1] + ' ' + QByteArray::number(date.day()).rightJustified(2, ' ') + ' ' +
           when.rightJustified(5, ' ') + ' ';
}

QByteArray SimFtpListing::Facts(const QFileInfo& info)
{
    QByteArray facts =
        info.isDir() ? "type=dir;perm=flcdmpe;" : "type=file;perm=adfrw;size=" + QByteArray::number(info.size()) + ';';
    return facts + "modify=" + TimeStamp(info.lastModified()) + ';';
}

QByteArray SimFtpListing::TimeStamp(const QDateTime& time)
{
    return time.toUTC().toString(QStringLiteral("yyyyMMddhhmmss")).toLatin1();
}
