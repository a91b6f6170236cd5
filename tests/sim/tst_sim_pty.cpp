// ecrsim as a program on a pseudo-terminal: started, talked to byte by byte
// through its link with plain POSIX calls, given faults on its standard
// input, and stopped with SIGTERM.
#include "link/Framing.h"

#include "Table.h"
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

constexpr char STX = 0x02, ETX = 0x03, ENQ = 0x05, ACK = 0x06, NAK = 0x15, CAN = 0x18;

// The PC's end of the line, opened the way a serial port is.
class RawLine {
public:
    explicit RawLine(const QString& path)
    {
        fd_ = ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY);
        termios tio {};
        if (fd_ >= 0 && ::tcgetattr(fd_, &tio) == 0) {
            ::cfmakeraw(&tio);
            ::tcsetattr(fd_, TCSANOW, &tio);
        }
    }
    ~RawLine()
    {
        if (fd_ >= 0)
            ::close(fd_);
    }
    bool isOpen() const { return fd_ >= 0; }

    void write(const QByteArray& bytes) { QCOMPARE(::write(fd_, bytes.constData(), size_t(bytes.size())), ssize_t(bytes.size())); }

    // The next byte, or -1 when none came within timeoutMs.
    int readByte(int timeoutMs)
    {
        pollfd p {fd_, POLLIN, 0};
        if (::poll(&p, 1, timeoutMs) <= 0 || !(p.revents & POLLIN))
            return -1;
        unsigned char c = 0;
        return ::read(fd_, &c, 1) == 1 ? c : -1;
    }

    // The bytes up to and including ETX, or what came before a 1 s pause.
    QByteArray readFrame()
    {
        QByteArray frame;
        for (int b; (b = readByte(1000)) >= 0;) {
            frame.append(char(b));
            if (b == ETX)
                break;
        }
        return frame;
    }

private:
    int fd_ = -1;
};

struct Sim {
    QTemporaryDir dir;
    QProcess process;
    QString link() const { return dir.filePath("ecr"); }
    QString journal() const { return dir.filePath("journal.txt"); }

    bool start(const QStringList& extra = {})
    {
        process.start(ECRSIM_PATH, QStringList{"--link", link(), "--journal", journal()} + extra);
        if (!process.waitForStarted(5000))
            return false;
        while (!process.canReadLine())
            if (!process.waitForReadyRead(5000))
                return false;
        return process.readLine() == "ready\n";
    }
    QByteArray command(const QByteArray& line)
    {
        process.write(line + '\n');
        return nextLine();
    }
    QByteArray nextLine()
    {
        while (!process.canReadLine())
            if (!process.waitForReadyRead(5000))
                return {};
        return process.readLine().trimmed();
    }
};

} // namespace

