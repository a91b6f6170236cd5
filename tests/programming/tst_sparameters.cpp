// S-parameters (record, answer, reset) and the scrolling messages.
#include "programming/SParameters.h"
#include "programming/ScrollMessages.h"

#include <QTemporaryDir>
#include <QTest>

using namespace kelm::programming;

namespace {

const QString kResetRecord = QStringLiteral(
    "S/00001100001000000001000000/999999/999999/1000000/99999999/0/0/0/1/CASSA -1/"
    "27/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/");

} // namespace

class TestSParameters : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void resetGivesTheDefaultRecord();
    void record_data();
    void record();
    void parseShortAnswer_data();
    void parseShortAnswer();
    void scrollMessageRecord_data();
    void scrollMessageRecord();
    void scrollMessagesInTheSettingsFile();
};

void TestSParameters::resetGivesTheDefaultRecord()
{
    const SParameters defaults = parseSParameters(defaultSParametersAnswer());
    QCOMPARE(sParametersRecord(defaults), kResetRecord);
    for (qsizetype i = kSFlagsSent; i < kSFlagCount; ++i)
        QCOMPARE(defaults.flags[static_cast<size_t>(i)], 0);
}

void TestSParameters::record_data()
{
    QTest::addColumn<int>("flag0");
    QTest::addColumn<QString>("number");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("weight0");
    QTest::addColumn<QString>("intensity");
    QTest::addColumn<QString>("expected");

    // The reset record with the fields that each case changes.
    const auto defaultsWith = [](const QString& flag0, const QString& numberAndName, const QString& weight0,
                                 const QString& intensity) {
        return "S/" + flag0 + "0001100001000000001000000/999999/999999/1000000/99999999/0/0/0/" + numberAndName
            + "/" + weight0 + "/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/" + intensity + "/0/";
    };
    QTest::newRow("no selection sends 0") << -1 << "1" << "CASSA -1" << "27" << "8"
                                          << defaultsWith("0", "1/CASSA -1", "27", "8");
    QTest::newRow("two-digit index sends its last digit") << 12 << "1" << "CASSA -1" << "27" << "8"
                                                          << defaultsWith("2", "1/CASSA -1", "27", "8");
    QTest::newRow("name keeps its last 8") << 0 << "1" << "CASSA CENTRALE" << "27" << "8"
                                           << defaultsWith("0", "1/CENTRALE", "27", "8");
    QTest::newRow("number keeps its last 3") << 0 << " 12345 " << "CASSA -1" << "27" << "8"
                                             << defaultsWith("0", "345/CASSA -1", "27", "8");
    QTest::newRow("bar code keeps 2, intensity 3") << 0 << "1" << "X/Y" << "123" << "1234"
                                                   << defaultsWith("0", "1/X\\Y", "23", "234");
}

void TestSParameters::record()
{
    QFETCH(int, flag0);
    SParameters p = parseSParameters(defaultSParametersAnswer());
    p.flags[0] = flag0;
    p.flags[29] = 7; // shown, never sent
    QFETCH(QString, number);
    QFETCH(QString, name);
    QFETCH(QString, weight0);
    QFETCH(QString, intensity);
    p.registerNumber = number;
    p.registerName = name;
    p.barcodeWeight[0] = weight0;
    p.printerIntensity = intensity;
    QTEST(sParametersRecord(p), "expected");
}

void TestSParameters::parseShortAnswer_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QList<int>>("firstFlags");
    QTest::addColumn<QString>("maximum0");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("payRate");

    QTest::newRow("flags only") << "00/00/01/12x9/" << QList<int>{1, 2, 0, 9, 0} << "0" << "" << "";
    QTest::newRow("cut in the maximums") << "00/00/01/1/12.5/7" << QList<int>{1, 0, 0, 0, 0} << "12" << "" << "";
    QTest::newRow("status only") << "00" << QList<int>{0, 0, 0, 0, 0} << "0" << "" << "";
    QTest::newRow("thirty-one fields") << defaultSParametersAnswer() + "/EXTRA/" << QList<int>{0, 0, 0, 0, 1}
                                       << "999999" << "CASSA -1" << "0";
}

void TestSParameters::parseShortAnswer()
{
    QFETCH(QString, answer);
    QFETCH(QList<int>, firstFlags);
    const SParameters p = parseSParameters(answer);
    for (qsizetype i = 0; i < firstFlags.size(); ++i)
        QCOMPARE(p.flags[static_cast<size_t>(i)], firstFlags[i]);
    QCOMPARE(p.flags[kSFlagCount - 1], 0);
    QTEST(p.maximums[0], "maximum0");
    QTEST(p.registerName, "name");
    QTEST(p.payRateCode, "payRate");
}

void TestSParameters::scrollMessageRecord_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("expected");

    QTest::newRow("trimmed") << "  BENVENUTI  " << "o/BENVENUTI/";
    QTest::newRow("none selected") << "" << "o//";
    QTest::newRow("slash") << "SALDI 1/2" << "o/SALDI 1\\2/";
}

void TestSParameters::scrollMessageRecord()
{
    QFETCH(QString, message);
    QTEST(kelm::programming::scrollMessageRecord(message), "expected");
}

void TestSParameters::scrollMessagesInTheSettingsFile()
{
    QTemporaryDir dir;
    const kelm::IniFile ini(dir.filePath(QStringLiteral("KelmDrev.ini")));
    QVERIFY(ini.write("Messaggi", "Msg1", "EARLIER"));
    QVERIFY(saveScrollMessage(ini, 2, QStringLiteral(" SALDI ") + QString(100, u'X')));
    QVERIFY(!saveScrollMessage(ini, 10, QStringLiteral("NONE")));

    const auto messages = loadScrollMessages(ini);
    QCOMPARE(messages[0], QStringLiteral("EARLIER"));
    QCOMPARE(messages[1], QString());
    QCOMPARE(messages[2], (QStringLiteral("SALDI ") + QString(100, u'X')).left(95));
    QCOMPARE(messages[9], QString());
    QCOMPARE(ini.read("Messaggi", "Msg11", "-", 96), QStringLiteral("-"));
}

QTEST_APPLESS_MAIN(TestSParameters)
#include "tst_sparameters.moc"
