#pragma once

#include "app/Operator.h"
#include "app/RunTimeLog.h"
#include "link/EcrLink.h"
#include "server/ItemLineRewrite.h"
#include "server/FileSettle.h"
#include "server/OutcomeBook.h"

#include <QDateTime>
#include <QHash>
#include <QSet>
#include <QStringList>

#include <atomic>
#include <functional>

namespace kelm::server {

// The texts of queued lines, as the queue list shows them.
QStringList queueTexts(const QList<QueuedLine>& lines);

// Driver mode: receipt files in, records to the register with the error
// policy, every failure written down. Straight-line exchange code on the
// line's worker; the 250 ms timer that calls ScanServerDir is the caller's.
class ReceiptServer {
public:
    struct Settings {
        QString serverDir;               // ServerDir as configured
        QString serverFile;              // ServerFile: a name or a mask
        QStringList forbiddenExtensions; // from FileExt.ini
        bool testMode = false;           // copy receipt files instead of renaming them
        ItemLineOptions itemLines;
        QString fallbackDir;             // the program folder
    };

    enum class SendOutcome {
        Done,     // accepted, refused and ignored, or a fatal error handled
        LinkLost, // the handshake failed: stop the queue
        Stopped,  // shutting down while the record was still being repeated
    };

    using Now = std::function<QDateTime()>;

    // `stop`, when given, is read at every wait of the repeat loops and
    // between records: once it is true the server gives up as soon as it can,
    // so that shutdown never waits for paper to be loaded. It may be set from
    // any thread. `receiptOpen`, when given, holds ReceiptOpen, so that
    // another thread can read it while a file is being sent.
    ReceiptServer(EcrLink& link, Operator& op, RunTimeLog& log, Settings settings,
                  const std::atomic<bool>* stop = nullptr, Now now = &QDateTime::currentDateTime,
                  std::atomic<bool>* receiptOpen = nullptr);

    // One timer tick: claims the waiting receipt files, queues their lines
    // and sends the queue. Does nothing while the serial number is unknown.
    void ScanServerDir();
    // Sends the queue from the top until it is empty, the link is lost, an
    // unhandled command stops it or shutdown is asked for.
    void ProcessReceiptQueue();
    SendOutcome SendRecord(const QString& record);
    // The ".FMN" snapshot of "t/", "0/", "9/", "X/"; false when the link was lost.
    bool WriteSnapshotFile();

private:
    std::atomic<bool> ownReceiptOpen_{false};

public:
    // State that outlives a file: the receipt may stay open across files.
    std::atomic<bool>& ReceiptOpen;
    bool runTimeListOn = false; // chkRunTimeLog
    QString serialNumber;       // from the identity read at start-up
    QList<QueuedLine> queue;    // lstScontrino, oldest first
    // Set when a handshake failed; whoever runs the line clears it once the
    // register answers again.
    bool lineLost = false;

    // Where the lines' outcomes go; none in tests that do not look.
    void setOutcomeBook(OutcomeBook* book) { outcomes_ = book; }
    // Queues the lines of a receipt file or request, each with its origin,
    // after what is already queued; the receipt is begun in the book.
    // Returns the receipt's id there.
    QString enqueue(LineOrigin::Source source, const QString& id, const QStringList& lines);
    // What the last SendRecord that returned Done did to its record.
    const LineOutcome& lastOutcome() const { return sent_; }

    // A new spool folder and file name, from the next scan on.
    void setSpool(const QString& serverDir, const QString& serverFile);
    // The VAT rates read from the register, for the automatic VAT code.
    void setVatRates(const VatRateTable& rates) { settings_.itemLines.vatRates = rates; }

    const QString& lastAnswer() const { return answer_; }
    const Settings& settings() const { return settings_; }

private:
    void list(const QString& entry);
    void linkLost(const QString& record);
    bool stopRequested() const { return stop_ && *stop_; }
    bool pause(qint64 ms); // false when shutdown was asked for
    QString statusQuery();  // "?/" after a handshake and `pauseMs`
    void setQueue(QList<QueuedLine> lines);
    void report(const LineOrigin& origin, const LineOutcome& outcome);
    // Takes one waiting file into the queue; false when it was already gone
    // or is too fresh to be complete.
    bool claimFile(const QString& directory, const QString& name);
    bool claim(const QString& original, const QString& working) const;

    EcrLink& link_;
    Operator& op_;
    RunTimeLog& log_;
    Settings settings_;
    Now now_;
    QString answer_;
    bool paperOut_ = false;
    LineOutcome sent_;
    OutcomeBook* outcomes_ = nullptr;
    QSet<QString> reportedUnreadable_;
    QHash<QString, FileLook> seen_;      // waiting files not yet settled, as first seen
    QHash<QString, qint64> unclaimable_; // files whose claim failed: the time of the last try
    const std::atomic<bool>* stop_;
};

} // namespace kelm::server
