#include "server/CommandTable.h"

#include <QTest>

using kelm::server::CommandAction;
using kelm::server::CommandDecision;

class TestCommandTable : public QObject {
    Q_OBJECT

private slots:
    void decideCommand_data();
    void decideCommand();
    void receiptFlagCarriesAcrossLines();
    void normalizeCustomerRecord_data();
    void normalizeCustomerRecord();
};

namespace {

const QString kCustomerSample =
    QStringLiteral("j//INTESTAZIONE CLIENTE/VIA  _______ N.3/00100 CITTANOVA (XX)//////0/");

} // namespace

void TestCommandTable::decideCommand_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("openBefore");
    QTest::addColumn<CommandAction>("action");
    QTest::addColumn<QString>("record");
    QTest::addColumn<bool>("openAfter");
    QTest::addColumn<QString>("runTimeEntry");
    QTest::addColumn<QString>("logMessage");

    const auto send = [](const char* name, const QString& line, bool before, bool after) {
        QTest::newRow(name) << line << before << CommandAction::Send << line << after << QString()
                            << QString();
    };
    // Records that open a receipt.
    send("U/ opens", QStringLiteral("U/"), false, true);
    send("2/ opens", QStringLiteral("2/A/"), false, true);
    send("3/ opens", QStringLiteral("3/S/REPARTO1//1/5.26/1/4/"), false, true);
    send("4/ opens", QStringLiteral("4/10.00///0/0/0//"), false, true);
    send("-/ opens", QStringLiteral("-/123-2010/"), false, true);
    // The payment closes it.
    send("5/ closes", QStringLiteral("5/1/0.00/////"), true, false);
    send("5/ with none open", QStringLiteral("5/1/0.00/////"), false, false);
    // Passed through, the flag untouched either way.
    send("W/ open", QStringLiteral("W/"), true, true);
    send("7/ closed", QStringLiteral("7/0/1/##PROMEMORIA##/"), false, false);
    send("'/ open", QStringLiteral("'/1/01234567897/1111111111111111/"), true, true);
    send("[/ closed", QStringLiteral("[/"), false, false);
    send("w/ open", QStringLiteral("w/1/1//"), true, true);
    send("q/ closed", QStringLiteral("q/"), false, false);
    send("m/ open", QStringLiteral("m//"), true, true);
    send("0/ closed", QStringLiteral("0/"), false, false);
    send(")/5/ closed", QStringLiteral(")/5/"), false, false);
    send(")/120/ open", QStringLiteral(")/120/"), true, true);
    // Only inside a receipt.
    send("+/ open", QStringLiteral("+/1/"), true, true);
    QTest::newRow("+/ with no receipt") << QStringLiteral("+/1/") << false << CommandAction::Skip << QString()
                                        << false << QStringLiteral("ECR        : Scontrino non aperto")
                                        << QString();
    // Only outside a receipt.
    send("x/ closed", QStringLiteral("x/7/0/0/"), false, false);
    send("6/ closed", QStringLiteral("6/"), false, false);
    for (const char* key : {"x/", "6/", "B/", "G/"}) {
        const QString k = QString::fromLatin1(key);
        QTest::addRow("%s in a receipt", key)
            << k + QStringLiteral("7/0/0/") << true << CommandAction::Skip << QString() << true
            << QStringLiteral("ECR        : Comando non gestito con scontrino aperto")
            << u'"' + k + QStringLiteral("\" - Comando non gestito con scontrino aperto !");
    }
    // Answered by the PC itself.
    QTest::newRow("t0") << QStringLiteral("t0/") << true << CommandAction::WriteSnapshot << QString() << true
                        << QString() << QString();
    QTest::newRow("t0 with more") << QStringLiteral("t0x/1/") << false << CommandAction::WriteSnapshot
                                  << QString() << false << QString() << QString();
    // Customer block: normalised on the way.
    QTest::newRow("j/ short") << QStringLiteral("j/A/B/") << false << CommandAction::Send
                              << QStringLiteral("j/A/////////0/") << true << QString() << QString();
    send("j/ well formed", kCustomerSample, false, true);
    // Not handled: the queue stops.
    const auto stop = [](const char* name, const QString& line, const QString& key, bool open) {
        QTest::newRow(name) << line << open << CommandAction::StopQueue << QString() << open
                            << QStringLiteral("ECR        : Comando ") + key + QStringLiteral(" non gestito.")
                            << u'"' + key + QStringLiteral("\" - Comando non gestito !");
    };
    stop("other ) record", QStringLiteral(")/7/"), QStringLiteral(")/"), false);
    stop(") prefix of an accepted one", QStringLiteral(")/50/"), QStringLiteral(")/"), true);
    stop("upper-case X", QStringLiteral("X/"), QStringLiteral("X/"), false);
    stop("t/ is not t0", QStringLiteral("t/"), QStringLiteral("t/"), true);
    stop("unknown code", QStringLiteral("Z/1/"), QStringLiteral("Z/"), false);
    stop("leading blank", QStringLiteral(" 3/S/A//1/1/1/1/"), QStringLiteral(" 3"), false);
    stop("code without its slash", QStringLiteral("33/"), QStringLiteral("33"), false);
}

