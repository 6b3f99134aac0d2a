#include "StallRecorder.h"

#include <algorithm>

namespace {
constexpr int kTickMs = 5;
}

StallRecorder::StallRecorder()
{
    m_ticker.setInterval(kTickMs);
    m_ticker.setTimerType(Qt::PreciseTimer);
    QObject::connect(&m_ticker, &QTimer::timeout,
                     [this] { m_iLongestMs = std::max(m_iLongestMs, m_sinceTick.restart()); });
}

void StallRecorder::Start()
{
    m_iLongestMs = 0;
    m_sinceTick.start();
    m_ticker.start();
}

qint64 StallRecorder::LongestMs() const
{
    // A stall still under way counts too.
    return std::max(m_iLongestMs, m_sinceTick.isValid() ? m_sinceTick.elapsed() : 0);
}
