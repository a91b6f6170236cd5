#pragma once

#include "Clock.h"
#include "LinkResult.h"
#include "Port.h"

#include <QByteArray>
#include <QString>

namespace kelm {

// One transaction with the ECR, byte by byte: CAN CAN CAN ENQ until ACK,
// the command frame until ACK, then the answer frame, acknowledged.
// Straight-line code that blocks on the port; run it on the line's worker.
class EcrLink {
public:
    EcrLink(Port& port, Clock& clock) : port_(port), clock_(clock) {}

    // Record in, answer out (everything between STX and ETX). When the
    // handshake or the send fails, `answer` is left as the caller passed it.
    LinkResult EcrTransaction(const QString& record, QString& answer);

    LinkResult LinkHandshake();
    LinkResult SendFrame(const QString& record);
    LinkResult ReceiveAnswer(QString& answer);

    // True as soon as a byte waits (not consumed); false once strictly more
    // than timeoutMs milliseconds have passed without one.
    bool WaitForData(qint32 timeoutMs);
    void SendString(const QByteArray& bytes);

    Port& port() { return port_; }
    Clock& clock() { return clock_; }

    static constexpr int kMaxAnswerCharacters = 2047;
    static constexpr int kMinAnswerCharacters = 11;

private:
    Port& port_;
    Clock& clock_;
};

} // namespace kelm
