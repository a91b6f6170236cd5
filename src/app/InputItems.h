#pragma once

#include <QByteArray>
#include <QStringList>

namespace kelm {

// Reads a text file the way sequential "item" input does: items end at a
// comma or a line end, leading blanks are skipped, an item in double quotes
// keeps its commas and loses its quotes, trailing blanks of an unquoted item
// are dropped. An empty line is one empty item. Windows-1252 text.
QStringList readInputItems(const QByteArray& bytes);

} // namespace kelm
