#include "technician/EndOfDay.h"
#include "technician/LastReceiptReprint.h"

#include "StepText.h"

#include <QTest>

using namespace kelm::technician;
using kelm::Question;
using Button = kelm::Operator::Button;

class TestClosures : public QObject {
    Q_OBJECT

private slots:
    void dailyClosure_data();
    void dailyClosure();
    void salesTotalsAskNothing();
    void reprintRequest_data();
    void reprintRequest();
    void reprintAfterParameter_data();
    void reprintAfterParameter();
    void reprintQuestionHasOneLoneCr();
};

void TestClosures::dailyClosure_data()
{
    QTest::addColumn<bool>("pressEnter");
    QTest::addColumn<Button>("answer");
    QTest::addColumn<QStringList>("steps");

    QTest::newRow("Enter cancels") << true << Button::Cancel << QStringList();
    QTest::newRow("Cancel") << false << Button::Cancel << QStringList();
    QTest::newRow("OK closes the day") << false << Button::Ok << QStringList{QStringLiteral("panel x/7/0/0/")};
}

void TestClosures::dailyClosure()
{
    QFETCH(bool, pressEnter);
    QFETCH(Button, answer);
    const Question question = dailyClosureQuestion();
    QVERIFY(question.buttons.contains(answer));

    const Button given = pressEnter ? question.defaultButton : answer;
    QTEST(stepTexts(dailyClosureSteps(given)), "steps");
}

void TestClosures::salesTotalsAskNothing()
{
    QCOMPARE(stepTexts(salesTotalsSteps()), QStringList{QStringLiteral("panel x/1/1/1/")});
}

void TestClosures::reprintRequest_data()
{
    QTest::addColumn<Button>("answer");
    QTest::addColumn<QStringList>("steps");

    QTest::newRow("yes") << Button::Yes << QStringList{QStringLiteral("clear"), QStringLiteral("send B/12/")};
    QTest::newRow("no") << Button::No << QStringList();
}

void TestClosures::reprintRequest()
{
    QFETCH(Button, answer);
    QTEST(stepTexts(reprintRequestSteps(answer)), "steps");
}

void TestClosures::reprintAfterParameter_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QStringList>("steps");

    const QStringList reprintOnly = {QStringLiteral("send )/120/")};
    const QStringList setThenReprint = {QStringLiteral("send G/12/1/1/42/"), QStringLiteral("pause 100"),
                                        QStringLiteral("send )/120/")};
    QTest::newRow("already 42") << QStringLiteral("00/00/01/42/") << reprintOnly;
    QTest::newRow("42 and more after it") << QStringLiteral("00/00/01/420/") << reprintOnly;
    QTest::newRow("other value") << QStringLiteral("00/00/01/07/") << setThenReprint;
    QTest::newRow("42 one place early") << QStringLiteral("00/00/0142//") << setThenReprint;
    QTest::newRow("refused, still 12 long") << QStringLiteral("1A/00/01/42/") << reprintOnly;
    QTest::newRow("11 characters") << QStringLiteral("00/00/01/42") << QStringList();
    QTest::newRow("no answer") << QString() << QStringList();
}

void TestClosures::reprintAfterParameter()
{
    QFETCH(QString, answer);
    QTEST(stepTexts(reprintStepsAfter(answer)), "steps");
}

void TestClosures::reprintQuestionHasOneLoneCr()
{
    const Question question = reprintQuestion();
    QCOMPARE(question.text, QStringLiteral("Vuoi ristampare\rl'ultimo scontrino?"));
    QCOMPARE(question.buttons, (QList<Button>{Button::Yes, Button::No}));
}

QTEST_GUILESS_MAIN(TestClosures)
#include "tst_closures.moc"
