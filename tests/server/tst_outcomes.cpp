#include "server/OutcomeBook.h"

#include <QSignalSpy>
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
};

QTEST_GUILESS_MAIN(TestOutcomes)
#include "tst_outcomes.moc"
