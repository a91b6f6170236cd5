// The receipt server's pure rules: which record goes out and how, file masks,
// item lines, the register's state digits, totals, the daily log, answer files.
#include "Table.h"
#include "app/Configuration.h"
#include "app/RunTimeLog.h"
#include "link/CodePage.h"
#include "server/AnswerFiles.h"
#include "server/AnswerText.h"
#include "server/CommandTable.h"
#include "server/EcrState.h"
#include "server/FileMask.h"
#include "server/ItemLineRewrite.h"
#include "server/LogNameHelp.h"
#include "server/OutcomeBook.h"
#include "server/PendingQueue.h"
#include "server/ReceiptLines.h"
#include "server/TotalsFile.h"
#include "service/ReceiptAlert.h"
#include "technician/ModelTable.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace kelm::server;
using kelm::service::ReceiptAlert;

namespace {

const QString kCustomer = QStringLiteral("j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/");
const QDateTime kWhen(QDate(2011, 12, 22), QTime(21, 7, 3));
const QString kSep = QString(QDir::separator());

// One letter per line: p pending, a accepted, r refused, s skipped, n not sent, u uncertain.
QList<LineOutcome> linesOf(const QString& fates)
{
    QList<LineOutcome> lines;
    for (const QChar c : fates) {
        LineOutcome line = LineOutcome::pending(int(lines.size()) + 1, QString());
        line.fate = LineFate(QStringLiteral("parsnu").indexOf(c));
        lines.append(line);
    }
    return lines;
}

// The register's text for the errors the alert tests use.
QString textOf(int error)
{
    return error == 42 ? QStringLiteral("Errore tastiera - Tastiera scollegata") : QStringLiteral("Il reparto non esiste");
}

template <std::size_t N>
QString bits(const std::array<bool, N>& flags)
{
    QString text;
    for (bool flag : flags)
        text += flag ? u'1' : u'0';
    return text;
}

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

class TestServer : public QObject {
    Q_OBJECT

private slots:
    void decideCommand_data()
    {
        // record "=": the line itself goes out; %1 in runTime and log: the line's first two characters.
        columns<QStringList, bool, CommandAction, QString, bool, QString, QString>("lines", "openBefore", "action", "record",
                                                                                  "openAfter", "runTime", "log");
        const auto send = [](const char* name, const QStringList& lines, bool before, bool after) {
            row(name, lines, before, CommandAction::Send, QString("="), after, QString(), QString());
        };
        send("records that open a receipt", {"U/", "2/A/", "3/S/REPARTO1//1/5.26/1/4/", "4/10.00///0/0/0//", "-/123-2010/"},
             false, true);
        send("5/ closes", {"5/1/0.00/////"}, true, false);
        send("records sent with no receipt open", {"5/1/0.00/////", "7/0/1/##PROMEMORIA##/", "[/", "q/", "0/", ")/5/", "x/7/0/0/",
             "6/"}, false, false);
        send("records sent inside a receipt", {"W/", "'/1/01234567897/1111111111111111/", "w/1/1//", "m//", ")/120/", "+/1/"},
             true, true);
        row("+/ with no receipt", QStringList{"+/1/"}, false, CommandAction::Skip, QString(), false,
            QString("ECR        : Scontrino non aperto"), QString());
        row("closures in a receipt", QStringList{"x/7/0/0/", "6/7/0/0/", "B/7/0/0/", "G/7/0/0/"}, true, CommandAction::Skip,
            QString(), true, QString("ECR        : Comando non gestito con scontrino aperto"),
            QString("\"%1\" - Comando non gestito con scontrino aperto !"));
        row("t0", QStringList{"t0/"}, true, CommandAction::WriteSnapshot, QString(), true, QString(), QString());
        row("t0 with more", QStringList{"t0x/1/"}, false, CommandAction::WriteSnapshot, QString(), false, QString(), QString());
        // The customer block always goes out with nine fields and a final 0.
        const auto customer = [](const char* name, const QStringList& lines, const QString& record) {
            row(name, lines, false, CommandAction::Send, record, true, QString(), QString());
        };
        customer("j/ short", {"j/A/B/"}, "j/A/////////0/");
        customer("j/ well formed", {kCustomer}, kCustomer);
        customer("j/ tenth field and more replaced by 0", {"j/1/2/3/4/5/6/7/8/9/X/", "j/1/2/3/4/5/6/7/8/9/10/11/"},
                 "j/1/2/3/4/5/6/7/8/9/0/");
        customer("j/ exactly nine fields", {"j/1/2/3/4/5/6/7/8/9/"}, "j/1/2/3/4/5/6/7/8//0/");
        customer("j/ no or one field", {"j/", "j/A/"}, "j//////////0/");
        // Unknown codes, ) records other than 5 and 120, t/ that is not t0, a leading blank, a code without its slash.
        const QString unknownRunTime = QStringLiteral("ECR        : Comando %1 non gestito.");
        const QString unknownLog = QStringLiteral("\"%1\" - Comando non gestito !");
        row("unknown records stop the queue", QStringList{")/7/", "X/", "Z/1/", " 3/S/A//1/1/1/1/", "33/"}, false,
            CommandAction::StopQueue, QString(), false, unknownRunTime, unknownLog);
        row("unknown records stop the queue in a receipt", QStringList{")/50/", "t/"}, true, CommandAction::StopQueue, QString(),
            true, unknownRunTime, unknownLog);
    }
    void decideCommand()
    {
        for (const QString& line : fetch<QStringList>("lines")) {
            const CommandDecision d = kelm::server::decideCommand(line, fetch<bool>("openBefore"));
            const QString& record = fetch<QString>("record");
            QVERIFY2(d.action == fetch<CommandAction>("action"), qPrintable(line));
            QCOMPARE(d.record, record == "=" ? line : record);
            QVERIFY2(d.receiptOpen == fetch<bool>("openAfter"), qPrintable(line));
            QCOMPARE(d.runTimeEntry, QString(fetch<QString>("runTime")).replace(QStringLiteral("%1"), line.left(2)));
            QCOMPARE(d.logMessage, QString(fetch<QString>("log")).replace(QStringLiteral("%1"), line.left(2)));
        }
    }

