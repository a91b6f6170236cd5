#pragma once

#include "app/IniFile.h"

#include <QList>
#include <QString>

// The receipt header (12 lines, one "H/" record) and footer (3 lines, one
// "F/" record), and their copy in the settings file, section "Intestazioni".
namespace kelm::programming {

constexpr qsizetype kHeaderLines = 12;
constexpr qsizetype kFooterLines = 3;

// One line's editors: the text and the list indexes of its size and
// alignment combos (-1 for no selection, saved as the first item).
struct HeaderLine {
    QString text;
    int size = 0;
    int align = 0;

    friend bool operator==(const HeaderLine&, const HeaderLine&) = default;
};

enum class ReceiptLines { Header, Footer };

// "H/", then size code and padded line of each line; a line padded to blanks
// only is sent as an empty field.
QString headerRecord(const QList<HeaderLine>& lines);

// "F/", then size code and padded line of each line; a blank line is sent as
// its blanks.
QString footerRecord(const QList<HeaderLine>& lines);

// The settings-file value of a line: alignment index, size index, trimmed
// text, with no separators ("20BAR CENTRALE").
QString savedLineValue(const HeaderLine& line);

// A saved value back into editor values, set in this order: alignment, size,
// text. `fields` says how many of them are set: none when the value is
// shorter than three characters (a line saved empty, a missing key); an
// index that is not in its list stops there, and the rest of that line's
// editors are left as they are.
struct RestoredLine {
    HeaderLine line;
    int fields = 0;

    friend bool operator==(const RestoredLine&, const RestoredLine&) = default;
};
RestoredLine restoredLine(const QString& value);

// Writes every line, empty ones included, under "Head1".."Head12" or
// "Foot1".."Foot3". Done before the record is sent, so the file keeps what
// was last attempted. False when the file could not be written.
bool saveReceiptLines(const IniFile& ini, ReceiptLines kind, const QList<HeaderLine>& lines);

// The lines kept in the settings file, in order (12 or 3 entries), each as
// restoredLine makes it.
QList<RestoredLine> loadReceiptLines(const IniFile& ini, ReceiptLines kind);

} // namespace kelm::programming
