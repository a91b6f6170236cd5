#include "server/EcrState.h"

#include <QTest>

class TestEcrState : public QObject {
    Q_OBJECT

private slots:
    void answerStatus_data();
    void answerStatus();
    void paperOutAfter_data();
    void paperOutAfter();
    void statusByte_data();
    void statusByte();
};

void TestEcrState::answerStatus_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("expected");

    QTest::newRow("accepted") << QStringLiteral("00/00/01/") << 0;
    QTest::newRow("busy") << QStringLiteral("1A/00/") << 26;
    QTest::newRow("lower-case letter counts as 0") << QStringLiteral("1a/00/") << 16;
    QTest::newRow("highest") << QStringLiteral("FF") << 255;
    QTest::newRow("one character") << QStringLiteral("3") << 48;
    QTest::newRow("empty") << QString() << 0;
}

void TestEcrState::answerStatus()
{
    QFETCH(QString, answer);
    QTEST(kelm::server::answerStatus(answer), "expected");
}

void TestEcrState::paperOutAfter_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<bool>("before");
    QTest::addColumn<bool>("expected");

    QTest::newRow("state 4 sets") << QStringLiteral("00/04/") << false << true;
    QTest::newRow("state 7 sets") << QStringLiteral("00/07/") << false << true;
    QTest::newRow("state 5 sets") << QStringLiteral("31/05/") << false << true;
    QTest::newRow("state 3 clears") << QStringLiteral("00/03/") << true << false;
    QTest::newRow("state 0 clears") << QStringLiteral("00/00/") << true << false;
    QTest::newRow("state 8 keeps set") << QStringLiteral("00/08/") << true << true;
    QTest::newRow("state 12 keeps clear") << QStringLiteral("00/12/") << false << false;
    QTest::newRow("state 99 keeps set") << QStringLiteral("00/99/") << true << true;
    QTest::newRow("one digit") << QStringLiteral("00/4/") << false << true;
    QTest::newRow("no state is 0") << QStringLiteral("00") << true << false;
    QTest::newRow("letters are 0") << QStringLiteral("00/ab/") << true << false;
}

void TestEcrState::paperOutAfter()
{
    QFETCH(QString, answer);
    QFETCH(bool, before);
    QTEST(kelm::server::paperOutAfter(answer, before), "expected");
}

void TestEcrState::statusByte_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<int>("expected");

    QTest::newRow("digit 23 when accepted") << QStringLiteral("00/00/01/0000000000000500") << 5;
    QTest::newRow("status wins") << QStringLiteral("1A/00/01/0000000000000500") << 26;
    QTest::newRow("short answer") << QStringLiteral("00/00/") << 0;
    QTest::newRow("not a digit") << QStringLiteral("00/00/01/0000000000000x00") << 0;
}

void TestEcrState::statusByte()
{
    QFETCH(QString, answer);
    QTEST(kelm::server::statusByteFromAnswer(answer), "expected");
}

QTEST_GUILESS_MAIN(TestEcrState)
#include "tst_ecrstate.moc"