    // The status (error number) and the paper flag an answer leaves.
    void answerStatus_data()
    {
        columns<QStringList, bool, int, bool>("answers", "paperBefore", "status", "paperAfter");
        row("busy", QStringList{"1A/00/"}, false, 26, false);
        row("lower-case letter counts as 0", QStringList{"1a/00/"}, false, 16, false);
        row("highest", QStringList{"FF"}, false, 255, false);
        row("one character", QStringList{"3"}, false, 48, false);
        row("states 4, 5, 7 set", QStringList{"31/04/", "31/05/", "31/07/", "31/4/"}, false, 49, true);
        row("states 0..3, none or not a number clear", QStringList{"00/03/", "00/00/", "00", "00/ab/"}, true, 0, false);
        row("states above 7 keep it set", QStringList{"00/08/", "00/99/"}, true, 0, true);
        row("states above 7 keep it clear", QStringList{"00/00/01/", "", "00/12/"}, false, 0, false);
    }
    void answerStatus()
    {
        for (const QString& answer : fetch<QStringList>("answers")) {
            const bool paper = kelm::server::paperOutAfter(answer, fetch<bool>("paperBefore"));
            QVERIFY2(kelm::server::answerStatus(answer) == fetch<int>("status"), qPrintable(answer));
            QVERIFY2(paper == fetch<bool>("paperAfter"), qPrintable(answer));
        }
    }

    // How masks are read (mode and pattern) and what they take and leave.
    // Which names the server takes: those its mask matches and whose extension is not in the forbidden table.
    void fileMask_data()
    {
        // parsed: the mode, then the log name the mask gives for the name "-": its pattern, if it has one.
        columns<QStringList, QString, QStringList, QStringList, QStringList>("masks", "parsed", "takes", "leaves", "forbidden");
        const auto mask = [](const char* name, const QStringList& masks, const char* parsed, const QStringList& takes,
                             const QStringList& leaves, const QStringList& forbidden = {}) {
            row(name, masks, QString(parsed), takes, leaves, forbidden);
        };
        mask("= exact name, any case", {"scontrino.txt", " scontrino.txt "}, "=scontrino.txt", {"scontrino.txt", "SCONTRINO.TXT"},
             {"scontrino.txt.bak", "xscontrino.txt"});
        mask("F ends", {"*.txt"}, "F.txt", {"a.TXT"}, {"a.txt.drev"});
        mask("I begins", {"SCO*", "SCO*.*", "SCO**"}, "ISCO", {"sco1.txt", "SCO.dat"}, {"asco.txt"});
        mask("I star inside", {"ab*cd"}, "Iab", {"abx"}, {});
        mask("C contains", {"*ord*", "a*ord*b"}, "Cord", {"record.txt", "ORDINE"}, {"rec.txt"});
        mask("C third star", {"*.tx*x*"}, "C.tx", {"a.tx"}, {});
        mask("A all", {"*", "*.*", "**", ""}, "A-", {"other.program", "noext", "x"}, {});
        // The last dot decides; a final dot matches an empty slot.
        const QStringList full(kelm::kMaxForbiddenExtensions, QStringLiteral("a"));
        mask("forbidden: one entry", {"*"}, "A-", {"x.tmp.txt", "x.txt", "x.tm", "x.tmpx"}, {"x.tmp", "x.TMP", "x.txt.tmp", "x."},
             {"tmp"});
        mask("forbidden: after empty slots", {"*"}, "A-", {}, {"x.tmp"}, {"exe", "", "", "tmp"});
        mask("forbidden: every slot filled", {"*"}, "A-", {"x."}, {}, full);
        mask("forbidden: past the last slot", {"*"}, "A-", {"x.exe"}, {}, full + QStringList{"exe"});
        mask("forbidden: in the last slot", {"*"}, "A-", {}, {"x.exe"}, full.mid(1) + QStringList{"exe"});
    }
    void fileMask()
    {
        const QStringList& forbidden = fetch<QStringList>("forbidden");
        for (const QString& text : fetch<QStringList>("masks")) {
            const FileMask mask = parseFileMask(text);
            QCOMPARE(static_cast<char>(mask.mode) + logNameAfterMask(mask, QStringLiteral("-")), fetch<QString>("parsed"));
            for (const QString& name : fetch<QStringList>("takes"))
                QVERIFY2(matchesFileMask(mask, name) && !hasForbiddenExtension(name, forbidden), qPrintable(text + " " + name));
            for (const QString& name : fetch<QStringList>("leaves"))
                QVERIFY2(!matchesFileMask(mask, name) || hasForbiddenExtension(name, forbidden), qPrintable(text + " " + name));
        }
    }

