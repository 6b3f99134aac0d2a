#pragma once

#include <QDateTime>
#include <functional>

// Milliseconds since the epoch. The transfer list and the log take it as a value so that
// tests can step time by hand instead of sleeping.
using TransferClock = std::function<qint64()>;

inline qint64 SystemTransferClock()
{
    return QDateTime::currentMSecsSinceEpoch();
}
