#include "server/ItemLineRewrite.h"

#include <QTest>

using kelm::server::ItemLineOptions;

class TestItemLine : public QObject {
    Q_OBJECT

private slots:
    void rewrite_data();
    void rewrite();
    void logNamesTheDepartment();
};

namespace {

ItemLineOptions options(bool wrap, bool vat, int first, int second)
{
    ItemLineOptions o;
    o.wrapDescription = wrap;
    o.alIvaAuto = vat;
    o.widths = {first, second};
    o.vatRates.fill(0);
    o.vatRates[0] = 22; // department 1
    o.vatRates[1] = 10; // department 2
    o.vatRates[2] = kelm::kUnknownVatRate;
    o.vatRates[20] = 4; // department 21
    return o;
}

} // namespace

void TestItemLine::rewrite_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("wrap");
    QTest::addColumn<bool>("vat");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<bool>("logged");

    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");

    // Description wrapping.
    QTest::newRow("overflow into empty second")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/") << true << false << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/1/4/") << false;
    QTest::newRow("overflow before second")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/second/1/5.00/1/4/") << true << false << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ-second/1/5.00/1/4/") << false;
    QTest::newRow("short description only trimmed")
        << QStringLiteral("3/S/  Pane  / integrale /1/1.00/1/4/") << true << false << 20 << 30
        << QStringLiteral("3/S/Pane/integrale/1/1.00/1/4/") << false;
    QTest::newRow("exactly the width stays")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/") + alphabet + alphabet + QStringLiteral("/1/1/1/4/")
        << true << false << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/") + alphabet + alphabet + QStringLiteral("/1/1/1/4/")
        << false;
    QTest::newRow("wider model takes it whole")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/") << true << false << 30 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/1/4/") << false;
    QTest::newRow("trimmed before measuring")
        << QStringLiteral("3/S/ ABCDEFGHIJKLMNOPQRST //1/5.00/1/4/") << true << false << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST//1/5.00/1/4/") << false;
    QTest::newRow("second cut to its width")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/second/1/5.00/1/4/") << true << false << 10 << 10
        << QStringLiteral("3/S/ABCDEFGHIJ/KLMNOPQRST/1/5.00/1/4/") << false;
    QTest::newRow("width 0 means 10")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOP//1/5.00/1/4/") << true << false << 0 << 0
        << QStringLiteral("3/S/ABCDEFGHIJ/KLMNOP/1/5.00/1/4/") << false;
    QTest::newRow("negative width means 10")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/second/1/5.00/1/4/") << true << false << 20 << -1
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ-sec/1/5.00/1/4/") << false;
    QTest::newRow("wrap off leaves it all")
        << QStringLiteral("3/S/ ABCDEFGHIJKLMNOPQRSTUVWXYZ //1/5.00/1/4/") << false << false << 20 << 30
        << QStringLiteral("3/S/ ABCDEFGHIJKLMNOPQRSTUVWXYZ //1/5.00/1/4/") << false;
    QTest::newRow("no second field keeps the final slash")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/") << true << false << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ/") << false;

    // Automatic VAT code.
    QTest::newRow("department 2")
        << QStringLiteral("3/S/REPARTO2//1/25.88/2/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/REPARTO2//1/25.88/2/10/") << false;
    QTest::newRow("department 1 is the first entry")
        << QStringLiteral("3/S/REPARTO1//1/5.26/1/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/REPARTO1//1/5.26/1/22/") << false;
    QTest::newRow("department 21 with blanks")
        << QStringLiteral("3/R/X//1/1.00/ 21 /0/") << false << true << 20 << 30
        << QStringLiteral("3/R/X//1/1.00/ 21 /4/") << false;
    QTest::newRow("department 0")
        << QStringLiteral("3/S/X//1/1.00/0/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/0/4/") << true;
    QTest::newRow("department 22")
        << QStringLiteral("3/S/X//1/1.00/22/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/22/4/") << true;
    QTest::newRow("department not a number")
        << QStringLiteral("3/S/X//1/1.00/x/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/x/4/") << true;
    QTest::newRow("department with unknown VAT code")
        << QStringLiteral("3/S/X//1/1.00/3/4/") << false << true << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/3/4/") << true;
    QTest::newRow("line without a VAT field")
        << QStringLiteral("3/S/X//1/1.00/2/") << false << true << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/2/") << true;
    QTest::newRow("VAT off leaves a bad department alone")
        << QStringLiteral("3/S/X//1/1.00/99/4/") << false << false << 20 << 30
        << QStringLiteral("3/S/X//1/1.00/99/4/") << false;

    // Both, and lines that are not item lines.
    QTest::newRow("wrap and VAT")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/2/4/") << true << true << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/2/10/") << false;
    QTest::newRow("wrap kept when the department is unknown")
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ//1/5.00/x/4/") << true << true << 20 << 30
        << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ/1/5.00/x/4/") << true;
    QTest::newRow("not an item line")
        << QStringLiteral("4/ABCDEFGHIJKLMNOPQRSTUVWXYZ///0/0/0//") << true << true << 20 << 30
        << QStringLiteral("4/ABCDEFGHIJKLMNOPQRSTUVWXYZ///0/0/0//") << false;
}

void TestItemLine::rewrite()
{
    QFETCH(QString, line);
    QFETCH(bool, wrap);
    QFETCH(bool, vat);
    QFETCH(int, first);
    QFETCH(int, second);
    QFETCH(bool, logged);

    const auto result = kelm::server::rewriteItemLine(line, options(wrap, vat, first, second));

    QTEST(result.line, "expected");
    QCOMPARE(!result.logMessage.isEmpty(), logged);
}

void TestItemLine::logNamesTheDepartment()
{
    const auto result = kelm::server::rewriteItemLine(QStringLiteral("3/S/X//1/1.00/ 35 /4/"),
                                                      options(false, true, 20, 30));
    QVERIFY2(result.logMessage.contains(QStringLiteral("\"35\"")), qPrintable(result.logMessage));
}

QTEST_GUILESS_MAIN(TestItemLine)
#include "tst_itemline.moc"
