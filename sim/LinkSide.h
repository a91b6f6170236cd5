#pragma once

#include "Faults.h"

#include "link/LinePeer.h"

#include <QByteArray>
#include <functional>

namespace kelm::sim {

// The register's end of the line: it answers ENQ, takes a framed record,
// checks its checksum, hands the record to the register and sends the answer
// frame, again on every NAK, until the PC acknowledges it. A frame is only
// taken after a handshake, so a PC that skips the ENQ gets no ACK.
class LinkSide {
public:
    // Carries out one record and returns the answer text (without STX/ETX).
    using Executor = std::function<QByteArray(const QByteArray& record, qint64 nowMs)>;

    LinkSide(Faults& faults, Executor execute, qint64 answerDelayMs)
        : faults_(faults), execute_(std::move(execute)), answerDelayMs_(answerDelayMs) {}

    // A byte the PC wrote at writtenMs; with a speed set it arrives later.
    void receive(quint8 value, qint64 writtenMs, QList<TimedByte>& reply);

private:
    enum class Phase { Idle, Ready, InFrame, AnswerSent };

    qint64 arrival(qint64 writtenMs);
    void frameComplete(qint64 nowMs, QList<TimedByte>& reply);
    void transmitAnswer(qint64 earliestMs, QList<TimedByte>& reply);
    // Puts bytes on the line no earlier than earliestMs and after whatever
    // is still being sent, paced at the configured baud rate.
    void send(QByteArrayView bytes, qint64 earliestMs, QList<TimedByte>& reply);

    Faults& faults_;
    Executor execute_;
    qint64 answerDelayMs_;
    Phase phase_ = Phase::Idle;
    QByteArray frame_;
    QByteArray answer_;
    qint64 lineFreeAt_ = 0;
    qint64 rxFreeAtUs_ = 0;
};

} // namespace kelm::sim
