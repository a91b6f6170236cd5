// The real serial port class on a pseudo-terminal pair: the bytes really
// cross a kernel tty, as they do on a USB adapter.
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/Framing.h"
#include "link/SerialPort.h"

#include <QTest>

#include <chrono>
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

// The register's end of a pty, written with plain system calls so that it
// shares nothing with the port under test. It logs every byte it reads with
// its time, and answers like a register: ACK to ENQ, ACK and an answer frame
// to a command frame.
class FarEnd {
public:
    FarEnd()
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
    ~FarEnd()
    {
        finish();
        if (master_ >= 0)
            ::close(master_);
    }

    const QString& slave() const { return slave_; }

    void start(QByteArray answer)
    {
        thread_ = std::thread([this, answer = std::move(answer)] { serve(answer); });
    }
    // Waits until the PC has closed its end and every byte has been read.
    void finish()
    {
        if (thread_.joinable())
            thread_.join();
    }
    QByteArray received() const
    {
        QByteArray bytes;
        for (const auto& [value, us] : log_)
            bytes.append(char(value));
        return bytes;
    }
    QString dump() const
    {
        QString text;
        for (const auto& [value, us] : log_)
            text += QStringLiteral("%1us:%2 ").arg(us).arg(value, 2, 16, QLatin1Char('0'));
        return text;
    }
    void write(const QByteArray& bytes) { (void)!::write(master_, bytes.constData(), size_t(bytes.size())); }
    void hangUp()
    {
        ::close(master_);
        master_ = -1;
    }

private:
    void serve(const QByteArray& answer)
    {
        const auto t0 = std::chrono::steady_clock::now();
        bool inFrame = false;
        // Ends when the PC has closed the slave and nothing is left to read,
        // or after 5 s of silence.
        for (;;) {
            pollfd p{master_, POLLIN, 0};
            if (poll(&p, 1, 5000) <= 0)
                return;
            char c = 0;
            if (::read(master_, &c, 1) != 1)
                return;
            const auto b = static_cast<quint8>(c);
            log_.push_back({b, std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::steady_clock::now() - t0).count()});
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

    int master_ = -1;
    QString slave_;
    std::thread thread_;
    std::vector<std::pair<quint8, qint64>> log_;
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
    void everyByteReachesTheRegister();
    void openFailures_data();
    void openFailures();
    void closeDiscardsWaitingBytes();
    void farEndGoneDoesNotSpin();
};

void PtyTest::everyByteReachesTheRegister()
{
    // Many transactions in a row, the port closed right after the last
    // answer: each purge and the close come just after bytes were written.
    FarEnd ecr;
    const QByteArray answer = "00/00/01/99MEA012345/1/QA/0/2.01/";
    SerialPort port;
    QVERIFY2(port.open(ecr.slave(), 115200), qPrintable(port.lastError()));
    ecr.start(answer);
    SystemClock clock;
    EcrLink link(port, clock);
    QByteArray expected;
    for (int i = 0; i < 40; ++i) {
        const QString record = QStringLiteral("3/S/////%1/").arg(i);
        QString received;
        QCOMPARE(int(link.EcrTransaction(record, received)), 0);
        QCOMPARE(received, QString::fromLatin1(answer));
        expected += QByteArray(3, char(frame::CAN)) + char(frame::ENQ) + frame::commandFrame(record.toLatin1())
                  + char(frame::ACK);
    }
    port.close();
    QCOMPARE(port.handle(), PortHandle::Closed);
    ecr.finish();
    QVERIFY2(ecr.received() == expected, qPrintable(ecr.dump()));
}

void PtyTest::openFailures_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("speed");
    QTest::addColumn<int>("handle");
    QTest::newRow("no such device") << "/dev/kelmdrev-no-such-port" << 9600 << int(PortHandle::Invalid);
    QTest::newRow("speed 0: nothing is opened") << "/dev/null" << 0 << int(PortHandle::Closed);
    QTest::newRow("a name that is not a port") << "Com" << 9600 << int(PortHandle::Invalid);
}

void PtyTest::openFailures()
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

void PtyTest::closeDiscardsWaitingBytes()
{
    FarEnd ecr;
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

void PtyTest::farEndGoneDoesNotSpin()
{
    FarEnd ecr;
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

QTEST_GUILESS_MAIN(PtyTest)
#include "tst_link_pty.moc"
