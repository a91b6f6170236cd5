#pragma once

#include <QString>

// "Totali.txt": the ECR's totals, one readable line per value, for the
// point-of-sale side.
namespace kelm::server {

// The file's text, lines ended by CR LF. The answer's first nine characters
// are its header; each "/"-closed value after them gives one line: five VAT
// totals, then sales, receipts, non-fiscal, voids, returns, cancellations.
// Every value past the eleventh repeats the eleventh line instead.
QString totalsText(const QString& answer);

// Writes the file anew (Windows-1252) at the server directory exactly as
// configured with "Totali.txt" right after it: a directory without a final
// separator gives a file beside it. False when it cannot be written.
bool WriteTotals(const QString& serverDir, const QString& answer);

} // namespace kelm::server
