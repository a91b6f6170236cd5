#pragma once

#include "app/Configuration.h"
#include "app/EcrIdentity.h"
#include "app/EcrLine.h"
#include "app/EcrSession.h"
#include "app/Operator.h"
#include "app/RunTimeLog.h"
#include "app/VatRates.h"
#include "server/AnswerFiles.h"
#include "server/OutcomeBook.h"
#include "server/ReceiptServer.h"
#include "service/DriverStatus.h"

#include <QFileSystemWatcher>
#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>

namespace kelm::service {

// Panel 2 while a sale keyed on the virtual keyboard holds the receipts back.
extern const QString kKeyboardSaleHold;

// Driver mode as one piece: configuration, the line on its worker, the
// register's identity and VAT rates, and the receipt server ticking every
// 250 ms (and at once when a file lands in the spool folder). Headless mode
// and the window run the same session; they differ only in how strict the
// start-up is.
class DriverSession final : public QObject {
    Q_OBJECT

public:
    enum class Mode {
        // Refuses to start without a usable model, spool folder and port,
        // and keeps asking a silent register for its identity.
        Headless,
        // Starts whatever happens: failures show on the status bar, panel
        // commands then fail with their own results, as users know it.
        Window,
    };

    struct Options {
        QString programFolder;
        bool testMode = false;
        Mode mode = Mode::Headless;
        // How long a lost line waits before the register is tried again.
        int retryMs = 5000;
    };

    using LineJob = std::function<void(EcrLink&)>;

    DriverSession(Options options, Operator& op);
    ~DriverSession() override;

    // Empty when the session runs; otherwise why it cannot. The register is
    // asked for its identity afterwards, on the worker.
    QString start();
    // Lets the record in progress finish (a record the register keeps
    // refusing for busy or paper goes back in the queue), closes the port,
    // then emits stopped(). Safe to call more than once.
    void stop();

    // Loaded by start(), on the caller's thread.
    const ConfigPC& config() const { return config_; }
    bool configured() const { return configured_; }

    // Runs an exchange on the line's worker, after every job before it.
    void post(LineJob job);
    // Looks at the built-in register on the worker (nothing happens when
    // the line leads elsewhere).
    void inspectVirtualEcr(std::function<void(const sim::VirtualEcr&)> look);
    // The VAT rates as last read from the register (VatRateTable).
    void setVatRates(const VatRateTable& rates);
    // The server timer (ServerStato, chkSRV). Switched on, it first sends
    // what waited while it was off.
    void setServerEnabled(bool on);
    // A saved spool folder and file name: the server, its log and its
    // answer files move there at once.
    void setSpool(const QString& serverDir, const QString& serverFile);
    // The run-time list (chkRunTimeLog) and the log file (chkLog).
    void setRunTimeListOn(bool on);
    void setLogOn(bool on);
    // A sale keyed on the virtual keyboard is open (the display did not read
    // 0 after a key): no receipt file is taken, and nothing queued is sent,
    // until it is closed, so that a point-of-sale receipt never lands inside
    // it. Files that arrive meanwhile wait in the folder.
    void setKeyboardSaleOpen(bool open);
    bool keyboardSaleHolds() const { return keyboardSale_; }
    // Whether the server believes a receipt is open on the register.
    bool receiptOpen() const { return receiptOpen_; }
    // The driver as it looks now; from any thread, never waits for the line.
    DriverStatus status() const;
    // The outcome of every receipt taken; readable from any thread.
    server::OutcomeBook& outcomes() { return outcomes_; }
    // A receipt posted over HTTP: begun in the book at once (so that its id
    // answers from now on), its lines queued on the worker after every line
    // already there, as a receipt file's would be.
    void queueRequest(const QString& id, const QStringList& lines);

Q_SIGNALS:
    // The VAT rates as the first "e/" after start-up read them, one text a
    // rate, as the read button of the VAT page shows them.
    void vatRatesRead(const QStringList& rates);
    void stopped();

private:
    QString openLine();
    void identify();
    void startServer();
    // Answer files and the folder watcher for a spool folder.
    void useSpool(const QString& serverDir);
    // Sends what is queued, then goes on ticking.
    void sendQueue();
    void tick();
    void shutDownOnWorker();
    // Line recovery: the session is up, or lost and trying again at a time.
    void tryLine();
    void lineUp(const EcrIdentity& identity);
    void lineDown(const QString& why, bool logged);
    // After a restart: receipts whose lines the last run could not keep.
    void settleOrphans();

    Options options_;
    StatusRecorder op_;
    ConfigPC config_;
    bool configured_ = false;
    std::unique_ptr<QLockFile> lock_;
    // Created, used and destroyed on the worker thread.
    std::unique_ptr<EcrLine> line_;
    std::unique_ptr<RunTimeLog> log_;
    std::unique_ptr<server::ReceiptServer> server_;
    std::unique_ptr<QTimer> timer_;
    std::unique_ptr<QFileSystemWatcher> watcher_;
    std::unique_ptr<QTimer> retry_;
    std::unique_ptr<server::AnswerFiles> answers_;
    bool lineLost_ = false;
    bool vatRatesShown_ = false;
    std::atomic<bool> keyboardSale_{false};
    VatRateTable vatRates_ = unknownVatRates();
    std::atomic<bool> serverEnabled_{true};
    bool runTimeListOn_ = true;
    std::atomic<bool> stopping_{false};
    std::atomic<bool> receiptOpen_{false};
    server::OutcomeBook outcomes_;
    // Last: joined first on destruction, before the members it uses go.
    EcrSession session_;
};

} // namespace kelm::service
