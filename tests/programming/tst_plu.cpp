// PLU records, the "p/" answer, the deletion of the register's surplus PLUs
// and the PLU file (saved with ten cells a line, loaded with eight).
#include "programming/PluFile.h"

#include <QTest>

using namespace kelm::programming;

namespace {

PluRow row(const QStringList& cells)
{
    PluRow r;
    for (qsizetype i = 0; i < cells.size() && i < kPluColumns; ++i)
        r[static_cast<size_t>(i)] = cells[i];
    return r;
}

const QByteArray kExampleLine = "8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/12/6/";

} // namespace

class TestPlu : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void pluRecord_data();
    void pluRecord();
    void normalisedRowKeepsTexts();
    void deletionRecord();
    void parsePlu_data();
    void parsePlu();
    void surplusScan_data();
    void surplusScan();
    void saveFile();
    void loadFile_data();
    void loadFile();
    void loadStopsAfter9000Lines();
};

void TestPlu::pluRecord_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QStringList>("cells");
    QTest::addColumn<QString>("expected");

    QTest::newRow("example") << 1
                             << QStringList{"8001234567890", "ACQUA 1L", "1", "0", "0.50", "0", "100", "00000000"}
                             << "P/1/8001234567890/ACQUA 1L/1/0/0.5/0/100/00000000/";
    QTest::newRow("decimal comma cut") << 2 << QStringList{"A", "B", "01", "", "2,50", "3.00", "x", "00000001"}
                                       << "P/2/A/B/1/0/2/3/0/00000001/";
    QTest::newRow("counters never sent")
        << 3 << QStringList{"C", " D ", "1", "0", "1", "1", "1", "00000000", "12", "6"}
        << "P/3/C/ D /1/0/1/1/1/00000000/";
    QTest::newRow("slash in a cell") << 4 << QStringList{"C", "1/2 KG", "1", "0", "1", "1", "1", "00000000"}
                                     << "P/4/C/1\\2 KG/1/0/1/1/1/00000000/";
}

void TestPlu::pluRecord()
{
    QFETCH(int, number);
    QFETCH(QStringList, cells);
    QTEST(kelm::programming::pluRecord(number, row(cells)), "expected");
}

void TestPlu::normalisedRowKeepsTexts()
{
    const PluRow r =
        withNormalisedNumbers(row({"007", "0.50", "2,50", "1.50", "x", "10.0", "0.00", "0.50", "9.90", "5,5"}));
    QCOMPARE(r, row({"007", "0.50", "2", "1.5", "0", "10", "0", "0.50", "9.90", "5,5"}));
}

void TestPlu::deletionRecord()
{
    QCOMPARE(pluDeletionRecord(13), QStringLiteral("P/13////0/0/0/0/00000000/"));
}

void TestPlu::parsePlu_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("cells");

    QTest::newRow("fields in the answer's order")
        << "00/00/01/8001234567890/ ACQUA 1L /1/0/00000000/X/0.50/0/100.0/12/6.00/a/b/c/"
        << QStringList{"8001234567890", "ACQUA 1L", "1", "0", "0.5", "0", "100", "00000000", "12", "6"};
    QTest::newRow("free number") << "00/00/01//////////////"
                                 << QStringList{"", "", "", "", "0", "0", "0", "", "0", "0"};
    QTest::newRow("truncated after the flags") << "00/00/01/C/D/1/0/00000000"
                                               << QStringList{"C", "D", "1", "0", "0", "0", "0", "00000000", "0", "0"};
    QTest::newRow("status only") << "00" << QStringList{"", "", "", "", "0", "0", "0", "", "0", "0"};
}

void TestPlu::parsePlu()
{
    QFETCH(QString, answer);
    QFETCH(QStringList, cells);
    QCOMPARE(kelm::programming::parsePlu(answer), row(cells));
}

void TestPlu::surplusScan_data()
{
    QTest::addColumn<int>("gridRows");
    QTest::addColumn<QList<int>>("held"); // PLU numbers the register holds
    QTest::addColumn<int>("lastProbed");
    QTest::addColumn<QList<int>>("deleted");

    QTest::newRow("3 rows, register holds 1..12")
        << 3 << QList<int>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12} << 22 << QList<int>{4, 5, 6, 7, 8, 9, 10, 11, 12};
    QTest::newRow("gap of 10 keeps what lies beyond") << 2 << QList<int>{3, 14} << 13 << QList<int>{3};
    QTest::newRow("gap of 9 is crossed") << 2 << QList<int>{3, 13} << 23 << QList<int>{3, 13};
    QTest::newRow("nothing beyond the grid") << 5 << QList<int>{} << 15 << QList<int>{};
    QTest::newRow("stops before 9000") << 8995 << QList<int>{8996, 8997, 8998, 8999, 9000} << 8999
                                       << QList<int>{8996, 8997, 8998, 8999};
    QTest::newRow("grid already full") << 8999 << QList<int>{9000} << 0 << QList<int>{};
}

