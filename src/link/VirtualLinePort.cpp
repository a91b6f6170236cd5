#include "VirtualLinePort.h"

#include <algorithm>

namespace kelm {

bool VirtualLinePort::open(const QString& name, qint32 speed)
{
    Q_UNUSED(name);
    if (speed < 1)
        return false;
    incoming_.clear();
    handle_ = peer_.connected(clock_.nowMs()) ? PortHandle::Open : PortHandle::Invalid;
    return handle_ == PortHandle::Open;
}

void VirtualLinePort::close()
{
    incoming_.clear();
    handle_ = PortHandle::Closed;
}

qint64 VirtualLinePort::bytesWaiting()
{
    if (!isOpen())
        return 0;
    const qint64 now = clock_.nowMs();
    return std::count_if(incoming_.begin(), incoming_.end(),
                         [now](const TimedByte& b) { return b.atMs <= now; });
}

quint8 VirtualLinePort::readByte()
{
    if (!isOpen() || incoming_.empty() || incoming_.front().atMs > clock_.nowMs())
        return 0;
    const quint8 value = incoming_.front().value;
    incoming_.pop_front();
    return value;
}

void VirtualLinePort::writeByte(quint8 value)
{
    const qint64 now = clock_.nowMs();
    if (!isOpen() || !peer_.connected(now))
        return;
    QList<TimedByte> reply;
    peer_.receive(value, now, reply);
    // A byte cannot overtake one sent before it on the same wire.
    qint64 last = incoming_.empty() ? now : incoming_.back().atMs;
    for (TimedByte b : reply) {
        b.atMs = std::max({b.atMs, now, last});
        last = b.atMs;
        incoming_.push_back(b);
    }
}

void VirtualLinePort::purge()
{
    const qint64 now = clock_.nowMs();
    while (!incoming_.empty() && incoming_.front().atMs <= now)
        incoming_.pop_front();
}

void VirtualLinePort::waitForReadyRead(qint64 ms)
{
    const qint64 now = clock_.nowMs();
    qint64 until = now + std::max<qint64>(ms, 0);
    if (isOpen() && !incoming_.empty())
        until = std::min(until, std::max(incoming_.front().atMs, now));
    clock_.sleepMs(until - now);
}

} // namespace kelm
