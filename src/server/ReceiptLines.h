#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include <optional>

// From the bytes of a receipt file to the records the queue sends.
namespace kelm::server {

// The lines of a receipt file (Windows-1252 text), without their line ends.
// A line ends at CR LF, LF or a lone CR; the last line may have none. A DOS
// end-of-file mark (Ctrl-Z) ends the text. Empty lines are kept: they are
// queued and shown like any other, and skipped when their turn comes.
QStringList splitReceiptLines(QByteArrayView bytes);

// A queued line as it is dispatched: none for a blank line (skipped, nothing
// is sent); otherwise the line with a final "/" added when it lacks one.
std::optional<QString> normalizeQueueLine(const QString& line);

// Why no frame can carry this line, if that is so: one of the line's own
// control bytes (STX, ETX, ENQ, ACK, NAK, CAN) inside it, or more characters
// than a frame holds. Sent anyway, the register would refuse it for ever and
// stop the till.
std::optional<QString> uncarriableReason(const QString& line);

constexpr qsizetype kMaxRecordCharacters = 2047;

} // namespace kelm::server
