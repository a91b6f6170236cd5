// The receipt server at work in virtual time: the per-record error policy
// against a scripted register, the queue and the spool folder against the
// virtual register, and the state queries.
#include "DriverRig.h"
#include "LineScript.h"
#include "Table.h"
#include "server/ReceiptLines.h"
#include "server/StatusQuery.h"

#include <QFileInfo>
#include <QRegularExpression>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

using namespace kelm;
using server::LineOrigin;

namespace {

const QString kItem = QStringLiteral("3/S/REPARTO1//1/5.26/1/4/");
const QString kPay = QStringLiteral("5/1/0.00/////");

// An acknowledged frame followed by an answer "status/state/01/x/".
QString answer(const QString& status, const QString& state = QStringLiteral("00"))
{
    return "<ACK><STX>" + status + "/" + state + "/01/x/<ETX>";
}

QByteArray receipt(const QString& tag)
{
    return QStringLiteral("3/S/%1//1/1.00/1/4/\r\n5/1/0.00/////\r\n").arg(tag).toLatin1();
}

// The item tags the register printed, in order.
QStringList soldTags(const QStringList& journal)
{
    QStringList tags;
    for (const QString& line : journal)
        if (line.startsWith(QStringLiteral("3/S/")))
            tags.append(line.section(u'/', 2, 2));
    return tags;
}

} // namespace

class DriverTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The two state queries: "s/" for the state digit, "?/" for an error.
    void stateQueries_data()
    {
        columns<QString, QString, QString, int, QString>("query", "enq", "reply", "result", "shown");
        row("no error: the state digit (23rd character)", "s/", "<ACK>", "<ACK><STX>00/00/01/00000000000003/<ETX>", 3, "");
        row("no error, answer too short for the digit", "s/", "<ACK>", "<ACK><STX>00/00/01/x/<ETX>", 0, "");
        row("no error, not a digit", "s/", "<ACK>", "<ACK><STX>00/00/01/0000000000000x00<ETX>", 0, "");
        row("an error wins over the digit", "s/", "<ACK>", "<ACK><STX>31/04/01/0000000000003/<ETX>", 49, "");
        row("link failure", "s/", "<CAN>", "", 1002, "");
        row("error state: none", "?/", "<ACK>", "<ACK><STX>00/00/01/x/<ETX>", 0, "");
        row("error state: paper out", "?/", "<ACK>", "<ACK><STX>31/04/01/x/<ETX>", 49,
            "Attenzione: Comando '?/' - Errore N. 49\r\nCarta finita");
        row("error state: no answer", "?/", "<ACK>", "<ACK>", 1005, "");
    }
    void stateQueries()
    {
        ScriptedPeer peer;
        peer.enqReplies = {fetch<QString>("enq")};
        peer.frameReplies = {fetch<QString>("reply")};
        DriverRig rig(&peer);
        const QString& query = fetch<QString>("query");
        QTEST(query == "s/" ? server::QueryStatusByte(rig.link) : server::QueryErrorState(rig.link, rig.op), "result");
        QCOMPARE(peer.records(), fetch<QString>("enq") == "<CAN>" ? QStringList{} : QStringList{query});
        QTEST(rig.op.messages.join(u'|'), "shown");
    }

    void policy_data()
    {
        // frame replies: one per frame the PC sends; fate: what the answer file says; records: what reached the
        // register; runTime: list entries, oldest first; log: messages logged; enq: the reply to every ENQ.
        columns<QStringList, QString, QStringList, QStringList, QStringList, qint64, QString>(
            "frameReplies", "fate", "records", "runTime", "log", "minElapsed", "enq");
        const auto policy = [](const char* name, const QStringList& replies, const char* fate, const QStringList& records,
                               const QStringList& runTime, const QStringList& log, qint64 minElapsed, const char* enq = "<ACK>") {
            row(name, replies, QString(fate), records, runTime, log, minElapsed, QString(enq));
        };
        const QString r = kItem, q = QStringLiteral("?/"), ok = answer("00"), busy = answer("1A");
        const QString busyEntry = QStringLiteral("ECR-errore :26-Busy, reinvia il comando Ripeto comando");
        const QString paperEntry = QStringLiteral("ECR-errore :49-Carta finita Ricontrollo stato ECR e ripeto comando");
        const QString roll = QStringLiteral("Sostituire rotolo scontrino");
        const QString lost = QStringLiteral("Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata");
        const QString maxTotal = QStringLiteral("Raggiunto l'importo massimo per totale scontrino");
        policy("accepted", {ok}, "accettata", {r}, {}, {}, 0);
        policy("busy three times, then accepted: sent four times, each repeat logged", {busy, busy, busy, ok}, "accettata",
               {r, r, r, r}, {busyEntry, busyEntry, busyEntry}, QStringList(3, "Busy, reinvia il comando"), 300);
        policy("refused: listed, logged, given up", {answer("08")}, "rifiutata 8", {r},
               {"ECR-errore :8-Il reparto non esiste Ignoro l'errore"}, {"Il reparto non esiste"}, 0);
        policy("refused with 126: its number ends in 26, its text is still logged", {answer("7E")}, "rifiutata 126", {r},
               {"ECR-errore :126-" + maxTotal + " Ignoro l'errore"}, {maxTotal}, 0);
        policy("unknown number counts as accepted", {answer("48")}, "accettata", {r}, {}, {}, 0);
        policy("NAK to the frame: wait a second, send again", {"<NAK>", ok}, "accettata", {r, r}, {}, {}, 1000);
        policy("no answer, state 00: sent again", {"<ACK>", ok, ok}, "accettata", {r, q, r}, {}, {}, 2000 + 100);
        policy("no answer, state 01: given up silently", {"<ACK>", answer("01")}, "incerta", {r, q}, {}, {}, 2000 + 100);
        policy("paper out: repeated every 2 s until the bit clears", {answer("00", "04"), answer("00", "05"), ok}, "accettata",
               {r, r, r}, QStringList(2, "ECR        : " + roll), QStringList(2, roll), 4000);
        policy("state above 7 keeps the paper flag as it was", {answer("00", "12")}, "accettata", {r}, {}, {}, 0);
        policy("paper error: state queried until clear, then sent again", {answer("31"), answer("31"), ok, ok}, "accettata",
               {r, q, q, r}, {paperEntry, paperEntry}, QStringList(2, "Carta finita"), 3000 + 500 + 3000 + 3000);
        policy("cover open, then a refusal read from the state query", {answer("32"), answer("08")}, "rifiutata 8", {r, q},
               {"ECR-errore :50-Portello rotolo aperto Ricontrollo stato ECR e ripeto comando",
                "ECR-errore :8-Il reparto non esiste Ignoro l'errore"},
               {"Portello rotolo aperto", "Il reparto non esiste"}, 3000 + 500);
        policy("no ACK to ENQ: link lost", {}, "non_inviata", {}, {"ECR        : " + lost}, {lost}, 3000, "");
        policy("CAN to ENQ: link lost at once", {}, "non_inviata", {}, {"ECR        : " + lost}, {lost}, 0, "<CAN>");
    }
    void policy()
    {
        ScriptedPeer peer;
        peer.enqDefault = fetch<QString>("enq");
        peer.frameReplies = fetch<QStringList>("frameReplies");
        DriverRig rig(&peer);
        const auto outcome = rig.server().SendRecord(kItem);
        QCOMPARE(outcome == server::ReceiptServer::SendOutcome::LinkLost, fetch<QString>("fate") == "non_inviata");
        const server::LineOutcome& sent = rig.server().lastOutcome();
        QTEST((server::fateName(sent.fate) + u' ' + sent.errorNumber).trimmed(), "fate");
        QTEST(peer.records(), "records");
        QTEST(rig.op.runTime, "runTime");
        QTEST(rig.logMessages(), "log");
        QVERIFY2(rig.clock.nowMs() >= fetch<qint64>("minElapsed"), qPrintable(QString::number(rig.clock.nowMs())));
        QVERIFY(rig.op.messages.isEmpty());
    }

    void fatalErrorEmptiesTheQueue()
    {
        ScriptedPeer peer;
        peer.enqDefault = QStringLiteral("<ACK>");
        peer.frameReplies = {answer("00"), answer("34")};
        DriverRig rig(&peer);
        server::OutcomeBook book;
        rig.server().setOutcomeBook(&book);
        rig.server().enqueue(LineOrigin::Source::File, QStringLiteral("a.txt"), {QStringLiteral("3/S/A//1/1.00/1/1/"), kItem});
        rig.server().enqueue(LineOrigin::Source::File, QStringLiteral("b.txt"), {QStringLiteral("3/S/C//1/1.00/1/1/"), kPay});
        rig.server().ProcessReceiptQueue();
        QCOMPARE(book.find(QStringLiteral("a.txt"))->state(), server::ReceiptState::PrintedWithRefusals);
        QCOMPARE(book.find(QStringLiteral("a.txt"))->lines.at(1).errorNumber, QStringLiteral("52"));
        QCOMPARE(book.find(QStringLiteral("b.txt"))->state(), server::ReceiptState::NotPrinted);
        QCOMPARE(book.find(QStringLiteral("b.txt"))->lines.at(0).reason, server::NotSentReason::FatalError);
        QCOMPARE(peer.records(), (QStringList{"3/S/A//1/1.00/1/1/", kItem}));
        QVERIFY(rig.server().queue.isEmpty());
        QVERIFY(!rig.server().ReceiptOpen);
        QCOMPARE(rig.op.messages, QStringList{"ATTENZIONE: errore grave. Chiamare Casa madre"});
        QCOMPARE(rig.logMessages(), (QStringList{"Stampante scollegata", "errore grave. Chiamare Casa madre"}));
    }

    void stopGivesUpARepeatingRecord()
    {
        ScriptedPeer peer; // busy for ever: only the stop ends it
        peer.enqDefault = QStringLiteral("<ACK>");
        peer.frameReplies = QStringList(50, answer("1A"));
        DriverRig rig(&peer);
        rig.clock.stopAtMs = 250;
        rig.process({kItem, kPay});
        QVERIFY(peer.records().size() >= 2);
        QVERIFY(peer.records().size() < 10);
        QCOMPARE(server::queueTexts(rig.server().queue), (QStringList{kItem, kPay})); // the record back on top
    }

    void dispatch_data()
    {
        // journal: what the register carried out; left: still queued; runTime,
        // log: an entry that must be listed, logged; fates: per non-blank line,
        // a accepted, r refused, s skipped, p pending.
        columns<QStringList, QStringList, QStringList, QString, QString, bool, QString>(
            "lines", "journal", "left", "runTime", "log", "receiptOpen", "fates");
        const QString i = kItem, p = kPay;
        const QStringList none;
        row("a whole receipt", QStringList{i, i, p}, QStringList{i, i, p}, none, "PC -> ECR : " + p, "", false, "aaa");
        row("closure refused inside a receipt, payment sent", QStringList{i, "x/7/0/0/", p}, QStringList{i, p}, none,
            "ECR        : Comando non gestito con scontrino aperto", "\"x/\" - Comando non gestito con scontrino aperto !",
            false, "asa");
        row("unknown key stops the queue, the rest stays", QStringList{i, "Z/1/", p}, QStringList{i}, QStringList{p},
            "ECR        : Comando Z/ non gestito.", "\"Z/\" - Comando non gestito !", true, "asp");
        row("only two records of the ) family", QStringList{")/7/", ")/5/"}, none, QStringList{")/5/"},
            "ECR        : Comando )/ non gestito.", "\")/\" - Comando non gestito !", false, "sp");
        row("missing final slash is added", QStringList{"x/7/0/0"}, QStringList{"x/7/0/0/"}, none, "PC -> ECR : x/7/0/0", "",
            false, "a");
        row("blank lines are listed and skipped", QStringList{"   ", "", i, p}, QStringList{i, p}, none, "PC -> ECR :    ", "",
            false, "aa");
        row("customer block gets nine fields and 0", QStringList{"j/A/B/"}, QStringList{"j/A/////////0/"}, none, "", "", true,
            "a");
    }
    void dispatch()
    {
        DriverRig rig;
        server::OutcomeBook book;
        rig.server().setOutcomeBook(&book);
        rig.server().enqueue(LineOrigin::Source::File, QStringLiteral("scontrino.txt"), fetch<QStringList>("lines"));
        rig.server().ProcessReceiptQueue();
        QTEST(rig.journal(), "journal");
        QTEST(server::queueTexts(rig.server().queue), "left");
        QString seen;
        const server::ReceiptOutcome receipt = *book.find(QStringLiteral("scontrino.txt"));
        for (const server::LineOutcome& line : receipt.lines)
            seen += QStringLiteral("parsnu").at(int(line.fate));
        QTEST(seen, "fates");
        const QString& runTime = fetch<QString>("runTime");
        QVERIFY2(runTime.isEmpty() || rig.op.runTime.contains(runTime), qPrintable(rig.op.runTime.join(u'\n')));
        const QString& log = fetch<QString>("log");
        QVERIFY2(log.isEmpty() || rig.logMessages().contains(log), qPrintable(rig.logMessages().join(u'\n')));
        QTEST(bool(rig.server().ReceiptOpen), "receiptOpen");
    }

    void receiptOpenCarriesOverToTheNextFile()
    {
        DriverRig rig;
        rig.process({kItem});
        QVERIFY(rig.server().ReceiptOpen);
        rig.process({QStringLiteral("x/7/0/0/"), kPay, QStringLiteral("x/7/0/0/")});
        QCOMPARE(rig.journal(), (QStringList{kItem, kPay, "x/7/0/0/"}));
    }

    // Wrapping and automatic VAT as set; department 22 is sent as it came
    // (the register then refuses it itself).
    void itemLinesAsSet()
    {
        DriverRig rig;
        rig.settings.itemLines.wrapDescription = rig.settings.itemLines.alIvaAuto = true;
        rig.settings.itemLines.widths = {20, 30};
        rig.settings.itemLines.vatRates[1] = 10;
        rig.process({QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/2/4/"), QStringLiteral("3/S/X//1/1.00/22/4/")});
        QCOMPARE(rig.journal(), QStringList{"3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/2/10/"});
        const QStringList log = rig.logMessages();
        QCOMPARE(log.size(), 2);
        QVERIFY2(log[0].contains("\"22\""), qPrintable(log[0]));
        QCOMPARE(log[1], QStringLiteral("Il reparto non esiste"));
    }

    void snapshotFile()
    {
        DriverRig rig;
        for (int round = 0; round < 2; ++round) // a second "t0" the same day replaces the file
            rig.process({QStringLiteral("t0")});
        QFile f(rig.spoolFile(QStringLiteral("99KDV00000120261121.FMN")));
        QVERIFY(f.open(QIODevice::ReadOnly));
        // four lines, each its tag, an answer "00/..." and CR LF (the answers dropped here)
        QCOMPARE(QString::fromLatin1(f.readAll()).remove(QRegularExpression(">00/[^\r\n]*")),
                 QStringLiteral("<t\r\n<0\r\n<9\r\n<X\r\n"));
        QVERIFY(!rig.journal().contains(QStringLiteral("t0/")));
    }

    // Which files are taken; the program's own files never, whatever the
    // mask; all are queued before one is sent; a taken file is gone and is
    // not taken twice; a link, a pipe or a folder is neither followed nor
    // taken, and is logged once. The log is named after the mask.
    void masks_data()
    {
        // taken: sorted tags of the files taken; odd: links, pipes and folders the mask names
        columns<QString, QStringList, int, QString>("mask", "taken", "odd", "logName");
        const QStringList all{"HIDDEN", "OTHER", "RECORD", "SCO1", "SCODAT", "SCONTRINO"};
        row("exact name, any case", "SCONTRINO.TXT", QStringList{"SCONTRINO"}, 0, "SCONTRINO.TXT");
        row("a hidden file named", ".scontrino.txt", QStringList{"HIDDEN"}, 0, ".scontrino.txt");
        row("*.txt ends with", "*.txt", QStringList{"HIDDEN", "RECORD", "SCO1", "SCONTRINO"}, 3, ".txt");
        row("SCO* begins with", "SCO*", QStringList{"SCO1", "SCODAT", "SCONTRINO"}, 1, "SCO");
        row("*ord* contains", "*ord*", QStringList{"RECORD"}, 0, "ord");
        row("* takes all but forbidden", "*", all, 3, "");
        row("*.* takes all but forbidden", "*.*", all, 3, "");
    }
    void masks()
    {
        DriverRig rig;
        rig.settings.serverFile = fetch<QString>("mask");
        rig.settings.forbiddenExtensions = {QString(), QStringLiteral("tmp")};
        const QStringList files{"scontrino.txt", "sco1.txt", "SCO.dat", "record.txt", "other.dat", "scontrino.tmp",
                                ".scontrino.txt", "Totali.txt", "99KDV00000120261121.FMN", "DREV20261122.log", "KelmDrev.ini",
                                "KelmDrev.pending", "FileExt.ini", "Totali.txt.aB3x9Z", "old.txt.drev"};
        QStringList tags{"SCONTRINO", "SCO1", "SCODAT", "RECORD", "OTHER", "TMP", "HIDDEN"};
        while (tags.size() < files.size())
            tags.append(QStringLiteral("OWN"));
        for (int n = 0; n < files.size(); ++n)
            rig.drop(files[n], receipt(tags[n]));
        QVERIFY(QDir(rig.spool.path()).mkdir(QStringLiteral("scodir.txt")));
        QTemporaryDir elsewhere;
        QVERIFY(QFile::copy(rig.spoolFile(files[0]), elsewhere.filePath(QStringLiteral("other.txt"))));
        QVERIFY(QFile::link(elsewhere.filePath(QStringLiteral("other.txt")), rig.spoolFile(QStringLiteral("link.txt"))));
        int odd = fetch<int>("odd");
#ifdef Q_OS_UNIX
        QVERIFY(::mkfifo(QFile::encodeName(rig.spoolFile(QStringLiteral("pipe.txt"))).constData(), 0600) == 0);
#else
        odd -= odd == 3; // no pipe
#endif
        rig.server().ScanServerDir();
        rig.server().ScanServerDir(); // no hang on the pipe
        QStringList sold = soldTags(rig.journal());
        sold.sort();
        QTEST(sold, "taken");
        // Every file of the scan was queued, two lines each, before the first line went.
        QCOMPARE(rig.op.queueSnapshots.value(sold.size() - 1).count(u'|'), 2 * sold.size() - 1);
        for (int n = 0; n < files.size(); ++n)
            QVERIFY2(QFile::exists(rig.spoolFile(files[n])) != sold.contains(tags[n]), qPrintable(files[n]));
        QCOMPARE(QDir(rig.spool.path()).entryList({QStringLiteral("*.drev")}, QDir::AllEntries | QDir::Hidden),
                 QStringList{"old.txt.drev"});
        QVERIFY(QFileInfo(rig.spoolFile(QStringLiteral("link.txt"))).isSymLink());
        QCOMPARE(rig.logMessages().filter(QStringLiteral("Non è un file normale")).size(), odd);
        QTEST(rig.log.logName(), "logName");
    }

    void aFileIsTakenOnceItStopsChanging_data()
    {
        // ageMs: of its time stamp when first seen, negative ahead; grows: written again before the
        // second scan; takenAtScan: 1, 2, or 0 (then the file is still there); known: the register's serial number.
        columns<qint64, bool, qint64, int, bool>("ageMs", "grows", "betweenMs", "takenAtScan", "known");
        row("written a while ago: at once", qint64(1000), false, qint64(0), 1, true);
        row("fresh: at the next tick", qint64(0), false, qint64(250), 2, true);
        row("fresh, looked at again too soon", qint64(0), false, qint64(150), 0, true);
        row("still growing", qint64(0), true, qint64(250), 0, true);
        row("dated an hour ahead: at the next tick", qint64(-3600000), false, qint64(250), 2, true);
        row("dated ahead and still growing", qint64(-3600000), true, qint64(250), 0, true);
        row("never while the register is unknown", qint64(1000), false, qint64(250), 0, false);
    }
    void aFileIsTakenOnceItStopsChanging()
    {
        DriverRig rig;
        if (!fetch<bool>("known"))
            rig.server().serialNumber = QStringLiteral("   ");
        rig.drop(QStringLiteral("scontrino.txt"), QByteArray("3/S/A//1/1.00/1/4/\r\n"), fetch<qint64>("ageMs"));
        rig.server().ScanServerDir();
        const bool first = !rig.journal().isEmpty();
        if (fetch<bool>("grows"))
            rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")), fetch<qint64>("ageMs"));
        rig.clock.advance(fetch<qint64>("betweenMs"));
        rig.server().ScanServerDir();
        QTEST(first ? 1 : rig.journal().isEmpty() ? 0 : 2, "takenAtScan");
        QCOMPARE(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))), fetch<int>("takenAtScan") == 0);
    }

    void aFileThatCannotBeClaimedIsLoggedOnce()
    {
        DriverRig rig;
        rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
        // Where the claim would move it, a folder that cannot be removed.
        QVERIFY(QDir(rig.spool.path()).mkpath(QStringLiteral("scontrino.txt.drev/inside")));
        for (int tick = 0; tick < 8; ++tick) {
            rig.server().ScanServerDir();
            rig.clock.advance(100);
        }
        QCOMPARE(rig.logMessages(), QStringList{"File non acquisito, riprovo"});
        QVERIFY(rig.journal().isEmpty());
        QVERIFY(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))));
        QVERIFY(QDir(rig.spoolFile(QStringLiteral("scontrino.txt.drev"))).removeRecursively());
        rig.clock.advance(250);
        rig.server().ScanServerDir();
        QCOMPARE(soldTags(rig.journal()), QStringList{"A"});
    }

    void testModeAsksBeforeDeleting_data()
    {
        columns<bool>("yes");
        row("Yes deletes the file", true);
        row("No keeps it, and it is taken again", false);
    }
    void testModeAsksBeforeDeleting()
    {
        const bool yes = fetch<bool>("yes");
        DriverRig rig;
        rig.settings.testMode = true;
        rig.op.answers = {yes ? Operator::Button::Yes : Operator::Button::No};
        rig.drop(QStringLiteral("scontrino.txt"), receipt(QStringLiteral("A")));
        rig.server().ScanServerDir();
        QCOMPARE(rig.op.questions, QStringList{"Tes Mode: Vuoi cancellare file?"});
        QCOMPARE(QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt"))), !yes);
        QVERIFY(!QFile::exists(rig.spoolFile(QStringLiteral("scontrino.txt.drev"))));
        rig.op.answers = {Operator::Button::Yes};
        rig.server().ScanServerDir();
        QCOMPARE(soldTags(rig.journal()), yes ? QStringList{"A"} : (QStringList{"A", "A"}));
    }

    void badReceiptFiles_data()
    {
        // item: the first line as the register must get it, if it gets it; sent: how many lines it got.
        columns<QByteArray, QString, int>("content", "item", "sent");
        const QByteArray pay = "5/1/0.00/////\r\n";
        const QString caffe = QStringLiteral("3/S/CAFF\u00C8//1/1.00/1/4/"), ok = QStringLiteral("3/S/OK//1/1.00/1/4/");
        row("UTF-8 with its mark", QByteArray("\xEF\xBB\xBF" "3/S/CAFF\xC3\x88//1/1.00/1/4/\r\n") + pay, caffe, 2);
        row("UTF-8 without a mark", QByteArray("3/S/CAFF\xC3\x88//1/1.00/1/4/\n") + pay, caffe, 2);
        row("binary bytes in a line", QByteArray("3/S/A\x01\xFF//1/1.00/1/4/\r\n") + pay, QString(), 2);
        row("a frame byte in a line is not sent", "3/S/OK//1/1.00/1/4/\r\n3/S/A\x02\x03//1/1.00/1/4/\r\n" + pay, ok, 2);
        row("a NUL in a line", QByteArray("3/S/A\0B//1/1.00/1/4/\r\n", 22) + pay, QString(), 2);
        row("a line longer than a frame is not sent",
            "3/S/OK//1/1.00/1/4/\r\n3/S/" + QByteArray(5000, 'L') + "//1/1.00/1/4/\r\n" + pay, ok, 2);
        QByteArray large;
        for (int i = 0; i < 3000; ++i)
            large += "3/S/ITEM" + QByteArray::number(i) + "//1/0.01/1/4/\r\n";
        row("a large file goes through whole", large + pay, QStringLiteral("3/S/ITEM0//1/0.01/1/4/"), 3001);
    }
    void badReceiptFiles()
    {
        const QByteArray& content = fetch<QByteArray>("content");
        DriverRig rig;
        rig.drop(QStringLiteral("scontrino.txt"), content);
        rig.server().ScanServerDir();
        // Whatever the register made of the odd line, the receipt was closed
        // and nothing was left behind.
        QTEST(int(rig.journal().size()), "sent");
        QCOMPARE(rig.journal().last(), kPay);
        QVERIFY(rig.server().queue.isEmpty());
        if (!fetch<QString>("item").isEmpty())
            QTEST(rig.journal().first(), "item");
        // A line that could not be sent is named in the log.
        if (rig.journal().size() < server::splitReceiptLines(content).size())
            QVERIFY(!rig.logMessages().filter(QStringLiteral("non inviato")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(DriverTest)
#include "tst_driver.moc"
