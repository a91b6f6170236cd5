// The link protocol against a scripted far end, in virtual time.
#include "LineScript.h"
#include "link/Clock.h"
#include "link/EcrLink.h"
#include "link/Framing.h"
#include "link/VirtualLinePort.h"

#include <QTest>

using namespace kelm;

namespace {

const QString kEleven = QStringLiteral("00/00/01/X/");          // 11 characters
const QString kTen = QStringLiteral("00/00/01/X");              // 10 characters
const QString kUntouched = QStringLiteral("left over");    // what the caller passed in
const QString kRound = QStringLiteral("<CAN><CAN><CAN><ENQ>");

QString frameOf(const QString& text) { return QStringLiteral("<STX>") + text + QStringLiteral("<ETX>"); }

} // namespace

class LinkProtocolTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checksum_data();
    void checksum();
    void transaction_data();
    void transaction();
    void waitForData_data();
    void waitForData();
    void overLongAnswerIsCutAndRestStaysQueued();
    void failedHandshakeLeavesAnswerUntouched();
};

void LinkProtocolTest::checksum_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::addColumn<QByteArray>("digits");
    QTest::newRow("identity") << QByteArray("a/") << QByteArray("44");
    QTest::newRow("daily closure, sum wraps past 256") << QByteArray("x/7/0/0/") << QByteArray("03");
    QTest::newRow("journal") << QByteArray(")/120/") << QByteArray("26");
    QTest::newRow("payment") << QByteArray("5/1/0.00/////") << QByteArray("09");
    QTest::newRow("empty record") << QByteArray() << QByteArray("00");
    QTest::newRow("byte above 127 counts unsigned") << QByteArray("\xE8") << QByteArray("32");
}

void LinkProtocolTest::checksum()
{
    QFETCH(QByteArray, record);
    QFETCH(QByteArray, digits);
    QCOMPARE(frame::checksumDigits(record), digits);
    QCOMPARE(frame::commandFrame(record), QByteArray("\x02") + record + digits + QByteArray("\x03"));
}

void LinkProtocolTest::transaction_data()
{
    QTest::addColumn<QStringList>("enq");
    QTest::addColumn<QStringList>("frame");
    QTest::addColumn<QStringList>("nak");
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("wire");    // what the PC put on the line
    QTest::addColumn<qint64>("elapsed");  // virtual ms the transaction took

    const QString sent = QStringLiteral("<STX>a/44<ETX>");
    const QString ok = QStringLiteral("<ACK>") + frameOf(kEleven);

    QTest::newRow("accepted") << QStringList{"<ACK>"} << QStringList{ok} << QStringList{} << 0
                              << kEleven << kRound + sent + "<ACK>" << qint64(10);
    QTest::newRow("CAN to ENQ ends at once") << QStringList{"<CAN>"} << QStringList{} << QStringList{}
                                             << 1002 << kUntouched << kRound << qint64(10);
    QTest::newRow("silence to ENQ: three rounds") << QStringList{} << QStringList{} << QStringList{}
                                                  << 1004 << kUntouched << kRound + kRound + kRound
                                                  << qint64(3 * 1011);
    QTest::newRow("stray byte costs one round")
        << QStringList{"x", "<ACK>"} << QStringList{ok} << QStringList{} << 0 << kEleven
        << kRound + kRound + sent + "<ACK>" << qint64(10 + 10);
    QTest::newRow("ACK at exactly 1000 ms after the pause")
        << QStringList{"{1010}<ACK>"} << QStringList{ok} << QStringList{} << 0 << kEleven
        << kRound + sent + "<ACK>" << qint64(1010);
    QTest::newRow("ACK 1 ms too late is purged with the next round")
        << QStringList{"{1011}<ACK>"} << QStringList{} << QStringList{} << 1004 << kUntouched
        << kRound + kRound + kRound << qint64(3 * 1011);
    QTest::newRow("NAK to the frame is final")
        << QStringList{"<ACK>"} << QStringList{"<NAK>"} << QStringList{} << 1001 << kUntouched
        << kRound + sent << qint64(10);
    QTest::newRow("CAN to the frame") << QStringList{"<ACK>"} << QStringList{"<CAN>"} << QStringList{}
                                      << 1003 << kUntouched << kRound + sent << qint64(10);
    QTest::newRow("silence to the frame: sent three times")
        << QStringList{"<ACK>"} << QStringList{} << QStringList{} << 1007 << kUntouched
        << kRound + sent + sent + sent << qint64(10 + 3 * 2001);
    QTest::newRow("garbage to the frame: sent again")
        << QStringList{"<ACK>"} << QStringList{"?", ok} << QStringList{} << 0 << kEleven
        << kRound + sent + sent + "<ACK>" << qint64(10);
    QTest::newRow("frame ACK at exactly 2000 ms")
        << QStringList{"<ACK>"} << QStringList{"{2000}" + ok} << QStringList{} << 0 << kEleven
        << kRound + sent + "<ACK>" << qint64(2010);
    QTest::newRow("no STX within 2000 ms: no NAK, no retry")
        << QStringList{"<ACK>"} << QStringList{"<ACK>"} << QStringList{} << 1005 << QString()
        << kRound + sent << qint64(10 + 2001);
    QTest::newRow("garbage before STX, each byte in time")
        << QStringList{"<ACK>"} << QStringList{"<ACK>{1999}zz{2000}y" + frameOf(kEleven)}
        << QStringList{} << 0 << kEleven << kRound + sent + "<ACK>" << qint64(10 + 3999);
    QTest::newRow("garbage then a gap of more than 2000 ms")
        << QStringList{"<ACK>"} << QStringList{"<ACK>zz{2001}" + frameOf(kEleven)} << QStringList{}
        << 1005 << QString() << kRound + sent << qint64(10 + 2001);
    QTest::newRow("10 characters are refused three times")
        << QStringList{"<ACK>"} << QStringList{"<ACK>" + frameOf(kTen)}
        << QStringList{frameOf(kTen), frameOf(kTen)} << 1006 << kTen + kTen + kTen
        << kRound + sent + "<NAK><NAK><NAK>" << qint64(10);
    QTest::newRow("refused characters stay in front of the repeat")
        << QStringList{"<ACK>"} << QStringList{"<ACK>" + frameOf(kTen)} << QStringList{frameOf(kEleven)}
        << 0 << kTen + kEleven << kRound + sent + "<NAK><ACK>" << qint64(10);
    QTest::newRow("a pause of 500 ms inside the frame is allowed")
        << QStringList{"<ACK>"} << QStringList{"<ACK><STX>00/00{500}/01/X/<ETX>"} << QStringList{}
        << 0 << kEleven << kRound + sent + "<ACK>" << qint64(10 + 500);
    QTest::newRow("a frame that breaks off is refused, its part kept")
        << QStringList{"<ACK>"} << QStringList{"<ACK><STX>00/00{501}/01/X/<ETX>"}
        << QStringList{frameOf(kEleven)} << 0 << QStringLiteral("00/00") + kEleven
        << kRound + sent + "<NAK><ACK>" << qint64(10 + 501);
    QTest::newRow("no STX after a NAK ends with 1005")
        << QStringList{"<ACK>"} << QStringList{"<ACK>" + frameOf(kTen)} << QStringList{} << 1005
        << kTen << kRound + sent + "<NAK>" << qint64(10 + 2001);
}

