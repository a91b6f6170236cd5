#pragma once

#include "server/OutcomeBook.h"

#include <QString>

namespace kelm::http {

// The final outcomes of receipts posted over HTTP, one file each in the
// answer-file format, so that a client that asks again after a restart
// still reads what became of its receipt. Files older than the days answer
// files are kept are removed when the book is filled at start.
class KeptOutcomes {
public:
    KeptOutcomes(QString folder, int keepDays) : folder_(std::move(folder)), keepDays_(keepDays) {}

    // Puts every kept outcome back into the book.
    void restoreInto(server::OutcomeBook& book) const;
    // Writes a receipt whose state is final.
    void keep(const server::ReceiptOutcome& receipt) const;

private:
    QString folder_;
    int keepDays_;
};

} // namespace kelm::http
