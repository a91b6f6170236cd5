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

struct PluFileLoad {
    QList<PluRow> rows;     // columns 0..7 filled, 8 and 9 empty
    QList<int> oddLines;    // used lines (counted from 1) with fewer than 8 or more than 10 fields
};

// Reads at most the first 9000 lines (CR LF, LF or CR ends a line). A line
// of 15 characters or fewer is not used; every longer one gets a final "/"
// if it has none and becomes a row: its first eight fields fill columns
// 0..7, missing ones stay empty, further ones are ignored. The file is never
// refused; lines whose field count is neither the loaded 8 nor the saved 10
// (or 9) are listed so that the user can look at them.
PluFileLoad loadPluFile(const QByteArray& bytes);

} // namespace kelm::programming
