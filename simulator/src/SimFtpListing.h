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
    static QByteArray Facts(const QFileInfo& info);
    static QByteArray TimeStamp(const QDateTime& time);
};
