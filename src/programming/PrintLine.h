#pragma once

#include <QString>
#include <QStringList>

// One programmable receipt line (header or footer) at its print size and
// alignment: the register prints what it is sent, so the PC pads each line to
// the printer's width itself.
namespace kelm::programming {

// Combo items, in list order. A list index outside the list (-1 for no
// selection) is a valid input everywhere below.
const QStringList& printSizeItems();      // "Normale" .. "Doppia Altezza e Larghezza"
const QStringList& printAlignmentItems(); // "Sinistra", "Destra", "Centrato"

// The size code of the record: "1".."4" for list indexes 0..3, "0" otherwise.
QString printSizeCode(int sizeIndex);

// Characters per line: 16 for the double-width sizes, 32 otherwise.
qsizetype printLineWidth(int sizeIndex);

// The trimmed text padded to exactly the line width. Left alignment (and any
// unknown one) keeps the first W characters; right alignment keeps the last W,
// so an over-long text loses its beginning there and its end elsewhere.
// Centring puts floor((W - length) / 2) blanks first, or aligns left when
// that is less than 1.
QString paddedLine(const QString& text, int sizeIndex, int alignIndex);

} // namespace kelm::programming
