#pragma once

#include <QString>

// What the receipt server does with each record of a receipt file, by the
// record's key (its first two characters).
namespace kelm::server {

enum class CommandAction {
    Send,          // send `record` with SendRecord
    WriteSnapshot, // "t0": the PC answers it itself with the snapshot file
    Skip,          // refused here: list and log the decision's texts, go on with the queue
    StopQueue,     // not handled: list and log the decision's texts, stop the queue
};

struct CommandDecision {
    CommandAction action = CommandAction::StopQueue;
    QString record;           // Send: the record as it goes to the ECR
    bool receiptOpen = false; // the receipt-open flag from this line on
    QString runTimeEntry;     // Skip, StopQueue: the run-time list entry, tag included
    QString logMessage;       // for WriteLog with the line; empty when nothing is logged
};

// Decides on one normalised queue line (see normalizeQueueLine), given
// whether a receipt is open.
CommandDecision decideCommand(const QString& line, bool receiptOpen);

// The customer block "j/" always goes out with nine fields and a final "0":
// of the fields closed by "/" after the key, at most nine are kept, missing
// ones are empty, and whatever followed the last "/" of the line without its
// own final "/" is dropped.
QString NormalizeCustomerRecord(const QString& record);

} // namespace kelm::server
