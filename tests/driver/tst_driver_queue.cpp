// Receipt lines through the queue to the virtual register: what reaches it,
// in order and as rewritten, and what is refused with which texts.
#include "DriverRig.h"

#include <QTest>

using namespace kelm;

class QueueTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void dispatch_data();
    void dispatch();
    void receiptOpenCarriesOverToTheNextFile();
    void rewriteReachesTheRegister_data();
    void rewriteReachesTheRegister();
    void unknownDepartmentIsSentUnchangedAndLogged();
    void snapshotFile();
    void busyRegisterGetsTheRecordOnce();
};

void QueueTest::dispatch_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("journal");   // what the register carried out
    QTest::addColumn<QStringList>("left");      // still queued afterwards
    QTest::addColumn<QString>("runTime");       // an entry that must be listed
    QTest::addColumn<QString>("log");           // a message that must be logged
    QTest::addColumn<bool>("receiptOpen");
    QTest::addColumn<QString>("fates"); // per non-blank line: a accepted, r refused, s skipped, p pending

    const QString item = QStringLiteral("3/S/REPARTO1//1/5.26/1/4/");
    const QString pay = QStringLiteral("5/1/0.00/////");

    QTest::newRow("a whole receipt") << QStringList{item, item, pay} << QStringList{item, item, pay}
                                     << QStringList{} << "PC -> ECR : " + pay << "" << false << "aaa";
    QTest::newRow("closure refused inside a receipt, payment sent")
        << QStringList{item, "x/7/0/0/", pay} << QStringList{item, pay} << QStringList{}
        << "ECR        : Comando non gestito con scontrino aperto"
        << "\"x/\" - Comando non gestito con scontrino aperto !" << false << "asa";
    QTest::newRow("closure after the payment is sent")
        << QStringList{item, pay, "x/7/0/0/"} << QStringList{item, pay, "x/7/0/0/"} << QStringList{}
        << "" << "" << false << "aaa";
    QTest::newRow("in-receipt command with no receipt")
        << QStringList{"+/1/"} << QStringList{} << QStringList{} << "ECR        : Scontrino non aperto" << ""
        << false << "s";
    QTest::newRow("unknown key stops the queue, the rest stays")
        << QStringList{item, "Z/1/", pay} << QStringList{item} << QStringList{pay}
        << "ECR        : Comando Z/ non gestito." << "\"Z/\" - Comando non gestito !" << true << "asp";
    QTest::newRow("only two records of the ) family")
        << QStringList{")/7/", ")/5/"} << QStringList{} << QStringList{")/5/"}
        << "ECR        : Comando )/ non gestito." << "\")/\" - Comando non gestito !" << false << "sp";
    QTest::newRow("missing final slash is added") << QStringList{"x/7/0/0"} << QStringList{"x/7/0/0/"}
                                                  << QStringList{} << "PC -> ECR : x/7/0/0" << "" << false << "a";
    QTest::newRow("blank lines are listed and skipped")
        << QStringList{"   ", "", item, pay} << QStringList{item, pay} << QStringList{} << "PC -> ECR :    "
        << "" << false << "aa";
    QTest::newRow("customer block gets nine fields and 0")
        << QStringList{"j/A/B/"} << QStringList{"j/A/////////0/"} << QStringList{} << "" << ""
        << true << "a";
    QTest::newRow("refused item: listed, logged, receipt goes on")
        << QStringList{"3/S/X//1/1.00/99/4/", item, pay} << QStringList{item, pay} << QStringList{}
        << "" << "Il reparto non esiste" << false << "raa";
}

void QueueTest::dispatch()
{
    QFETCH(QStringList, lines);
    QFETCH(QStringList, journal);
    QFETCH(QStringList, left);
    QFETCH(QString, runTime);
    QFETCH(QString, log);
    QFETCH(bool, receiptOpen);
    QFETCH(QString, fates);

    DriverRig rig;
    server::OutcomeBook book;
    rig.server().setOutcomeBook(&book);
    rig.server().enqueue(server::LineOrigin::Source::File, QStringLiteral("scontrino.txt"), lines);
    rig.server().ProcessReceiptQueue();
    QCOMPARE(rig.journal(), journal);
    QCOMPARE(server::queueTexts(rig.server().queue), left);
    QString seen;
    const server::ReceiptOutcome receipt = *book.find(QStringLiteral("scontrino.txt"));
    for (const server::LineOutcome& line : receipt.lines)
        seen += QStringLiteral("parsnu").at(int(line.fate));
    QCOMPARE(seen, fates);
    if (!runTime.isEmpty())
        QVERIFY2(rig.op.runTime.contains(runTime), qPrintable(rig.op.runTime.join(u'\n')));
    if (!log.isEmpty())
        QVERIFY2(rig.logMessages().contains(log), qPrintable(rig.logMessages().join(u'\n')));
    QCOMPARE(bool(rig.server().ReceiptOpen), receiptOpen);
}

