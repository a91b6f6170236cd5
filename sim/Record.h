#pragma once

#include <QByteArray>
#include <QList>

#include <optional>

namespace kelm::sim {

// One command record as the register reads it: a one-character code, then
// fields each closed by "/". "3/S/REP//1/5.26/1/4/" has code '3' and the
// seven fields S, REP, "", 1, 5.26, 1, 4.
struct Record {
    QByteArray raw;
    char code = 0;
    bool wellFormed = false; // code followed by "/" and closed by "/"
    QList<QByteArray> fields;

    static Record parse(const QByteArray& raw);

    // Field n (from 1), or an empty text when the record has fewer.
    QByteArray field(qsizetype n) const { return n >= 1 && n <= fields.size() ? fields[n - 1] : QByteArray(); }
    qsizetype count() const { return fields.size(); }
};

// A field of digits only, of minLength to maxLength characters.
bool allDigits(const QByteArray& field, qsizetype minLength = 0, qsizetype maxLength = 1 << 30);

// The number a field holds when it is all digits and within [min, max].
std::optional<int> fieldNumber(const QByteArray& field, int min, int max);

} // namespace kelm::sim
