// The register's side of the link: handshake, frames, answers, resends,
// pacing and the faults of the line, all in virtual time.
#include "sim/VirtualEcr.h"

#include "link/Clock.h"
#include "link/Framing.h"
#include "link/VirtualLinePort.h"

#include "Table.h"
#include <QtTest>

using kelm::TimedByte;
using kelm::sim::VirtualEcr;
using kelm::sim::VirtualEcrOptions;

namespace {

constexpr char STX = 0x02, ETX = 0x03, ENQ = 0x05, ACK = 0x06, NAK = 0x15, CAN = 0x18;

QByteArray frameOf(const QByteArray& record) { return kelm::frame::commandFrame(record); }

QByteArray badFrameOf(const QByteArray& record)
{
    QByteArray f = frameOf(record);
    f[f.size() - 2] = f[f.size() - 2] == '9' ? '0' : char(f[f.size() - 2] + 1);
    return f;
}

// Feeds bytes one by one at time t and returns what the register sends back.
QList<TimedByte> feed(VirtualEcr& ecr, const QByteArray& bytes, qint64 t)
{
    QList<TimedByte> reply;
    for (char c : bytes)
        ecr.receive(static_cast<quint8>(c), t, reply);
    return reply;
}

QByteArray values(const QList<TimedByte>& bytes)
{
    QByteArray v;
    for (const TimedByte& b : bytes)
        v.append(char(b.value));
    return v;
}

// One step of a conversation: at time `at` the PC writes `sent` and the
// register must answer exactly `expected`.
struct Step {
    qint64 at;
    QByteArray sent;
    QByteArray expected;
};

// The shortest answer the register gives: status, state, number, command code.
const QByteArray kStatusAnswer = QByteArray(1, STX) + "00/00/01/?/" + ETX;

} // namespace

Q_DECLARE_METATYPE(QList<Step>)