class TestSimPty : public QObject {
    Q_OBJECT

private slots:
    void transactionsOverThePty()
    {
        Sim sim;
        QVERIFY2(sim.start(), qPrintable(sim.process.readAllStandardError()));
        QVERIFY(QFileInfo(sim.link()).isSymLink());
        {
            RawLine line(sim.link());
            QVERIFY(line.isOpen());

            line.write(QByteArray(3, CAN) + ENQ);
            QCOMPARE(line.readByte(2000), int(ACK));
            QByteArray bad = kelm::frame::commandFrame("a/");
            bad[3] = '0';
            line.write(bad);
            QCOMPARE(line.readByte(2000), int(NAK));

            line.write(QByteArray(1, ENQ));
            QCOMPARE(line.readByte(2000), int(ACK));
            line.write(kelm::frame::commandFrame("a/"));
            QCOMPARE(line.readByte(2000), int(ACK));
            const QByteArray answer = QByteArray(1, STX) + "00/00/01/99KDV000001/1/KD/IT/1.00/" + ETX;
            QCOMPARE(line.readFrame(), answer);
            line.write(QByteArray(1, NAK));
            QCOMPARE(line.readFrame(), answer);
            line.write(QByteArray(1, ACK));

            QCOMPARE(sim.command("busy 1"), QByteArray("ok"));
            QVERIFY(sim.command("busy lots").startsWith("error: usage: busy"));
            line.write(QByteArray(3, CAN) + ENQ);
            QCOMPARE(line.readByte(2000), int(ACK));
            line.write(kelm::frame::commandFrame("x/7/0/0/"));
            QCOMPARE(line.readByte(2000), int(ACK));
            QCOMPARE(line.readFrame(), QByteArray(1, STX) + "1A/00/01/x/" + ETX);
            line.write(QByteArray(1, ACK));
        }
        sim.process.terminate(); // SIGTERM
        QVERIFY(sim.process.waitForFinished(5000));
        QCOMPARE(sim.process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(sim.process.exitCode(), 0);
        QVERIFY2(!QFileInfo::exists(sim.link()) && !QFileInfo(sim.link()).isSymLink(), "the link is left behind");
        QFile journal(sim.journal());
        QVERIFY(journal.open(QIODevice::ReadOnly));
        QCOMPARE(journal.readAll(), QByteArray("a/\n"));
    }
    void unplugClosesTheLineAndReplugBringsItBack()
    {
        Sim sim;
        QVERIFY2(sim.start({"--fault", "can 1"}), qPrintable(sim.process.readAllStandardError()));
        RawLine line(sim.link());
        QVERIFY(line.isOpen());
        line.write(QByteArray(3, CAN) + ENQ);
        QCOMPARE(line.readByte(2000), int(CAN));
        QCOMPARE(sim.command("unplug"), QByteArray("ok"));
        QCOMPARE(sim.nextLine(), QByteArray("unplugged"));
        QVERIFY(!QFileInfo(sim.link()).isSymLink());
        // The far end is gone: the PC's handle has a hang-up, not a wait.
        QElapsedTimer waited;
        waited.start();
        QCOMPARE(line.readByte(5000), -1);
        QVERIFY(waited.elapsed() < 4000);

        QCOMPARE(sim.command("replug"), QByteArray("ok"));
        QCOMPARE(sim.nextLine(), QByteArray("replugged"));
        QVERIFY(QFileInfo(sim.link()).isSymLink());
        RawLine again(sim.link());
        QVERIFY(again.isOpen());
        again.write(QByteArray(3, CAN) + ENQ);
        QCOMPARE(again.readByte(2000), int(ACK)); // the "can 1" fault was used up before the pull
        sim.process.write("quit\n");
        QVERIFY(sim.process.waitForFinished(5000));
        QCOMPARE(sim.process.exitCode(), 0);
    }
    void helpNamesEveryOptionAndFault()
    {
        QProcess p;
        p.start(ECRSIM_PATH, {"--help"});
        QVERIFY(p.waitForFinished(5000));
        QCOMPARE(p.exitCode(), 0);
        const QString help = QString::fromLocal8Bit(p.readAllStandardOutput());
        for (const char* w : {"--link", "--journal", "--paper", "--fault", "--baud", "--delay", "busy", "nak", "can", "silence",
                              "garbage", "broken", "short", "paper", "cover", "fatal", "refuse", "unplug", "replug", "clear",
                              "status", "quit", "ready"})
            QVERIFY2(help.contains(QLatin1String(w)), w);
    }
    void badCommandLines_data()
    {
        columns<QStringList, QString>("arguments", "message");
        QTest::newRow("no link") << QStringList() << "--link PATH is required";
        QTest::newRow("bad baud") << QStringList{"--link", "x", "--baud", "fast"} << "--baud wants";
        QTest::newRow("bad fault") << QStringList{"--link", "x", "--fault", "paper soon"} << "usage: paper MS";
        QTest::newRow("unknown option") << QStringList{"--lnk", "x"} << "lnk";
        QTest::newRow("link onto a file") << QStringList{"--link", QDir::currentPath() + "/ecrsim-plain-file"}
                                          << "exists and is not a symbolic link";
    }
    void badCommandLines()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, message);
        QFile plain(QDir::currentPath() + "/ecrsim-plain-file");
        QVERIFY(plain.open(QIODevice::WriteOnly));
        QProcess p;
        p.start(ECRSIM_PATH, arguments);
        QVERIFY(p.waitForFinished(5000));
        plain.remove();
        QCOMPARE(p.exitCode(), 2);
        const QString error = QString::fromLocal8Bit(p.readAllStandardError());
        QVERIFY2(error.contains(message), qPrintable(error));
    }
};

QTEST_GUILESS_MAIN(TestSimPty)
#include "tst_sim_pty.moc"
