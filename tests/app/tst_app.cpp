// The program's command line, its settings files (which behave like the
// Windows profile functions, byte for byte), loading and saving the PC
// settings, the forbidden-extension list and the items of a command file.
#include "RecordingStatus.h"
#include "app/CommandLine.h"
#include "app/Configuration.h"
#include "app/IniFile.h"
#include "app/InputItems.h"
#include "app/PortName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;
using Mode = CommandLine::Mode;

Q_DECLARE_METATYPE(CommandLine::Mode)

namespace {

// "<missing>" for no file at all; writing "<missing>" writes nothing.
QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    if (bytes != "<missing>" && f.open(QIODevice::WriteOnly))
        f.write(bytes);
}

} // namespace

class AppTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commandLine_data();
    void commandLine();
    void iniRead_data();
    void iniRead();
    void iniWrite_data();
    void iniWrite();
    void iniWriteRefusesAnUnreadableFile();
    void load_data();
    void load();
    void missingModelStopsEverything();
    void forbiddenExtensions_data();
    void forbiddenExtensions();
    void inputItems_data();
    void inputItems();
    void save_data();
    void save();
    void trimNulls_data();
    void trimNulls();
    void systemPortName_data();
    void systemPortName();
};

void AppTest::commandLine_data()
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

void AppTest::commandLine()
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

void AppTest::iniRead_data()
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
    QTest::newRow("no file") << QByteArray("<missing>") << "P" << "K" << 64 << "dflt";
    QTest::newRow("half-written file") << QByteArray("[P]\r\nK=v\r\n[Q") << "P" << "K" << 64 << "v";
}

void AppTest::iniRead()
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

void AppTest::iniWrite_data()
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
    QTest::newRow("no file: created") << QByteArray("<missing>") << "Parametri" << "Modello" << "Velt"
                                      << QByteArray("[Parametri]\r\nModello=Velt\r\n");
}

void AppTest::iniWrite()
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

void AppTest::iniWriteRefusesAnUnreadableFile()
{
    // Something there that cannot be read as a file: never replace it.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("t.ini"));
    QVERIFY(QDir().mkdir(path));
    QVERIFY(!IniFile(path).write("P", "K", "lost"));
    QVERIFY(QFileInfo(path).isDir());
}

void AppTest::load_data()
{
    QTest::addColumn<QByteArray>("parametri");  // lines of section Parametri
    QTest::addColumn<QString>("field");
    QTest::addColumn<QString>("expected");

    const QByteArray model = "Modello=Kelm Brio\r\n";
    QTest::newRow("port number") << model + "Porta=3\r\n" << "port" << "Com3";
    QTest::newRow("empty port gives Com") << model << "port" << "Com";
    QTest::newRow("port read with 3 characters") << model + "Porta=123\r\n" << "port" << "Com12";
    QTest::newRow("speed") << model + "Velocita=115200\r\n" << "speed" << "115200";
    QTest::newRow("speed not a number") << model + "Velocita=fast\r\n" << "speed" << "0";
    QTest::newRow("server on, any case") << model + "ServerStato=on\r\n" << "serverState" << "On";
    QTest::newRow("server yes is off") << model + "ServerStato=yes\r\n" << "serverState" << "Off";
    QTest::newRow("server state missing") << model << "serverState" << "Off";
    QTest::newRow("mode any case") << model + "ServerModalita=iconized\r\n" << "serverMode" << "Iconized";
    QTest::newRow("mode VirtualECR") << model + "ServerModalita=VIRTUALECR\r\n" << "serverMode" << "VirtualECR";
    QTest::newRow("unknown mode is Normal") << model + "ServerModalita=Hidden\r\n" << "serverMode" << "Normal";
    QTest::newRow("server file missing") << model << "serverFile" << "scontrino.tx";
    QTest::newRow("server file empty") << model + "ServerFile=\r\n" << "serverFile" << "scontrino.tx";
    QTest::newRow("server file mask") << model + "ServerFile=*.txt\r\n" << "serverFile" << "*.txt";
    QTest::newRow("server dir missing is the program folder") << model << "serverDir" << "<folder>";
    QTest::newRow("server dir empty is the program folder") << model + "ServerDir=  \r\n" << "serverDir" << "<folder>";
    QTest::newRow("server dir") << model + "ServerDir=/var/spool/kelm\r\n" << "serverDir" << "/var/spool/kelm";
    QTest::newRow("wrap on") << model + "WrapDescription=ON\r\n" << "wrapDescription" << "On";
    QTest::newRow("vat off") << model + "AlIvaAuto=0\r\n" << "alIvaAuto" << "Off";
    QTest::newRow("device path") << model + "Dispositivo=/dev/ttyUSB0\r\n" << "device" << "/dev/ttyUSB0";
    QTest::newRow("model as read") << QByteArray("Modello=  Velt \r\n") << "model" << "Velt";
}

