// The virtual register: receipts, refusals, tables, display and the faults
// it shows in its answers, read the way the PC reads them; and its side of
// the link (handshake, frames, resends, pacing, line faults) in virtual time.
#include "sim/EcrDevice.h"
#include "sim/VirtualEcr.h"

#include "Table.h"
#include "link/Framing.h"

#include <QRegularExpression>
#include <QTemporaryDir>

using namespace kelm::sim;
using kelm::TimedByte;

namespace {

struct Register {
    Faults faults;
    LineFile journal;
    LineFile roll;
    EcrDevice device {faults, Identity(), journal, roll};

    QByteArray run(const QByteArray& record, qint64 at = 0)
    {
        const QByteArray answer = device.execute(record, at);
        // Whatever the record: status, state, number, then fields each ending in a slash.
        static const QRegularExpression shape(QStringLiteral("^[0-9A-F]{2}/[0-9]{2}/[0-9]{2}/([^/]*/)+$"));
        [&] { QVERIFY2(answer.size() >= 11 && shape.match(QString::fromLatin1(answer)).hasMatch(), answer.constData()); }();
        return answer;
    }
};

// A header or footer record of n lines, each line of size 1 with `text`.
QByteArray printLinesRecord(char code, int lines, const QByteArray& text)
{
    QByteArray r = QByteArray(1, code) + '/';
    for (int i = 0; i < lines; ++i)
        r += "1/" + text + '/';
    return r;
}

const QByteArray kSale = "3/S/REPARTO1//1/5.26/1/4/";
const QByteArray kCash = "5/1/0.00/////";


constexpr char STX = 0x02, ETX = 0x03, ENQ = 0x05, ACK = 0x06, NAK = 0x15, CAN = 0x18;

// Feeds bytes one by one at time t; what the register sends back, and when.
QList<TimedByte> feed(VirtualEcr& ecr, const QByteArray& bytes, qint64 t, QByteArray& values)
{
    QList<TimedByte> reply;
    for (char c : bytes)
        ecr.receive(static_cast<quint8>(c), t, reply);
    for (const TimedByte& b : reply)
        values.append(char(b.value));
    return reply;
}

// The records that press these keys, in order.
QByteArrayList keys(const QList<int>& codes)
{
    QByteArrayList records;
    for (int code : codes)
        records << ")/" + QByteArray::number(code) + "/";
    return records;
}

// One step: at time `at` the PC sends `sent` (bytes on the line, or a record)
// and the register must answer `expected`.
struct Step {
    qint64 at;
    QByteArray sent;
    QByteArray expected;
};

// The shortest answer the register gives: status, state, number, command code.
const QByteArray kStatusAnswer = QByteArray(1, STX) + "00/00/01/?/" + ETX;

} // namespace

using Steps = QList<Step>;
Q_DECLARE_METATYPE(Steps)


