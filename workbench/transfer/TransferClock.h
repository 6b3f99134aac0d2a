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

// The list and the log follow their newest row at most once per frame: many small files bring
// lines far faster than anyone reads them, and each scroll lays the view out again.
constexpr int FrameMs = 16;
