#pragma once

#include "link/LinePeer.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

// A tiny notation for bytes on the line, so that test tables read like the
// wire: "<ACK>", "<STX>00/00/01/<ETX>", "{600}" = the next byte comes 600 ms
// later. Control bytes: <STX> <ETX> <ENQ> <ACK> <NAK> <CAN>.
namespace linescript {

struct Step {
    qint64 delayMs;
    quint8 value;
};

QList<Step> parse(const QString& script);
// Bytes written back in the same notation (without delays).
QString render(const QByteArray& bytes);
// The records of the command frames in what the PC wrote, in order.
QStringList framedRecords(const QByteArray& written);

} // namespace linescript

// A far end that answers from scripts: the next reply to an ENQ, to a whole
// command frame, and to a NAK from the PC; an empty queue means silence.
// It records every byte the PC wrote.
class ScriptedPeer final : public kelm::LinePeer {
public:
    QStringList enqReplies;
    QStringList frameReplies;
    QStringList nakReplies;
    QString enqDefault;  // the reply to an ENQ once enqReplies is used up
    bool plugged = true; // false: the far end is not there at all

    bool connected(qint64) const override { return plugged; }

    void receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply) override;

    QString wire() const { return linescript::render(written_); }
    // The records of the command frames received, in order.
    QStringList records() const;

private:
    void answer(QStringList& queue, qint64 nowMs, QList<kelm::TimedByte>& reply);

    QByteArray written_;
    bool inFrame_ = false;
};

// Passes everything to another far end and keeps what the PC wrote: the
// wire as it was, whatever the far end made of it.
class WireTap final : public kelm::LinePeer {
public:
    explicit WireTap(kelm::LinePeer& inner) : inner_(inner) {}
    void receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply) override
    {
        written_.append(static_cast<char>(value));
        inner_.receive(value, nowMs, reply);
    }
    bool connected(qint64 nowMs) const override { return inner_.connected(nowMs); }
    QStringList records() const { return linescript::framedRecords(written_); }

private:
    kelm::LinePeer& inner_;
    QByteArray written_;
};
