#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

// The technician's manual console: one record typed by hand, or a text file
// of records, each sent by the panel road with the outcome in txtAnswerCMD.
namespace kelm::technician {

inline const QString kConsoleError = QStringLiteral("Errore");
inline const QString kConsoleFileMissing = QStringLiteral("File inesistente");
inline const QString kConsoleUnknownButton = QStringLiteral("Errore!");
inline const QString kCommandFileFilter = QStringLiteral("All Files|*.*");

// cmdSendCommand(0): the typed text, trimmed, and a "/" always, even after
// one that is already there: the technician types the record without it.
QString singleCommandRecord(const QString& typed);

// cmdSendCommand(1): the records of a command file, in order. Each item of
// the file (an item ends at a comma or a line end) gets a final "/" when it
// lacks one, and is then trimmed.
QStringList commandFileRecords(const QByteArray& contents);

// What txtAnswerCMD shows for the answer of one record: the answer itself
// when the register accepted it, else kConsoleError.
QString consoleAnswerText(const QString& answer);

} // namespace kelm::technician
