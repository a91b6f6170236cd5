// The real serial port class on pseudo-terminals, the bytes really crossing a
// kernel tty as they do on a USB adapter: against a slow far end that logs
// the wire, and against ecrsim as a program (started, given faults on its
// standard input, pulled and plugged back, stopped with SIGTERM).
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/Framing.h"
#include "link/SerialPort.h"

#include "EcrSimProcess.h"
#include "Table.h"
#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <atomic>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

using namespace kelm;

namespace {

// The master side of a pty, answering like a register that knows one record.
// It reads in bursts, as a busy register does, so that the program's bytes
// sit in the kernel for a while.
class PtyRegister {
public:
    PtyRegister()
    {
        master_ = posix_openpt(O_RDWR | O_NOCTTY);
        grantpt(master_);
        unlockpt(master_);
        termios raw{};
        tcgetattr(master_, &raw);
        cfmakeraw(&raw);
        tcsetattr(master_, TCSANOW, &raw);
        slave_ = QString::fromLocal8Bit(ptsname(master_));
    }
    ~PtyRegister()
    {
        stop();
        ::close(master_);
    }
    const QString& slave() const { return slave_; }
    void start(QByteArray answer) { thread_ = std::thread([this, answer = std::move(answer)] { serve(answer); }); }
    void stop()
    {
        running_ = false;
        if (thread_.joinable())
            thread_.join();
    }
    // Every byte received, in order (read once the serving thread stopped).
    const QByteArray& received() const { return received_; }

private:
    void serve(const QByteArray& answer)
    {
        bool inFrame = false;
        for (;;) { // once stopped, until what is still on its way was read
            pollfd p{master_, POLLIN, 0};
            if (poll(&p, 1, 20) <= 0 || !(p.revents & POLLIN)) {
                if (!running_)
                    return;
                continue;
            }
            QThread::msleep(5); // let the program's bytes pile up in the kernel
            char burst[256];
            const ssize_t n = ::read(master_, burst, sizeof burst);
            for (ssize_t i = 0; i < n; ++i) {
                const auto b = static_cast<quint8>(burst[i]);
                received_.append(char(b));
                QByteArray reply;
                if (inFrame && b == frame::ETX)
                    reply = QByteArray(1, char(frame::ACK)) + char(frame::STX) + answer + char(frame::ETX);
                else if (!inFrame && b == frame::ENQ)
                    reply = QByteArray(1, char(frame::ACK));
                inFrame = b == frame::STX || (inFrame && b != frame::ETX);
                (void)!::write(master_, reply.constData(), size_t(reply.size()));
            }
        }
    }

    int master_ = -1;
    QString slave_;
    std::thread thread_;
    std::atomic<bool> running_{true};
    QByteArray received_;
};

// One transaction: the link's result and the answer, as "result answer".
QString transaction(EcrLink& link, const QString& record)
{
    QString answer;
    const int result = int(link.EcrTransaction(record, answer));
    return QString::number(result) + u' ' + answer;
}

} // namespace

class PtyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyWrittenByteReachesTheWire_data()
    {
        columns<int, int>("transactions", "speed");
        row("one, port closed right after the answer", 1, 9600);
        row("forty in a row at 115200", 40, 115200);
    }
    // Whatever the protocol writes is on the wire in its order, however slowly
    // the far end reads: three CAN, ENQ, the frame, and the ACK of every answer,
    // also the last one, written just before the port closes.
    void everyWrittenByteReachesTheWire()
    {
        const int transactions = fetch<int>("transactions");
        PtyRegister ecr;
        ecr.start("00/00/01/99MEA012345/1/");
        SerialPort port;
        QVERIFY2(port.open(ecr.slave(), fetch<int>("speed")), qPrintable(port.lastError()));
        SystemClock clock;
        EcrLink link(port, clock);
        QByteArray expected;
        for (int i = 0; i < transactions; ++i) {
            const QString record = QStringLiteral("3/S/R%1//1/1.00/1/1/").arg(i);
            QCOMPARE(transaction(link, record), QStringLiteral("0 00/00/01/99MEA012345/1/"));
            // two checksum characters (masked below), then ETX and the ACK to the answer
            expected += "\x18\x18\x18\x05\x02" + record.toLatin1() + "cc\x03\x06";
        }
        port.close();
        QCOMPARE(port.handle(), PortHandle::Closed);
        ecr.stop();
        QByteArray wire = ecr.received();
        for (qsizetype at = wire.indexOf('\x03'); at >= 2; at = wire.indexOf('\x03', at + 1))
            wire[at - 1] = wire[at - 2] = 'c';
        QCOMPARE(wire.toPercentEncoding(), expected.toPercentEncoding());
    }
    void openFailures_data()
    {
        columns<QString, int, int>("name", "speed", "handle");
        row("no such device", "/dev/kelmdrev-no-such-port", 9600, int(PortHandle::Invalid));
        row("speed 0: nothing is opened", "/dev/null", 0, int(PortHandle::Closed));
        row("a name that is not a port", "Com", 9600, int(PortHandle::Invalid));
    }
    void openFailures()
    {
        SerialPort port;
        QVERIFY(!port.open(fetch<QString>("name"), fetch<int>("speed")));
        QTEST(int(port.handle()), "handle");
        QVERIFY(!port.lastError().isEmpty());
        QCOMPARE(port.readByte(), quint8(0));
    }
    void ecrsimOverThePty()
    {
        EcrSimProcess sim; // and the program's port to it
        SerialPort port;
        SystemClock clock;
        EcrLink ecr(port, clock);
        QVERIFY2(sim.start({"--fault", "can 1"}), qPrintable(sim.process.readAllStandardError()));
        QVERIFY2(port.open(sim.link, 9600), qPrintable(port.lastError()));
        QCOMPARE(transaction(ecr, "a/"), QStringLiteral("1002 "));
        // What was received and not read is gone once the port closed.
        port.writeByte(frame::ENQ);
        QVERIFY(ecr.WaitForData(1000));
        port.close();
        QVERIFY(port.open(sim.link, 9600));
        QCOMPARE(port.bytesWaiting(), qint64(0));
        QCOMPARE(transaction(ecr, "a/"), QStringLiteral("0 00/00/01/99KDV000001/1/KD/IT/1.00/"));
        QCOMPARE(sim.command("busy 1"), QByteArray("ok"));
        QCOMPARE(sim.command("busy lots"), QByteArray("error: usage: busy [N]"));
        QCOMPARE(transaction(ecr, "x/7/0/0/"), QStringLiteral("0 1A/00/01/x/"));
        QCOMPARE(sim.command("status"), QByteArray("receipt closed display \"            0.00|                \" records 1"));

        const int watcher = ::open(QFile::encodeName(sim.link).constData(), O_RDWR | O_NOCTTY);
        QCOMPARE(sim.command("unplug"), QByteArray("ok"));
        QCOMPARE(sim.nextLine(), QByteArray("unplugged"));
        QVERIFY(!QFileInfo(sim.link).isSymLink());
        // The far end is gone: the line has a hang-up, and waiting on it sleeps, not spins.
        pollfd p{watcher, POLLIN, 0};
        QCOMPARE(::poll(&p, 1, 4000), 1);
        QVERIFY(p.revents & POLLHUP);
        ::close(watcher);
        const qint64 self = QCoreApplication::applicationPid();
        const double before = cpuSeconds(self);
        QCOMPARE(int(ecr.LinkHandshake()), 1004);
        QVERIFY2(cpuSeconds(self) - before < 0.5, "waiting on a dead line must sleep, not spin");
        QCOMPARE(sim.command("replug"), QByteArray("ok"));
        QCOMPARE(sim.nextLine(), QByteArray("replugged"));
        QVERIFY(port.open(sim.link, 9600));
        QCOMPARE(transaction(ecr, "a/").left(5), QStringLiteral("0 00/")); // faults used up before the pull stay so

        port.close();
        sim.process.terminate(); // SIGTERM
        QVERIFY(sim.process.waitForFinished(5000));
        QCOMPARE(sim.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(sim.process.exitCode(), 0);
        QVERIFY2(!QFileInfo::exists(sim.link) && !QFileInfo(sim.link).isSymLink(), "the link is left behind");
        QFile journal(sim.journal);
        QVERIFY(journal.open(QIODevice::ReadOnly));
        QCOMPARE(journal.readAll(), QByteArray("a/\na/\n"));
    }
    void commandLines_data()
    {
        columns<QStringList, int, QStringList>("arguments", "exitCode", "said"); // said: on standard output or error
        row("help names every option, fault and command", QStringList{"--help"}, 0,
            QStringList{"--link", "--journal", "--paper", "--fault", "--baud", "--delay", "busy", "nak", "can", "silence",
                        "garbage", "broken", "short", "paper", "cover", "fatal", "refuse", "unplug", "replug", "clear",
                        "status", "quit", "ready"});
        row("no link", QStringList(), 2, QStringList{"--link PATH is required"});
        row("bad baud", QStringList{"--link", "x", "--baud", "fast"}, 2, QStringList{"--baud wants"});
        row("bad fault", QStringList{"--link", "x", "--fault", "wobble 3"}, 2, QStringList{"fault \"wobble 3\": unknown fault"});
        row("journal that cannot be written", QStringList{"--link", "x", "--journal", "/nonexistent-dir/journal.txt"}, 2,
            QStringList{"/nonexistent-dir/journal.txt"});
        row("unknown option", QStringList{"--lnk", "x"}, 2, QStringList{"lnk"});
        row("quit on its standard input", QStringList{"--link", QDir::currentPath() + "/ecrsim-link"}, 0, QStringList{"ready"});
        row("link onto a file", QStringList{"--link", QDir::currentPath() + "/ecrsim-plain-file"}, 2,
            QStringList{"exists and is not a symbolic link"});
    }
    void commandLines()
    {
        QFile plain(QDir::currentPath() + "/ecrsim-plain-file");
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QProcess p;
        p.start(QStringLiteral(ECRSIM_EXE), fetch<QStringList>("arguments"));
        p.write("quit\n");
        QVERIFY(p.waitForFinished(5000));
        plain.remove();
        QTEST(p.exitCode(), "exitCode");
        const QString said = QString::fromLocal8Bit(p.readAllStandardOutput() + p.readAllStandardError());
        for (const QString& words : fetch<QStringList>("said"))
            QVERIFY2(said.contains(words), qPrintable(words + ": " + said));
    }
};

QTEST_GUILESS_MAIN(PtyTest)
#include "tst_link_pty.moc"