void TestPlu::surplusScan()
{
    QFETCH(int, gridRows);
    QFETCH(QList<int>, held);

    SurplusPluScan scan(gridRows);
    int lastProbed = 0;
    QList<int> deleted;
    while (!scan.finished()) {
        lastProbed = scan.number();
        const QString code = held.contains(lastProbed) ? QStringLiteral(" 800123 ") : QStringLiteral("  ");
        if (scan.probed(code))
            deleted.append(lastProbed);
    }
    QTEST(lastProbed, "lastProbed");
    QTEST(deleted, "deleted");
}

void TestPlu::saveFile()
{
    const PluRow sold = row({"8001234567890", "ACQUA 1L", "1", "0", "0.5", "0", "100", "00000000", "12", "6"});
    const PluRow slash = row({"CAFFÈ", "1/2 TAZZA"});
    QCOMPARE(pluFileBytes({sold, slash}),
             kExampleLine + "\r\n" + "CAFF\xC8/1\\2 TAZZA/////////\r\n");
    QCOMPARE(pluFileBytes({}), QByteArray());
}

void TestPlu::loadFile_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("rows");
    QTest::addColumn<QString>("firstCode");
    QTest::addColumn<QString>("firstFlags");
    QTest::addColumn<QList<int>>("oddLines");

    QTest::newRow("saved line") << kExampleLine + "\r\n" << 1 << "8001234567890" << "00000000" << QList<int>();
    QTest::newRow("eight fields, no final slash, LF")
        << QByteArray("A/ACQUA 1L/1/0/0.5/0/100/00000001\nB/PANE/2/0/1/0/5/00000000\n") << 2 << "A"
        << "00000001" << QList<int>();
    QTest::newRow("15 characters are skipped")
        << QByteArray("123456789012345\r\n") + kExampleLine << 1 << "8001234567890" << "00000000" << QList<int>();
    QTest::newRow("16 characters are a row of one field")
        << QByteArray("1234567890123456\r\n") << 1 << "1234567890123456" << "" << QList<int>{1};
    QTest::newRow("seven fields on line 2 are loaded too")
        << QByteArray("A/ACQUA 1L/1/0/0.5/0/100/\r\n") + kExampleLine << 2 << "A" << "" << QList<int>{1};
    QTest::newRow("eleven fields: the first eight")
        << kExampleLine + "X/\r\n" << 1 << "8001234567890" << "00000000" << QList<int>{1};
    QTest::newRow("blank lines are skipped") << "\r\n\r\n" + kExampleLine + "\r\n\r\n" << 1 << "8001234567890"
                                             << "00000000" << QList<int>();
    QTest::newRow("Windows-1252") << QByteArray("CAFF\xC8/TAZZA/1/0/1/0/5/00000000/") << 1 << "CAFFÈ"
                                  << "00000000" << QList<int>();
    QTest::newRow("empty file") << QByteArray() << 0 << "" << "" << QList<int>();
}

void TestPlu::loadFile()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, rows);

    const PluFileLoad load = loadPluFile(bytes);
    QCOMPARE(load.rows.size(), rows);
    QTEST(load.oddLines, "oddLines");
    if (rows > 0) {
        QTEST(load.rows[0][0], "firstCode");
        QTEST(load.rows[0][7], "firstFlags");
        QVERIFY(load.rows[0][8].isEmpty());
        QVERIFY(load.rows[0][9].isEmpty());
    }
}

void TestPlu::loadStopsAfter9000Lines()
{
    QByteArray bytes;
    for (int i = 0; i < kPluFileMaxLines; ++i)
        bytes += kExampleLine + "\r\n";
    bytes += "ONE MORE LINE, NEVER READ\r\n";
    const PluFileLoad load = loadPluFile(bytes);
    QCOMPARE(load.rows.size(), kPluFileMaxLines);
    QVERIFY(load.oddLines.isEmpty());
}

QTEST_APPLESS_MAIN(TestPlu)
#include "tst_plu.moc"
