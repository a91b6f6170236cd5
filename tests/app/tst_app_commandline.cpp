// The program's command line: its own options, send, and the test-mode word.
#include "app/CommandLine.h"

#include <QTest>

using namespace kelm;
using Mode = CommandLine::Mode;

Q_DECLARE_METATYPE(CommandLine::Mode)

class CommandLineTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void parse_data();
    void parse();
};

void CommandLineTest::parse_data()
{
    QTest::addColumn<QStringList>("args");
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<QString>("home");
    QTest::addColumn<QStringList>("records");
    QTest::addColumn<bool>("testMode");
    QTest::addColumn<bool>("error");

    QTest::newRow("nothing: the window") << QStringList{} << Mode::Window << "" << QStringList{} << false << false;
    QTest::newRow("/TESTMODE") << QStringList{"/TESTMODE"} << Mode::Window << "" << QStringList{} << true << false;
    QTest::newRow("/testmode in any case") << QStringList{"/TestMode"} << Mode::Window << "" << QStringList{} << true
                                           << false;
    QTest::newRow("/TESTMODE x is not test mode")
        << QStringList{"/TESTMODE", "x"} << Mode::Window << "" << QStringList{} << false << false;
    QTest::newRow("options come off before the comparison")
        << QStringList{"--home", "/srv/k", "/testmode"} << Mode::Window << "/srv/k" << QStringList{} << true << false;
    QTest::newRow("--home=DIR") << QStringList{"--home=/srv/k"} << Mode::Window << "/srv/k" << QStringList{}
                                << false << false;
    QTest::newRow("send records") << QStringList{"send", "a/", "x/7/0/0/"} << Mode::Send << ""
                                  << QStringList{"a/", "x/7/0/0/"} << false << false;
    QTest::newRow("send with home anywhere") << QStringList{"send", "a/", "--home", "/h", "s/"} << Mode::Send
                                             << "/h" << QStringList{"a/", "s/"} << false << false;
    QTest::newRow("records that begin with a dash") << QStringList{"send", "-/1/", "--/"} << Mode::Send << ""
                                                    << QStringList{"-/1/", "--/"} << false << false;
    QTest::newRow("send without records") << QStringList{"send"} << Mode::Send << "" << QStringList{} << false
                                          << true;
    QTest::newRow("--home without a folder") << QStringList{"--home"} << Mode::Window << "" << QStringList{}
                                             << false << true;
    QTest::newRow("--http takes its value off") << QStringList{"--http", "127.0.0.1:8080", "/TESTMODE"} << Mode::Window
                                                << "" << QStringList{} << true << false;
    QTest::newRow("--http without a port") << QStringList{"--http"} << Mode::Window << "" << QStringList{} << false
                                           << true;
    QTest::newRow("unknown option") << QStringList{"--fast"} << Mode::Window << "" << QStringList{} << false << true;
    QTest::newRow("help wins") << QStringList{"send", "--help"} << Mode::Help << "" << QStringList{} << false
                               << false;
}

void CommandLineTest::parse()
{
    QFETCH(QStringList, args);
    QFETCH(Mode, mode);
    QFETCH(QString, home);
    QFETCH(QStringList, records);
    QFETCH(bool, testMode);
    QFETCH(bool, error);
    const CommandLine cl = ParseCommandLine(args);
    QCOMPARE(!cl.error.isEmpty(), error);
    if (error)
        return;
    QCOMPARE(cl.mode, mode);
    QCOMPARE(cl.home, home);
    QCOMPARE(cl.records, records);
    QCOMPARE(cl.testMode, testMode);
}

QTEST_APPLESS_MAIN(CommandLineTest)
#include "tst_app_commandline.moc"
