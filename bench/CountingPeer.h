#pragma once

#include "link/Framing.h"
#include "link/LinePeer.h"

#include <algorithm>

// The virtual register, with every byte that crosses the line counted, and
// the floor that physics and the protocol set for those bytes: every byte on
// the wire (10 bits a byte, both directions) plus the fixed 10 ms wait after
// each ENQ. The bytes that cross while that wait runs (the ACK that closed
// the previous exchange, the three CAN, the ENQ and its ACK) are counted
// inside it, since the line carries them during the wait.
class CountingPeer final : public kelm::LinePeer {
public:
    explicit CountingPeer(kelm::LinePeer& ecr) : ecr_(ecr) {}
    void receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply) override
    {
        const qsizetype before = reply.size();
        ecr_.receive(value, nowMs, reply);
        ++toEcr;
        if (value == kelm::frame::ENQ)
            ++handshakes;
        fromEcr += reply.size() - before;
    }
    bool connected(qint64 nowMs) const override { return ecr_.connected(nowMs); }

    double wireSeconds(qint32 baud) const { return double(toEcr + fromEcr) * 10.0 / baud; }
    double floorSeconds(qint32 baud) const
    {
        const double byteSeconds = 10.0 / baud;
        const qint64 duringWait = 6 * handshakes;
        return double(toEcr + fromEcr - duringWait) * byteSeconds
             + double(handshakes) * std::max(0.010, 6 * byteSeconds);
    }

    qint64 toEcr = 0;
    qint64 fromEcr = 0;
    qint64 handshakes = 0;

private:
    kelm::LinePeer& ecr_;
};