class TestSimLink : public QObject {
    Q_OBJECT

private slots:
    void conversation_data()
    {
        columns<QStringList, QList<Step>>("faults", "steps");
        const QByteArray status = frameOf("?/");
        const QByteArray ack(1, ACK);
        row("ENQ is answered with ACK, CAN with nothing", QStringList(),
            QList<Step>{{0, QByteArray(3, CAN), ""}, {1, QByteArray(1, ENQ), ack}});
        row("a good frame gets ACK and the answer", QStringList(),
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, ack + kStatusAnswer}});
        row("a bad checksum gets NAK and no answer", QStringList(),
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, badFrameOf("?/"), QByteArray(1, NAK)}});
        row("a frame without handshake is not taken", QStringList(),
            QList<Step>{{0, status, ""}, {5, QByteArray(1, ENQ), ack}});
        row("the PC's NAK brings the same answer again, its ACK ends it", QStringList(),
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, ack + kStatusAnswer}, {100, QByteArray(1, NAK), kStatusAnswer}, {200, QByteArray(1, NAK), kStatusAnswer}, {300, QByteArray(1, ACK), ""}, {400, QByteArray(1, NAK), ""}});
        row("can 2: two ENQ refused, the third accepted", QStringList{"can 2"},
            QList<Step>{{0, QByteArray(1, ENQ), QByteArray(1, CAN)}, {10, QByteArray(1, ENQ), QByteArray(1, CAN)}, {20, QByteArray(1, ENQ), ack}});
        row("nak 1: a right frame refused once, then taken", QStringList{"nak 1"},
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, QByteArray(1, NAK)}, {20, QByteArray(1, ENQ), ack}, {30, status, ack + kStatusAnswer}});
        row("silence 1000 from the first byte: nothing until it ends", QStringList{"silence 1000"},
            QList<Step>{{500, QByteArray(1, ENQ), ""}, {1499, QByteArray(1, ENQ), ""}, {1500, QByteArray(1, ENQ), ack}});
        row("garbage: stray bytes before STX, once", QStringList{"garbage"},
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, ack + QByteArray("\xFF\x00#~\x7F", 5) + kStatusAnswer}, {100, QByteArray(1, NAK), kStatusAnswer}});
        row("broken: the answer stops half-way, the resend is whole", QStringList{"broken"},
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, ack + QByteArray(1, STX) + "00/00"}, {600, QByteArray(1, NAK), kStatusAnswer}});
        row("short 2: two answers under 11 characters, then the whole one", QStringList{"short 2"},
            QList<Step>{{0, QByteArray(1, ENQ), ack}, {10, status, ack + QByteArray(1, STX) + "00/00" + ETX}, {100, QByteArray(1, NAK), QByteArray(1, STX) + "00/00" + ETX}, {200, QByteArray(1, NAK), kStatusAnswer}});
        row("unplug: nothing is answered any more", QStringList{"unplug"},
            QList<Step>{{0, QByteArray(1, ENQ), ""}, {10, status, ""}});
    }
    void conversation()
    {
        QFETCH(QStringList, faults);
        QFETCH(QList<Step>, steps);
        VirtualEcrOptions options;
        options.faults = faults;
        VirtualEcr ecr(options);
        QVERIFY2(ecr.startError().isEmpty(), qPrintable(ecr.startError()));
        for (const Step& s : steps)
            QCOMPARE(values(feed(ecr, s.sent, s.at)).toHex(' '), s.expected.toHex(' '));
    }
    void pacing_data()
    {
        columns<int, qint64, qint64>("baud", "ackAt", "lastByteAt");
        // The PC writes the six bytes of the frame at 10 ms: the register has
        // them only after their wire time, ACKs (a byte time back), and answers
        // 5 ms after that reaction (or when its ACK has left the line); the 13
        // bytes of the answer take 13 byte times.
        row("no pacing", 0, qint64(10), qint64(15));
        row("115200: six bytes end within the 11th ms", 115200, qint64(11), qint64(17));
        row("9600: about 1 ms a byte each way", 9600, qint64(18), qint64(22 + 13));
        row("1200: the ACK still holds the line when the answer is due", 1200, qint64(60 + 8), qint64(68 + 108));
    }
    void pacing()
    {
        QFETCH(int, baud);
        QFETCH(qint64, ackAt);
        QFETCH(qint64, lastByteAt);
        VirtualEcrOptions options;
        options.baud = baud;
        VirtualEcr ecr(options);
        QCOMPARE(values(feed(ecr, QByteArray(1, ENQ), 0)), QByteArray(1, ACK));
        const QList<TimedByte> reply = feed(ecr, frameOf("?/"), 10);
        QCOMPARE(values(reply), QByteArray(1, ACK) + kStatusAnswer);
        QCOMPARE(reply.first().atMs, ackAt);
        QCOMPARE(reply.last().atMs, lastByteAt);
    }
    void answersOverTheVirtualPort()
    {
        // The in-process host: the register at the far end of the foundation's
        // virtual port, its 9600 baud reply read back in virtual time.
        VirtualEcrOptions options;
        options.baud = 9600;
        VirtualEcr ecr(options);
        kelm::VirtualClock clock(1000);
        kelm::VirtualLinePort port(ecr, clock);
        QVERIFY(port.open("virtual", 9600));
        for (int i = 0; i < 3; ++i)
            port.writeByte(CAN);
        port.purge();
        port.writeByte(ENQ);
        port.waitForReadyRead(1000);
        QCOMPARE(port.readByte(), quint8(ACK));
        for (char c : frameOf("a/"))
            port.writeByte(static_cast<quint8>(c));
        port.waitForReadyRead(2000);
        QCOMPARE(port.readByte(), quint8(ACK));
        QByteArray answer;
        for (;;) {
            port.waitForReadyRead(500);
            QVERIFY2(port.bytesWaiting() > 0, "the answer stopped");
            const quint8 b = port.readByte();
            if (b == ETX)
                break;
            answer.append(char(b));
        }
        port.writeByte(ACK);
        QCOMPARE(answer, QByteArray(1, STX) + "00/00/01/99KDV000001/1/KD/IT/1.00/");
        // Both ways at 9600 baud: the three CANs and ENQ reach the register at
        // 1005, its ACK is back at 1006, the six frame bytes written then reach
        // it at 1013; the 36-byte answer starts 5 ms later and takes 37.5 ms.
        QCOMPARE(clock.nowMs(), qint64(1013 + 5 + 37));
        QCOMPARE(ecr.journal(), QList<QByteArray>{"a/"});
    }
};

QTEST_GUILESS_MAIN(TestSimLink)
#include "tst_sim_link.moc"
