#include "app/Configuration.h"
#include "server/FileMask.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using kelm::server::FileMask;
using kelm::server::MaskMode;

class TestFileMask : public QObject {
    Q_OBJECT

private slots:
    void parse_data();
    void parse();
    void matches_data();
    void matches();
    void forbidden_data();
    void forbidden();
    void listDirectory_data();
    void listDirectory();
    void missingDirectory();
    void logName_data();
    void logName();
};

void TestFileMask::parse_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<char>("mode");
    QTest::addColumn<QString>("pattern");

    QTest::newRow("name") << QStringLiteral("scontrino.txt") << '=' << QStringLiteral("scontrino.txt");
    QTest::newRow("name trimmed") << QStringLiteral(" scontrino.tx ") << '=' << QStringLiteral("scontrino.tx");
    QTest::newRow("*name") << QStringLiteral("*.txt") << 'F' << QStringLiteral(".txt");
    QTest::newRow("name*") << QStringLiteral("SCO*") << 'I' << QStringLiteral("SCO");
    QTest::newRow("name*.*") << QStringLiteral("SCO*.*") << 'I' << QStringLiteral("SCO");
    QTest::newRow("name**") << QStringLiteral("SCO**") << 'I' << QStringLiteral("SCO");
    QTest::newRow("star inside") << QStringLiteral("ab*cd") << 'I' << QStringLiteral("ab");
    QTest::newRow("*part*") << QStringLiteral("*ord*") << 'C' << QStringLiteral("ord");
    QTest::newRow("text around *part*") << QStringLiteral("a*ord*b") << 'C' << QStringLiteral("ord");
    QTest::newRow("third star") << QStringLiteral("*.tx*x*") << 'C' << QStringLiteral(".tx");
    QTest::newRow("*") << QStringLiteral("*") << 'A' << QString();
    QTest::newRow("*.*") << QStringLiteral("*.*") << 'A' << QString();
    QTest::newRow("**") << QStringLiteral("**") << 'A' << QString();
    QTest::newRow("empty") << QString() << 'A' << QString();
}

void TestFileMask::parse()
{
    QFETCH(QString, mask);
    const FileMask parsed = kelm::server::parseFileMask(mask);
    QTEST(static_cast<char>(parsed.mode), "mode");
    QTEST(parsed.pattern, "pattern");
}

void TestFileMask::matches_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");

    QTest::newRow("= same") << QStringLiteral("scontrino.txt") << QStringLiteral("scontrino.txt") << true;
    QTest::newRow("= other case") << QStringLiteral("scontrino.txt") << QStringLiteral("SCONTRINO.TXT") << true;
    QTest::newRow("= longer") << QStringLiteral("scontrino.txt") << QStringLiteral("scontrino.txt.bak") << false;
    QTest::newRow("= prefixed") << QStringLiteral("scontrino.txt") << QStringLiteral("xscontrino.txt") << false;
    QTest::newRow("F ends") << QStringLiteral("*.txt") << QStringLiteral("a.TXT") << true;
    QTest::newRow("F working copy") << QStringLiteral("*.txt") << QStringLiteral("a.txt.drev") << false;
    QTest::newRow("I begins") << QStringLiteral("SCO*") << QStringLiteral("sco1.txt") << true;
    QTest::newRow("I begins, other case") << QStringLiteral("SCO*") << QStringLiteral("SCO.dat") << true;
    QTest::newRow("I inside") << QStringLiteral("SCO*") << QStringLiteral("asco.txt") << false;
    QTest::newRow("C contains") << QStringLiteral("*ord*") << QStringLiteral("record.txt") << true;
    QTest::newRow("C at start") << QStringLiteral("*ord*") << QStringLiteral("ORDINE") << true;
    QTest::newRow("C missing") << QStringLiteral("*ord*") << QStringLiteral("rec.txt") << false;
    QTest::newRow("A anything") << QStringLiteral("*") << QStringLiteral("other.program") << true;
    QTest::newRow("A no extension") << QStringLiteral("*.*") << QStringLiteral("noext") << true;
}

void TestFileMask::matches()
{
    QFETCH(QString, mask);
    QFETCH(QString, name);
    QTEST(kelm::server::matchesFileMask(kelm::server::parseFileMask(mask), name), "expected");
}

