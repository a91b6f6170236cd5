#pragma once

#include "programming/PluRecord.h"

#include <QList>
#include <QString>

#include <optional>

// The PLU text file behind the buttons of the PLU page: its name is asked
// first, proposing "plu.txt" in the program's folder; every refusal is told
// in a box and leaves both the file and the grid as they were.
namespace kelm::ui {

class Dialogs;

// Writes the rows into a new file; an existing file is never overwritten.
void savePluRows(Dialogs& dialogs, const QString& programFolder, const QList<programming::PluRow>& rows);

// The rows of a PLU file, or nothing when the user cancels or the file is
// missing, unreadable or has a line that would put PLUs on wrong numbers.
std::optional<QList<programming::PluRow>> loadPluRows(Dialogs& dialogs, const QString& programFolder);

} // namespace kelm::ui