void LinkProtocolTest::transaction()
{
    QFETCH(QStringList, enq);
    QFETCH(QStringList, frame);
    QFETCH(QStringList, nak);
    QFETCH(int, result);
    QFETCH(QString, answer);
    QFETCH(QString, wire);
    QFETCH(qint64, elapsed);

    ScriptedPeer peer;
    peer.enqReplies = enq;
    peer.frameReplies = frame;
    peer.nakReplies = nak;
    VirtualClock clock(1'000'000);
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    EcrLink link(port, clock);

    QString received = kUntouched;
    QCOMPARE(int(link.EcrTransaction(QStringLiteral("a/"), received)), result);
    QCOMPARE(received, answer);
    QCOMPARE(peer.wire(), wire);
    QCOMPARE(clock.nowMs() - 1'000'000, elapsed);
}

void LinkProtocolTest::waitForData_data()
{
    QTest::addColumn<QString>("script");   // reply to one written byte
    QTest::addColumn<int>("timeout");
    QTest::addColumn<qint64>("clockStart");
    QTest::addColumn<bool>("seen");
    QTest::addColumn<qint64>("elapsed");

    QTest::newRow("byte already waiting: no wait") << "x" << 1000 << qint64(0) << true << qint64(0);
    QTest::newRow("byte at exactly t") << "{1000}x" << 1000 << qint64(0) << true << qint64(1000);
    QTest::newRow("byte at t + 1 is too late") << "{1001}x" << 1000 << qint64(0) << false << qint64(1001);
    QTest::newRow("nothing: strictly more than t") << "" << 500 << qint64(0) << false << qint64(501);
    QTest::newRow("32-bit tick wraps during the wait")
        << "{300}x" << 1000 << qint64(0xFFFFFF00) << true << qint64(300);
    QTest::newRow("wrap with nothing to read") << "" << 1000 << qint64(0xFFFFFF00) << false << qint64(1001);
}

void LinkProtocolTest::waitForData()
{
    QFETCH(QString, script);
    QFETCH(int, timeout);
    QFETCH(qint64, clockStart);
    QFETCH(bool, seen);
    QFETCH(qint64, elapsed);

    ScriptedPeer peer;
    peer.enqReplies = QStringList{script};
    VirtualClock clock(clockStart);
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    port.writeByte(frame::ENQ);
    EcrLink link(port, clock);

    QCOMPARE(link.WaitForData(timeout), seen);
    QCOMPARE(clock.nowMs() - clockStart, elapsed);
    if (seen) {
        QCOMPARE(port.bytesWaiting(), qint64(1)); // not consumed by the wait
        QCOMPARE(port.readByte(), quint8('x'));
        QCOMPARE(port.readByte(), quint8(0)); // an empty queue reads as 0
    }
}

void LinkProtocolTest::overLongAnswerIsCutAndRestStaysQueued()
{
    const QString longText = QString(2050, u'A');
    ScriptedPeer peer;
    peer.enqReplies = {QStringLiteral("<ACK>")};
    peer.frameReplies = {QStringLiteral("<ACK>") + frameOf(longText)};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    EcrLink link(port, clock);

    QString answer;
    QCOMPARE(int(link.EcrTransaction(QStringLiteral("a/"), answer)), 0);
    QCOMPARE(answer, QString(2047, u'A'));
    QVERIFY(peer.wire().endsWith(QStringLiteral("<ETX><ACK>")));
    // The 2048th byte was dropped; two more characters and the ETX remain.
    QCOMPARE(port.bytesWaiting(), qint64(3));
}

void LinkProtocolTest::failedHandshakeLeavesAnswerUntouched()
{
    ScriptedPeer peer;
    peer.enqReplies = {QStringLiteral("<CAN>")};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("test"), 9600));
    EcrLink link(port, clock);
    QString answer = QStringLiteral("kept");
    QCOMPARE(int(link.EcrTransaction(QStringLiteral("a/"), answer)), 1002);
    QCOMPARE(answer, QStringLiteral("kept"));
}

QTEST_APPLESS_MAIN(LinkProtocolTest)
#include "tst_link_protocol.moc"