void AppTest::load()
{
    QFETCH(QByteArray, parametri);
    QFETCH(QString, field);
    QFETCH(QString, expected);
    QTemporaryDir dir;
    const QString ini = dir.filePath(QStringLiteral("KelmDrev.ini"));
    writeFile(ini, "[Parametri]\r\n" + parametri);
    ConfigPC c;
    RecordingStatus status;
    QVERIFY(LoadConfiguration(IniFile(ini), dir.path(), c, status));
    const QMap<QString, QString> fields = {
        {"port", c.port}, {"speed", QString::number(c.speed)}, {"serverState", c.serverState},
        {"serverMode", c.serverMode}, {"serverFile", c.serverFile}, {"serverDir", c.serverDir},
        {"wrapDescription", c.wrapDescription}, {"alIvaAuto", c.alIvaAuto}, {"device", c.device},
        {"model", c.model}};
    QCOMPARE(fields.value(field), QString(expected).replace(QStringLiteral("<folder>"), dir.path()));
    const bool speedMissing = c.speed < 1;
    QCOMPARE(status.panels.value(2), speedMissing ? QStringLiteral("Velocità Comunicazione non impostata") : QString());
}

void AppTest::missingModelStopsEverything()
{
    QTemporaryDir dir;
    const QString ini = dir.filePath(QStringLiteral("KelmDrev.ini"));
    writeFile(ini, "[Altro]\r\nModello=Velt\r\n[Parametri]\r\nPorta=4\r\n");
    writeFile(dir.filePath(QStringLiteral("FileExt.ini")), "[exe]\r\n");
    ConfigPC c;
    RecordingStatus status;
    QVERIFY(!LoadConfiguration(IniFile(ini), dir.path(), c, status));
    QCOMPARE(status.panels.value(1), QStringLiteral("Errore Nei Parametri"));
    QCOMPARE(status.panels.value(2), QStringLiteral("Tipo Modello non impostato"));
    QCOMPARE(c.port, QString());   // nothing read beyond the model
    QVERIFY(c.forbiddenExtensions.isEmpty());
}

void AppTest::forbiddenExtensions_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("table");
    QTest::newRow("one per line, slot n is line n") << QByteArray("[exe]\r\n[bat]\r\n[drev]\r\n")
                                                    << QStringList{"exe", "bat", "drev"};
    QTest::newRow("other forms take a slot") << QByteArray("[exe]\r\nexe\r\n[\r\n[tmp]\n")
                                             << QStringList{"exe", "", "", "tmp"};
    QTest::newRow("text between [ and the first ]") << QByteArray("[a]b]\r\n") << QStringList{"a"};
    QTest::newRow("empty brackets") << QByteArray("[]\r\n") << QStringList{""};
    QTest::newRow("commas split items") << QByteArray("[a],[b]\r\n") << QStringList{"a", "b"};
    QTest::newRow("quotes removed") << QByteArray("\"[x]\"\r\n") << QStringList{"x"};
    QTest::newRow("empty file") << QByteArray() << QStringList{};
}

void AppTest::forbiddenExtensions()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, table);
    QCOMPARE(LoadForbiddenExtensions(file), table);
}

void AppTest::inputItems_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("items");
    QTest::newRow("commas and lines") << QByteArray("a/,b/\r\nc/\n") << QStringList{"a/", "b/", "c/"};
    QTest::newRow("leading blanks skipped, trailing dropped") << QByteArray("  a/  ,\tb/ \r\n")
                                                              << QStringList{"a/", "b/"};
    QTest::newRow("quoted item keeps commas") << QByteArray("\"x, y\",z\r\n") << QStringList{"x, y", "z"};
    QTest::newRow("empty line is an empty item") << QByteArray("a\r\n\r\nb") << QStringList{"a", "", "b"};
    QTest::newRow("no final line end") << QByteArray("a") << QStringList{"a"};
    QTest::newRow("unclosed quote takes the rest") << QByteArray("\"abc") << QStringList{"abc"};
}

void AppTest::inputItems()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, items);
    QCOMPARE(readInputItems(file), items);
}

