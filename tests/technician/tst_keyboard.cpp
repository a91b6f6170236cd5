#include "technician/VirtualDisplay.h"
#include "technician/VirtualKeyboard.h"

#include "StepText.h"

#include <QTest>

using namespace kelm::technician;

class TestKeyboard : public QObject {
    Q_OBJECT

private slots:
    void keyPress_data();
    void keyPress();
    void keysSharingACodeDifferInSequence_data();
    void keysSharingACodeDifferInSequence();
    void captionsKeepTheirSigns_data();
    void captionsKeepTheirSigns();
    void keypadTabAndPrelievi();
    void displayLines_data();
    void displayLines();
    void displayReads_data();
    void displayReads();
    void displayReadsZero_data();
    void displayReadsZero();
};

namespace {

const QString kDisplay = QStringLiteral("display");
const QString kLongPause = QStringLiteral("pause 200");

// A display answer: nine header characters, the two lines and their slashes.
QString displayAnswer(const QString& line1, const QString& line2)
{
    return QStringLiteral("00/00/01/") + line1 + u'/' + line2 + u'/';
}

} // namespace

void TestKeyboard::keyPress_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("steps");

    QTest::newRow("SC € then 1 and OK") << 1 << keyWords(67) + keyWords(22) + keyWords(90) + QStringList{kDisplay};
    QTest::newRow("Magg € then 4 and OK") << 3 << keyWords(67) + keyWords(37) + keyWords(90) + QStringList{kDisplay};
    QTest::newRow("Altro (Tot4) then 4 and OK")
        << 36 << keyWords(58) + keyWords(37) + keyWords(90) + QStringList{kDisplay};
    QTest::newRow("00 is 0 twice") << 23 << keyWords(69) + keyWords(69) + QStringList{kDisplay};
    QTest::newRow("0 once") << 21 << keyWords(69) + QStringList{kDisplay};
    for (int slow : {5, 6, 8, 9, 10, 11})
        QTest::addRow("slow key %d", slow)
            << slow << keyWords(ecrKey(slow)->code) + QStringList{kLongPause, kDisplay};
    QTest::newRow("SC % has no extra") << 0 << keyWords(60) + QStringList{kDisplay};
    QTest::newRow("Sub Totale") << 40 << keyWords(102) + QStringList{kDisplay};
    QTest::newRow("cash with no document") << 43 << keyWords(90) + QStringList{kDisplay};
    QTest::newRow("OK shares the cash code only") << 50 << keyWords(90) + QStringList{kDisplay};
    QTest::newRow("arrow past 43") << 44 << keyWords(114) + QStringList{kDisplay};
    for (int missing : {-1, 28, 29, 30, 31, 51})
        QTest::addRow("no key %d", missing) << missing << QStringList();
}

void TestKeyboard::keyPress()
{
    QFETCH(int, index);
    FiscalDocuments documents;
    QTEST(stepTexts(keyPressSteps(index, documents)), "steps");
}

void TestKeyboard::keysSharingACodeDifferInSequence_data()
{
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");

    QTest::newRow("SC € and Magg €") << 1 << 3;
    QTest::newRow("0 and 00") << 21 << 23;
}

void TestKeyboard::keysSharingACodeDifferInSequence()
{
    QFETCH(int, first);
    QFETCH(int, second);
    FiscalDocuments documents;

    QCOMPARE(ecrKey(first)->code, ecrKey(second)->code);
    QVERIFY(keyPressSteps(first, documents) != keyPressSteps(second, documents));
}

void TestKeyboard::captionsKeepTheirSigns_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("caption");

    QTest::newRow("euro sign") << 1 << QStringLiteral("SC ") + QChar(0x20AC);
    QTest::newRow("down arrow") << 44 << QStringLiteral("\\/");
    QTest::newRow("up arrow") << 48 << QStringLiteral("/\\");
    QTest::newRow("trailing point") << 37 << QStringLiteral("Corr. non corrisp.");
}

void TestKeyboard::captionsKeepTheirSigns()
{
    QFETCH(int, index);
    QTEST(ecrKey(index)->caption, "caption");
}

