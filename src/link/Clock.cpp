#include "Clock.h"

#include <QDeadlineTimer>
#include <QThread>

namespace kelm {

qint64 SystemClock::nowMs() const
{
    return QDeadlineTimer::current(Qt::PreciseTimer).deadline();
}

void SystemClock::sleepMs(qint64 ms)
{
    if (ms > 0)
        QThread::msleep(static_cast<unsigned long>(ms));
}

} // namespace kelm