    void itemLine_data()
    {
        // options: w wrap, v automatic VAT; then the two description widths. expected "=": left as it came.
        columns<QStringList, QString, int, int, QString, bool>("lines", "options", "first", "second", "expected", "logged");
        const auto item = [](const char* name, const QStringList& lines, const char* options, const QString& expected,
                             bool logged = false, int first = 20, int second = 30) {
            row(name, lines, QString(options), first, second, expected, logged);
        };
        const QString az = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
        item("overflow into empty second", {"3/S/" + az + "//1/5.00/1/4/"}, "w", "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/1/4/");
        item("overflow before second", {"3/S/" + az + "/second/1/5.00/1/4/"}, "w",
             "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ-second/1/5.00/1/4/");
        item("short description only trimmed", {"3/S/  Pane  / integrale /1/1.00/1/4/"}, "w", "3/S/Pane/integrale/1/1.00/1/4/");
        item("exactly the width, no second field", {"3/S/ABCDEFGHIJKLMNOPQRST/" + az + az + "/1/1/1/4/", "3/S/" + az + "/"},
             "w", "=");
        item("wider model takes it whole", {"3/S/" + az + "//1/5.00/1/4/"}, "w", "=", false, 30, 30);
        item("trimmed before measuring", {"3/S/ ABCDEFGHIJKLMNOPQRST //1/5.00/1/4/"}, "w",
             "3/S/ABCDEFGHIJKLMNOPQRST//1/5.00/1/4/");
        item("second cut to its width", {"3/S/" + az + "/second/1/5.00/1/4/"}, "w", "3/S/ABCDEFGHIJ/KLMNOPQRST/1/5.00/1/4/",
             false, 10, 10);
        item("width 0 means 10", {"3/S/ABCDEFGHIJKLMNOP//1/5.00/1/4/"}, "w", "3/S/ABCDEFGHIJ/KLMNOP/1/5.00/1/4/", false, 0, 0);
        item("negative width means 10", {"3/S/" + az + "/second/1/5.00/1/4/"}, "w",
             "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ-sec/1/5.00/1/4/", false, 20, -1);
        item("wrap and VAT off leave it all", {"3/S/ " + az + " //1/5.00/1/4/", "3/S/X//1/1.00/99/4/"}, "", "=");
        item("department 1 is the first entry", {"3/S/REPARTO1//1/5.26/1/4/"}, "v", "3/S/REPARTO1//1/5.26/1/22/");
        item("department 21 with blanks", {"3/R/X//1/1.00/ 21 /0/"}, "v", "3/R/X//1/1.00/ 21 /4/");
        item("department unknown or without a VAT code: left, logged", {"3/S/X//1/1.00/0/4/", "3/S/X//1/1.00/ 22 /4/",
             "3/S/X//1/1.00/x/4/", "3/S/X//1/1.00/3/4/", "3/S/X//1/1.00/2/"}, "v", "=", true);
        item("wrap and VAT", {"3/S/" + az + "//1/5.00/2/4/"}, "wv", "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/2/10/");
        item("wrap kept when the department is unknown", {"3/S/" + az + "//1/5.00/x/4/"}, "wv",
             "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/x/4/", true);
        item("not an item line", {"4/" + az + "///0/0/0//"}, "wv", "=");
    }
    void itemLine()
    {
        ItemLineOptions o;
        o.wrapDescription = fetch<QString>("options").contains(u'w');
        o.alIvaAuto = fetch<QString>("options").contains(u'v');
        o.widths = {fetch<int>("first"), fetch<int>("second")};
        o.vatRates.fill(0);
        o.vatRates[0] = 22;
        o.vatRates[1] = 10;
        o.vatRates[2] = kelm::kUnknownVatRate;
        o.vatRates[20] = 4;
        for (const QString& line : fetch<QStringList>("lines")) {
            const auto result = rewriteItemLine(line, o);
            QCOMPARE(result.line, fetch<QString>("expected") == "=" ? line : fetch<QString>("expected"));
            QVERIFY2(result.logMessage.isEmpty() != fetch<bool>("logged"), qPrintable(line));
            if (line.contains(QStringLiteral("/ 22 /")))
                QVERIFY2(result.logMessage.contains(QStringLiteral("\"22\"")), qPrintable(result.logMessage));
        }
    }