void TestKeyboard::keypadTabAndPrelievi()
{
    QCOMPARE(stepTexts(keypadPressSteps(61)),
             (QStringList{QStringLiteral("send )/61/"), QStringLiteral("pause 100"), kDisplay}));
    QCOMPARE(stepTexts(technicianTabSteps()), QStringList{QStringLiteral("panel (/")});
    QCOMPARE(stepTexts(prelieviSteps()),
             (QStringList{QStringLiteral("clear"), QStringLiteral("send 6/1/"), QStringLiteral("pause 100")}));
}

void TestKeyboard::displayLines_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("isDisplay");
    QTest::addColumn<QString>("line1");
    QTest::addColumn<QString>("line2");

    const QString line1 = QStringLiteral("            0.00");
    const QString line2 = QStringLiteral("BENVENUTI       ");
    QTest::newRow("43 characters") << displayAnswer(line1, line2) << true << line1 << line2;
    QTest::newRow("longer answer") << displayAnswer(line1, line2) + QStringLiteral("EXTRA/") << true << line1
                                   << line2;
    QTest::newRow("42 characters") << displayAnswer(line1, line2).chopped(1) << false << QString() << QString();
    QTest::newRow("status only") << QStringLiteral("00") << false << QString() << QString();
    QTest::newRow("empty") << QString() << false << QString() << QString();
}

void TestKeyboard::displayLines()
{
    QFETCH(QString, answer);
    QFETCH(bool, isDisplay);

    const std::optional<DisplayLines> lines = kelm::technician::displayLines(answer);
    QCOMPARE(lines.has_value(), isDisplay);
    if (lines) {
        QTEST(lines->line1, "line1");
        QTEST(lines->line2, "line2");
    }
}

void TestKeyboard::displayReads_data()
{
    QTest::addColumn<QStringList>("answers");
    QTest::addColumn<int>("reads");
    QTest::addColumn<bool>("shown");

    const QString good = displayAnswer(QString(16, u'1'), QString(16, u'2'));
    const QString shortAnswer = good.left(42);
    QTest::newRow("first read good") << QStringList{good} << 1 << true;
    QTest::newRow("second read good") << QStringList{shortAnswer, good} << 2 << true;
    QTest::newRow("third read good") << QStringList{QString(), shortAnswer, good} << 3 << true;
    QTest::newRow("three short: display unchanged")
        << QStringList{shortAnswer, shortAnswer, shortAnswer, good} << 3 << false;
}

void TestKeyboard::displayReads()
{
    QFETCH(QStringList, answers);

    // The refresh as the worker runs it, against a register that answers
    // from the list.
    int reads = 0;
    QString answer;
    do {
        answer = answers.value(reads);
        ++reads;
    } while (readDisplayAgain(reads, answer));

    QTEST(reads, "reads");
    QTEST(kelm::technician::displayLines(answer).has_value(), "shown");
}

void TestKeyboard::displayReadsZero_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("zero");

    QTest::newRow("idle") << QStringLiteral("            0.00") << true;
    QTest::newRow("amount") << QStringLiteral("           12.50") << false;
    QTest::newRow("cents only") << QStringLiteral("            0.01") << false;
    QTest::newRow("empty") << QString() << true;
    QTest::newRow("blank") << QString(16, u' ') << true;
    QTest::newRow("word first") << QStringLiteral("TOTALE      5.00") << true;
    QTest::newRow("comma ends the number") << QStringLiteral("0,50") << true;
    QTest::newRow("negative zero") << QStringLiteral("  -0.00") << true;
    QTest::newRow("negative amount") << QStringLiteral("  -3.00") << false;
    QTest::newRow("blanks inside the number") << QStringLiteral(" 0 0 1") << false;
    QTest::newRow("second point ends it") << QStringLiteral("0.0.5") << true;
    QTest::newRow("word after zero") << QStringLiteral("0 PEZZI 5") << true;
}

void TestKeyboard::displayReadsZero()
{
    QFETCH(QString, line);
    QTEST(kelm::technician::displayReadsZero(line), "zero");
}

QTEST_GUILESS_MAIN(TestKeyboard)
#include "tst_keyboard.moc"