void TestFileMask::forbidden_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("table");
    QTest::addColumn<bool>("expected");

    const QStringList tmp{QStringLiteral("tmp")};
    QStringList full(kelm::kMaxForbiddenExtensions, QStringLiteral("a"));

    QTest::newRow("listed") << QStringLiteral("x.tmp") << tmp << true;
    QTest::newRow("other case") << QStringLiteral("x.TMP") << tmp << true;
    QTest::newRow("after empty slots") << QStringLiteral("x.tmp")
                                       << QStringList{"exe", "", "", "tmp"} << true;
    QTest::newRow("last dot decides") << QStringLiteral("x.tmp.txt") << tmp << false;
    QTest::newRow("after the last dot") << QStringLiteral("x.txt.tmp") << tmp << true;
    QTest::newRow("not listed") << QStringLiteral("x.txt") << tmp << false;
    QTest::newRow("prefix of an entry") << QStringLiteral("x.tm") << tmp << false;
    QTest::newRow("entry is a prefix") << QStringLiteral("x.tmpx") << tmp << false;
    QTest::newRow("no extension") << QStringLiteral("noext") << QStringList{} << false;
    QTest::newRow("final dot, empty slots") << QStringLiteral("x.") << tmp << true;
    QTest::newRow("final dot, every slot filled") << QStringLiteral("x.") << full << false;
    QTest::newRow("past the last slot") << QStringLiteral("x.exe") << (full + QStringList{"exe"}) << false;
    QTest::newRow("in the last slot") << QStringLiteral("x.exe")
                                      << (full.mid(1) + QStringList{"exe"}) << true;
}

void TestFileMask::forbidden()
{
    QFETCH(QString, name);
    QFETCH(QStringList, table);
    QTEST(kelm::server::hasForbiddenExtension(name, table), "expected");
}

void TestFileMask::listDirectory_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QStringList>("forbidden");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("one name") << QStringLiteral("scontrino.txt") << QStringList{}
                              << QStringList{"SCONTRINO.TXT"};
    QTest::newRow("extension") << QStringLiteral("*.txt") << QStringList{}
                               << QStringList{"SCONTRINO.TXT", "sco1.txt", ".sco.txt"};
    QTest::newRow("hidden named") << QStringLiteral(".sco.txt") << QStringList{}
                                  << QStringList{".sco.txt"};
    QTest::newRow("everything but forbidden") << QStringLiteral("*") << QStringList{"tmp"}
                                              << QStringList{"SCONTRINO.TXT", "sco1.txt", "sco2.dat", ".sco.txt"};
    QTest::newRow("forbidden though matching") << QStringLiteral("sco*") << QStringList{"dat", "tmp"}
                                               << QStringList{"SCONTRINO.TXT", "sco1.txt"};
}

void TestFileMask::listDirectory()
{
    QFETCH(QString, mask);
    QFETCH(QStringList, forbidden);
    QFETCH(QStringList, expected);

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    for (const char* name : {"SCONTRINO.TXT", "sco1.txt", "sco2.dat", "sco3.tmp", ".sco.txt",
                             "DREV20261122.log", "Totali.txt", "sco1.txt.drev", "sco4.FMN",
                             "KelmDrev.ini", "KelmDrev.pending", "FileExt.ini", "Totali.txt.aB3x9Z"}) {
        QFile file(dir.filePath(QString::fromLatin1(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("scodir.txt")));

    QStringList names = kelm::server::MatchFileMask(dir.path(), mask, forbidden);
    names.sort();
    expected.sort();
    QCOMPARE(names, expected);
}

void TestFileMask::missingDirectory()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QCOMPARE(kelm::server::MatchFileMask(dir.filePath(QStringLiteral("missing")), QStringLiteral("*"), {}),
             QStringList{});
}

void TestFileMask::logName_data()
{
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QString>("current");
    QTest::addColumn<QString>("expected");

    QTest::newRow("waiting file") << QStringLiteral("scontrino.tx") << QString() << QStringLiteral("scontrino.tx");
    QTest::newRow("*name") << QStringLiteral("*.txt") << QString() << QStringLiteral(".txt");
    QTest::newRow("*part* replaces") << QStringLiteral("*ord*") << QStringLiteral("old") << QStringLiteral("ord");
    QTest::newRow("global mask keeps") << QStringLiteral("*") << QStringLiteral("old") << QStringLiteral("old");
    QTest::newRow("global mask, none yet") << QStringLiteral("*.*") << QString() << QString();
}

void TestFileMask::logName()
{
    QFETCH(QString, mask);
    QFETCH(QString, current);
    QTEST(kelm::server::logNameAfterMask(kelm::server::parseFileMask(mask), current), "expected");
}

QTEST_GUILESS_MAIN(TestFileMask)
#include "tst_filemask.moc"
