#pragma once

#include "app/Operator.h"

#include <QByteArray>
#include <QString>

#include <optional>

// Test receipts (cmdDemoTicket(1..6)) are not sent to the register here:
// each is written as a receipt file into the server directory, where the
// receipt server takes it like any other.
namespace kelm::technician {

constexpr int kFirstTestReceipt = 1;
constexpr int kLastTestReceipt = 6;

// The caption of cmdDemoTicket(index); empty for an index without a button.
QString testReceiptCaption(int index);

// The file of test receipt `index`: its records, one a line, each ended by
// CR LF, in the code page of the program's files. Empty for an index without
// a test receipt.
QByteArray testReceiptFile(int index);

// Asked first: the operator should put the register into learning mode.
Question testReceiptQuestion();

// Where the file goes: the server directory, a directory separator when it
// does not end in one, and the server file name. None when the directory is
// shorter than two characters: then nothing is written.
std::optional<QString> testReceiptPath(const QString& serverDir, const QString& serverFile);

// A file already at that path is a receipt waiting to be processed and is
// never overwritten: a plain box says so, OK only, no icon.
inline const QString kTestFileExists = QStringLiteral("File già esistente.");
inline const QString kTestFileExistsTitle = QStringLiteral("Kelm Drev");

} // namespace kelm::technician
