// VAT rates, departments and payment types: each record, and each answer in
// its own order.
#include "programming/Departments.h"
#include "programming/PaymentTypes.h"
#include "programming/VatRateRecord.h"

#include "app/VatRates.h"

#include <QTest>

using namespace kelm::programming;

namespace {

PaymentFlags flagsOf(const QString& digits)
{
    PaymentFlags flags{};
    for (qsizetype k = 0; k < digits.size() && k < kPaymentFlags; ++k)
        flags[static_cast<size_t>(k)] = digits[k] == u'1';
    return flags;
}

} // namespace

class TestTables : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void vatRatesRecord();
    void parseVatRates_data();
    void parseVatRates();
    void departmentRecord_data();
    void departmentRecord();
    void parseDepartment_data();
    void parseDepartment();
    void paymentTypeRecord_data();
    void paymentTypeRecord();
    void parsePaymentType_data();
    void parsePaymentType();
};

void TestTables::vatRatesRecord()
{
    QCOMPARE(kelm::programming::vatRatesRecord({"4.00", " 10.00 ", "22.00", "0.00", ""}),
             QStringLiteral("b/4.00/10.00/22.00/0.00//"));
}

void TestTables::parseVatRates_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QList<int>>("table"); // entries 0..5
    QTest::newRow("five rates") << "00/00/01/4.00/10.50/22.00/0.00/11.5/" << QStringList{"4.00", "10.50", "22.00", "0.00", "11.5"}
                                << QList<int>{4, 10, 22, 0, 12, -1};
    QTest::newRow("short answer: every rate its text") << "00/00/01/4.00/22" << QStringList{"4.00", "22", "", "", ""}
                                                       << QList<int>{4, 22, 0, 0, 0, -1};
    QTest::newRow("header only") << "00/00/01/" << QStringList{"", "", "", "", ""} << QList<int>{0, 0, 0, 0, 0, -1};
}

void TestTables::parseVatRates()
{
    QFETCH(QString, answer);
    const kelm::VatRatesRead read = kelm::parseVatRates(answer);
    QTEST(QStringList(read.texts.begin(), read.texts.end()), "texts");
    QTEST(QList<int>(read.table.begin(), read.table.begin() + 6), "table");
}

void TestTables::departmentRecord_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    QTest::addColumn<int>("vatIndex");
    QTest::addColumn<QString>("expected");

    QTest::newRow("first") << 1 << "REPARTO1" << 0 << "D/1/REPARTO1/1//////";
    QTest::newRow("last code") << 20 << " FRUTTA " << 4 << "D/20/FRUTTA/5//////";
    QTest::newRow("no selection sends 0") << 7 << "PANE" << -1 << "D/7/PANE/0//////";
    QTest::newRow("index past the list sends 0") << 8 << "X" << 5 << "D/8/X/0//////";
    QTest::newRow("slash in the text") << 3 << "BAR/CAFFE" << 1 << "D/3/BAR\\CAFFE/2//////";
    QTest::newRow("placeholder-like text") << 4 << "50%1 %2" << 2 << "D/4/50%1 %2/3//////";
}

void TestTables::departmentRecord()
{
    QFETCH(int, number);
    QFETCH(QString, description);
    QFETCH(int, vatIndex);
    QTEST(kelm::programming::departmentRecord(number, {description, vatIndex}), "expected");
}

void TestTables::parseDepartment_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("description");
    QTest::addColumn<int>("vatIndex");

    QTest::newRow("well formed") << "00/00/01/REPARTO1/1/" << "REPARTO1" << 0;
    QTest::newRow("trimmed, code 5") << "00/00/01/  PANE  /5/0/0/" << "PANE" << 4;
    QTest::newRow("code 0 is no selection") << "00/00/01/VARIE/0/" << "VARIE" << -1;
    QTest::newRow("code past the list") << "00/00/01/VARIE/9/" << "VARIE" << -1;
    QTest::newRow("only the first character counts") << "00/00/01/VARIE/12/" << "VARIE" << 0;
    QTest::newRow("code not a digit") << "00/00/01/VARIE/A/" << "VARIE" << -1;
    QTest::newRow("no slash: the rest") << "00/00/01/VARIE" << "VARIE" << -1;
    QTest::newRow("truncated") << "00" << "" << -1;
}

void TestTables::parseDepartment()
{
    QFETCH(QString, answer);
    const Department d = kelm::programming::parseDepartment(answer);
    QTEST(d.description, "description");
    QTEST(d.vatIndex, "vatIndex");
}

void TestTables::paymentTypeRecord_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("shortDescription");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("markUp");
    QTest::addColumn<bool>("active");
    QTest::addColumn<bool>("credit");
    QTest::addColumn<QString>("expected");

    QTest::newRow("cash") << 1 << "CONTANTI" << "CONT" << "10000001" << "0" << "0" << true << false
                          << "Y/1/CONTANTI/CONT/10000001/0/0//1/0/";
    QTest::newRow("last characters kept")
        << 2 << "CARTA DI CREDITO" << " CARTA " << "00100000" << "12345" << " 1.5 " << false << true
        << "Y/2/CREDITO/ARTA/00100000/2345/1.5//0/1/";
    QTest::newRow("all flags, slash") << 9 << "BUONI/PASTO" << "B/P" << "11111111" << "" << "" << true << true
                                      << "Y/9/NI\\PASTO/B\\P/11111111////1/1/";
}

void TestTables::paymentTypeRecord()
{
    QFETCH(int, number);
    QFETCH(QString, description);
    QFETCH(QString, shortDescription);
    QFETCH(QString, flags);
    QFETCH(QString, rate);
    QFETCH(QString, markUp);
    QFETCH(bool, active);
    QFETCH(bool, credit);
    const PaymentType p{description, shortDescription, active, credit, flagsOf(flags), rate, markUp};
    QTEST(kelm::programming::paymentTypeRecord(number, p), "expected");
}

void TestTables::parsePaymentType_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("shortDescription");
    QTest::addColumn<QString>("flags");
    QTest::addColumn<QString>("rate");
    QTest::addColumn<QString>("change");
    QTest::addColumn<QString>("markUp");

    QTest::newRow("answer order") << "00/00/01/CONTANTI/CONT/10000001/1.00/x/y/z/0.50/3/r/s/"
                                  << "CONTANTI" << "CONT" << "10000001" << "1.00" << "0.50" << "3";
    QTest::newRow("flag 1 only") << "00/00/01/A/B/1/" << "A" << "B" << "10000000" << "" << "" << "";
    QTest::newRow("not a 1 clears") << "00/00/01/A/B/2Y011x1/" << "A" << "B" << "00011010" << "" << "" << "";
    QTest::newRow("truncated") << "00/0" << "" << "" << "00000000" << "" << "" << "";
}

void TestTables::parsePaymentType()
{
    QFETCH(QString, answer);
    QFETCH(QString, flags);
    const PaymentTypeRead read = kelm::programming::parsePaymentType(answer);
    QTEST(read.description, "description");
    QTEST(read.shortDescription, "shortDescription");
    QCOMPARE(read.flags, flagsOf(flags));
    QTEST(read.exchangeRate, "rate");
    QTEST(read.change, "change");
    QTEST(read.markUp, "markUp");
}

QTEST_APPLESS_MAIN(TestTables)
#include "tst_tables.moc"
