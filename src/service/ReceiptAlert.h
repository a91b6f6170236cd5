#pragma once

#include "server/ReceiptOutcome.h"

#include <QString>

namespace kelm::service {

// What the window's status bar (and tray tip) says about receipts in
// driver mode: a refused line or a queue emptied by a fatal error stays
// there, with the register's own text, until a receipt goes through.
struct ReceiptAlert {
    enum class Kind {
        Keep,  // nothing new: the bar keeps what it shows
        Show,  // `text` replaces it
        Clear, // a receipt went through: whatever was wrong is over
    };
    Kind kind = Kind::Keep;
    QString text;

    friend bool operator==(const ReceiptAlert&, const ReceiptAlert&) = default;
};

// After a change of `receipt`: its last refused line, "Comando '…' - Errore
// N. n - text", behind "Errore grave: " when it was the register's fatal
// error (the queue was emptied); Clear once every line was accepted. A
// receipt taken before `since` (an earlier run's, read back from its answer
// file) changes nothing.
ReceiptAlert receiptAlert(const server::ReceiptOutcome& receipt, const QDateTime& since);

} // namespace kelm::service
