#pragma once

#include <QList>
#include <QtGlobal>

namespace kelm {

// A byte that the far end puts on the line, with the time it reaches the PC.
struct TimedByte {
    qint64 atMs;
    quint8 value;
};

// The far end of a line with no hardware: the virtual ECR, or a scripted
// peer in tests. It is told each byte the PC writes and answers with bytes
// that arrive later; it never sees the PC's clock otherwise.
class LinePeer {
public:
    virtual ~LinePeer() = default;
    // The PC wrote `value` at time nowMs; append any reply to `reply`.
    virtual void receive(quint8 value, qint64 nowMs, QList<TimedByte>& reply) = 0;
    // False once the far end has gone away (a cable pulled, a closed pty).
    virtual bool connected(qint64 nowMs) const { Q_UNUSED(nowMs); return true; }
};

} // namespace kelm
