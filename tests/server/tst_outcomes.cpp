#include "server/AnswerFiles.h"
#include "server/AnswerText.h"
#include "server/OutcomeBook.h"
#include "server/PendingQueue.h"
#include "service/ReceiptAlert.h"

#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm::server;

namespace {

// One letter per line: p pending, a accepted, r refused, s skipped,
// n not sent, u uncertain.
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

} // namespace

class TestOutcomes : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void stateFollowsTheLines_data()
    {
        QTest::addColumn<QString>("fates");
        QTest::addColumn<ReceiptState>("state");
        QTest::newRow("one still pending") << "aaup" << ReceiptState::InProgress;
        QTest::newRow("all accepted") << "aaa" << ReceiptState::Printed;
        QTest::newRow("a refusal") << "ara" << ReceiptState::PrintedWithRefusals;
        QTest::newRow("the rest lost with the line") << "aan" << ReceiptState::PrintedWithRefusals;
        QTest::newRow("an unknown fate wins") << "raua" << ReceiptState::Uncertain;
        QTest::newRow("nothing reached it") << "rsn" << ReceiptState::NotPrinted;
        QTest::newRow("no lines") << "" << ReceiptState::NotPrinted;
    }
    void stateFollowsTheLines()
    {
        QFETCH(QString, fates);
        QFETCH(ReceiptState, state);
        QCOMPARE(receiptState(linesOf(fates)), state);
        QCOMPARE(stateFromName(stateName(state)), state);
    }

    void statusBarAlert_data()
    {
        QTest::addColumn<QString>("fates"); // a refused line is refused with `error` and `message`
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("takenBeforeStart");
        QTest::addColumn<kelm::service::ReceiptAlert>("alert");
        using kelm::service::ReceiptAlert;
        const QString refusal = QStringLiteral("Comando '3/S/X/' - Errore N. %1 - %2");
        const QString department = QStringLiteral("Il reparto non esiste");
        const QString keyboard = QStringLiteral("Errore tastiera - Tastiera scollegata");
        QTest::newRow("in progress") << "ap" << "" << "" << 0 << ReceiptAlert{};
        QTest::newRow("went through") << "aa" << "" << "" << 0 << ReceiptAlert{ReceiptAlert::Kind::Clear, {}};
        QTest::newRow("a refusal with the register's text")
            << "arp" << "8" << department << 0 << ReceiptAlert{ReceiptAlert::Kind::Show, refusal.arg(8).arg(department)};
        QTest::newRow("a fatal error emptied the queue") << "arn" << "42" << keyboard << 0
            << ReceiptAlert{ReceiptAlert::Kind::Show, "Errore grave: " + refusal.arg(42).arg(keyboard)};
        QTest::newRow("a fatal error on the last line") << "ar" << "42" << keyboard << 0
            << ReceiptAlert{ReceiptAlert::Kind::Show, "Errore grave: " + refusal.arg(42).arg(keyboard)};
        QTest::newRow("an earlier run's receipt") << "ar" << "8" << department << 1 << ReceiptAlert{};
    }
    void statusBarAlert()
    {
        QFETCH(QString, fates);
        QFETCH(QString, error);
        QFETCH(QString, message);
        QFETCH(int, takenBeforeStart);
        QFETCH(kelm::service::ReceiptAlert, alert);
        const QDateTime start(QDate(2026, 3, 1), QTime(9, 0));
        ReceiptOutcome receipt;
        receipt.taken = start.addSecs(-takenBeforeStart);
        receipt.lines = linesOf(fates);
        for (LineOutcome& line : receipt.lines)
            if (line.fate == LineFate::Refused)
                line = LineOutcome::refused(QStringLiteral("3/S/X/"), error, message);
            else if (line.fate == LineFate::NotSent)
                line.reason = NotSentReason::FatalError;
        QCOMPARE(kelm::service::receiptAlert(receipt, start), alert);
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

        const LineOrigin first{LineOrigin::Source::File, QStringLiteral("scontrino.txt"), 1};
        book.record(first, LineOutcome::accepted(QStringLiteral("3/S/A/")));
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
                         LineOutcome::uncertain(QStringLiteral("3/S/Y//1/1.00/1/4/")),
                         LineOutcome::pending(9, QStringLiteral("5/"))};
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
        // Left by an older version: bare lines.
        QFile old(path);
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
            QFile f(QDir(folder).filePath(name));
            return f.open(QIODevice::ReadOnly) ? parseAnswerText(f.readAll())->state() : ReceiptState::NotPrinted;
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

QTEST_GUILESS_MAIN(TestOutcomes)
#include "tst_outcomes.moc"