    // Each model, looked up by its name, in one line: name, code, header and footer lines, leading
    // switches, payment types, messages, S flags, departments, PLUs, feature switches, description widths.
    void models()
    {
        QStringList got;
        for (const kelm::technician::ModelInfo& listed : kelm::technician::setupModelli()) {
            const kelm::technician::ModelInfo m = kelm::technician::findModel(listed.name).value();
            const DescriptionWidths widths = kelm::technician::descriptionWidthsFor(listed.name);
            got << QStringLiteral("%1|%2|%3|%4|%5|%6|%7|%8|%9").arg(m.name, m.code).arg(m.headerLines).arg(m.footerLines)
                       .arg(bits(m.leadingSwitches)).arg(m.paymentTypes).arg(m.scrollingMessages).arg(bits(m.sFlagAvailable))
                       .arg(m.departmentLimit)
                    + QStringLiteral("|%1|%2|%3|%4").arg(m.pluLimit).arg(bits(m.featureSwitches)).arg(widths.first)
                          .arg(widths.second);
        }
        const QString flags(26, u'1');
        QCOMPARE(got, (QStringList{"Kelm Brio|QA|12|3|11|9|10|" + flags + "|20|9000|11111111111111|20|30",
                                   "Velt|QC|12|3|11|10|10|" + flags + "|10|1000|11100101001101|30|30",
                                   "|QB|12|3|11|10|10|" + flags + "|10|1000|11100101001101|20|30"}));
        for (const char* name : {"velt", "Velt ", "Nessuno"}) { // another case, a trailing blank, unknown
            const DescriptionWidths widths = kelm::technician::descriptionWidthsFor(name);
            QVERIFY2(!kelm::technician::findModel(name) && widths.first == 0 && widths.second == 0, name);
        }
    }

    // A receipt file's lines as they are dispatched: a final slash added where it lacks one, "-" for a line skipped.
    void splitLines_data()
    {
        columns<QByteArray, QStringList>("bytes", "lines");
        // CR LF, LF, no final line end, lone CR, DOS end-of-file mark
        for (const char* bytes : {"U/\r\n5/1/\r\n", "U/\n5/1/\n", "U/\r\n5/1/", "U/\r5/1/\r", "U/\r\n5/1/\r\n\x1A"})
            QTest::addRow("%s", QByteArray(bytes).toPercentEncoding().constData())
                << QByteArray(bytes) << QStringList{"U/", "5/1/"};
        row("mixed", QByteArray("U/\n3/S/A/\r\n5/1/"), QStringList{"U/", "3/S/A/", "5/1/"});
        row("blank lines kept, skipped", QByteArray("U/\r\n\r\n\n    \r\n5/1/"), QStringList{"U/", "-", "-", "-", "5/1/"});
        row("only a line end", QByteArray("\r\n"), QStringList{"-"});
        row("empty file", QByteArray(), QStringList{});
        row("text after the mark", QByteArray("U/\x1A" "5/1/\r\n"), QStringList{"U/"});
        row("Windows-1252", QByteArray("3/S/Caff\xE8 \x80 1/\r\n"), QStringList{QStringLiteral("3/S/Caffè € 1/")});
        // A trailing blank is not a slash; leading blanks are kept.
        row("slash added", QByteArray("x/7/0/0\r\nU\r\n5/1/ \r\n 3/S/A/ \r\n U/"),
            QStringList{"x/7/0/0/", "U/", "5/1/ /", " 3/S/A/ /", " U/"});
    }
    void splitLines()
    {
        QStringList lines;
        for (const QString& line : splitReceiptLines(fetch<QByteArray>("bytes")))
            lines << normalizeQueueLine(line).value_or(QStringLiteral("-"));
        QTEST(lines, "lines");
    }

