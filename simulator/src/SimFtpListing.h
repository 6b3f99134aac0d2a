#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>

// Text forms of directory entries: "ls -l" lines for LIST, facts for MLSD/MLST, and
// the time stamp of MDTM. Month names are always English, whatever the locale.
class SimFtpListing
{
public:
    static QByteArray UnixLine(const QFileInfo& info, const QDateTime& now);
    // The LIST line of `style` (unix, unix-year, dos) up to the name, which the caller appends
    // in the wire encoding. unix-year always shows the year; dos has two-digit years.
    static QByteArray LongLine(const QFileInfo& info, const QDateTime& now, const QString& style);
    static QByteArray Facts(const QFileInfo& info);
    static QByteArray TimeStamp(const QDateTime& time);
};
