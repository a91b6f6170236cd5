// The real serial port class on a pseudo-terminal pair: the bytes really
// cross a kernel tty, as they do on a USB adapter.
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/Framing.h"
#include "link/SerialPort.h"

#include "Table.h"
#include <QElapsedTimer>
#include <QTest>
#include <QThread>

#include <atomic>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <termios.h>
#include <unistd.h>

using namespace kelm;

namespace {

// The master side of a pty, answering like a register that knows one record.
// It reads in bursts, as a busy register does, so that the program's bytes
// sit in the kernel for a while; every byte is logged with its arrival time.
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
        started_.start();
    }
    ~PtyRegister()
    {
        stop();
        if (master_ >= 0)
            ::close(master_);
    }

    const QString& slave() const { return slave_; }

    void start(QByteArray answer)
    {
        thread_ = std::thread([this, answer = std::move(answer)] { serve(answer); });
    }
    void stop()
    {
        running_ = false;
        if (thread_.joinable())
            thread_.join();
    }
    void write(const QByteArray& bytes) { (void)!::write(master_, bytes.constData(), size_t(bytes.size())); }
    void hangUp()
    {
        ::close(master_);
        master_ = -1;
    }
    // Every byte received, in order (read once the serving thread stopped).
    const QByteArray& received() const { return received_; }
    const std::vector<qint64>& arrivalMs() const { return arrivalMs_; }

private:
    void serve(const QByteArray& answer)
    {
        bool inFrame = false;
        while (running_) {
            pollfd p{master_, POLLIN, 0};
            if (poll(&p, 1, 20) <= 0 || !(p.revents & POLLIN))
                continue;
            QThread::msleep(5); // let the program's bytes pile up in the kernel
            char burst[256];
            const ssize_t n = ::read(master_, burst, sizeof burst);
            for (ssize_t i = 0; i < n; ++i) {
                const auto b = static_cast<quint8>(burst[i]);
                received_.append(char(b));
                arrivalMs_.push_back(started_.elapsed());
                if (inFrame && b == frame::ETX) {
                    inFrame = false;
                    write(QByteArray(1, char(frame::ACK)) + char(frame::STX) + answer + char(frame::ETX));
                } else if (b == frame::STX) {
                    inFrame = true;
                } else if (!inFrame && b == frame::ENQ) {
                    write(QByteArray(1, char(frame::ACK)));
                }
            }
        }
    }

    int master_ = -1;
    QString slave_;
    std::thread thread_;
    std::atomic<bool> running_{true};
    QElapsedTimer started_;
    QByteArray received_;
    std::vector<qint64> arrivalMs_;
};

double cpuSeconds()
{
    rusage u{};
    getrusage(RUSAGE_SELF, &u);
    return double(u.ru_utime.tv_sec + u.ru_stime.tv_sec) + double(u.ru_utime.tv_usec + u.ru_stime.tv_usec) / 1e6;
}

} // namespace

class PtyTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void everyWrittenByteReachesTheWire_data()
    {
        columns<int, int>("transactions", "speed");
        QTest::newRow("one, port closed right after the answer") << 1 << 9600;
        QTest::newRow("forty in a row at 115200") << 40 << 115200;
    }
    // Whatever the protocol writes is on the wire in its order, however slowly
    // the far end reads: three CAN, ENQ, the frame, and the ACK of every answer,
    // also the last one, written just before the port closes.
    void everyWrittenByteReachesTheWire()
    {
        QFETCH(int, transactions);
        QFETCH(int, speed);
        PtyRegister ecr;
        ecr.start("00/00/01/99MEA012345/1/");
        {
            SerialPort port;
            QVERIFY2(port.open(ecr.slave(), speed), qPrintable(port.lastError()));
            SystemClock clock;
            EcrLink link(port, clock);
            for (int i = 0; i < transactions; ++i) {
                QString answer;
                QCOMPARE(int(link.EcrTransaction(QStringLiteral("3/S/R%1//1/1.00/1/1/").arg(i), answer)), 0);
                QCOMPARE(answer, QStringLiteral("00/00/01/99MEA012345/1/"));
            }
            port.close();
            QCOMPARE(port.handle(), PortHandle::Closed);
        }
        QThread::msleep(100); // the far end reads what is still on its way
        ecr.stop();

        QByteArray expected;
        for (int i = 0; i < transactions; ++i) {
            const QByteArray record = QStringLiteral("3/S/R%1//1/1.00/1/1/").arg(i).toLatin1();
            expected += "\x18\x18\x18\x05\x02" + record;
            // two checksum characters, then ETX and the ACK to the answer
            expected += "cc\x03\x06";
        }
        QByteArray wire = ecr.received();
        // Mask the checksums, whose rule is tested elsewhere.
        for (qsizetype at = wire.indexOf('\x03'); at >= 2; at = wire.indexOf('\x03', at + 1)) {
            wire[at - 1] = 'c';
            wire[at - 2] = 'c';
        }
        if (wire != expected) {
            for (size_t i = 0; i < ecr.arrivalMs().size(); ++i)
                qInfo("%6lld ms  %02x", ecr.arrivalMs()[i], quint8(ecr.received()[qsizetype(i)]));
        }
        QCOMPARE(wire.toPercentEncoding(), expected.toPercentEncoding());
    }
    void openFailures_data()
    {
        columns<QString, int, int>("name", "speed", "handle");
        QTest::newRow("no such device") << "/dev/kelmdrev-no-such-port" << 9600 << int(PortHandle::Invalid);
        QTest::newRow("speed 0: nothing is opened") << "/dev/null" << 0 << int(PortHandle::Closed);
        QTest::newRow("a name that is not a port") << "Com" << 9600 << int(PortHandle::Invalid);
    }
    void openFailures()
    {
        QFETCH(QString, name);
        QFETCH(int, speed);
        QFETCH(int, handle);
        SerialPort port;
        QVERIFY(!port.open(name, speed));
        QCOMPARE(int(port.handle()), handle);
        QVERIFY(!port.lastError().isEmpty());
        QCOMPARE(port.readByte(), quint8(0));
    }
    void closeDiscardsWaitingBytes()
    {
        PtyRegister ecr;
        SerialPort port;
        QVERIFY(port.open(ecr.slave(), 9600));
        ecr.write("stale");
        SystemClock clock;
        EcrLink link(port, clock);
        QVERIFY(link.WaitForData(1000));
        port.close();
        QVERIFY(port.open(ecr.slave(), 9600));
        QCOMPARE(port.bytesWaiting(), qint64(0));
    }
    void farEndGoneDoesNotSpin()
    {
        PtyRegister ecr;
        SerialPort port;
        QVERIFY(port.open(ecr.slave(), 9600));
        ecr.hangUp();
        SystemClock clock;
        EcrLink link(port, clock);
        const double before = cpuSeconds();
        QCOMPARE(int(link.LinkHandshake()), 1004);
        // Three rounds of 1 s wait; a busy loop would burn about as much CPU.
        QVERIFY2(cpuSeconds() - before < 0.5, "waiting on a dead line must sleep, not spin");
    }
};

QTEST_GUILESS_MAIN(PtyTest)
#include "tst_link_pty.moc"
