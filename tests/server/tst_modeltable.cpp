#include "server/ItemLineRewrite.h"
#include "technician/ModelTable.h"

#include <QTest>

using kelm::technician::ModelInfo;

class TestModelTable : public QObject {
    Q_OBJECT

private slots:
    void records_data();
    void records();
    void lookup_data();
    void lookup();
    void itemLineWidths_data();
    void itemLineWidths();
};

namespace {

template <std::size_t N>
QString bits(const std::array<bool, N>& flags)
{
    QString text;
    for (bool flag : flags)
        text += flag ? u'1' : u'0';
    return text;
}

} // namespace

void TestModelTable::records_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("payments");
    QTest::addColumn<int>("departments");
    QTest::addColumn<int>("plus");
    QTest::addColumn<QString>("features");
    QTest::addColumn<int>("firstWidth");
    QTest::addColumn<int>("secondWidth");

    QTest::newRow("0") << 0 << QStringLiteral("Kelm Brio") << QStringLiteral("QA") << 9 << 20 << 9000
                       << QStringLiteral("11111111111111") << 20 << 30;
    QTest::newRow("1") << 1 << QStringLiteral("Velt") << QStringLiteral("QC") << 10 << 10 << 1000
                       << QStringLiteral("11100101001101") << 30 << 30;
    QTest::newRow("2") << 2 << QString() << QStringLiteral("QB") << 10 << 10 << 1000
                       << QStringLiteral("11100101001101") << 20 << 30;
}

void TestModelTable::records()
{
    QFETCH(int, index);
    const QList<ModelInfo> models = kelm::technician::setupModelli();
    QCOMPARE(models.size(), 3);
    const ModelInfo& m = models[index];

    QTEST(m.name, "name");
    QTEST(m.code, "code");
    QCOMPARE(m.headerLines, 12);
    QCOMPARE(m.footerLines, 3);
    QCOMPARE(bits(m.leadingSwitches), QStringLiteral("11"));
    QTEST(int(m.paymentTypes), "payments");
    QCOMPARE(m.scrollingMessages, 10);
    QCOMPARE(bits(m.sFlagAvailable), QString(26, u'1'));
    QTEST(int(m.departmentLimit), "departments");
    QTEST(int(m.pluLimit), "plus");
    QTEST(bits(m.featureSwitches), "features");
    QTEST(int(m.firstDescriptionWidth), "firstWidth");
    QTEST(int(m.secondDescriptionWidth), "secondWidth");
}

void TestModelTable::lookup_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("code");
    QTest::addColumn<int>("firstWidth");
    QTest::addColumn<int>("secondWidth");

    QTest::newRow("first") << QStringLiteral("Kelm Brio") << QStringLiteral("QA") << 20 << 30;
    QTest::newRow("second") << QStringLiteral("Velt") << QStringLiteral("QC") << 30 << 30;
    QTest::newRow("empty name") << QString() << QStringLiteral("QB") << 20 << 30;
    QTest::newRow("other case") << QStringLiteral("velt") << QString() << 0 << 0;
    QTest::newRow("trailing blank") << QStringLiteral("Velt ") << QString() << 0 << 0;
    QTest::newRow("unknown") << QStringLiteral("Nessuno") << QString() << 0 << 0;
}

void TestModelTable::lookup()
{
    QFETCH(QString, name);
    QFETCH(QString, code);

    const std::optional<ModelInfo> model = kelm::technician::findModel(name);
    QCOMPARE(model.has_value(), !code.isEmpty());
    if (model)
        QCOMPARE(model->code, code);

    const kelm::server::DescriptionWidths widths = kelm::technician::descriptionWidthsFor(name);
    QTEST(widths.first, "firstWidth");
    QTEST(widths.second, "secondWidth");
}

void TestModelTable::itemLineWidths_data()
{
    QTest::addColumn<QString>("model");
    QTest::addColumn<QString>("expected");

    QTest::newRow("Velt: 30") << QStringLiteral("Velt")
                              << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ0123/4567/1/1/1/4/");
    QTest::newRow("Kelm Brio: 20") << QStringLiteral("Kelm Brio")
                                   << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ01234567/1/1/1/4/");
    QTest::newRow("unnamed: 20") << QString()
                                 << QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRST/UVWXYZ01234567/1/1/1/4/");
    QTest::newRow("unknown model: 10") << QStringLiteral("Nessuno")
                                       << QStringLiteral("3/S/ABCDEFGHIJ/KLMNOPQRST/1/1/1/4/");
}

void TestModelTable::itemLineWidths()
{
    QFETCH(QString, model);
    kelm::server::ItemLineOptions options;
    options.wrapDescription = true;
    options.widths = kelm::technician::descriptionWidthsFor(model);

    const auto result = kelm::server::rewriteItemLine(
        QStringLiteral("3/S/ABCDEFGHIJKLMNOPQRSTUVWXYZ01234567//1/1/1/4/"), options);

    QTEST(result.line, "expected");
}

QTEST_GUILESS_MAIN(TestModelTable)
#include "tst_modeltable.moc"