    void totalsText_data()
    {
        columns<QString, QString>("answer", "lines"); // lines joined by |, each ends CR LF in the file
        const QString h = QStringLiteral("00/00/01/");
        const QString eleven = "IVA 1 = 1.00|IVA 2 = 2.00|IVA 3 = 3.00|IVA 4 = 4.00|IVA 5 = 5.00|TOTALE VENDITE = 15.00|"
                               "SCONTRINI = 7|NON FISCALI = 2|TOTALE STORNI = 0.50|TOTALE RESI = 1.25|TOTALE ANNULLI = 3.10";
        const QString values = h + "1.00/2.00/3.00/4.00/5.00/15.00/7/2/0.50/1.25/3.10/";
        // empty answer, header only, no slash after the header, short header: no values
        for (const QString& answer : {QString(), h, h + "12.00", QStringLiteral("00/1/2/")})
            QTest::addRow("no values: %s", qPrintable(answer)) << answer << "";
        row("one value", h + "5.00/", "IVA 1 = 5.00");
        row("empty values", h + "//", "IVA 1 = |IVA 2 = ");
        row("open tail ignored", h + "1/2", "IVA 1 = 1");
        row("eleven values", values, eleven);
        row("thirteen values", values + "9.99/8.88/", eleven + "|TOTALE ANNULLI = 3.10|TOTALE ANNULLI = 3.10");
        row("header not read", "01/02/03/4/", "IVA 1 = 4");
        row("Windows-1252", h + "€ 5/", "IVA 1 = € 5");
    }
    void totalsText()
    {
        // Written over an older file, the folder name running into the file name as it always has.
        QTemporaryDir dir;
        QVERIFY(WriteTotals(dir.filePath(QStringLiteral("srv")), QStringLiteral("00/00/01/1.00/2.00/3.00/4.00/5.00/15.00/")));
        QVERIFY(WriteTotals(dir.filePath(QStringLiteral("srv")), fetch<QString>("answer")));
        const QString text = kelm::ansi::decode(readAll(dir.filePath(QStringLiteral("srvTotali.txt"))));
        QVERIFY(text.isEmpty() || text.endsWith(QStringLiteral("\r\n")));
        QTEST(text.chopped(text.isEmpty() ? 0 : 2).replace(QStringLiteral("\r\n"), QStringLiteral("|")), "lines");
        QVERIFY(!WriteTotals(dir.filePath(QStringLiteral("missing/")), fetch<QString>("answer")));
    }

    void logNameHelp()
    {
        const QStringList lines = logNameHelpText().split(u'\r');
        QCOMPARE(lines.size(), 7);
        QCOMPARE(lines.first(), QStringLiteral("Il file di log si trova nella stessa directory degli scontrini del server. "));
        QCOMPARE(lines[5], QStringLiteral("  3) se si e' usata una mascheratura globale '*' allora si chiamerà DREV "));
        QCOMPARE(lines.last(), QStringLiteral("     sempre con postfisso = giorno.log."));
    }

    void logFileName_data()
    {
        columns<QString, QString, QString>("serverDir", "logName", "expected");
        row("separator added", "/var/spool/kelm", "scontrino.tx", "/var/spool/kelm" + kSep + "scontrino.tx 20111222.log");
        row("separator present", "/var/spool/kelm/", "scontrino.tx", "/var/spool/kelm/scontrino.tx 20111222.log");
        row("empty directory", "", "x", "/opt/kelm" + kSep + "x 20111222.log");
        row("one-character directory", "/", "x", "/opt/kelm" + kSep + "x 20111222.log");
        row("two-character directory", "ab", "x", "ab" + kSep + "x 20111222.log");
        row("empty log name", "/srv/", "", "/srv/DREV 20111222.log");
        row("blank log name", "/srv/", "   ", "/srv/DREV 20111222.log");
        row("log name trimmed", "/srv/", " ord ", "/srv/ord 20111222.log");
    }
    void logFileName()
    {
        QTEST(kelm::logFileName(fetch<QString>("serverDir"), fetch<QString>("logName"), kWhen.date(), "/opt/kelm"), "expected");
    }

    void logLine_data()
    {
        columns<QString, QString, QString>("message", "record", "expected");
        const QString stamp = QStringLiteral("2011-12-22 21:07:03 - ");
        const QString r50(50, u'r'), m150(150, u'm');
        row("padded", "Carta finita", "x/", stamp + "x/" + QString(48, u' ') + " - Carta finita" + QString(138, u' '));
        row("cut", m150 + QString(50, u'M'), r50 + "RRR", stamp + r50 + " - " + m150);
        row("exact widths", m150, r50, stamp + r50 + " - " + m150);
        row("empty", "", "", stamp + QString(50, u' ') + " - " + QString(150, u' '));
        row("blanks kept", " a ", " b ", stamp + " b " + QString(47, u' ') + " -  a " + QString(147, u' '));
    }
    void logLine() { QTEST(kelm::logLine(kWhen, fetch<QString>("message"), fetch<QString>("record")), "expected"); }

