#pragma once

#include <QtGlobal>

namespace kelm {

// Millisecond time source of every wait on the line. Production uses the
// monotonic system clock; tests use VirtualClock, so that a 2000 ms time-out
// costs no real time and is checked to the millisecond.
class Clock {
public:
    virtual ~Clock() = default;
    // Monotonic milliseconds since an arbitrary origin.
    virtual qint64 nowMs() const = 0;
    // Blocks the calling thread (or moves virtual time on) for ms milliseconds.
    virtual void sleepMs(qint64 ms) = 0;

    // The 32-bit tick counter that the link's elapsed-time rules are written
    // against; differences are taken in signed 32-bit so a wrap does no harm.
    quint32 tickMs() const { return static_cast<quint32>(nowMs()); }
    static qint32 elapsed(quint32 start, quint32 now) { return static_cast<qint32>(now - start); }
};

class SystemClock final : public Clock {
public:
    qint64 nowMs() const override;
    void sleepMs(qint64 ms) override;
};

// Time that moves only when somebody sleeps or advances it.
class VirtualClock final : public Clock {
public:
    explicit VirtualClock(qint64 startMs = 0) : now_(startMs) {}
    qint64 nowMs() const override { return now_; }
    void sleepMs(qint64 ms) override { advance(ms); }
    void advance(qint64 ms) { if (ms > 0) now_ += ms; }
    void advanceTo(qint64 t) { if (t > now_) now_ = t; }

private:
    qint64 now_;
};

} // namespace kelm
