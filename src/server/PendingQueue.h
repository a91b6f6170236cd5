#pragma once

#include "server/ReceiptOutcome.h"

#include <QString>

namespace kelm::server {

// Receipt lines that were queued but not sent when the driver stopped (a
// register unplugged in the middle of a receipt, then the program closed).
// They are kept in the program folder with their origins and go out first
// at the next start, so that a restart carries on where the line broke off
// and each line still reports to its receipt.
QString pendingQueuePath(const QString& programFolder);

// Writes the lines (CR LF, Windows-1252), or removes the file when there
// are none. False when the file could not be written.
bool savePendingQueue(const QString& path, const QList<QueuedLine>& lines);

// The lines kept by the last run, and the file gone. A file of an older
// version (bare lines, no header) gives lines without origin.
QList<QueuedLine> takePendingQueue(const QString& path);

} // namespace kelm::server