    void writeLog()
    {
        QTemporaryDir dir;
        QDateTime now = kWhen;
        kelm::RunTimeLog log(dir.path(), [&now] { return now; });
        log.setServerDir(dir.path());
        log.setLogName(QStringLiteral("scontrino.tx"));
        log.WriteLog(QStringLiteral("spento"), QStringLiteral("U/")); // switched off: nothing
        QVERIFY(QDir(dir.path()).isEmpty());
        log.setEnabled(true);
        log.WriteLog(QStringLiteral("Carta finita"), QStringLiteral("3/S/A//1/1/1/4/"));
        log.WriteLog(QStringLiteral("Comando 'x/' - Errore N. 26"), QStringLiteral("x/")); // never logged
        log.WriteLog(QStringLiteral("Perché"), QStringLiteral("5/"));
        // Only a message that ends in 26 is left out.
        for (const char* message : {"Errore N. 126", "26", "Errore N. 26 ", "Errore N. 261", "6", ""})
            log.WriteLog(QString::fromLatin1(message), QStringLiteral("x/"));
        now = now.addDays(1);
        log.WriteLog(QStringLiteral("domani"), QStringLiteral("U/"));
        const QList<QByteArray> lines = readAll(dir.filePath(QStringLiteral("scontrino.tx 20111222.log"))).split('\n');
        QCOMPARE(lines.size(), 7); // six lines and the empty text after the last line end
        QCOMPARE(lines[0], kelm::logLine(kWhen, QStringLiteral("Carta finita"), QStringLiteral("3/S/A//1/1/1/4/")).toLatin1() + '\r');
        // In Windows-1252.
        QCOMPARE(lines[1], kelm::logLine(kWhen, QStringLiteral("Perché"), QStringLiteral("5/")).toLatin1() + '\r');
        QVERIFY(readAll(dir.filePath(QStringLiteral("scontrino.tx 20111223.log"))).contains("domani"));
        // No server folder nor log name: the program's own folder and the default name.
        log.setServerDir(QString());
        log.setLogName(QString());
        log.WriteLog(QStringLiteral("Carta finita"), QStringLiteral("U/"));
        QVERIFY(QFile::exists(dir.filePath(QStringLiteral("DREV 20111223.log"))));
    }


    void entryDetail_data()
    {
        columns<QString, bool, QString, QString>("entry", "coherent", "title", "text");
        const QString toEcr = QStringLiteral("Messaggio Da PC a ECR"), fromEcr = QStringLiteral("Messaggio Da ECR a PC");
        row("as listed", "PC -> ECR : x/7/0/0/", true, toEcr, "x/7/0/0/");
        row("from the ECR", "ECR        : Scontrino non aperto", true, fromEcr, " Scontrino non aperto");
        row("error entry", "ECR-errore :26-Busy, reinvia il comando Ripeto comando", true, fromEcr,
            "26-Busy, reinvia il comando Ripeto comando");
        row("thirteen characters", "PC -> ECR : U", true, toEcr, "U");
        row("twelve characters", "PC -> ECR : ", false, "", "Trasmissione Non Coerente");
    }
    void entryDetail()
    {
        const kelm::RunTimeEntryDetail detail = kelm::runTimeEntryDetail(fetch<QString>("entry"));
        QTEST(detail.coherent, "coherent");
        QTEST(detail.title, "title");
        QTEST(detail.text, "text");
    }

