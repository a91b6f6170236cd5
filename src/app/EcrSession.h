#pragma once

#include <QObject>
#include <QThread>

#include <functional>

namespace kelm {

// The worker that owns the line. Every exchange with the register reaches it
// as a job and runs on its thread, one at a time and in the order posted, so
// two transactions can never interleave and no caller's thread waits on the
// serial line. Objects that talk to the port (the port itself, the receipt
// server, timers that start exchanges) live on this thread.
class EcrSession final : public QObject {
    Q_OBJECT

public:
    using Job = std::function<void()>;

    EcrSession();
    // Finishes the job in progress, runs nothing more and joins the thread.
    ~EcrSession() override;

    // Queues a job; returns at once.
    void post(Job job);
    // Queues a job and waits for it (and for every job before it) to finish.
    // Never call it from the worker itself.
    void run(const Job& job);

    QThread* workerThread() { return &thread_; }

private:
    QThread thread_;
};

} // namespace kelm
