#include "EcrLink.h"

#include "CodePage.h"
#include "Framing.h"

namespace kelm {

using namespace frame;

bool EcrLink::WaitForData(qint32 timeoutMs)
{
    const quint32 start = clock_.tickMs();
    for (;;) {
        const qint32 elapsed = Clock::elapsed(start, clock_.tickMs());
        if (elapsed > timeoutMs)
            return false;
        if (port_.bytesWaiting() > 0)
            return true;
        port_.waitForReadyRead(static_cast<qint64>(timeoutMs) - elapsed + 1);
    }
}

void EcrLink::SendString(const QByteArray& bytes)
{
    for (char c : bytes)
        port_.writeByte(static_cast<quint8>(c));
}

LinkResult EcrLink::LinkHandshake()
{
    for (int attempt = 1; attempt <= 3; ++attempt) {
        port_.writeByte(CAN);
        port_.writeByte(CAN);
        port_.writeByte(CAN);
        port_.purge();
        port_.writeByte(ENQ);
        clock_.sleepMs(10);
        if (!WaitForData(1000))
            continue;
        const quint8 reply = port_.readByte();
        if (reply == ACK)
            return link::Ok;
        if (reply == CAN)
            return link::CanToEnq;
    }
    return link::NoAckToEnq;
}

LinkResult EcrLink::SendFrame(const QString& record)
{
    const QByteArray bytes = commandFrame(ansi::encode(record));
    for (int attempt = 1; attempt <= 3; ++attempt) {
        port_.purge();
        SendString(bytes);
        if (!WaitForData(2000))
            continue;
        switch (port_.readByte()) {
        case ACK:
            return link::Ok;
        case CAN:
            return link::CanToFrame;
        case NAK:
            return link::NakToFrame; // final: the frame is not sent again
        default:
            break;
        }
    }
    return link::NoReplyToFrame;
}

LinkResult EcrLink::ReceiveAnswer(QString& answer)
{
    // Characters of a refused frame stay in front of the repeated one: the
    // answer is cleared once, not per attempt.
    QByteArray collected;
    answer.clear();
    for (int attempt = 1; attempt <= 3; ++attempt) {
        for (;;) {
            if (!WaitForData(2000)) {
                answer = ansi::decode(collected);
                return link::NoStx;
            }
            if (port_.readByte() == STX)
                break;
        }
        int count = 1;
        bool complete = false;
        while (WaitForData(500)) {
            const quint8 byte = port_.readByte();
            if (byte == ETX || count >= kMaxAnswerCharacters + 1) {
                complete = true; // an over-long frame is cut; its rest stays queued
                break;
            }
            collected.append(static_cast<char>(byte));
            ++count;
        }
        if (complete && count > kMinAnswerCharacters) {
            port_.writeByte(ACK);
            answer = ansi::decode(collected);
            return link::Ok;
        }
        port_.writeByte(NAK);
    }
    answer = ansi::decode(collected);
    return link::NoAnswer;
}

LinkResult EcrLink::EcrTransaction(const QString& record, QString& answer)
{
    if (const LinkResult r = LinkHandshake(); r != link::Ok)
        return r;
    if (const LinkResult r = SendFrame(record); r != link::Ok)
        return r;
    return ReceiveAnswer(answer);
}

} // namespace kelm
