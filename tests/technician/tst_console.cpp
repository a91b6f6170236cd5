#include "technician/CommandConsole.h"

#include <QTest>

using namespace kelm::technician;

class TestConsole : public QObject {
    Q_OBJECT

private slots:
    void singleCommand_data();
    void singleCommand();
    void commandFile_data();
    void commandFile();
    void answerText_data();
    void answerText();
};

void TestConsole::singleCommand_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("record");

    QTest::newRow("slash added") << QStringLiteral("x/1/1/1") << QStringLiteral("x/1/1/1/");
    QTest::newRow("slash added after one") << QStringLiteral("x/1/1/1/") << QStringLiteral("x/1/1/1//");
    QTest::newRow("trimmed first") << QStringLiteral("  a  ") << QStringLiteral("a/");
    QTest::newRow("empty") << QString() << QStringLiteral("/");
}

void TestConsole::singleCommand()
{
    QFETCH(QString, typed);
    QTEST(singleCommandRecord(typed), "record");
}

void TestConsole::commandFile_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QStringList>("records");

    QTest::newRow("two items on a line") << QByteArray("a/,b/\r\n") << QStringList{"a/", "b/"};
    QTest::newRow("slash completed") << QByteArray("x/1/1/1\r\nx/7/0/0/\r\n")
                                     << QStringList{"x/1/1/1/", "x/7/0/0/"};
    QTest::newRow("last line without end") << QByteArray("a/\nb") << QStringList{"a/", "b/"};
    QTest::newRow("quotes keep the comma") << QByteArray("\"3/S/A,B//1/1/1/1/\"\r\n")
                                           << QStringList{"3/S/A,B//1/1/1/1/"};
    QTest::newRow("slash added before the trim") << QByteArray("\"a/ \"\r\n") << QStringList{"a/ /"};
    QTest::newRow("empty line is a record") << QByteArray("a/\r\n\r\nb/\r\n") << QStringList{"a/", "/", "b/"};
    QTest::newRow("empty file") << QByteArray() << QStringList();
}

void TestConsole::commandFile()
{
    QFETCH(QByteArray, contents);
    QTEST(commandFileRecords(contents), "records");
}

void TestConsole::answerText_data()
{
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("shown");

    QTest::newRow("accepted") << QStringLiteral("00/00/01/") << QStringLiteral("00/00/01/");
    QTest::newRow("refused") << QStringLiteral("1A/00/") << QStringLiteral("Errore");
    QTest::newRow("status without slash") << QStringLiteral("00") << QStringLiteral("Errore");
    QTest::newRow("no answer") << QString() << QStringLiteral("Errore");
}

void TestConsole::answerText()
{
    QFETCH(QString, answer);
    QTEST(consoleAnswerText(answer), "shown");
}

QTEST_GUILESS_MAIN(TestConsole)
#include "tst_console.moc"
