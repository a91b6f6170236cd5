#include "server/LogNameHelp.h"
#include "server/TotalsFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class TestTotals : public QObject {
    Q_OBJECT

private slots:
    void totalsText_data();
    void totalsText();
    void writeTotals();
    void writeTotalsBesideDirectory();
    void writeTotalsFailure();
    void logNameHelp();
};

namespace {

QString crlfLines(const QStringList& lines)
{
    QString text;
    for (const QString& line : lines)
        text += line + QStringLiteral("\r\n");
    return text;
}

const QString kHeader = QStringLiteral("00/00/01/");

} // namespace

void TestTotals::totalsText_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("lines");

    const QStringList eleven{
        "IVA 1 = 1.00", "IVA 2 = 2.00", "IVA 3 = 3.00", "IVA 4 = 4.00", "IVA 5 = 5.00",
        "TOTALE VENDITE = 15.00", "SCONTRINI = 7", "NON FISCALI = 2", "TOTALE STORNI = 0.50",
        "TOTALE RESI = 1.25", "TOTALE ANNULLI = 3.10"};
    const QString elevenValues =
        kHeader + QStringLiteral("1.00/2.00/3.00/4.00/5.00/15.00/7/2/0.50/1.25/3.10/");

    QTest::newRow("empty answer") << QString() << QStringList{};
    QTest::newRow("header only") << kHeader << QStringList{};
    QTest::newRow("no slash after the header") << kHeader + QStringLiteral("12.00") << QStringList{};
    QTest::newRow("short header has no values") << QStringLiteral("00/1/2/") << QStringList{};
    QTest::newRow("one value") << kHeader + QStringLiteral("5.00/") << QStringList{"IVA 1 = 5.00"};
    QTest::newRow("empty values") << kHeader + QStringLiteral("//") << QStringList{"IVA 1 = ", "IVA 2 = "};
    QTest::newRow("open tail ignored") << kHeader + QStringLiteral("1/2") << QStringList{"IVA 1 = 1"};
    QTest::newRow("eleven values") << elevenValues << eleven;
    QTest::newRow("thirteen values")
        << elevenValues + QStringLiteral("9.99/8.88/")
        << eleven + QStringList{"TOTALE ANNULLI = 3.10", "TOTALE ANNULLI = 3.10"};
    QTest::newRow("header not read") << QStringLiteral("01/02/03/4/") << QStringList{"IVA 1 = 4"};
}

void TestTotals::totalsText()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, lines);
    QCOMPARE(kelm::server::totalsText(answer), crlfLines(lines));
}

void TestTotals::writeTotals()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString serverDir = dir.path() + u'/';

    QVERIFY(kelm::server::WriteTotals(serverDir, kHeader + QStringLiteral("1/2/3/")));
    QVERIFY(kelm::server::WriteTotals(serverDir, kHeader + QStringLiteral("€ 5/")));

    QFile file(dir.filePath(QStringLiteral("Totali.txt")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("IVA 1 = \x80 5\r\n"));
}

void TestTotals::writeTotalsBesideDirectory()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());

    QVERIFY(kelm::server::WriteTotals(dir.filePath(QStringLiteral("srv")), kHeader + QStringLiteral("1/")));

    QVERIFY(QFile::exists(dir.filePath(QStringLiteral("srvTotali.txt"))));
}

void TestTotals::writeTotalsFailure()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QVERIFY(!kelm::server::WriteTotals(dir.filePath(QStringLiteral("missing/")), kHeader + QStringLiteral("1/")));
}

void TestTotals::logNameHelp()
{
    const QStringList lines = kelm::server::logNameHelpText().split(u'\r');
    QCOMPARE(lines.size(), 7);
    QCOMPARE(lines.first(), QStringLiteral("Il file di log si trova nella stessa directory degli scontrini del server. "));
    QCOMPARE(lines[5], QStringLiteral("  3) se si e' usata una mascheratura globale '*' allora si chiamerà DREV "));
    QCOMPARE(lines.last(), QStringLiteral("     sempre con postfisso = giorno.log."));
    QVERIFY(!kelm::server::logNameHelpText().contains(u'\n'));
}

QTEST_GUILESS_MAIN(TestTotals)
#include "tst_totals.moc"
