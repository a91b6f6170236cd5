// Receipt header and footer: padding, the "H/" and "F/" records, and the
// copy kept in the settings file.
#include "programming/HeaderFooter.h"
#include "programming/PrintLine.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm::programming;

namespace {

QString blanks(qsizetype n)
{
    return QString(n, u' ');
}

QList<HeaderLine> emptyLines(qsizetype count)
{
    return QList<HeaderLine>(count, HeaderLine{});
}

} // namespace

class TestHeader : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void paddedLine_data();
    void paddedLine();
    void headerRecord();
    void footerRecord();
    void restoredLine_data();
    void restoredLine();
    void settingsFileRoundTrip();
};

void TestHeader::paddedLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("align");
    QTest::addColumn<QString>("expected");

    const QString bar = QStringLiteral("BAR CENTRALE");
    const QString twenty = QStringLiteral("ABCDEFGHIJKLMNOPQRST");
    const QString thirtyOne = QString(31, u'X');
    QTest::newRow("centred, normal") << bar << 0 << 2 << blanks(10) + bar + blanks(10);
    QTest::newRow("centred, odd room") << "ABC" << 0 << 2 << blanks(14) + "ABC" + blanks(15);
    QTest::newRow("centred in double width") << "ABCD" << 2 << 2 << blanks(6) + "ABCD" + blanks(6);
    QTest::newRow("right") << bar << 0 << 1 << blanks(20) + bar;
    QTest::newRow("right trims first") << "  AB  " << 0 << 1 << blanks(30) + "AB";
    QTest::newRow("too long, left keeps the start") << twenty << 2 << 0 << twenty.left(16);
    QTest::newRow("too long, centred keeps the start") << twenty << 3 << 2 << twenty.left(16);
    QTest::newRow("too long, right keeps the end") << twenty << 2 << 1 << twenty.right(16);
    QTest::newRow("31 centred is left-aligned") << thirtyOne << 0 << 2 << thirtyOne + " ";
    QTest::newRow("empty") << "" << 0 << 2 << blanks(32);
    QTest::newRow("no size selected is 32 wide") << "A" << -1 << 0 << "A" + blanks(31);
    QTest::newRow("unknown alignment is left") << "A" << 2 << -1 << "A" + blanks(15);
}

void TestHeader::paddedLine()
{
    QFETCH(QString, text);
    QFETCH(int, size);
    QFETCH(int, align);
    QTEST(kelm::programming::paddedLine(text, size, align), "expected");
}

void TestHeader::headerRecord()
{
    QList<HeaderLine> lines = emptyLines(kHeaderLines);
    lines[0] = {QStringLiteral("BAR CENTRALE"), 0, 2};
    lines[3] = {QStringLiteral("   "), 2, 0};  // blanks only: still an empty field
    lines[4] = {QStringLiteral("P.IVA 01/23"), -1, 1};
    lines[11] = {QStringLiteral("GRAZIE"), 3, 0};

    const QString expected = "H/1/" + blanks(10) + "BAR CENTRALE" + blanks(10) + "/1//1//3//0/" + blanks(21)
        + "P.IVA 01\\23/1//1//1//1//1//1//4/GRAZIE" + blanks(10) + "/";
    QCOMPARE(kelm::programming::headerRecord(lines), expected);
}

void TestHeader::footerRecord()
{
    QList<HeaderLine> lines = emptyLines(kFooterLines);
    lines[1] = {QString(), 2, 0};
    lines[2] = {QStringLiteral("ARRIVEDERCI"), 1, 1};
    QCOMPARE(kelm::programming::footerRecord(lines),
             "F/1/" + blanks(32) + "/3/" + blanks(16) + "/2/" + blanks(21) + "ARRIVEDERCI/");
}

void TestHeader::restoredLine_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("fields"); // set in order: alignment, size, text
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("align");

    QTest::newRow("centred, normal") << "20BAR CENTRALE" << 3 << "BAR CENTRALE" << 0 << 2;
    QTest::newRow("right, double both") << "13X" << 3 << "X" << 3 << 1;
    QTest::newRow("saved empty") << "00" << 0 << "" << 0 << 0;
    QTest::newRow("alignment out of list") << "30ABC" << 0 << "ABC" << 0 << 3;
    QTest::newRow("size out of list: alignment only") << "14ABC" << 1 << "ABC" << 4 << 1;
    QTest::newRow("non-digit reads 0") << "x1ABC" << 3 << "ABC" << 1 << 0;
}

void TestHeader::restoredLine()
{
    QFETCH(QString, value);
    const kelm::programming::RestoredLine r = kelm::programming::restoredLine(value);
    QTEST(r.fields, "fields");
    if (r.fields > 0) {
        QTEST(r.line.text, "text");
        QTEST(r.line.size, "size");
        QTEST(r.line.align, "align");
    }
}

void TestHeader::settingsFileRoundTrip()
{
    QTemporaryDir dir;
    const kelm::IniFile ini(dir.filePath(QStringLiteral("KelmDrev.ini")));
    QList<HeaderLine> header = emptyLines(kHeaderLines);
    header[0] = {QStringLiteral("  BAR CENTRALE "), 0, 2};
    header[11] = {QStringLiteral("VIA ROMA 1/A"), 3, -1};
    QList<HeaderLine> footer = emptyLines(kFooterLines);
    footer[2] = {QStringLiteral("CIAO"), 1, 1};
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Header, header));
    QVERIFY(saveReceiptLines(ini, ReceiptLines::Footer, footer));

    QCOMPARE(ini.read("Intestazioni", "Head1", "-", 256), QStringLiteral("20BAR CENTRALE"));
    QCOMPARE(ini.read("Intestazioni", "Head2", "-", 256), QStringLiteral("00"));
    QCOMPARE(ini.read("Intestazioni", "Head12", "-", 256), QStringLiteral("03VIA ROMA 1\\A"));
    QCOMPARE(ini.read("Intestazioni", "Foot3", "-", 256), QStringLiteral("11CIAO"));

    const auto loaded = loadReceiptLines(ini, ReceiptLines::Header);
    QCOMPARE(loaded[0].line, (HeaderLine{QStringLiteral("BAR CENTRALE"), 0, 2}));
    QCOMPARE(loaded[1].fields, 0);
    QCOMPARE(loaded[11].line, (HeaderLine{QStringLiteral("VIA ROMA 1\\A"), 3, 0}));
    const auto footerLoaded = loadReceiptLines(ini, ReceiptLines::Footer);
    QCOMPARE(footerLoaded[2], (kelm::programming::RestoredLine{{QStringLiteral("CIAO"), 1, 1}, 3}));
}

QTEST_APPLESS_MAIN(TestHeader)
#include "tst_header.moc"
