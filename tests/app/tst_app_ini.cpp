// Settings files behave like the Windows profile functions, byte for byte.
#include "app/IniFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;

namespace {

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

} // namespace

class IniFileTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void read_data();
    void read();
    void readMissingFile();
    void write_data();
    void write();
    void writeCreatesTheFile();
    void writeRefusesAnUnreadableFile();
};

void IniFileTest::read_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<int>("buffer");
    QTest::addColumn<QString>("expected");

    const QByteArray base = "[Parametri]\r\nModello=Kelm Brio\r\nPorta=12\r\n";
    QTest::newRow("plain") << base << "Parametri" << "Modello" << 64 << "Kelm Brio";
    QTest::newRow("section and key in any case") << base << "PARAMETRI" << "modello" << 64 << "Kelm Brio";
    QTest::newRow("buffer of 3 gives 2 characters") << QByteArray("[P]\r\nPorta=123\r\n") << "P" << "Porta"
                                                    << 3 << "12";
    QTest::newRow("buffer of 1 gives nothing") << base << "Parametri" << "Porta" << 1 << "";
    QTest::newRow("missing key gives the default") << base << "Parametri" << "Velocita" << 10 << "dflt";
    QTest::newRow("missing section gives the default") << base << "Current" << "Modello" << 64 << "dflt";
    QTest::newRow("default is cut like a value") << base << "Current" << "Modello" << 3 << "df";
    QTest::newRow("blanks around key and value")
        << QByteArray("[P]\r\n  Key  =   some value \t\r\n") << "P" << "Key" << 64 << "some value";
    QTest::newRow("one pair of quotes removed") << QByteArray("[P]\nK=\"\"quoted\"\"\n") << "P" << "K" << 64
                                                << "\"quoted\"";
    QTest::newRow("a lone quote stays") << QByteArray("[P]\nK=\"open\n") << "P" << "K" << 64 << "\"open";
    QTest::newRow("semicolon and comma are raw") << QByteArray("[P]\nK=a;b,c ; d\n") << "P" << "K" << 64
                                                 << "a;b,c ; d";
    QTest::newRow("backslashes are raw") << QByteArray("[P]\nServerDir=C:\\Srv\\new\n") << "P"
                                         << "ServerDir" << 255 << "C:\\Srv\\new";
    QTest::newRow("commented key is not a key") << QByteArray("[P]\n;K=old\nK=new\n") << "P" << "K" << 64
                                                << "new";
    QTest::newRow("first of two keys wins") << QByteArray("[P]\nK=1\nK=2\n") << "P" << "K" << 64 << "1";
    QTest::newRow("key of another section is not seen")
        << QByteArray("[A]\nK=1\n[B]\nX=2\n") << "B" << "K" << 64 << "dflt";
    QTest::newRow("empty value is a value, not the default") << QByteArray("[P]\nK=\n") << "P" << "K" << 64 << "";
    QTest::newRow("Windows-1252 value") << QByteArray("[P]\nK=Velocit\xE0 \x80\n") << "P" << "K" << 64
                                        << QStringLiteral("Velocit\u00E0 \u20AC");
    QTest::newRow("LF only and no final line end") << QByteArray("[P]\nA=1\nK=last") << "P" << "K" << 64
                                                   << "last";
    QTest::newRow("blanks inside the brackets") << QByteArray("[ P ]\r\nK=v\r\n") << "P" << "K" << 64 << "v";
    QTest::newRow("UTF-8 mark before the first section")
        << QByteArray("\xEF\xBB\xBF[P]\r\nK=v\r\n") << "P" << "K" << 64 << "v";
    QTest::newRow("half-written file") << QByteArray("[P]\r\nK=v\r\n[Q") << "P" << "K" << 64 << "v";
}

void IniFileTest::read()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(int, buffer);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.ini"));
    writeFile(path, content);
    QCOMPARE(IniFile(path).read(section, key, QStringLiteral("dflt"), buffer), expected);
}

void IniFileTest::readMissingFile()
{
    QTemporaryDir dir;
    QCOMPARE(IniFile(dir.filePath(QStringLiteral("none.ini"))).read("P", "K", "dflt", 64), QStringLiteral("dflt"));
}

