#pragma once

#include <QObject>

#include <functional>

class QLocalServer;

namespace kelm::ui {

// The program started a second time on the same folder brings the running
// window forward (it may be hidden in the tray, or under other windows)
// instead of only saying that it runs.
class RunningWindow final : public QObject {
    Q_OBJECT

public:
    // The running window: listens for later starts and calls `bringForward`.
    RunningWindow(const QString& programFolder, std::function<void()> bringForward, QObject* parent = nullptr);

    // The later start: asks the running window to come forward. False when
    // nobody listens.
    static bool callForward(const QString& programFolder);

private:
    QLocalServer* server_;
};

} // namespace kelm::ui
