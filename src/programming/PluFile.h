#pragma once

#include "programming/PluRecord.h"

#include <QByteArray>
#include <QList>

// The PLU text file (Windows-1252): one line per grid row, each cell closed
// by "/", lines ended by CR LF. The saver writes all ten columns; the loader
// takes only the first eight, so sales counters are kept in the file but
// never loaded back into the grid.
namespace kelm::programming {

constexpr int kPluFileMaxLines = 9000;

// The file's bytes for rows 1 .. last, in order. A "/" inside a cell is
// written as "\" so that the line still splits into its ten cells.
QByteArray pluFileBytes(const QList<PluRow>& rows);

struct PluFileLine {
    enum class Problem { None, TooFewFields, TooManyFields };
    Problem problem = Problem::None;
    int lineNumber = 0; // counted from 1, of the first bad line
};

struct PluFileLoad {
    QList<PluRow> rows;   // columns 0..7 filled, 8 and 9 empty
    PluFileLine error;    // Problem::None when every used line was sound
};

// Reads at most the first 9000 lines (CR LF, LF or CR ends a line). A line
// of 15 characters or fewer is not used. A longer line gets a final "/" if it
// has none and must then hold 8 to 10 "/"-closed fields (8 are the loaded
// columns, 10 what the saver writes). A line with fewer or more makes the
// whole load fail with its line number and no rows, because skipping it
// would silently shift every following PLU to another number.
PluFileLoad loadPluFile(const QByteArray& bytes);

} // namespace kelm::programming
