#pragma once

#include "KorvBaseExport.h"
#include "MachineRecords.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QStringView>

// Turns the text of an MLSD or LIST answer into entries. Each line is tried as MLSD facts,
// then Unix "ls -l" (both date forms, links, device sizes), then DOS/IIS; anything else,
// ".", "..", parent/current-directory facts and names containing "/" are dropped.
// Times are taken as UTC (MLSD times are UTC by definition; LIST gives no zone).
class KORVBASE_EXPORT FtpListingParser
{
public:
    // A year-less Unix date is placed in now's year, or the year before when that would be
    // more than a day in the future.
    explicit FtpListingParser(const QDateTime& nowUtc = QDateTime::currentDateTimeUtc());

    QList<FtpFileInfo> Parse(const QByteArray& listing) const;
    // A listing already decoded from the machine's name encoding.
    QList<FtpFileInfo> Parse(const QString& text) const;
    bool ParseLine(QStringView line, FtpFileInfo* info) const;

private:
    bool ParseMlsd(QStringView line, FtpFileInfo* info) const;
    bool ParseUnix(QStringView line, FtpFileInfo* info) const;
    bool ParseDos(QStringView line, FtpFileInfo* info) const;
    QDate YearlessDate(int month, int day) const;

    QDateTime m_dtNow;
};
