#pragma once

#include "app/Operator.h"
#include "link/EcrLink.h"
#include "programming/Downloads.h"
#include "programming/PluRecord.h"

#include <atomic>
#include <functional>

// The exchanges of the programming tab, run on the line's worker: records
// through the panel road, reported by the table's own rules.
namespace kelm::programming {

struct DownloadRecord {
    QString record;
    QString identification; // named in a failure box after the phrase (PLU code, payment)
};

// Called after each record with the number done and the total.
using Progress = std::function<void(int done, int total)>;

// Sends each record. A table of one record shows its failure or its success;
// a table of many shows each failing record and goes on, then the success
// text whatever failed. `stop`, when set, ends a long table between two
// records (what was sent stays sent). Returns the last result.
qint16 runDownload(EcrLink& link, Operator& op, const DownloadBranch& branch,
                   const QList<DownloadRecord>& records, const Progress& progress = {},
                   const std::atomic<bool>* stop = nullptr);

// The PLU table: every row as "P/", then the register's PLUs beyond the
// grid are probed and deleted, then "PLU scaricate". A row's failure box
// asks whether to go on (Cancel stops, as `stop` does); a stopped download
// says so instead. Returns the rows as sent (numbers normalised) for the
// grid to show.
QList<PluRow> runPluDownload(EcrLink& link, Operator& op, const QList<PluRow>& rows,
                             const Progress& progress = {}, const std::atomic<bool>* stop = nullptr);

// The PLU table from the register: PLU 1, 2, … until a read fails or comes
// back with an empty code. Each row goes to `rowRead` as soon as it is read,
// with its PLU number, so that the grid grows while the user watches.
using PluRowRead = std::function<void(int number, const PluRow& row)>;
QList<PluRow> readPluTable(EcrLink& link, Operator& op, const PluRowRead& rowRead = {},
                           const std::atomic<bool>* stop = nullptr);

} // namespace kelm::programming
