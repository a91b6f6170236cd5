#pragma once

#include "Record.h"

#include <QByteArray>
#include <QList>
#include <optional>

namespace kelm::sim {

// What the register says back to one record: an error number (0 when it was
// carried out) and the data fields. The state byte is added when the answer
// is put on the line, because it belongs to the moment, not to the command.
struct Answer {
    int error = 0;
    QList<QByteArray> fields;

    static Answer ok(QList<QByteArray> data = {}) { return {0, std::move(data)}; }
    static Answer refused(int error) { return {error, {}}; }
    bool accepted() const { return error == 0; }
};

// The refusal of a record with fewer than min fields (error 1) or more than
// max (error 2); nullopt when the count is right.
std::optional<Answer> wrongFieldCount(const Record& r, qsizetype min, qsizetype max);

// State bits of every answer.
namespace state {
constexpr int ReceiptOpen = 1;
constexpr int CoverOpen = 2;
constexpr int PaperOut = 4;
} // namespace state

// "SS/TT/01/f1/f2/.../": status in two upper-case hexadecimal digits, the
// state in two decimal digits, the register's number, then each field closed
// by "/". An answer without data carries the command code as its one field,
// so that no answer is ever shorter than 11 characters.
QByteArray formatAnswer(const Answer& answer, int stateBits, char commandCode);

} // namespace kelm::sim
