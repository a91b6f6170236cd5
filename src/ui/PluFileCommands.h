#pragma once

#include "programming/PluRecord.h"

#include <QList>
#include <QString>

#include <functional>

// The PLU text file behind the buttons of the PLU page: its name is asked
// first, proposing "plu.txt" in the program's folder; every refusal is told
// in a box and leaves both the file and the grid as they were.
namespace kelm::ui {

class Dialogs;

// Writes the rows into a new file; an existing file is never overwritten.
void savePluRows(Dialogs& dialogs, const QString& programFolder, const QList<programming::PluRow>& rows);

// The rows of a PLU file go to `append`, unless the file is missing (an
// empty name included) or unreadable. Lines whose field count looks odd are
// loaded all the same and listed in a note afterwards.
void loadPluRows(Dialogs& dialogs, const QString& programFolder,
                 const std::function<void(const QList<programming::PluRow>&)>& append);

} // namespace kelm::ui
