// The link against a scripted far end in virtual time (handshake, frames,
// answers, time-outs), the panels' command road, the register's error table
// and Windows-1252 on the line.
#include "LineScript.h"
#include "RecordingStatus.h"
#include "Table.h"
#include "link/Clock.h"
#include "link/CodePage.h"
#include "link/EcrErrors.h"
#include "link/EcrLink.h"
#include "link/Framing.h"
#include "link/PanelCommand.h"
#include "link/VirtualLinePort.h"

using namespace kelm;

namespace {

const QString kEleven = QStringLiteral("00/00/01/X/"); // 11 characters
const QString kTen = QStringLiteral("00/00/01/X");     // 10 characters
const QString kUntouched = QStringLiteral("left over"); // what the caller passed in
const QString kRound = QStringLiteral("<CAN><CAN><CAN><ENQ>");

QString frameOf(const QString& text) { return "<STX>" + text + "<ETX>"; }

// A scripted far end on a virtual port, time starting at startMs.
struct Line {
    explicit Line(qint64 startMs = 0, bool plugged = true, bool open = true) : clock(startMs)
    {
        peer.plugged = plugged;
        if (open)
            port.open(QStringLiteral("test"), 9600);
    }
    ScriptedPeer peer;
    VirtualClock clock;
    VirtualLinePort port{peer, clock};
    EcrLink link{port, clock};
};

enum class Opening { Never, Refused, Open };

} // namespace

Q_DECLARE_METATYPE(Opening)

class LinkTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void checksum_data()
    {
        columns<QByteArray, QByteArray>("record", "digits"); // "a/" gives 44: the transaction rows' wire
        row("daily closure, sum wraps past 256", QByteArray("x/7/0/0/"), QByteArray("03"));
        row("empty record", QByteArray(), QByteArray("00"));
        row("byte above 127 counts unsigned", QByteArray("\xE8"), QByteArray("32"));
    }
    void checksum()
    {
        const QByteArray& record = fetch<QByteArray>("record");
        QTEST(frame::checksumDigits(record), "digits");
        QCOMPARE(frame::commandFrame(record), "\x02" + record + fetch<QByteArray>("digits") + "\x03");
    }

    void transaction_data()
    {
        // Replies to ENQ, to the frame and to NAK; the result, the answer, what
        // the PC put on the line and the virtual ms the transaction took.
        columns<QStringList, QStringList, QStringList, int, QString, QString, qint64>("enq", "frame", "nak", "result",
                                                                                   "answer", "wire", "elapsed");
        const QString sent = QStringLiteral("<STX>a/44<ETX>"), ok = "<ACK>" + frameOf(kEleven);
        const QStringList ack{"<ACK>"}, none;
        row("accepted", ack, QStringList{ok}, none, 0, kEleven, kRound + sent + "<ACK>", qint64(10));
        row("CAN to ENQ ends at once", QStringList{"<CAN>"}, none, none, 1002, kUntouched, kRound, qint64(10));
        row("silence to ENQ: three rounds", none, none, none, 1004, kUntouched, kRound + kRound + kRound, qint64(3 * 1011));
        row("stray byte costs one round", QStringList{"x", "<ACK>"}, QStringList{ok}, none, 0, kEleven,
            kRound + kRound + sent + "<ACK>", qint64(10 + 10));
        row("ACK at exactly 1000 ms after the pause", QStringList{"{1010}<ACK>"}, QStringList{ok}, none, 0, kEleven,
            kRound + sent + "<ACK>", qint64(1010));
        row("ACK 1 ms too late is purged with the next round", QStringList{"{1011}<ACK>"}, none, none, 1004, kUntouched,
            kRound + kRound + kRound, qint64(3 * 1011));
        row("NAK to the frame is final", ack, QStringList{"<NAK>"}, none, 1001, kUntouched, kRound + sent, qint64(10));
        row("CAN to the frame", ack, QStringList{"<CAN>"}, none, 1003, kUntouched, kRound + sent, qint64(10));
        row("silence to the frame: sent three times", ack, none, none, 1007, kUntouched, kRound + sent + sent + sent,
            qint64(10 + 3 * 2001));
        row("garbage to the frame: sent again", ack, QStringList{"?", ok}, none, 0, kEleven, kRound + sent + sent + "<ACK>",
            qint64(10));
        row("frame ACK at exactly 2000 ms", ack, QStringList{"{2000}" + ok}, none, 0, kEleven, kRound + sent + "<ACK>",
            qint64(2010));
        row("no STX within 2000 ms: no NAK, no retry", ack, ack, none, 1005, "", kRound + sent, qint64(10 + 2001));
        row("garbage before STX, each byte in time", ack, QStringList{"<ACK>{1999}zz{2000}y" + frameOf(kEleven)}, none, 0,
            kEleven, kRound + sent + "<ACK>", qint64(10 + 3999));
        row("garbage then a gap of more than 2000 ms", ack, QStringList{"<ACK>zz{2001}" + frameOf(kEleven)}, none, 1005, "",
            kRound + sent, qint64(10 + 2001));
        row("10 characters are refused three times", ack, QStringList{"<ACK>" + frameOf(kTen)},
            QStringList{frameOf(kTen), frameOf(kTen)}, 1006, kTen + kTen + kTen, kRound + sent + "<NAK><NAK><NAK>", qint64(10));
        row("refused characters stay in front of the repeat", ack, QStringList{"<ACK>" + frameOf(kTen)},
            QStringList{frameOf(kEleven)}, 0, kTen + kEleven, kRound + sent + "<NAK><ACK>", qint64(10));
        row("a pause of 500 ms inside the frame is allowed", ack, QStringList{"<ACK><STX>00/00{500}/01/X/<ETX>"}, none, 0,
            kEleven, kRound + sent + "<ACK>", qint64(10 + 500));
        row("a frame that breaks off is refused, its part kept", ack, QStringList{"<ACK><STX>00/00{501}/01/X/<ETX>"},
            QStringList{frameOf(kEleven)}, 0, "00/00" + kEleven, kRound + sent + "<NAK><ACK>", qint64(10 + 501));
        row("no STX after a NAK ends with 1005", ack, QStringList{"<ACK>" + frameOf(kTen)}, none, 1005, kTen,
            kRound + sent + "<NAK>", qint64(10 + 2001));
        row("an over-long answer is cut to 2047, its last two and the ETX stay queued", ack,
            QStringList{"<ACK>" + frameOf(QString(2050, u'A'))}, none, 0, QString(2047, u'A'), kRound + sent + "<ACK>", qint64(10));
    }
    void transaction()
    {
        Line line(1'000'000);
        line.peer.enqReplies = fetch<QStringList>("enq");
        line.peer.frameReplies = fetch<QStringList>("frame");
        line.peer.nakReplies = fetch<QStringList>("nak");
        QString received = kUntouched;
        QTEST(int(line.link.EcrTransaction(QStringLiteral("a/"), received)), "result");
        QTEST(received, "answer");
        QTEST(line.peer.wire(), "wire");
        QTEST(line.clock.nowMs() - 1'000'000, "elapsed");
        if (received.size() == 2047) // the 2048th byte was dropped, the rest stays queued
            QCOMPARE(line.port.bytesWaiting(), qint64(3));
    }

    void waitForData_data()
    {
        columns<QString, int, qint64, bool, qint64>("script", "timeout", "clockStart", "seen", "elapsed"); // reply to a byte
        row("byte already waiting: no wait", "x", 1000, qint64(0), true, qint64(0));
        row("byte at exactly t", "{1000}x", 1000, qint64(0), true, qint64(1000));
        row("byte at t + 1 is too late", "{1001}x", 1000, qint64(0), false, qint64(1001));
        row("nothing: strictly more than t", "", 500, qint64(0), false, qint64(501));
        row("32-bit tick wraps during the wait", "{300}x", 1000, qint64(0xFFFFFF00), true, qint64(300));
        row("wrap with nothing to read", "", 1000, qint64(0xFFFFFF00), false, qint64(1001));
    }
    void waitForData()
    {
        Line line(fetch<qint64>("clockStart"));
        line.peer.enqReplies = {fetch<QString>("script")};
        line.port.writeByte(frame::ENQ);
        QTEST(line.link.WaitForData(fetch<int>("timeout")), "seen");
        QTEST(line.clock.nowMs() - fetch<qint64>("clockStart"), "elapsed");
        if (fetch<bool>("seen")) {
            QCOMPARE(line.port.bytesWaiting(), qint64(1)); // not consumed by the wait
            QCOMPARE(line.port.readByte(), quint8('x'));
            QCOMPARE(line.port.readByte(), quint8(0)); // an empty queue reads as 0
        }
    }

    void panelCommand_data()
    {
        columns<Opening, QStringList, QString, int, QString, QString, qint64>("opening", "enq", "reply", "result",
                                                                           "errorText", "lastAnswer", "elapsed");
        const QStringList ack{"<ACK>"};
        row("port never opened: no transaction", Opening::Never, QStringList{}, "", 9999,
            "Err. 9999 : Comunicazione Impossibile", "", qint64(0));
        row("open refused: the handshake runs and fails", Opening::Refused, QStringList{}, "", 1004,
            "Err. 1004 : Comunicazione Impossibile", "", qint64(3 * 1011));
        row("CAN to ENQ", Opening::Open, QStringList{"<CAN>"}, "", 1002, "Err. 1002 : Comunicazione Impossibile", "", qint64(10));
        row("busy answer", Opening::Open, ack, "<ACK>" + frameOf("1A/00/00/x/"), 26, "Err. 26 : Comunicazione errata",
            "1A/00/00/x/", qint64(10));
        row("lower-case status reads as 16", Opening::Open, ack, "<ACK>" + frameOf("1a/00/00/x/"), 16,
            "Err. 16 : Comunicazione errata", "1a/00/00/x/", qint64(10));
        row("accepted", Opening::Open, ack, "<ACK>" + frameOf("00/00/01/x/"), 0, "", "00/00/01/x/", qint64(10));
    }
    void panelCommand()
    {
        const Opening opening = fetch<Opening>("opening");
        Line line(0, opening != Opening::Refused, false);
        line.peer.enqReplies = fetch<QStringList>("enq");
        line.peer.frameReplies = {fetch<QString>("reply")};
        if (opening != Opening::Never)
            QCOMPARE(line.port.open(QStringLiteral("test"), 9600), opening == Opening::Open);
        RecordingStatus status;
        status.setPanel(1, QStringLiteral("before"));
        status.setPanel(2, QStringLiteral("before"));
        status.changes.clear();
        PanelCommand command(line.link, status);
        command.LastErrorText = QStringLiteral("Err. 8 : Comunicazione errata"); // left by a command before
        QTEST(int(command(QStringLiteral("a/"))), "result");
        QTEST(int(command.LastResult), "result");
        QTEST(command.LastErrorText, "errorText");
        QTEST(command.LastAnswer, "lastAnswer");
        QTEST(line.clock.nowMs(), "elapsed");
        const QString& error = fetch<QString>("errorText");
        QCOMPARE(status.panels[1], error.isEmpty() ? QString() : QStringLiteral("Attenzione!"));
        QCOMPARE(status.panels[2], error);
        // A port never opened leaves the bar uncleared before the message.
        QCOMPARE(status.changes.contains(QStringLiteral("1=")), opening != Opening::Never);
    }

    // The texts are the register's own; these rows hold the odd ones
    // (typographic apostrophes, accents, a blank before the stop); busy,
    // paper and cover are in the driver's policy table.
    void errorMessage_data()
    {
        columns<QString, int, QString>("status", "errorClass", "message");
        row("first", "01", 2, "Campi del comando insufficienti");
        row("typographic apostrophe", "0D", 2, QStringLiteral("The requested Fiscal record doesn\u2019t exist"));
        row("plain apostrophe", "03", 2, "Un campo del comando e' troppo corto");
        row("fatal", "37", 9, "Fatal error");
        row("accent", "64", 2, QStringLiteral("Quantit\u00E0 superiore al consentito"));
        row("blank before the stop", "6D", 2, "No transactions in the receipt .");
        row("last", "80", 2, "Coupon discount in subtotal is not allowed.");
        row("a gap in the numbers, above the table, zero, empty, not a number", anyOf({"48", "81", "00", "", "ZZ"}), 0, "");
    }
    void errorMessage()
    {
        for (const QString& status : fetch<QString>("status").split(kOr)) {
            QString text = QStringLiteral("stale");
            QVERIFY2(int(EcrErrorMessage(status, text)) == fetch<int>("errorClass"), qPrintable(status));
            QVERIFY2(text == fetch<QString>("message"), qPrintable(status + " gives " + text));
        }
    }

    // Every number, in either case: known exactly from 01 to 80 but for the
    // gaps 48-4F and 51-63; busy, paper and fatal where listed, else refused.
    void errorClassOfEveryNumber()
    {
        const QStringList busy{"1A"}, paper{"31", "32"};
        const QStringList fatal = QStringLiteral("1D 2A 2B 2C 2D 2E 2F 30 34 35 36 37 39 3A 3B 3C 3D 47").split(u' ');
        for (int n = 0; n < 256; ++n) {
            const QString status = QString::number(n, 16).toUpper().rightJustified(2, u'0');
            const bool known = n >= 1 && n <= 0x80 && !(n >= 0x48 && n <= 0x4F) && !(n >= 0x51 && n <= 0x63);
            const int expected = !known ? 0 : busy.contains(status) ? 1 : paper.contains(status) ? 4
                                 : fatal.contains(status) ? 9 : 2;
            for (const QString& s : {status, status.toLower()}) {
                QString text;
                QCOMPARE(int(EcrErrorMessage(s, text)), expected);
                QCOMPARE(text.isEmpty(), !known);
            }
        }
    }

    void commandErrorText_data()
    {
        columns<QString, QString, QString, QString>("status", "command", "number", "text");
        row("lower-case letter counts as 0", "1a", "x/7/0/0/", "16", "Comando 'x/7/0/0/' - Errore N. 16");
        row("128", "80", "a/", "128", "Comando 'a/' - Errore N. 128");
        row("F is 15", "FF", "a/", "255", "Comando 'a/' - Errore N. 255");
        row("other characters count as 0", "9G", "a/", "144", "Comando 'a/' - Errore N. 144");
        row("a slash counts as 0", "/5", "a/", "5", "Comando 'a/' - Errore N. 5");
    }
    void commandErrorText()
    {
        QString status = fetch<QString>("status");
        QTEST(CommandErrorText(status, fetch<QString>("command")), "text");
        QTEST(status, "number");
    }

    void encode_data()
    {
        columns<QString, QByteArray>("text", "bytes");
        row("ascii record", "3/S/REPARTO1//1/5.26/1/4/", QByteArray("3/S/REPARTO1//1/5.26/1/4/"));
        row("euro sign", QStringLiteral("SC \u20AC"), QByteArray("SC \x80"));
        row("accented letters", QStringLiteral("Velocit\u00E0 perch\u00E9"), QByteArray("Velocit\xE0 perch\xE9"));
        row("typographic apostrophe", QStringLiteral("doesn\u2019t"), QByteArray("doesn\x92t"));
        row("CJK becomes ?", QStringLiteral("a\u4E00b"), QByteArray("a?b"));
        row("outside the BMP is one ?", QString::fromUtf8("a\xF0\x9F\x98\x80z"), QByteArray("a?z"));
        row("a real SUB stays", QStringLiteral("a\u001Ab"), QByteArray("a\x1A" "b"));
        row("SUB and a missing character", QStringLiteral("\u001A\u4E00"), QByteArray("\x1A?"));
        row("empty", QString(), QByteArray());
        QByteArray all;
        for (int b = 0; b < 256; ++b)
            all.append(static_cast<char>(b));
        row("every byte read comes back", ansi::decode(all), all);
    }
    void encode() { QTEST(ansi::encode(fetch<QString>("text")), "bytes"); }
};

QTEST_APPLESS_MAIN(LinkTest)
#include "tst_link_protocol.moc"