    // A receipt's state and the alert on the status bar. Refused lines are refused with `error` 8 (not fatal) or
    // 42 (fatal), lines not sent were lost to a fatal error.
    void receiptState_data()
    {
        columns<QString, int, int, ReceiptState, ReceiptAlert>("fates", "error", "takenBeforeStart", "state", "alert");
        const auto shown = [](bool fatal, int error) {
            return ReceiptAlert{ReceiptAlert::Kind::Show, QStringLiteral("%1Comando '3/S/X/' - Errore N. %2 - %3")
                                                              .arg(fatal ? "Errore grave: " : "").arg(error).arg(textOf(error))};
        };
        row("one still pending", "aaup", 0, 0, ReceiptState::InProgress, ReceiptAlert{});
        row("all accepted", "aaa", 0, 0, ReceiptState::Printed, ReceiptAlert{ReceiptAlert::Kind::Clear, {}});
        row("a refusal, the rest still pending", "arp", 8, 0, ReceiptState::InProgress, shown(false, 8));
        row("a refusal", "ara", 8, 0, ReceiptState::PrintedWithRefusals, shown(false, 8));
        row("the rest lost with the line", "aan", 0, 0, ReceiptState::PrintedWithRefusals, ReceiptAlert{});
        row("an unknown fate wins", "raua", 8, 0, ReceiptState::Uncertain, shown(false, 8));
        row("nothing reached it", "rsn", 42, 0, ReceiptState::NotPrinted, shown(true, 42));
        row("no lines", "", 0, 0, ReceiptState::NotPrinted, ReceiptAlert{});
        row("a fatal error emptied the queue", "arn", 8, 0, ReceiptState::PrintedWithRefusals, shown(true, 8));
        row("a fatal error on the last line", "ar", 42, 0, ReceiptState::PrintedWithRefusals, shown(true, 42));
        row("an earlier run's receipt", "ar", 8, 1, ReceiptState::PrintedWithRefusals, ReceiptAlert{});
    }
    void receiptState()
    {
        const QDateTime start(QDate(2026, 3, 1), QTime(9, 0));
        ReceiptOutcome receipt;
        receipt.taken = start.addSecs(-fetch<int>("takenBeforeStart"));
        receipt.lines = linesOf(fetch<QString>("fates"));
        for (LineOutcome& line : receipt.lines)
            if (line.fate == LineFate::Refused)
                line = LineOutcome::refused(QStringLiteral("3/S/X/"), QString::number(fetch<int>("error")), textOf(fetch<int>("error")));
            else if (line.fate == LineFate::NotSent)
                line.reason = NotSentReason::FatalError;
        QTEST(receipt.state(), "state");
        QTEST(kelm::service::receiptAlert(receipt, start), "alert");
    }

    void bookKeepsEachReceiptApart()
    {
        QDateTime clock(QDate(2026, 3, 1), QTime(9, 0));
        OutcomeBook book([&] { return clock; });
        book.setIdentity({QStringLiteral("99MEY000123"), {}, {}, {}});
        QSignalSpy changes(&book, &OutcomeBook::changed);
        ReceiptOutcome receipt;
        receipt.id = QStringLiteral("scontrino.txt");
        receipt.lines = linesOf(QStringLiteral("pp"));
        QCOMPARE(book.begin(receipt), QStringLiteral("scontrino.txt"));
        // The same name again before the first is done: kept apart.
        QCOMPARE(book.begin(receipt), QStringLiteral("scontrino.txt.2"));
        book.record({LineOrigin::Source::File, QStringLiteral("scontrino.txt"), 1}, LineOutcome::accepted(QStringLiteral("3/S/A/")));
        book.record({LineOrigin::Source::File, QStringLiteral("scontrino.txt"), 7}, LineOutcome::accepted({}));
        book.record({}, LineOutcome::accepted({}));
        QCOMPARE(book.find(QStringLiteral("scontrino.txt"))->state(), ReceiptState::InProgress);
        QVERIFY(!book.find(QStringLiteral("scontrino.txt"))->finished.isValid());
        clock = clock.addSecs(3);
        book.record({LineOrigin::Source::File, QStringLiteral("scontrino.txt"), 2},
                    LineOutcome::refused(QStringLiteral("5/"), QStringLiteral("17"), QStringLiteral("Chiudere scontrino")));
        const ReceiptOutcome done = *book.find(QStringLiteral("scontrino.txt"));
        QCOMPARE(done.state(), ReceiptState::PrintedWithRefusals);
        QCOMPARE(done.lines.at(1).line, 2);
        QCOMPARE(done.identity.serialNumber, QStringLiteral("99MEY000123"));
        QCOMPARE(done.finished, clock);
        QCOMPARE(done.taken, clock.addSecs(-3));
        // Done: the name is free again.
        QCOMPARE(book.begin(receipt), QStringLiteral("scontrino.txt"));
        QCOMPARE(changes.size(), 5); // three begins, two recorded lines
        QCOMPARE(book.find(QStringLiteral("scontrino.txt.2"))->state(), ReceiptState::InProgress);
    }

