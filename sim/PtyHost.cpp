#include "PtyHost.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace kelm::sim {

namespace {

QString systemError(const char* what)
{
    return QStringLiteral("%1: %2").arg(QLatin1String(what), QString::fromLocal8Bit(std::strerror(errno)));
}

} // namespace

PtyHost::~PtyHost()
{
    close();
}

bool PtyHost::open(const QString& linkPath, QString* error)
{
    lastLinkPath_ = linkPath;
    linkPath_ = QFile::encodeName(linkPath);
    struct stat st {};
    if (::lstat(linkPath_.constData(), &st) == 0) {
        // A link left behind by a run that was killed is replaced; anything
        // else at that path belongs to somebody and is left alone.
        if (!S_ISLNK(st.st_mode)) {
            *error = QStringLiteral("%1 exists and is not a symbolic link").arg(linkPath);
            linkPath_.clear();
            return false;
        }
        ::unlink(linkPath_.constData());
    }
    master_ = ::posix_openpt(O_RDWR | O_NOCTTY);
    if (master_ < 0 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
        *error = systemError("cannot create a pseudo-terminal");
        close();
        return false;
    }
    slaveName_ = ::ptsname(master_);
    slave_ = ::open(slaveName_.constData(), O_RDWR | O_NOCTTY);
    termios tio {};
    if (slave_ < 0 || ::tcgetattr(slave_, &tio) != 0) {
        *error = systemError("cannot open the pseudo-terminal");
        close();
        return false;
    }
    ::cfmakeraw(&tio);
    ::tcsetattr(slave_, TCSANOW, &tio);
    ::fcntl(master_, F_SETFL, ::fcntl(master_, F_GETFL) | O_NONBLOCK);
    if (::symlink(slaveName_.constData(), linkPath_.constData()) != 0) {
        *error = systemError("cannot create the link");
        linkPath_.clear();
        close();
        return false;
    }
    return true;
}

void PtyHost::close()
{
    if (!linkPath_.isEmpty()) {
        char target[PATH_MAX];
        const ssize_t n = ::readlink(linkPath_.constData(), target, sizeof target);
        if (n >= 0 && QByteArray(target, n) == slaveName_)
            ::unlink(linkPath_.constData());
        linkPath_.clear();
    }
    if (slave_ >= 0)
        ::close(slave_);
    if (master_ >= 0)
        ::close(master_);
    slave_ = master_ = -1;
    outgoing_.clear();
}

bool PtyHost::reopen(QString* error)
{
    close();
    return open(lastLinkPath_, error);
}

void PtyHost::readLine()
{
    char buffer[512];
    const ssize_t n = ::read(master_, buffer, sizeof buffer);
    if (n <= 0)
        return;
    const qint64 now = clock_.nowMs();
    for (ssize_t i = 0; i < n; ++i) {
        QList<kelm::TimedByte> reply;
        ecr_.receive(static_cast<quint8>(buffer[i]), now, reply);
        for (const kelm::TimedByte& b : reply)
            outgoing_.push_back(b);
    }
}

void PtyHost::deliverDue()
{
    const qint64 now = clock_.nowMs();
    QByteArray due;
    while (!outgoing_.empty() && outgoing_.front().atMs <= now) {
        due.append(static_cast<char>(outgoing_.front().value));
        outgoing_.pop_front();
    }
    // A full line with nobody reading loses the bytes, as a real one would,
    // so a failed or short write is not retried.
    if (!due.isEmpty() && master_ >= 0)
        (void)!::write(master_, due.constData(), size_t(due.size()));
}

qint64 PtyHost::msUntilNextByte() const
{
    if (outgoing_.empty())
        return -1;
    return std::max<qint64>(0, outgoing_.front().atMs - clock_.nowMs());
}

void PtyHost::run(int stopFd, int commandFd, const CommandHandler& onCommand)
{
    QByteArray pendingCommand;
    for (;;) {
        pollfd fds[3] = {{stopFd, POLLIN, 0}, {commandFd, POLLIN, 0}, {master_, POLLIN, 0}};
        const qint64 wait = msUntilNextByte();
        const int timeout = wait < 0 ? -1 : int(std::min<qint64>(wait, INT_MAX));
        if (::poll(fds, 3, timeout) < 0 && errno != EINTR)
            return;
        if (fds[0].revents & (POLLIN | POLLHUP))
            return;
        if (fds[2].revents & POLLIN)
            readLine();
        else if (fds[2].revents & (POLLERR | POLLHUP | POLLNVAL))
            close(); // the pty itself failed: stop watching it rather than wake for ever
        deliverDue();
        if (fds[1].revents & (POLLIN | POLLHUP | POLLERR | POLLNVAL)) {
            char buffer[256];
            const ssize_t n = ::read(commandFd, buffer, sizeof buffer);
            if (n <= 0) {
                commandFd = -1; // input closed: serve on until stopped
                continue;
            }
            pendingCommand.append(buffer, n);
            qsizetype eol;
            while ((eol = pendingCommand.indexOf('\n')) >= 0) {
                const QByteArray line = pendingCommand.left(eol).trimmed();
                pendingCommand.remove(0, eol + 1);
                if (line.isEmpty())
                    continue;
                const QByteArray reply = onCommand(line);
                if (reply == "quit")
                    return;
                (void)!::write(STDOUT_FILENO, reply.constData(), size_t(reply.size()));
                const bool plugged = ecr_.connected(clock_.nowMs());
                if (master_ >= 0 && !plugged) {
                    close();
                    (void)!::write(STDOUT_FILENO, "unplugged\n", 10);
                } else if (master_ < 0 && plugged) {
                    QString error;
                    const QByteArray said = reopen(&error) ? QByteArray("replugged\n")
                                                           : "error: " + error.toLocal8Bit() + "\n";
                    (void)!::write(STDOUT_FILENO, said.constData(), size_t(said.size()));
                }
            }
        }
    }
}

} // namespace kelm::sim