void QueueTest::receiptOpenCarriesOverToTheNextFile()
{
    DriverRig rig;
    rig.server().queue = {QStringLiteral("3/S/REPARTO1//1/5.26/1/4/")};
    rig.server().ProcessReceiptQueue();
    QVERIFY(rig.server().ReceiptOpen);
    rig.server().queue = {QStringLiteral("x/7/0/0/"), QStringLiteral("5/1/0.00/////"), QStringLiteral("x/7/0/0/")};
    rig.server().ProcessReceiptQueue();
    QCOMPARE(rig.journal(), (QStringList{"3/S/REPARTO1//1/5.26/1/4/", "5/1/0.00/////", "x/7/0/0/"}));
}

void QueueTest::rewriteReachesTheRegister_data()
{
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<bool>("vat");
    QTest::addColumn<int>("width1");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("sent");
    QTest::newRow("long description wraps") << true << false << 20
                                            << "3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/"
                                            << "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/1/4/";
    QTest::newRow("wrap joins the second description") << true << false << 20
                                                        << "3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/second/1/5.00/1/4/"
                                                        << "3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ-second/1/5.00/1/4/";
    QTest::newRow("wrap off sends it as it came") << false << false << 20
                                                  << "3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/"
                                                  << "3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/";
    QTest::newRow("VAT code from the department's rate") << false << true << 20
                                                          << "3/S/REPARTO2//1/25.88/2/4/"
                                                          << "3/S/REPARTO2//1/25.88/2/10/";
}

void QueueTest::rewriteReachesTheRegister()
{
    QFETCH(bool, wrap);
    QFETCH(bool, vat);
    QFETCH(int, width1);
    QFETCH(QString, line);
    QFETCH(QString, sent);
    DriverRig rig;
    rig.settings.itemLines.wrapDescription = wrap;
    rig.settings.itemLines.alIvaAuto = vat;
    rig.settings.itemLines.widths = {width1, 30};
    rig.settings.itemLines.vatRates[1] = 10;
    rig.server().queue = {line};
    rig.server().ProcessReceiptQueue();
    QCOMPARE(rig.journal(), QStringList{sent});
}

void QueueTest::unknownDepartmentIsSentUnchangedAndLogged()
{
    DriverRig rig;
    rig.settings.itemLines.alIvaAuto = true;
    rig.server().queue = {QStringLiteral("3/S/X//1/1.00/22/4/")};
    rig.server().ProcessReceiptQueue();
    // Sent as it came (the register then refuses department 22 itself).
    const QStringList log = rig.logMessages();
    QCOMPARE(log.size(), 2);
    QVERIFY(log[0].contains(QStringLiteral("\"22\"")));
    QCOMPARE(log[1], QStringLiteral("Il reparto non esiste"));
}

void QueueTest::snapshotFile()
{
    DriverRig rig;
    const QString path = rig.spoolFile(QStringLiteral("99KDV00000120261121.FMN"));
    for (int round = 0; round < 2; ++round) { // a second "t0" the same day replaces the file
        rig.server().queue = {QStringLiteral("t0")};
        rig.server().ProcessReceiptQueue();
    }
    QFile f(path);
    QVERIFY(f.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = f.readAll().split('\n');
    QCOMPARE(lines.size(), 5); // four lines, each ended by CR LF
    const char* tags[] = {"<t>00/", "<0>00/", "<9>00/", "<X>00/"};
    for (int i = 0; i < 4; ++i) {
        QVERIFY2(lines[i].startsWith(tags[i]), lines[i].constData());
        QVERIFY(lines[i].endsWith('\r'));
    }
    QVERIFY(!rig.journal().contains(QStringLiteral("t0/")));
}

void QueueTest::busyRegisterGetsTheRecordOnce()
{
    DriverRig rig;
    QCOMPARE(rig.ecr.applyFault(QStringLiteral("busy 3"), 0), QString());
    rig.server().queue = {QStringLiteral("3/S/REPARTO1//1/5.26/1/4/"), QStringLiteral("5/1/0.00/////")};
    rig.server().ProcessReceiptQueue();
    QCOMPARE(rig.journal(), (QStringList{"3/S/REPARTO1//1/5.26/1/4/", "5/1/0.00/////"}));
    QCOMPARE(rig.op.runTime.filter(QStringLiteral("Ripeto comando")).size(), 3);
    QCOMPARE(rig.logMessages(), QStringList(3, QStringLiteral("Busy, reinvia il comando")));
}

QTEST_GUILESS_MAIN(QueueTest)
#include "tst_driver_queue.moc"
