#pragma once

#include "KorvBaseExport.h"

#include <QDateTime>

// Local wall-clock time for log lines and list rows. Each local conversion in Qt makes the C
// library look at the system's time zone file again; a batch of small files writes thousands of
// lines a second, so the offset from UTC is looked up once a minute instead. A change of daylight
// saving time therefore reaches the logs up to a minute late.
class KORVBASE_EXPORT LocalClock
{
public:
    static QDateTime Now();
    static QDateTime At(qint64 msecsSinceEpoch);
};
