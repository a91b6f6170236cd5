#pragma once

#include "app/EcrIdentity.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace kelm::server {

// Where a queued line came from: a line of a receipt file, or of a request
// posted over HTTP. Lines with no origin (typed by hand, left by an older
// version) are sent all the same and reported to nobody.
struct LineOrigin {
    enum class Source { None, File, Request };
    Source source = Source::None;
    QString id;   // the receipt's id in the OutcomeBook
    int line = 0; // 1-based position in the file or the request

    bool isNone() const { return source == Source::None; }
    friend bool operator==(const LineOrigin&, const LineOrigin&) = default;
};

// One entry of the receipt queue. Built from a bare text on purpose: such a
// line simply has no one to report to.
struct QueuedLine {
    QueuedLine() = default;
    QueuedLine(QString text_, LineOrigin origin_ = {}) : text(std::move(text_)), origin(std::move(origin_)) {}
    QString text;
    LineOrigin origin;
    friend bool operator==(const QueuedLine&, const QueuedLine&) = default;
};

// What became of one line.
enum class LineFate {
    Pending,   // still queued, or being sent
    Accepted,  // the register answered "00" (or an error it does not know)
    Refused,   // the register refused it and the policy went on
    Skipped,   // not sent by the program's own rules (command table, frame)
    NotSent,   // never reached the register
    Uncertain, // given up after an empty answer: the register may have done it
};

enum class NotSentReason {
    LinkLost,     // its handshake failed
    QueueStopped, // the driver stopped and could not keep it
    FatalError,   // the queue was emptied by a fatal error of the register
};

struct LineOutcome {
    int line = 0;
    LineFate fate = LineFate::Pending;
    QString record;      // as sent, once decided; the queued text before
    QString errorNumber; // Refused: the register's error number, in decimal
    QString text;        // Refused: the register's message; Skipped: why
    NotSentReason reason = NotSentReason::LinkLost; // NotSent only

    static LineOutcome accepted(const QString& record) { return make(LineFate::Accepted, record); }
    static LineOutcome refused(const QString& record, const QString& number, const QString& message)
    {
        LineOutcome o = make(LineFate::Refused, record);
        o.errorNumber = number;
        o.text = message;
        return o;
    }
    static LineOutcome skipped(const QString& record, const QString& why)
    {
        LineOutcome o = make(LineFate::Skipped, record);
        o.text = why;
        return o;
    }
    static LineOutcome notSent(const QString& record, NotSentReason why)
    {
        LineOutcome o = make(LineFate::NotSent, record);
        o.reason = why;
        return o;
    }
    static LineOutcome uncertain(const QString& record) { return make(LineFate::Uncertain, record); }
    static LineOutcome pending(int line, const QString& text)
    {
        LineOutcome o = make(LineFate::Pending, text);
        o.line = line;
        return o;
    }

    friend bool operator==(const LineOutcome&, const LineOutcome&) = default;

private:
    static LineOutcome make(LineFate fate, const QString& record)
    {
        LineOutcome o;
        o.fate = fate;
        o.record = record;
        return o;
    }
};

// The receipt as a whole, a pure function of its lines' fates.
enum class ReceiptState {
    InProgress,          // some line still pending
    Printed,             // every line accepted
    PrintedWithRefusals, // some accepted, the others refused, skipped or not sent
    Uncertain,           // some line's fate is unknown
    NotPrinted,          // nothing reached the register
};

ReceiptState receiptState(const QList<LineOutcome>& lines);
inline bool isFinal(ReceiptState state) { return state != ReceiptState::InProgress; }

// The words that answer files and HTTP answers use, and their reading back
// (nullopt-free: an unknown word reads as the first value).
QString stateName(ReceiptState state);
QString fateName(LineFate fate);
QString reasonName(NotSentReason reason);
LineFate fateFromName(const QString& name);
NotSentReason reasonFromName(const QString& name);

// Everything known about one receipt.
struct ReceiptOutcome {
    LineOrigin::Source source = LineOrigin::Source::File;
    QString id;          // the file name as taken, or the request id
    EcrIdentity identity; // the register it went to
    QDateTime taken;
    QDateTime finished;  // set when the state became final
    QList<LineOutcome> lines; // in line order

    ReceiptState state() const { return receiptState(lines); }
    // The line with this number; nullptr when the receipt has none.
    LineOutcome* line(int number);
};

} // namespace kelm::server
