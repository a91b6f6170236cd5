#pragma once

#include "app/Configuration.h"
#include "app/EcrIdentity.h"
#include "app/EcrLine.h"
#include "app/EcrSession.h"
#include "app/Operator.h"
#include "app/RunTimeLog.h"
#include "server/ReceiptServer.h"

#include <QFileSystemWatcher>
#include <QLockFile>
#include <QObject>
#include <QTimer>

#include <atomic>
#include <memory>

namespace kelm::service {

// Driver mode as one piece: configuration, the line on its worker, the
// register's identity and VAT rates, and the receipt server ticking every
// 250 ms (and at once when a file lands in the server directory). The
// headless mode runs it as it is; the window drives the same session.
class DriverSession final : public QObject {
    Q_OBJECT

public:
    struct Options {
        QString programFolder;
        bool testMode = false;
        bool runTimeList = true; // feed the Operator's run-time list
    };

    DriverSession(Options options, Operator& op);
    ~DriverSession() override;

    // Start-up without a window. Empty when driver mode is running;
    // otherwise why it cannot run. A register that does not answer is not
    // an error: the identity is asked for again every few seconds, and
    // nothing is taken from the spool until it answers.
    QString start();
    // Lets the record in progress finish (a record the register keeps
    // refusing for busy or paper is put back in the queue), closes the port,
    // then emits stopped(). Safe to call more than once.
    void stop();

    const ConfigPC& config() const { return config_; }

Q_SIGNALS:
    void identityRead(const kelm::EcrIdentity& identity);
    void stopped();

private:
    QString openLine();
    void readIdentity();
    void startServer();
    void tick();
    void shutDownOnWorker();

    Options options_;
    Operator& op_;
    ConfigPC config_;
    std::unique_ptr<QLockFile> lock_;
    // Created, used and destroyed on the worker thread.
    std::unique_ptr<EcrLine> line_;
    std::unique_ptr<RunTimeLog> log_;
    std::unique_ptr<server::ReceiptServer> server_;
    std::unique_ptr<QTimer> timer_;
    std::unique_ptr<QFileSystemWatcher> watcher_;
    std::atomic<bool> stopping_{false};
    // Last: joined first on destruction, before the members it uses go.
    EcrSession session_;
};

} // namespace kelm::service
