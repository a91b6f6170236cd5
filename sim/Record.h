#pragma once

#include <QByteArray>
#include <QList>

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

} // namespace kelm::sim