void AppTest::save_data()
{
    QTest::addColumn<QString>("comPort");
    QTest::addColumn<QString>("device");
    QTest::addColumn<bool>("clearDevice"); // a ComN port chosen over a stored device path
    QTest::addColumn<QByteArray>("porta");
    QTest::addColumn<QByteArray>("dispositivo"); // the line written last, if any
    QTest::newRow("Com7: no device path chosen, no Dispositivo") << "Com7" << "" << false << QByteArray("7") << QByteArray();
    QTest::newRow("Com12") << "Com12" << "" << false << QByteArray("12") << QByteArray();
    QTest::newRow("short text") << "Com" << "" << false << QByteArray("0") << QByteArray();
    QTest::newRow("blanks trimmed first") << "  Com3  " << "" << false << QByteArray("3") << QByteArray();
    QTest::newRow("a device path") << "Com2" << " /dev/ttyUSB0 " << false << QByteArray("2")
                                   << QByteArray("Dispositivo=/dev/ttyUSB0\r\n");
    QTest::newRow("a stored device path cleared") << "Com2" << "" << true << QByteArray("2") << QByteArray("Dispositivo=\r\n");
}

void AppTest::save()
{
    QFETCH(QString, comPort);
    QFETCH(QString, device);
    QFETCH(bool, clearDevice);
    QFETCH(QByteArray, porta);
    QFETCH(QByteArray, dispositivo);
    QTemporaryDir dir;
    const QString path = dir.filePath("KelmDrev.ini");
    writeFile(path, "[Current]\r\nSN=99MEA012345\r\n");
    ConfigForm form{" Velt ", comPort, device, clearDevice, " 115200 ", true, "Minimized", "/var/spool/kelm", "*.txt",
                    true, false, true};
    ConfigPC c;
    RecordingStatus status;
    status.setPanel(2, "old message");
    SaveConfigPC(IniFile(path), form, c, status);
    QCOMPARE(readFile(path), "[Current]\r\nSN=99MEA012345\r\n[Parametri]\r\nModello=Velt\r\nPorta=" + porta
                                 + "\r\nVelocita=115200\r\nServerStato=On\r\nServerModalita=Minimized\r\n"
                                   "ServerDir=/var/spool/kelm\r\nServerFile=*.txt\r\nServerLog=On\r\n"
                                   "WrapDescription=Off\r\nAlIvaAuto=On\r\n" + dispositivo);
    QCOMPARE(status.panels.value(2), QString());
    QCOMPARE(c.port, "Com" + porta);
    QCOMPARE(c.device, device.trimmed());
    QCOMPARE(c.speed, 115200);
    QCOMPARE(c.serverState, QStringLiteral("On"));
}

void AppTest::trimNulls_data()
{
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("padded buffer") << QStringLiteral("Velt\0\0\0") << "Velt";
    QTest::newRow("blanks both ends") << "  a b  " << "a b";
    QTest::newRow("NUL inside becomes a blank") << QString::fromUtf16(u"a\0b", 3) << "a b";
    QTest::newRow("only NULs") << QString(3, QChar(0)) << "";
}

void AppTest::trimNulls()
{
    QFETCH(QString, in);
    QFETCH(QString, out);
    QCOMPARE(TrimNulls(in), out);
}

void AppTest::systemPortName_data()
{
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("device");
    QTest::addColumn<QString>("name");
#ifdef Q_OS_WIN
    QTest::newRow("Com3 as it stands") << "Com3" << "" << "Com3";
#else
    QTest::newRow("Com1 is the first serial port") << "Com1" << "" << "/dev/ttyS0";
    QTest::newRow("Com12") << "Com12" << "" << "/dev/ttyS11";
    QTest::newRow("empty Porta stays Com") << "Com" << "" << "Com";
    QTest::newRow("Com0 is no port") << "Com0" << "" << "Com0";
#endif
    QTest::newRow("device wins") << "Com1" << "/dev/ttyUSB0" << "/dev/ttyUSB0";
    QTest::newRow("Windows device path") << "Com1" << "\\\\.\\COM12" << "\\\\.\\COM12";
}

void AppTest::systemPortName()
{
    QFETCH(QString, port);
    QFETCH(QString, device);
    QFETCH(QString, name);
    ConfigPC c;
    c.port = port;
    c.device = device;
    QCOMPARE(SystemPortName(c), name);
}

QTEST_APPLESS_MAIN(AppTest)
#include "tst_app.moc"