void IniFileTest::write_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QString>("section");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    QTest::addColumn<QByteArray>("after");

    const QByteArray base = "; settings\r\n[Parametri]\r\nModello=Kelm Brio\r\nPorta=1\r\n\r\n[Current]\r\nSN=1\r\n";
    QTest::newRow("replace keeps every other byte")
        << base << "parametri" << "PORTA" << "12"
        << QByteArray("; settings\r\n[Parametri]\r\nModello=Kelm Brio\r\nPorta=12\r\n\r\n[Current]\r\nSN=1\r\n");
    QTest::newRow("new key goes after the section's last line")
        << base << "Parametri" << "Velocita" << "9600"
        << QByteArray("; settings\r\n[Parametri]\r\nModello=Kelm Brio\r\nPorta=1\r\nVelocita=9600\r\n\r\n"
                      "[Current]\r\nSN=1\r\n");
    QTest::newRow("new section at the end")
        << base << "Intestazioni" << "Head1" << "x"
        << base + QByteArray("[Intestazioni]\r\nHead1=x\r\n");
    QTest::newRow("LF file gets LF lines") << QByteArray("[P]\nA=1\n") << "P" << "B" << "2"
                                           << QByteArray("[P]\nA=1\nB=2\n");
    QTest::newRow("last line without an end gets one")
        << QByteArray("[P]\r\nA=1") << "P" << "B" << "2" << QByteArray("[P]\r\nA=1\r\nB=2\r\n");
    QTest::newRow("replace the last line without an end keeps it so")
        << QByteArray("[P]\r\nA=1") << "P" << "A" << "3" << QByteArray("[P]\r\nA=3");
    QTest::newRow("value is written raw") << QByteArray("[P]\r\n") << "P" << "D" << "C:\\a;b,c \"q\""
                                          << QByteArray("[P]\r\nD=C:\\a;b,c \"q\"\r\n");
    QTest::newRow("Windows-1252 and ?")
        << QByteArray("[P]\r\n") << "P" << "K" << QStringLiteral("\u20AC\u00E8\u4E00")
        << QByteArray("[P]\r\nK=\x80\xE8?\r\n");
    QTest::newRow("line breaks in a value cannot split the file")
        << QByteArray("[P]\r\n") << "P" << "K" << "a\r\nb" << QByteArray("[P]\r\nK=a  b\r\n");
    QTest::newRow("the key keeps its spelling in the file")
        << QByteArray("[P]\r\nServerDir=a\r\n") << "p" << "SERVERDIR" << "b" << QByteArray("[P]\r\nServerDir=b\r\n");
    QTest::newRow("empty section gets its first key")
        << QByteArray("[P]\r\n[Q]\r\nX=1\r\n") << "P" << "K" << "v" << QByteArray("[P]\r\nK=v\r\n[Q]\r\nX=1\r\n");
}

void IniFileTest::write()
{
    QFETCH(QByteArray, before);
    QFETCH(QString, section);
    QFETCH(QString, key);
    QFETCH(QString, value);
    QFETCH(QByteArray, after);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.ini"));
    writeFile(path, before);
    QVERIFY(IniFile(path).write(section, key, value));
    QCOMPARE(readFile(path), after);
}

void IniFileTest::writeCreatesTheFile()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("KelmDrev.ini"));
    const IniFile ini(path);
    QVERIFY(ini.write("Parametri", "Modello", "Velt"));
    QVERIFY(ini.write("Parametri", "Porta", "3"));
    QCOMPARE(readFile(path), QByteArray("[Parametri]\r\nModello=Velt\r\nPorta=3\r\n"));
    QCOMPARE(ini.read("parametri", "modello", QString(), 64), QStringLiteral("Velt"));
}

void IniFileTest::writeRefusesAnUnreadableFile()
{
    // Something there that cannot be read as a file: never replace it.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.ini"));
    QVERIFY(QDir().mkdir(path));
    QVERIFY(!IniFile(path).write("P", "K", "lost"));
    QVERIFY(QFileInfo(path).isDir());
}

QTEST_APPLESS_MAIN(IniFileTest)
#include "tst_app_ini.moc"
