#pragma once

#include <QElapsedTimer>
#include <QTimer>

// Records how long the GUI thread's event loop was kept from running: a short timer whose
// late firings are the stalls a user would feel as a frozen window.
class StallRecorder
{
public:
    StallRecorder();
    Q_DISABLE_COPY_MOVE(StallRecorder)

    void Start();
    // The longest gap between two turns of the event loop since Start(), in milliseconds.
    qint64 LongestMs() const;

private:
    QTimer m_ticker;
    QElapsedTimer m_sinceTick;
    qint64 m_iLongestMs = 0;
};