void TestCommandTable::decideCommand()
{
    QFETCH(QString, line);
    QFETCH(bool, openBefore);

    const CommandDecision d = kelm::server::decideCommand(line, openBefore);

    QTEST(d.action, "action");
    QTEST(d.record, "record");
    QTEST(d.receiptOpen, "openAfter");
    QTEST(d.runTimeEntry, "runTimeEntry");
    QTEST(d.logMessage, "logMessage");
}

void TestCommandTable::receiptFlagCarriesAcrossLines()
{
    // One file leaves a receipt open; the next file's closure is refused
    // until a payment has closed it.
    bool open = false;
    for (const char* line : {"U/", "3/S/REPARTO1//1/5.26/1/4/"})
        open = kelm::server::decideCommand(QString::fromLatin1(line), open).receiptOpen;
    QCOMPARE(kelm::server::decideCommand(QStringLiteral("x/7/0/0/"), open).action, CommandAction::Skip);
    open = kelm::server::decideCommand(QStringLiteral("5/1/0.00/////"), open).receiptOpen;
    QCOMPARE(kelm::server::decideCommand(QStringLiteral("x/7/0/0/"), open).action, CommandAction::Send);
}

void TestCommandTable::normalizeCustomerRecord_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<QString>("expected");

    QTest::newRow("last field dropped, nine in all") << QStringLiteral("j/A/B/") << QStringLiteral("j/A/////////0/");
    QTest::newRow("well formed unchanged") << kCustomerSample << kCustomerSample;
    QTest::newRow("last field replaced by 0")
        << QStringLiteral("j/1/2/3/4/5/6/7/8/9/X/") << QStringLiteral("j/1/2/3/4/5/6/7/8/9/0/");
    QTest::newRow("more than nine fields")
        << QStringLiteral("j/1/2/3/4/5/6/7/8/9/10/11/") << QStringLiteral("j/1/2/3/4/5/6/7/8/9/0/");
    QTest::newRow("exactly nine fields") << QStringLiteral("j/1/2/3/4/5/6/7/8/9/")
                                         << QStringLiteral("j/1/2/3/4/5/6/7/8//0/");
    QTest::newRow("no fields") << QStringLiteral("j/") << QStringLiteral("j//////////0/");
    QTest::newRow("one field") << QStringLiteral("j/A/") << QStringLiteral("j//////////0/");
}

void TestCommandTable::normalizeCustomerRecord()
{
    QFETCH(QString, record);
    QTEST(kelm::server::NormalizeCustomerRecord(record), "expected");
}

QTEST_GUILESS_MAIN(TestCommandTable)
#include "tst_commandtable.moc"
