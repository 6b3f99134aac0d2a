#include "LocalClock.h"

#include <QMutex>
#include <QMutexLocker>

namespace {
constexpr qint64 kOffsetValidMs = 60 * 1000;
} // namespace

QDateTime LocalClock::Now()
{
    return At(QDateTime::currentMSecsSinceEpoch());
}

QDateTime LocalClock::At(qint64 msecsSinceEpoch)
{
    static QMutex mutex;
    static qint64 validFrom = 0;
    static qint64 validUntil = -1; // empty: the first call looks the offset up
    static int offsetSeconds = 0;
    int offset = 0;
    {
        QMutexLocker locker(&mutex);
        if (msecsSinceEpoch < validFrom || msecsSinceEpoch >= validUntil) {
            offsetSeconds = QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch).offsetFromUtc();
            validFrom = msecsSinceEpoch;
            validUntil = msecsSinceEpoch + kOffsetValidMs;
        }
        offset = offsetSeconds;
    }
    return QDateTime::fromMSecsSinceEpoch(msecsSinceEpoch, Qt::OffsetFromUTC, offset);
}
