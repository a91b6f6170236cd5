#pragma once

#include <QObject>

#include <functional>

namespace kelm {

// Calls `handler` on `context`'s thread when the process is asked to end
// (SIGINT or SIGTERM; Ctrl+C or a console close on Windows). Install once.
void onShutdownSignal(QObject* context, std::function<void()> handler);

} // namespace kelm