    void answerTextReadsBackWhatItWrote()
    {
        ReceiptOutcome receipt;
        receipt.id = QStringLiteral("vendita è.txt");
        receipt.identity = {QStringLiteral("99MEY000123"), QStringLiteral("0001"), QStringLiteral("KB"), QStringLiteral("1.2")};
        receipt.taken = QDateTime(QDate(2026, 3, 1), QTime(9, 0, 1));
        receipt.lines = {LineOutcome::accepted(QStringLiteral("3/S/CAFFÈ=1//1/1.00/1/4/")),
                         LineOutcome::refused(QStringLiteral("3/S/X//1/1.00/99/4/"), QStringLiteral("8"),
                                              QStringLiteral("Il reparto non esiste")),
                         LineOutcome::skipped(QStringLiteral("x/7/0/0/"), QStringLiteral("Scontrino aperto")),
                         LineOutcome::notSent(QStringLiteral("5/1/0.00/////"), NotSentReason::FatalError),
                         LineOutcome::uncertain(QStringLiteral("3/S/Y//1/1.00/1/4/")), LineOutcome::pending(9, QStringLiteral("5/"))};
        for (int i = 0; i < 5; ++i)
            receipt.lines[i].line = i + 1;
        const QByteArray text = answerText(receipt);
        QVERIFY(text.contains("[Riga 2]\r\nRecord=3/S/X//1/1.00/99/4/\r\nEsito=rifiutata\r\nErrore=8\r\n"));
        QVERIFY(text.contains("\xC8")); // Windows-1252
        const std::optional<ReceiptOutcome> back = parseAnswerText(text);
        QVERIFY(back);
        QCOMPARE(back->id, receipt.id);
        QCOMPARE(back->taken, receipt.taken);
        QCOMPARE(back->identity.firmware, receipt.identity.firmware);
        QCOMPARE(back->lines, receipt.lines);
        QVERIFY(!parseAnswerText("Stato=stampato\r\n"));
    }

    void pendingLinesKeepTheirOrigin()
    {
        QTemporaryDir dir;
        const QString path = pendingQueuePath(dir.path());
        const QList<QueuedLine> lines{{QStringLiteral("3/S/A\tB//1/1.00/1/4/"), {LineOrigin::Source::File, QStringLiteral("a.txt"), 3}},
                                      {QStringLiteral("5/"), {LineOrigin::Source::Request, QStringLiteral("r-7"), 1}},
                                      {QStringLiteral("x/7/0/0/")}};
        QVERIFY(savePendingQueue(path, lines));
        QCOMPARE(takePendingQueue(path), lines);
        QVERIFY(!QFile::exists(path));
        QFile old(path); // left by an older version: bare lines
        QVERIFY(old.open(QIODevice::WriteOnly));
        old.write("3/S/A\tB//1/1.00/1/4/\r\n5/\r\n");
        old.close();
        QCOMPARE(takePendingQueue(path), (QList<QueuedLine>{{QStringLiteral("3/S/A\tB//1/1.00/1/4/")}, {QStringLiteral("5/")}}));
    }

    void answerFilesFollowTheBook()
    {
        QTemporaryDir dir;
        QCOMPARE(AnswerFiles::folderFor(QStringLiteral("off"), dir.path() + u'/'), QString());
        const QString folder = AnswerFiles::folderFor(QString(), dir.path() + u'/');
        QCOMPARE(folder, dir.path() + QStringLiteral("/esiti"));
        QCOMPARE(AnswerFiles::folderFor(dir.path(), dir.path() + u'/'), folder); // never the spool itself
        const auto stateOf = [&](const QString& name) {
            return parseAnswerText(readAll(QDir(folder).filePath(name))).value_or(ReceiptOutcome()).state();
        };
        {
            OutcomeBook book;
            AnswerFiles files(book, folder, 7);
            ReceiptOutcome receipt;
            receipt.id = QStringLiteral("a.txt");
            receipt.lines = linesOf(QStringLiteral("pp"));
            book.begin(receipt);
            QCOMPARE(stateOf(QStringLiteral("a.txt")), ReceiptState::InProgress);
            book.record({LineOrigin::Source::File, QStringLiteral("a.txt"), 1}, LineOutcome::accepted({}));
            receipt.id = QStringLiteral("old.txt");
            book.begin(receipt);
            QFile old(QDir(folder).filePath(QStringLiteral("old.txt")));
            QVERIFY(old.open(QIODevice::ReadWrite));
            old.setFileTime(QDateTime::currentDateTime().addDays(-8), QFileDevice::FileModificationTime);
            old.close();
            files.flush(); // the rewrite that waited, and the sweep
            QVERIFY(!old.exists());
        }
        // After a restart the receipt in progress is back, and is finished.
        OutcomeBook book;
        AnswerFiles files(book, folder, 7);
        files.restore();
        QCOMPARE(book.ids(), QStringList{QStringLiteral("a.txt")});
        QCOMPARE(book.find(QStringLiteral("a.txt"))->lines.at(0).fate, LineFate::Accepted);
        book.record({LineOrigin::Source::File, QStringLiteral("a.txt"), 2}, LineOutcome::accepted({}));
        QCOMPARE(stateOf(QStringLiteral("a.txt")), ReceiptState::Printed);
    }
};

QTEST_GUILESS_MAIN(TestServer)
#include "tst_server.moc"
