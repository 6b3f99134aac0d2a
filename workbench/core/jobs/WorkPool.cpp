#include "WorkPool.h"

#include <QThreadPool>

QThreadPool* WorkPool::Instance()
{
    static QThreadPool pool;
    return &pool;
}

bool WorkPool::Drain(int milliseconds)
{
    return Instance()->waitForDone(milliseconds);
}
