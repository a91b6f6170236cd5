// How texts become record fields, how answers are walked, and the numbers
// the register reads.
#include "programming/Numbers.h"
#include "programming/RecordFields.h"

#include <QTest>

using namespace kelm::programming;

class TestFields : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void fieldText_data();
    void fieldText();
    void answerFields_data();
    void answerFields();
    void numbers_data();
    void numbers();
};

void TestFields::fieldText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected");

    QTest::newRow("trimmed") << "  CONTANTI  " << 8 << "CONTANTI";
    QTest::newRow("any width") << "  A LONG FREE TEXT " << -1 << "A LONG FREE TEXT";
    QTest::newRow("longer keeps its end") << "CASSA CENTRALE" << 8 << "CENTRALE";
    QTest::newRow("blank at the cut is trimmed") << "CARTA DI CREDITO" << 8 << "CREDITO";
    QTest::newRow("trailing blanks do not count") << "CASSA1   " << 6 << "CASSA1";
    QTest::newRow("slash made backslash") << "A/B" << -1 << "A\\B";
    QTest::newRow("tab is not a blank") << "\tA" << -1 << "\tA";
}

void TestFields::fieldText()
{
    QFETCH(QString, text);
    QFETCH(int, width);
    QTEST(kelm::programming::fieldText(text, width), "expected");
}

void TestFields::answerFields_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("closed fields") << "00/00/01/A/B/C/" << QStringList{"A", "B", "C"};
    QTest::newRow("empty fields kept") << "00/00/01//B//" << QStringList{"", "B", ""};
    QTest::newRow("unclosed takes the rest") << "00/00/01/A/BC" << QStringList{"A", "BC", ""};
    QTest::newRow("fewer than asked") << "00/00/01/A/" << QStringList{"A", "", ""};
    QTest::newRow("more than asked") << "00/00/01/A/B/C/D/E/" << QStringList{"A", "B", "C"};
    QTest::newRow("short answer") << "00" << QStringList{"", "", ""};
}

void TestFields::answerFields()
{
    QFETCH(QString, answer);
    QTEST(kelm::programming::answerFields(answer, 3), "expected");
}

void TestFields::numbers_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("decimal");
    QTest::addColumn<QString>("whole");

    QTest::newRow("trailing zeros") << "1.50" << "1.5" << "1";
    QTest::newRow("decimal comma stops") << "2,50" << "2" << "2";
    QTest::newRow("no digits") << "abc" << "0" << "0";
    QTest::newRow("leading zeros") << "007" << "7" << "7";
    QTest::newRow("point first") << ".5" << "0.5" << "0";
    QTest::newRow("zero fraction") << "0.00" << "0" << "0";
    QTest::newRow("three decimals") << "999999.999" << "999999.999" << "999999";
    QTest::newRow("negative") << "-12.30" << "-12.3" << "-12";
    QTest::newRow("negative zero") << "-0.0" << "0" << "0";
    QTest::newRow("negative below one") << "-0.5" << "-0.5" << "0";
    QTest::newRow("leading blanks") << "  42x" << "42" << "42";
    QTest::newRow("long number keeps its digits")
        << "12345678901234567890.123456789" << "12345678901234567890.123456789" << "12345678901234567890";
}

void TestFields::numbers()
{
    QFETCH(QString, text);
    QTEST(decimalForm(text), "decimal");
    QTEST(wholeNumberForm(text), "whole");
}

QTEST_APPLESS_MAIN(TestFields)
#include "tst_fields.moc"
