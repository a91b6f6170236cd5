#pragma once

#include "app/Operator.h"
#include "link/EcrLink.h"
#include "service/DriverSession.h"

#include <QObject>

#include <functional>

namespace kelm::ui {

// How a tab talks to the register: the exchange runs on the line's worker
// with the hourglass on, and what it found comes back to the tab on the UI
// thread. The tab never waits, and can go on being used meanwhile.
class LineJobs {
public:
    using Job = std::function<void(EcrLink& link, Operator& op)>;
    using Done = std::function<void()>;

    LineJobs(service::DriverSession& session, Operator& op) : session_(session), op_(op) {}

    // `done` runs on `context`'s thread after the job, unless `context` has
    // gone by then.
    void run(QObject* context, Job job, Done done = {});

    // For work the job does on the worker that must show on the UI thread
    // (results, progress).
    static void onUiThread(QObject* context, std::function<void()> f);

private:
    service::DriverSession& session_;
    Operator& op_;
};

} // namespace kelm::ui
