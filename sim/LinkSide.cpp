#include "LinkSide.h"

#include "link/Framing.h"

#include <algorithm>

namespace kelm::sim {

namespace {

// Longer than any record a PC sends; a frame that never ends is dropped here.
constexpr qsizetype kMaxFrame = 4096;
// Stray bytes of a noisy line: none of them is STX.
constexpr char kGarbage[] = "\xFF\x00#~\x7F";

} // namespace

qint64 LinkSide::arrival(qint64 writtenMs)
{
    // The PC's bytes take their wire time too: a byte written now is all
    // there only ten bit times after the line was free for it. Kept in
    // microseconds so that 0.087 ms a byte at 115200 baud adds up.
    const qint64 baud = faults_.baud;
    if (baud <= 0)
        return writtenMs;
    rxFreeAtUs_ = std::max(rxFreeAtUs_, writtenMs * 1000) + 10'000'000 / baud;
    return (rxFreeAtUs_ + 999) / 1000;
}

void LinkSide::receive(quint8 value, qint64 writtenMs, QList<TimedByte>& reply)
{
    using namespace kelm::frame;
    const qint64 nowMs = arrival(writtenMs);
    faults_.anchor(nowMs);
    if (faults_.unplugged)
        return;
    if (faults_.silence.active(nowMs)) {
        phase_ = Phase::Idle;
        return;
    }
    if (phase_ == Phase::InFrame && value != ENQ && value != CAN && value != STX) {
        if (value == ETX) {
            frameComplete(nowMs, reply);
        } else if (frame_.size() >= kMaxFrame) {
            phase_ = Phase::Ready;
            send(QByteArray(1, char(NAK)), nowMs, reply);
        } else {
            frame_.append(char(value));
        }
        return;
    }
    switch (value) {
    case ENQ:
        if (faults_.canToEnq > 0) {
            --faults_.canToEnq;
            phase_ = Phase::Idle;
            send(QByteArray(1, char(CAN)), nowMs, reply);
        } else {
            phase_ = Phase::Ready;
            send(QByteArray(1, char(ACK)), nowMs, reply);
        }
        break;
    case STX:
        if (phase_ == Phase::Ready || phase_ == Phase::InFrame) {
            phase_ = Phase::InFrame;
            frame_.clear();
        }
        break;
    case ACK:
        if (phase_ == Phase::AnswerSent)
            phase_ = Phase::Idle;
        break;
    case NAK:
        if (phase_ == Phase::AnswerSent)
            transmitAnswer(nowMs, reply);
        break;
    case CAN:
        // The PC clears the line before every handshake; nothing is answered.
        phase_ = Phase::Idle;
        break;
    default:
        break;
    }
}

void LinkSide::frameComplete(qint64 nowMs, QList<TimedByte>& reply)
{
    using namespace kelm::frame;
    phase_ = Phase::Ready;
    const QByteArray record = frame_.left(frame_.size() - 2);
    const bool checksumRight = frame_.size() >= 2 && frame_.right(2) == checksumDigits(record);
    if (!checksumRight || faults_.nakFrames > 0) {
        if (checksumRight)
            --faults_.nakFrames;
        send(QByteArray(1, char(NAK)), nowMs, reply);
        return;
    }
    send(QByteArray(1, char(ACK)), nowMs, reply);
    answer_ = execute_(record, nowMs);
    phase_ = Phase::AnswerSent;
    transmitAnswer(nowMs + answerDelayMs_, reply);
}

void LinkSide::transmitAnswer(qint64 earliestMs, QList<TimedByte>& reply)
{
    using namespace kelm::frame;
    QByteArray bytes;
    if (faults_.garbage > 0) {
        --faults_.garbage;
        bytes.append(kGarbage, sizeof kGarbage - 1);
    }
    bytes.append(char(STX));
    if (faults_.broken > 0) {
        --faults_.broken;
        bytes.append(answer_.left(answer_.size() / 2));
    } else if (faults_.shortAnswers > 0) {
        --faults_.shortAnswers;
        bytes.append(answer_.left(5));
        bytes.append(char(ETX));
    } else {
        bytes.append(answer_);
        bytes.append(char(ETX));
    }
    send(bytes, earliestMs, reply);
}

void LinkSide::send(QByteArrayView bytes, qint64 earliestMs, QList<TimedByte>& reply)
{
    const qint64 start = std::max(earliestMs, lineFreeAt_);
    const qint64 baud = faults_.baud;
    // Each time is taken from the start of the reply, so that the fractions of
    // a millisecond per byte at high speeds add up instead of vanishing.
    const auto offset = [baud](qint64 i) { return baud > 0 ? i * 10000 / baud : 0; };
    for (qsizetype i = 0; i < bytes.size(); ++i)
        reply.append({start + offset(i), static_cast<quint8>(bytes[i])});
    lineFreeAt_ = start + offset(bytes.size());
}

} // namespace kelm::sim