class TestSim : public QObject {
    Q_OBJECT

private slots:
    void receipts_data()
    {
        columns<QByteArrayList, QByteArray, bool>("records", "statuses", "openAfter");
        row("closure refused in a receipt", QByteArrayList{kSale, "x/7/0/0/", "x/1/1/1/"}, QByteArray("00 14 14"), true);
        row("closure after the payment", QByteArrayList{kSale, kCash, "x/7/0/0/"}, QByteArray("00 00 00"), false);
        row("payment with no receipt open", QByteArrayList{kCash}, QByteArray("6C"), false);
        row("partial payments close at the total", QByteArrayList{"3/S/A//1/10.00/1/4/", "5/2/4.00/////", "5/1/20.00/////"},
            QByteArray("00 00 00"), false);
        row("too much on a payment that gives no change", QByteArrayList{"3/S/A//1/10.00/1/4/", "5/2/20.00/////"},
            QByteArray("00 15"), true);
        row("payment type not programmed, and unknown", QByteArrayList{kSale, "5/5/0.00/////", "5/10/0.00/////"},
            QByteArray("00 15 0C"), true);
        row("unknown department", QByteArrayList{"3/S/X//1/1.00/21/4/"}, QByteArray("08"), false);
        row("bad price, quantity, kind, field count",
            QByteArrayList{"3/S/X//1/1,50/1/4/", "3/S/X//0/1.50/1/4/", "3/Q/X//1/1.50/1/4/", "3/S/X//1/1.50/1/",
                           "3/S/X//1/1.50/1/4/9/"}, QByteArray("18 64 04 01 02"), false);
        row("a return may not take the total below zero", QByteArrayList{"3/S/A//1/1.00/1/4/", "3/R/A//1/2.00/1/4/"},
            QByteArray("00 70"), true);
        row("goods return receipt", QByteArrayList{kSale, "3/S/REPARTO1//1/2.18/1/4/", "U/", "3/R/REPARTO1//1/7.43/1/4/", kCash},
            QByteArray("00 00 00 00 00"), false);
        row("invoice",
            QByteArrayList{"3/F/OPEN//1/1/1/4/", "3/S/REPARTO 1//1/80/1/4/", "3/S/REPARTO 1//1/70/1/4/",
                           "'/1/01234567897/1111111111111111/",
                           "j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/", kCash},
            QByteArray("00 00 00 00 00 00"), false);
        row("tax code: 1 a VAT number, 2 a fiscal code, nothing else",
            QByteArrayList{"'/2/01234567897/RSSMRA80A01H501U/", "'/1/01234567897/1111111111111111/",
                           "'/3/01234567897/1111111111111111/"}, QByteArray("00 00 04"), false);
        row("an invoice inside a receipt", QByteArrayList{kSale, "3/F/OPENFAT//0/0/0/0/"}, QByteArray("00 14"), true);
        row("credit note", QByteArrayList{"-/123-2010/", "3/N/CAMICIA ROSSA/rif.sco.123del010109/1/1/1/4/", kCash},
            QByteArray("00 00 00"), false);
        row("a credit-note line needs a credit note, a sale may not be in one",
            QByteArrayList{"3/N/X//1/1/1/4/", "-/1/", "3/S/X//1/1/1/4/"}, QByteArray("1B 00 1B"), true);
        row("discount, and one larger than the total",
            QByteArrayList{"3/S/Coca Cola 1,70/second , descr/1/25.88/1/4/", "4/10.00///0/0/0//", "4/20.00///0/0/0//", kCash},
            QByteArray("00 00 70 00"), false);
        row("a discount larger than its VAT rate's share, though smaller than the total",
            QByteArrayList{"D/2/BAR/2//////", "3/S/A//1/25.00/1/4/", "3/S/B//1/1.00/2/4/", "4/5.00///0/0/0//",
                           "4/1.00///0/0/0//", "4/0.01///0/0/0//", kCash}, QByteArray("00 00 00 6B 00 6B 00"), false);
        row("discount, subtotal and in-receipt record with no receipt", QByteArrayList{"4/10.00///0/0/0//", "U/", "+/"},
            QByteArray("6C 6C 6C"), false);
        row("printed notices make a non-fiscal document",
            QByteArrayList{"7/1/1/##PROMEMORIA##/", "7/1/0/#SVUOTA-CASSA#/", "w/1/1//", "m//", "7/0/1/##PROMEMORIA##/"},
            QByteArray("00 00 00 00 00"), false);
        row("cash out refused inside a receipt", QByteArrayList{"6/1/", kSale, "6/1/"}, QByteArray("00 00 14"), true);
        row("records passed through", QByteArrayList{"2/", "W/", "[/", "q/", "0/"}, QByteArray("00 00 00 00 00"), false);
        row("what the register does not know", QByteArrayList{"Z/", "k/1/", "x/7/0/0", "", "x/9/9/9/"},
            QByteArray("06 06 06 06 04"), false);
        row("receipt cancelled with its key", QByteArrayList{kSale, ")/28/"}, QByteArray("00 00"), false);
        row("reprint of the last receipt needs parameter 12 at 42",
            QByteArrayList{")/120/", kSale, kCash, "B/12/", ")/120/", "G/12/1/1/42/", ")/120/"},
            QByteArray("6E 00 00 00 6E 00 00"), false);
        row("an unknown PLU from the keyboard", QByteArrayList{")/22/", ")/51/"}, QByteArray("00 07"), false);
        row("a programmed PLU from the keyboard",
            QByteArrayList{"P/1/8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/", ")/22/", ")/51/"}, QByteArray("00 00 00"), true);
        row("a credit note keyed: department and cash keys inside it", QByteArrayList{"-/123-2010/", ")/30/", ")/5/", ")/90/"},
            QByteArray("00 00 00 00"), false);
        row("a key the register lacks", QByteArrayList{")/200/", ")/x/"}, QByteArray("46 46"), false);
        // Changes to the header and to the VAT rates are counted; a malformed record is refused and costs none.
        const auto changes = [](const char* name, const QByteArray& r, int allowed, const char* refusal) {
            row(name, QByteArrayList{r.chopped(1) + "//"} + QByteArrayList(allowed + 1, r),
                "02 " + QByteArray("00 ").repeated(allowed) + refusal, false);
        };
        changes("header: 60 changes", printLinesRecord('H', 12, "BAR CENTRALE"), 60, "1D");
        changes("VAT rates: 20 changes", "b/4.00/10.00/22.00/0.00/0.00/", 20, "2B");
    }
    void receipts()
    {
        const QByteArrayList& records = fetch<QByteArrayList>("records");
        const QByteArrayList statuses = fetch<QByteArray>("statuses").split(' ');
        Register ecr;
        QByteArrayList got;
        for (const QByteArray& r : records)
            got.append(ecr.run(r).left(2));
        QCOMPARE(got, statuses);
        QTEST(ecr.device.sales().receiptOpen(), "openAfter");
        // The state's bit 0 says the same as the register's own view.
        QCOMPARE(ecr.run("?/").mid(3, 2), QByteArray(fetch<bool>("openAfter") ? "01" : "00"));
        // Only what was carried out is in the journal.
        QByteArrayList accepted;
        for (qsizetype i = 0; i < records.size(); ++i)
            if (statuses[i] == "00")
                accepted.append(records[i]);
        accepted.append("?/");
        QCOMPARE(ecr.journal.lines(), accepted);
    }
    void readBack_data()
    {
        columns<QByteArrayList, QByteArray, QByteArray>("writes", "read", "data");
        row("identity", QByteArrayList(), QByteArray("a/"), QByteArray("99KDV000001/1/KD/IT/1.00/"));
        const QByteArray vat = "27/27/27/27/27/27/27/27/21/29/29/29/29/29/29/29/29/22/";
        row("S-parameters from the factory", QByteArrayList(), QByteArray("s/"),
            "00001100001000000001000000/999999.99/999999.999/1000000.00/99999999.99/0.00/0.00/0.00/1/CASSA -1/"
            + QByteArray(vat).replace("21", "27").replace("22", "29") + "8/0/76/");
        const QByteArray written = "10001100001000000001000009/999999/999999/1000000/99999999/0/0/0/2/CENTRALE/" + vat + "7/1/";
        row("S-parameters written keep the last value", QByteArrayList{"S/" + written}, QByteArray("s/"), written + "76/");
        row("VAT rates", QByteArrayList{"b/4.00/10.00/22.00/0.00/0.00/"}, QByteArray("e/"),
            QByteArray("4.00/10.00/22.00/0.00/0.00/"));
        row("a refused VAT write changes nothing", QByteArrayList{"b/4.00/10.00/100.00/0.00/0.00/"}, QByteArray("e/"),
            QByteArray("22.00/10.00/4.00/5.00/0.00/"));
        row("department", QByteArrayList{"D/7/FRUTTA/3//////"}, QByteArray("d/7/"), QByteArray("FRUTTA/3/"));
        row("refused departments leave the old one",
            QByteArrayList{"D/7/X/6//////", "D/21/X/1//////", "D/7/ABCDEFGHIJKLMNOPQRSTU/1//////"}, QByteArray("d/7/"),
            QByteArray("REPARTO 7/1/"));
        row("PLU, in the order the register answers it",
            QByteArrayList{"P/1/8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/"}, QByteArray("p/1/"),
            QByteArray("8001234567890/ACQUA 1L/1/0/00000000/1/0.50/0.00/100/0/0.00/0/0/0/"));
        const QByteArray noPlu("//////////////");
        row("a PLU freed by an empty code", QByteArrayList{"P/9000/A/B/1/0/1/0/1/00000000/", "P/9000////0/0/0/0/00000000/"},
            QByteArray("p/9000/"), noPlu);
        row("refused PLUs are not stored", QByteArrayList{"P/9001/A/B/1/0/1/0/1/00000000/", "P/2/A/B/21/0/1/0/1/00000000/",
                                                          "P/2/A/B/1/0/x/0/1/00000000/", "P/2/A/B/1/0/1/0/1/0000000/"},
            QByteArray("p/2/"), noPlu);
        row("payment type, in the order the register answers it", QByteArrayList{"Y/4/BUONI/BUO/00000011/1.5/0//1/0/"},
            QByteArray("y/4/"), QByteArray("BUONI/BUO/00000011/1.5/1/0/0/1.5/0/0/0/"));
        row("refused payment types", QByteArrayList{"Y/4/DESCRIZIONE/BUO/00000011/1.5/0//1/0/", "Y/10/A/B/00000000/0/0//1/0/",
                                                    "Y/4/A/B/0000001/0/0//1/0/"}, QByteArray("y/4/"),
            QByteArray("//00000000/0/0/0/0/0/0/0/0/"));
        row("parameter 12", QByteArrayList{"G/12/1/1/42/"}, QByteArray("B/12/"), QByteArray("42/"));
        // The display's two lines after keys pressed. Key codes: digits 0=69 1=22 2=30 3=38 4=37 5=46 6=54
        // 7=61 8=62 9=70, comma 73, x 34, REP-01 5, REP-02 6, subtotal 102, cash 90, clear 118.
        const QByteArray blank(16, ' ');
        row("display: nothing sold, zero", QByteArrayList(), QByteArray("(/"), "            0.00/" + blank + "/");
        row("display: every digit typed, nine at most", keys({22, 30, 38, 37, 73, 46, 54, 61, 62, 70}), QByteArray("(/"),
            "       1234.5678/" + blank + "/");
        row("display: an entry in cents on a department", keys({22, 30, 46, 5}), QByteArray("(/"),
            QByteArray("            1.25/REPARTO 1   1.25/"));
        row("display: a quantity times a price", keys({30, 34, 22, 46, 69, 6}), QByteArray("(/"),
            QByteArray("            3.00/REPARTO 2   3.00/"));
        row("display: subtotal", keys({22, 69, 69, 5, 102}), QByteArray("(/"), QByteArray("            1.00/SUBTOTALE   1.00/"));
        row("display: cash with change, back to zero", keys({22, 69, 69, 5, 46, 69, 69, 90}), QByteArray("(/"),
            QByteArray("            0.00/RESTO       4.00/"));
        row("display: clear drops the entry", keys({22, 30, 118}), QByteArray("(/"), "            0.00/" + blank + "/");
        // Totals as the totals file reads them: five VAT values, then sales,
        // receipts, non-fiscal, credit notes, returns, cancelled.
        const QByteArrayList day{"3/S/A//2/1.50/1/4/", "3/S/B//1/2.00/2/10/", "3/R/A//1/0.50/1/4/", "5/1/10.00/////",
                                 "3/S/C//1/9.99/3/4/", ")/28/", "7/1/0/X/", "m//"};
        row("totals", day, QByteArray("t/"), QByteArray("2.50/2.00/0.00/0.00/0.00/4.50/1/1/0.00/0.50/9.99/"));
        row("the X report", day, QByteArray("X/"), "2.50/2.00/" + QByteArray("0.00/").repeated(18));
        row("totals after the closure", day + QByteArrayList{"x/7/0/0/"}, QByteArray("t/"),
            QByteArray("0.00/0.00/0.00/0.00/0.00/0.00/0/0/0.00/0.00/0.00/"));
        row("grand total after the closure", day + QByteArrayList{"x/7/0/0/"}, QByteArray("9/"), QByteArray("4.50/1/"));
        row("counters after the closure", day + QByteArrayList{"x/7/0/0/"}, QByteArray("0/"), QByteArray("0/1/0/0.00/"));
    }
    void readBack()
    {
        Register ecr;
        for (const QByteArray& w : fetch<QByteArrayList>("writes"))
            ecr.run(w);
        QTEST(ecr.run(fetch<QByteArray>("read")).mid(9), "data"); // the answer's data fields
    }
    void logoRows_data()
    {
        // Each logo as width x height, then the numbers of the rows kept.
        columns<QByteArrayList, QByteArray, QString>("records", "statuses", "logos");
        const QByteArray white16(16, 'F');
        const QByteArray black32(32, '0');
        row("rows kept per logo",
            QByteArrayList{"$/1/64/64/1/" + white16 + "/", "$/2/128/256/256/" + black32 + "/", "$/1/64/64/64/" + white16 + "/"},
            QByteArray("00 00 00"), "64x64 1 64 | 128x256 256");
        row("a new size starts the logo again",
            QByteArrayList{"$/1/64/64/1/" + white16 + "/", "$/1/128/64/2/" + black32 + "/"}, QByteArray("00 00"), "128x64 2 | 0x0");
        row("refused rows are not kept",
            QByteArrayList{"$/3/64/64/1/" + white16 + "/", "$/1/70/64/1/" + white16 + "/", "$/1/64/64/65/" + white16 + "/",
                           "$/1/64/64/1/" + white16.toLower() + "/", "$/1/64/64/1/" + black32 + "/", "$/1/64/64/1/"},
            QByteArray("24 23 23 23 23 01"), "0x0 | 0x0");
    }
    void logoRows()
    {
        Register ecr;
        QByteArrayList got;
        for (const QByteArray& r : fetch<QByteArrayList>("records"))
            got.append(ecr.run(r).left(2));
        QCOMPARE(got.join(' '), fetch<QByteArray>("statuses"));
        QStringList logos;
        for (const auto& logo : ecr.device.tables().logos) {
            QString text = QStringLiteral("%1x%2").arg(logo.width).arg(logo.height);
            for (int n : logo.rows.keys())
                text += u' ' + QString::number(n);
            logos << text;
        }
        QTEST(logos.join(QStringLiteral(" | ")), "logos");
    }
    void faultsOverTime_data()
    {
        // appliedAt -1: the faults are given before the register runs; each step is a record at its time and the
        // first five characters of the answer. error: what applying each fault says, up to its first semicolon.
        columns<qint64, QStringList, Steps, QString>("appliedAt", "faults", "steps", "error");
        const auto timed = [](const char* name, const QStringList& faults, const Steps& steps, qint64 appliedAt = -1) {
            row(name, appliedAt, faults, steps, QString());
        };
        timed("busy 2: any two records, then carried out", {"busy 2"},
              {{0, "?/", "1A/00"}, {0, kSale, "1A/00"}, {0, kSale, "00/01"}});
        timed("fatal 52: the next record only", {"fatal 52"}, {{0, "a/", "34/00"}, {0, "a/", "00/00"}});
        timed("refuse 3/ 8: every sale only", {"refuse 3/ 8"}, {{0, kSale, "08/00"}, {0, "a/", "00/00"}, {0, kSale, "08/00"}});
        timed("paper out for 3 s from the first record", {"paper 3000"},
              {{1000, kSale, "31/04"}, {1000, "?/", "31/04"}, {1000, "e/", "00/04"}, {3999, kSale, "31/04"},
               {4000, "?/", "00/00"}, {4000, kSale, "00/01"}});
        timed("cover open for 2 s", {"cover 2000"}, {{0, "x/1/1/1/", "32/02"}, {0, "?/", "32/02"}, {2000, "x/1/1/1/", "00/00"}});
        timed("clear ends every fault", {"busy 5", "paper 5000", "clear"}, {{0, kSale, "00/01"}});
        timed("paper out while running starts at once", {"paper 1000"}, {{5999, kSale, "31/04"}, {6000, kSale, "00/01"}}, 5000);
        // A count, by default 1 and in any case, name=value, a time, an error and a refusal at their limits, pacing.
        timed("taken", {"busy 2", "NAK", "can=3", "silence 86400000", "fatal 255", "refuse 3/ 1", "baud 9600"}, {}, 0);
        const auto refused = [](const char* name, const QStringList& faults, const char* error) {
            row(name, qint64(0), faults, Steps(), QString(error));
        };
        refused("a count too large", {"garbage 1000001"}, "usage: garbage [N]");
        refused("two counts", {"short 1 2"}, "usage: short [N]");
        refused("a time too long", {"paper 86400001"}, "usage: paper MS");
        refused("a time missing", {"cover"}, "usage: cover MS");
        refused("error 0", {"fatal 0"}, "usage: fatal ERR");
        refused("a refusal above 255 or without error", {"refuse 3/ 256", "refuse 3/"}, "usage: refuse PREFIX ERR");
        refused("pacing not a number", {"baud fast"}, "usage: baud N");
        refused("unplug takes nothing", {"unplug now"}, "usage: unplug ");
        refused("nothing", {"  "}, "empty fault command");
    }
    void faultsOverTime()
    {
        const qint64 appliedAt = fetch<qint64>("appliedAt");
        Register ecr;
        for (const QString& f : fetch<QStringList>("faults")) {
            const QString error = applyFault(ecr.faults, f, appliedAt < 0 ? std::nullopt : std::optional<qint64>(appliedAt));
            QVERIFY2(error.section(u';', 0, 0) == fetch<QString>("error"), qPrintable(f + ": " + error));
        }
        for (const Step& s : fetch<Steps>("steps"))
            QCOMPARE(ecr.run(s.sent, s.at).left(5), s.expected);
    }
    void journalAndPaperFiles()
    {
        QTemporaryDir dir;
        VirtualEcrOptions options;
        options.journalPath = dir.filePath("journal.txt");
        options.paperPath = dir.filePath("paper.txt");
        VirtualEcr ecr(options);
        QVERIFY2(ecr.startError().isEmpty(), qPrintable(ecr.startError()));
        QByteArray answers;
        const auto send = [&](VirtualEcr& to, const QByteArray& record) {
            feed(to, ENQ + kelm::frame::commandFrame(record) + ACK, 0, answers);
        };
        send(ecr, printLinesRecord('F', 3, "GRAZIE E ARRIVEDERCI"));
        send(ecr, "3/S/CAFF\xC8//2/1.10/1/4/");
        send(ecr, "x/7/0/0/"); // refused: the receipt is open
        send(ecr, "5/1/5.00/////");
        send(ecr, "x/7/0/0/");
        QFile journal(options.journalPath);
        QVERIFY(journal.open(QIODevice::ReadOnly));
        QCOMPARE(journal.readAll(), printLinesRecord('F', 3, "GRAZIE E ARRIVEDERCI")
                                        + "\n3/S/CAFF\xC8//2/1.10/1/4/\n5/1/5.00/////\nx/7/0/0/\n");
        QFile paper(options.paperPath);
        QVERIFY(paper.open(QIODevice::ReadOnly | QIODevice::Text));
        const QString roll = QString::fromUtf8(paper.readAll());
        for (const char* expected : {"REGISTRATORE VIRTUALE", "2 x 1.10", "CAFFÈ                       2.20",
                                     "TOTALE EURO                 2.20", "RESTO                       2.80", "GRAZIE E ARRIVEDERCI",
                                     "SCONTRINO N. 1", "CHIUSURA FISCALE N. 1", "TOTALE VENDITE              2.20"})
            QVERIFY2(roll.contains(QString::fromUtf8(expected)), qPrintable(expected + (" missing from:\n" + roll)));
        QVERIFY(roll.indexOf("SCONTRINO N. 1") < roll.indexOf("CHIUSURA FISCALE"));
        QVERIFY(!roll.contains("DOCUMENTO NON FISCALE"));
        // What the register keeps in memory is what it wrote.
        QCOMPARE(ecr.paper().join('\n') + '\n', roll.toUtf8());

        // The next run carries on: tables, counters and an open receipt come
        // back, and both files are written on, not over.
        send(ecr, "3/S/ACQUA//1/0.50/1/4/");
        options.resume = true;
        VirtualEcr next(options);
        QVERIFY2(next.startError().isEmpty(), qPrintable(next.startError()));
        QCOMPARE(next.tables().footer[0].text, QByteArray("GRAZIE E ARRIVEDERCI"));
        QVERIFY(next.receiptOpen());
        send(next, "5/1/0.00/////");
        send(next, "x/7/0/0/");
        journal.seek(0);
        QCOMPARE(journal.readAll().count('\n'), 7);
        paper.seek(0);
        const QString rolls = QString::fromUtf8(paper.readAll());
        QVERIFY(rolls.startsWith(roll));
        QVERIFY2(rolls.contains("GRAN TOTALE                 2.70"), qPrintable(rolls.mid(roll.size())));
        QVERIFY2(rolls.contains("CHIUSURA FISCALE N. 2"), qPrintable(rolls.mid(roll.size())));
    }
    void conversation_data()
    {
        columns<QStringList, Steps>("faults", "steps");
        const QByteArray status = kelm::frame::commandFrame("?/");
        const QByteArray ack(1, ACK), enq(1, ENQ), nak(1, NAK), can(1, CAN), stx(1, STX);
        row("ENQ is answered with ACK, CAN with nothing", QStringList(), Steps{{0, QByteArray(3, CAN), ""}, {1, enq, ack}});
        row("a bad checksum gets NAK and no answer", QStringList(), Steps{{0, enq, ack}, {10, QByteArray(1, STX) + "?/11" + ETX, nak}});
        row("a frame without handshake is not taken", QStringList(), Steps{{0, status, ""}, {5, enq, ack}});
        row("the PC's NAK brings the same answer again, its ACK ends it", QStringList(),
            Steps{{0, enq, ack}, {10, status, ack + kStatusAnswer}, {100, nak, kStatusAnswer}, {200, nak, kStatusAnswer},
                        {300, ack, ""}, {400, nak, ""}});
        row("can 2: two ENQ refused, the third accepted", QStringList{"can 2"},
            Steps{{0, enq, can}, {10, enq, can}, {20, enq, ack}});
        row("nak 1: a right frame refused once, then taken", QStringList{"nak 1"},
            Steps{{0, enq, ack}, {10, status, nak}, {20, enq, ack}, {30, status, ack + kStatusAnswer}});
        row("silence 1000 from the first byte: nothing until it ends", QStringList{"silence 1000"},
            Steps{{500, enq, ""}, {1499, enq, ""}, {1500, enq, ack}});
        row("garbage: stray bytes before STX, once", QStringList{"garbage"},
            Steps{{0, enq, ack}, {10, status, ack + QByteArray("\xFF\x00#~\x7F", 5) + kStatusAnswer},
                        {100, nak, kStatusAnswer}});
        row("broken: the answer stops half-way, the resend is whole", QStringList{"broken"},
            Steps{{0, enq, ack}, {10, status, ack + stx + "00/00"}, {600, nak, kStatusAnswer}});
        row("short 2: two answers under 11 characters, then the whole one", QStringList{"short 2"},
            Steps{{0, enq, ack}, {10, status, ack + stx + "00/00" + ETX}, {100, nak, stx + "00/00" + ETX},
                        {200, nak, kStatusAnswer}});
        row("unplug: nothing is answered any more", QStringList{"unplug"}, Steps{{0, enq, ""}, {10, status, ""}});
    }
    void conversation()
    {
        VirtualEcrOptions options;
        options.faults = fetch<QStringList>("faults");
        VirtualEcr ecr(options);
        QVERIFY2(ecr.startError().isEmpty(), qPrintable(ecr.startError()));
        for (const Step& s : fetch<Steps>("steps")) {
            QByteArray got;
            feed(ecr, s.sent, s.at, got);
            QCOMPARE(got.toHex(' '), s.expected.toHex(' '));
        }
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
        VirtualEcrOptions options;
        options.baud = fetch<int>("baud");
        VirtualEcr ecr(options);
        QByteArray got;
        feed(ecr, QByteArray(1, ENQ), 0, got);
        const QList<TimedByte> reply = feed(ecr, kelm::frame::commandFrame("?/"), 10, got);
        QCOMPARE(got, QByteArray(2, ACK) + kStatusAnswer);
        QTEST(reply.first().atMs, "ackAt");
        QTEST(reply.last().atMs, "lastByteAt");
    }
};

QTEST_GUILESS_MAIN(TestSim)
#include "tst_sim.moc"
