#pragma once

#include "VirtualEcr.h"

#include "link/Clock.h"

#include <QByteArray>
#include <QString>
#include <deque>
#include <functional>

namespace kelm::sim {

// Puts the virtual register on a pseudo-terminal in real time. The PC side
// opens the pty's slave through a symbolic link; the host reads what the PC
// writes, hands it to the register and writes the reply bytes when they are
// due. It waits in poll() on the pty, the command input and a stop pipe, so
// it uses no processor while the line is quiet.
class PtyHost {
public:
    // Answers one command line; returns the text to print back.
    using CommandHandler = std::function<QByteArray(const QByteArray& line)>;

    explicit PtyHost(VirtualEcr& ecr) : ecr_(ecr) {}
    ~PtyHost();
    PtyHost(const PtyHost&) = delete;
    PtyHost& operator=(const PtyHost&) = delete;

    // Creates the pty in raw mode and the link to it; false with a message.
    bool open(const QString& linkPath, QString* error);
    QByteArray slaveName() const { return slaveName_; }

    // Serves the line until stopFd becomes readable or a command handler asks
    // to stop (by returning "quit"). commandFd < 0: no command input.
    void run(int stopFd, int commandFd, const CommandHandler& onCommand);

    // Closes the pty and removes the link, as when the line goes away.
    void close();
    // A new pty at the link path of the last open, as when the line comes
    // back: the PC must open its port again, as after a pulled USB adapter.
    bool reopen(QString* error);

private:
    void readLine();
    void deliverDue();
    qint64 msUntilNextByte() const;

    VirtualEcr& ecr_;
    kelm::SystemClock clock_;
    int master_ = -1;
    int slave_ = -1; // kept open so the pty lives while no PC has it open
    QByteArray slaveName_;
    QByteArray linkPath_;
    QString lastLinkPath_;
    std::deque<kelm::TimedByte> outgoing_;
};

} // namespace kelm::sim
