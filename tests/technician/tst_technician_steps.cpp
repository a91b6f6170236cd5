// Key presses and document completions run against registers in virtual
// time: what reaches the line, in order, and what the display shows.
#include "LineScript.h"
#include "RecordingOperator.h"
#include "RecordingStatus.h"
#include "link/Clock.h"
#include "link/VirtualLinePort.h"
#include "sim/VirtualEcr.h"
#include "technician/DocumentDesk.h"
#include "technician/StepRunner.h"
#include "technician/VirtualKeyboard.h"

#include <QTest>

using namespace kelm;
using namespace kelm::technician;

namespace {

// The forms as a person fills them: each OK with the next entry.
struct FilledForms final : DocumentForms {
    void customer(FiscalDocuments& d) override { customerButton(d, kAcceptButton, customers.takeFirst()); }
    void creditNote(FiscalDocuments& d) override
    {
        creditNoteButton(d, kAcceptButton, QStringLiteral("123-2010"), QStringLiteral("rif. 5"));
    }
    void piCf(FiscalDocuments& d) override { piCfButton(d, kAcceptButton, QStringLiteral("01234567897")); }
    QList<CustomerEntry> customers;
};

struct Register {
    explicit Register(qint64 answerDelayMs = 5)
        : ecr([answerDelayMs] {
              sim::VirtualEcrOptions options;
              options.answerDelayMs = answerDelayMs;
              return options;
          }()),
          tap(ecr), port(tap, clock), link(port, clock)
    {
        port.open(QStringLiteral("virtual"), 9600);
    }
    StepOutcome press(int index) { return desk.keyPress(link, op, index); }
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
    RecordingOperator op;
    DocumentDesk desk;
    FilledForms forms;
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
    void displayReadThreeTimesAtMost();
    void invoicesOnASlowRegister();
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

void StepsTest::invoicesOnASlowRegister()
{
    // A register that takes 1.5 s over every answer: each invoice still
    // carries its own customer, between its opening and its payment.
    Register ecr(1500);
    const QStringList vat = {QStringLiteral("01234567897"), QStringLiteral("09876543210")};
    for (const QString& v : vat)
        ecr.forms.customers << CustomerEntry{v, {"CLIENTE " + v, "VIA ROMA 1", "00100 ROMA", "", "", ""}};
    for (int invoice = 0; invoice < 2; ++invoice) {
        ecr.desk.invoice(ecr.link, ecr.op, ecr.forms);
        ecr.press(keyIndex("5"));
        ecr.press(keyIndex("REP-01"));
        ecr.press(kCashKeyIndex);
    }
    QVERIFY(!ecr.desk.documents().CustomerSet);
    QStringList expected;
    for (const QString& v : vat)
        expected << "3/F/OPENFAT//0/0/0/0/" << ")/46/" << ")/5/" << "'/1/" + v + "/1111111111111111/"
                 << "j/CLIENTE " + v + "/VIA ROMA 1/00100 ROMA///////0/" << "5/1/0////";
    const QStringList j = ecr.journal().filter(QRegularExpression(QStringLiteral("^[^(]")));
    QCOMPARE(j, expected); // the invoice is paid by its record, not the cash key
    QVERIFY(ecr.clock.nowMs() > 12 * 1500);
}

void StepsTest::creditNoteSendsTheCashKeyTwice()
{
    Register ecr;
    ecr.desk.creditNote(ecr.link, ecr.op, ecr.forms);
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
    QVERIFY(!ecr.desk.documents().CreditNoteSet);
}

QTEST_GUILESS_MAIN(StepsTest)
#include "tst_technician_steps.moc"
