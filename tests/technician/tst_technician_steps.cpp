// Key presses and document completions run against registers in virtual
// time: what reaches the line, in order, and what the display shows.
#include "LineScript.h"
#include "RecordingStatus.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "sim/VirtualEcr.h"
#include "technician/DocumentCompletion.h"
#include "technician/FiscalDocuments.h"
#include "technician/StepRunner.h"
#include "technician/VirtualKeyboard.h"

#include <QTest>

using namespace kelm;
using namespace kelm::technician;

namespace {

struct Register {
    Register() : tap(ecr), port(tap, clock), link(port, clock) { port.open(QStringLiteral("virtual"), 9600); }
    StepOutcome press(int index)
    {
        return runSteps(link, status, keyPressSteps(index, documents));
    }
    QStringList journal() const
    {
        QStringList out;
        for (const QByteArray& l : ecr.journal())
            out << QString::fromLatin1(l);
        return out;
    }
    sim::VirtualEcr ecr;
    WireTap tap;
    VirtualClock clock;
    VirtualLinePort port;
    EcrLink link;
    RecordingStatus status;
    FiscalDocuments documents;
};

int keyIndex(const QString& caption)
{
    for (const EcrKey& k : ecrKeys())
        if (k.caption == caption)
            return k.index;
    return -1;
}

} // namespace

class StepsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void keysOnTheWire_data();
    void keysOnTheWire();
    void saleShowsOnTheDisplay();
    void displayReadThreeTimesAtMost();
    void invoiceCompletedOnTheCashKey();
    void creditNoteSendsTheCashKeyTwice();
};

void StepsTest::keysOnTheWire_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QStringList>("records"); // frames the PC sent, display reads included
    QTest::addColumn<qint64>("pauses");       // virtual ms at least
    QTest::newRow("SC €") << QStringLiteral("SC \u20AC") << QStringList{")/67/", ")/22/", ")/90/", "(/"} << qint64(300);
    QTest::newRow("00 is 0 twice") << "00" << QStringList{")/69/", ")/69/", "(/"} << qint64(200);
    QTest::newRow("Altro (Tot4)") << "Altro (Tot4)" << QStringList{")/58/", ")/37/", ")/90/", "(/"} << qint64(300);
    QTest::newRow("PLU waits longer") << "PLU" << QStringList{")/51/", "(/"} << qint64(300);
    QTest::newRow("a digit") << "7" << QStringList{")/61/", "(/"} << qint64(100);
}

void StepsTest::keysOnTheWire()
{
    QFETCH(QString, caption);
    QFETCH(QStringList, records);
    QFETCH(qint64, pauses);
    ScriptedPeer peer;
    peer.enqDefault = QStringLiteral("<ACK>");
    for (int i = 0; i < 10; ++i)
        peer.frameReplies << QStringLiteral("<ACK><STX>00/00/01/%1/<ETX>").arg(QString(34, u' '));
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("t"), 9600));
    EcrLink link(port, clock);
    RecordingStatus status;
    FiscalDocuments documents;
    const int index = keyIndex(caption);
    QVERIFY(index >= 0);
    runSteps(link, status, keyPressSteps(index, documents));
    QCOMPARE(peer.records(), records);
    QVERIFY(clock.nowMs() >= pauses);
}

void StepsTest::saleShowsOnTheDisplay()
{
    Register ecr;
    ecr.press(keyIndex("5"));
    const StepOutcome after = ecr.press(keyIndex("REP-01"));
    QVERIFY(after.display);
    QVERIFY2(after.display->line1.contains(QStringLiteral("5")), qPrintable(after.display->line1));
    QVERIFY(!displayReadsZero(after.display->line1));
    QCOMPARE(after.display->line1.size(), 16);
}

void StepsTest::displayReadThreeTimesAtMost()
{
    ScriptedPeer peer;
    peer.enqDefault = QStringLiteral("<ACK>");
    const QString shortDisplay = QStringLiteral("<ACK><STX>00/00/01/%1<ETX>").arg(QString(33, u'x')); // 42 chars
    peer.frameReplies = {QStringLiteral("<ACK><STX>00/00/01/x/<ETX>"), shortDisplay, shortDisplay, shortDisplay,
                         shortDisplay};
    VirtualClock clock;
    VirtualLinePort port(peer, clock);
    QVERIFY(port.open(QStringLiteral("t"), 9600));
    EcrLink link(port, clock);
    RecordingStatus status;
    FiscalDocuments documents;
    const StepOutcome out = runSteps(link, status, keyPressSteps(keyIndex("7"), documents));
    QCOMPARE(peer.records(), (QStringList{")/61/", "(/", "(/", "(/"}));
    QVERIFY(!out.display); // the display keeps what it showed
}

void StepsTest::invoiceCompletedOnTheCashKey()
{
    Register ecr;
    QVERIFY(!customerButton(ecr.documents, kAcceptButton,
                            {QStringLiteral("01234567897"), {"ROSSI SRL", "VIA ROMA 1", "00100 ROMA", "", "", ""}}));
    const StepOutcome opened = runSteps(ecr.link, ecr.status, invoiceOpeningSteps(ecr.documents));
    invoiceOpened(ecr.documents, opened.lastResult);
    ecr.press(keyIndex("5"));
    ecr.press(keyIndex("REP-01"));
    ecr.press(kCashKeyIndex);
    QVERIFY(!ecr.documents.CustomerSet);
    const QStringList j = ecr.journal();
    const qsizetype open = j.indexOf(QStringLiteral("3/F/OPENFAT//0/0/0/0/"));
    const qsizetype pi = j.indexOf(QStringLiteral("'/1/01234567897/1111111111111111/"));
    const qsizetype customer = j.indexOf(QStringLiteral("j/ROSSI SRL/VIA ROMA 1/00100 ROMA///////0/"));
    const qsizetype pay = j.indexOf(QStringLiteral("5/1/0////"));
    QVERIFY2(open >= 0 && open < pi && pi < customer && customer < pay, qPrintable(j.join(u'|')));
    QVERIFY(!j.contains(QStringLiteral(")/90/"))); // the invoice is paid by its record, not the key
}

void StepsTest::creditNoteSendsTheCashKeyTwice()
{
    Register ecr;
    creditNoteButton(ecr.documents, kAcceptButton, QStringLiteral("123-2010"), QStringLiteral("rif. 5"));
    runSteps(ecr.link, ecr.status, creditNoteOpeningSteps(ecr.documents));
    ecr.press(keyIndex("5"));
    ecr.press(keyIndex("REP-01"));
    ecr.press(kCashKeyIndex);
    const QStringList wire = ecr.tap.records();
    const qsizetype note = wire.indexOf(QStringLiteral("-/123-2010/"));
    const qsizetype firstCash = wire.indexOf(QStringLiteral(")/90/"));
    const qsizetype ref = wire.indexOf(QStringLiteral("7/1/1/rif. 5/"));
    const qsizetype secondCash = wire.lastIndexOf(QStringLiteral(")/90/"));
    QVERIFY2(note >= 0 && note < firstCash && firstCash < ref && ref < secondCash, qPrintable(wire.join(u'|')));
    QCOMPARE(wire.count(QStringLiteral(")/90/")), 2);
    QVERIFY(!ecr.documents.CreditNoteSet);
}

QTEST_GUILESS_MAIN(StepsTest)
#include "tst_technician_steps.moc"
