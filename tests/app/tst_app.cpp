// The program's command line, its settings files (which behave like the
// Windows profile functions, byte for byte), loading and saving the PC
// settings, the forbidden-extension list and the items of a command file.
#include "RecordingStatus.h"
#include "Table.h"
#include "app/CommandLine.h"
#include "app/Configuration.h"
#include "app/IniFile.h"
#include "app/InputItems.h"
#include "app/PortName.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

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

// The path of a file in the folder, holding the bytes given; "<folder>" makes a folder of that name.
QString fileIn(const QTemporaryDir& dir, const QString& name, const QByteArray& bytes)
{
    QFile f(dir.filePath(name));
    if (bytes == "<folder>")
        QDir().mkdir(f.fileName());
    else if (bytes != "<missing>" && f.open(QIODevice::WriteOnly))
        f.write(bytes);
    return f.fileName();
}

const QByteArray kModel = "Modello=Kelm Brio\r\n";
const QByteArray kIniBase = "[Parametri]\r\nModello=Kelm Brio\r\nPorta=12\r\n";
const QByteArray kIniTwoSections = "; settings\r\n[Parametri]\r\nModello=Kelm Brio\r\nPorta=1\r\n\r\n[Current]\r\nSN=1\r\n";

} // namespace

class AppTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void commandLine_data();
    void commandLine()
    {
        for (const QStringList& args : eachInput(fetch<QStringList>("args"))) {
            const CommandLine cl = ParseCommandLine(args);
            QVERIFY2(cl.error.isEmpty() != fetch<bool>("error"), qPrintable(args.join(u' ')));
            if (!cl.error.isEmpty())
                continue;
            QTEST(cl.mode, "mode");
            QTEST(cl.home, "home");
            QTEST(cl.records, "records");
            QTEST(cl.testMode, "testMode");
        }
    }
    void iniRead_data();
    void iniRead()
    {
        QTemporaryDir dir;
        const IniFile ini(fileIn(dir, "t.ini", fetch<QByteArray>("content")));
        QTEST(ini.read(fetch<QString>("section"), fetch<QString>("key"), QStringLiteral("dflt"), fetch<int>("buffer")),
              "expected");
    }
    void iniWrite_data();
    void iniWrite()
    {
        QTemporaryDir dir;
        const QString path = fileIn(dir, "t.ini", fetch<QByteArray>("before"));
        const bool written = IniFile(path).write(fetch<QString>("section"), fetch<QString>("key"), fetch<QString>("value"));
        QTEST(readFile(path), "after");
        QCOMPARE(written, QFileInfo(path).isFile());
    }
    void load_data();
    void load()
    {
        QTemporaryDir dir;
        const QString ini = fileIn(dir, "KelmDrev.ini", "[Parametri]\r\n" + fetch<QByteArray>("parametri"));
        fileIn(dir, "FileExt.ini", "[exe]\r\n[tmp]\r\n");
        ConfigPC c;
        RecordingStatus status;
        const bool loaded = LoadConfiguration(IniFile(ini), dir.path(), c, status);
        QCOMPARE(loaded, !c.model.isEmpty());
        const QStringList read{c.port, QString::number(c.speed), c.serverState, c.serverMode, c.serverFile, c.serverDir,
                               c.wrapDescription, c.alIvaAuto, c.device, c.model, c.serverLog, c.httpListen, c.httpToken,
                               c.answers, QString::number(c.answerDays), c.forbiddenExtensions.join(u',')};
        QCOMPARE(read.join(u'|'), QString(fetch<QString>("expected")).replace("<folder>", dir.path()));
        QTEST(status.panels.value(2), "panel");
    }
    void save_data();
    void save()
    {
        const QByteArray& porta = fetch<QByteArray>("porta");
        const QString& device = fetch<QString>("device");
        QTemporaryDir dir;
        const QString path = fileIn(dir, "KelmDrev.ini", "[Current]\r\nSN=99MEA012345\r\n");
        ConfigForm form{" Velt ", fetch<QString>("comPort"), device, fetch<bool>("clearDevice"), " 115200 ", true,
                        "Minimized", "/var/spool/kelm", "*.txt", true, false, true};
        ConfigPC c;
        RecordingStatus status;
        status.setPanel(2, "old message");
        SaveConfigPC(IniFile(path), form, c, status);
        QCOMPARE(readFile(path), "[Current]\r\nSN=99MEA012345\r\n[Parametri]\r\nModello=Velt\r\nPorta=" + porta
                                     + "\r\nVelocita=115200\r\nServerStato=On\r\nServerModalita=Minimized\r\n"
                                       "ServerDir=/var/spool/kelm\r\nServerFile=*.txt\r\nServerLog=On\r\n"
                                       "WrapDescription=Off\r\nAlIvaAuto=On\r\n" + fetch<QByteArray>("dispositivo"));
        QCOMPARE(status.panels.value(2), QString());
        QCOMPARE((QStringList{c.port, c.device, QString::number(c.speed), c.serverState}),
                 (QStringList{"Com" + porta, device.trimmed(), "115200", "On"}));
    }
    // The readers of a file's text into a list: FileExt.ini and command files.
    void textLists_data();
    void textLists()
    {
        const QByteArray& file = fetch<QByteArray>("file");
        QTEST(fetch<bool>("extensions") ? LoadForbiddenExtensions(file) : readInputItems(file), "list");
    }
    void systemPortName_data();
    void systemPortName()
    {
        ConfigPC c;
        c.port = fetch<QString>("port");
        c.device = fetch<QString>("device");
        QTEST(SystemPortName(c), "name");
    }
};

void AppTest::commandLine_data()
{
    columns<QStringList, Mode, QString, QStringList, bool, bool>("args", "mode", "home", "records", "testMode", "error");
    const QString none;
    const QStringList no;
    row("nothing: the window", no, Mode::Window, none, no, false, false);
    row("/TESTMODE in any case", QStringList{"/TESTMODE", kOr, "/TestMode"}, Mode::Window, none, no, true, false);
    row("/TESTMODE x is not test mode", QStringList{"/TESTMODE", "x"}, Mode::Window, none, no, false, false);
    row("options come off before the comparison", QStringList{"--home", "/srv/k", "/testmode"}, Mode::Window,
        QStringLiteral("/srv/k"), no, true, false);
    row("--home=DIR", QStringList{"--home=/srv/k"}, Mode::Window, QStringLiteral("/srv/k"), no, false, false);
    row("send with home anywhere", QStringList{"send", "a/", "--home", "/h", "s/"}, Mode::Send, QStringLiteral("/h"),
        QStringList{"a/", "s/"}, false, false);
    row("records that begin with a dash", QStringList{"send", "-/1/", "--/"}, Mode::Send, none, QStringList{"-/1/", "--/"},
        false, false);
    // Send without records, --home without a folder, --http without a port, an unknown option.
    row("refused", QStringList{"send", kOr, "--home", kOr, "--http", kOr, "--fast"}, Mode::Window, none, no, false, true);
    row("--http takes its value off", QStringList{"--http", "127.0.0.1:8080", "/TESTMODE"}, Mode::Window, none, no, true, false);
    row("help wins", QStringList{"send", "--help"}, Mode::Help, none, no, false, false);
}

void AppTest::iniRead_data()
{
    columns<QByteArray, QString, QString, int, QString>("content", "section", "key", "buffer", "expected");
    row("section and key in any case", kIniBase, "PARAMETRI", "modello", 64, "Kelm Brio");
    row("buffer of 3 gives 2 characters", QByteArray("[P]\r\nPorta=123\r\n"), "P", "Porta", 3, "12");
    row("buffer of 1 gives nothing", kIniBase, "Parametri", "Porta", 1, "");
    row("missing key gives the default", kIniBase, "Parametri", "Velocita", 10, "dflt");
    row("missing section gives the default", kIniBase, "Current", "Modello", 64, "dflt");
    row("default is cut like a value", kIniBase, "Current", "Modello", 3, "df");
    row("blanks around key and value", QByteArray("[P]\r\n  Key  =   some value \t\r\n"), "P", "Key", 64, "some value");
    row("one pair of quotes removed", QByteArray("[P]\nK=\"\"quoted\"\"\n"), "P", "K", 64, "\"quoted\"");
    row("a lone quote stays", QByteArray("[P]\nK=\"open\n"), "P", "K", 64, "\"open");
    row("semicolon and comma are raw", QByteArray("[P]\nK=a;b,c ; d\n"), "P", "K", 64, "a;b,c ; d");
    row("backslashes are raw", QByteArray("[P]\nServerDir=C:\\Srv\\new\n"), "P", "ServerDir", 255, "C:\\Srv\\new");
    row("commented key is not a key", QByteArray("[P]\n;K=old\nK=new\n"), "P", "K", 64, "new");
    row("first of two keys wins", QByteArray("[P]\nK=1\nK=2\n"), "P", "K", 64, "1");
    row("key of another section is not seen", QByteArray("[A]\nK=1\n[B]\nX=2\n"), "B", "K", 64, "dflt");
    row("empty value is a value, not the default", QByteArray("[P]\nK=\n"), "P", "K", 64, "");
    row("Windows-1252 value", QByteArray("[P]\nK=Velocit\xE0 \x80\n"), "P", "K", 64, QStringLiteral("Velocit\u00E0 \u20AC"));
    row("LF only and no final line end", QByteArray("[P]\nA=1\nK=last"), "P", "K", 64, "last");
    row("blanks inside the brackets", QByteArray("[ P ]\r\nK=v\r\n"), "P", "K", 64, "v");
    row("UTF-8 mark before the first section", QByteArray("\xEF\xBB\xBF[P]\r\nK=v\r\n"), "P", "K", 64, "v");
    row("no file", QByteArray("<missing>"), "P", "K", 64, "dflt");
    row("half-written file", QByteArray("[P]\r\nK=v\r\n[Q"), "P", "K", 64, "v");
}

void AppTest::iniWrite_data()
{
    columns<QByteArray, QString, QString, QString, QByteArray>("before", "section", "key", "value", "after");
    row("replace keeps every other byte", kIniTwoSections, "parametri", "PORTA",
        "12", QByteArray(kIniTwoSections).replace("Porta=1", "Porta=12"));
    row("new key goes after the section's last line", kIniTwoSections, "Parametri", "Velocita", "9600",
        QByteArray(kIniTwoSections).replace("Porta=1\r\n", "Porta=1\r\nVelocita=9600\r\n"));
    row("new section at the end", kIniTwoSections, "Intestazioni", "Head1",
        "x", kIniTwoSections + "[Intestazioni]\r\nHead1=x\r\n");
    row("LF file gets LF lines", QByteArray("[P]\nA=1\n"), "P", "B", "2", QByteArray("[P]\nA=1\nB=2\n"));
    row("last line without an end gets one", QByteArray("[P]\r\nA=1"), "P", "B", "2", QByteArray("[P]\r\nA=1\r\nB=2\r\n"));
    row("replace the last line without an end keeps it so", QByteArray("[P]\r\nA=1"), "P", "A", "3", QByteArray("[P]\r\nA=3"));
    row("value is written raw", QByteArray("[P]\r\n"), "P", "D", "C:\\a;b,c \"q\"", QByteArray("[P]\r\nD=C:\\a;b,c \"q\"\r\n"));
    row("Windows-1252 and ?", QByteArray("[P]\r\n"), "P", "K", QStringLiteral("\u20AC\u00E8\u4E00"),
        QByteArray("[P]\r\nK=\x80\xE8?\r\n"));
    row("line breaks in a value cannot split the file", QByteArray("[P]\r\n"), "P", "K", "a\r\nb",
        QByteArray("[P]\r\nK=a  b\r\n"));
    row("the key keeps its spelling in the file", QByteArray("[P]\r\nServerDir=a\r\n"), "p",
        "SERVERDIR", "b", QByteArray("[P]\r\nServerDir=b\r\n"));
    row("empty section gets its first key", QByteArray("[P]\r\n[Q]\r\nX=1\r\n"), "P", "K", "v",
        QByteArray("[P]\r\nK=v\r\n[Q]\r\nX=1\r\n"));
    row("something there that cannot be read as a file is never replaced", QByteArray("<folder>"), "P", "K", "lost",
        QByteArray("<missing>"));
    row("no file: created", QByteArray("<missing>"), "Parametri", "Modello",
        "Velt", QByteArray("[Parametri]\r\nModello=Velt\r\n"));
}

void AppTest::load_data()
{
    // Lines of section Parametri; what is read: port, speed, server state, mode, file and folder, wrap, VAT,
    // device, model, log switch, HTTP address and token, answers' folder and days, the forbidden extensions.
    columns<QByteArray, QString, QString>("parametri", "expected", "panel");
    const QString defaults = QStringLiteral("Com|0|Off|Normal|scontrino.tx|<folder>|Off|Off||Kelm Brio|||||7|exe,tmp");
    const QString noSpeed = QStringLiteral("Velocità Comunicazione non impostata");
    row("only the model: the defaults", kModel, defaults, noSpeed);
    row("every key, in any case",
        kModel + "Porta=3\r\nVelocita=115200\r\nServerStato=on\r\nServerModalita=iconized\r\nServerFile=*.txt\r\n"
                 "ServerDir=/var/spool/kelm\r\nWrapDescription=ON\r\nAlIvaAuto=0\r\nDispositivo=/dev/ttyUSB0\r\n"
                 "ServerHttp=127.0.0.1:8080\r\nTokenHttp=tok\r\nEsiti=/srv/e\r\nEsitiGiorni=30\r\n",
        "Com3|115200|On|Iconized|*.txt|/var/spool/kelm|On|Off|/dev/ttyUSB0|Kelm Brio||127.0.0.1:8080|tok|/srv/e|30|exe,tmp",
        QString());
    row("odd values",
        QByteArray("Modello=  Velt \r\nPorta=123\r\nVelocita=fast\r\nServerStato=yes\r\nServerModalita=VIRTUALECR\r\n"
                   "ServerFile=\r\nServerDir=  \r\nServerLog=Off-and-more\r\nEsiti=  Off \r\nEsitiGiorni=0\r\n"),
        "Com12|0|Off|VirtualECR|scontrino.tx|<folder>|Off|Off||Velt|Off-and-m|||Off|7|exe,tmp", noSpeed);
    row("an unknown mode", kModel + "ServerModalita=Hidden\r\n", defaults, noSpeed);
    // NULs, as a Windows read leaves them in its buffer: blanks, then trimmed.
    row("NULs", QByteArray("Modello=##Velt#a##\r\nServerDir=###\r\n").replace('#', '\0'),
        "Com|0|Off|Normal|scontrino.tx|<folder>|Off|Off||Velt a|||||7|exe,tmp", noSpeed);
    // Nothing is read beyond a missing model (one in another section does not count).
    row("no model", QByteArray("Porta=4\r\n[Altro]\r\nModello=Velt\r\n"), "|0|||||||||||||7|",
        QStringLiteral("Tipo Modello non impostato"));
}

void AppTest::save_data()
{
    // clearDevice: a ComN port chosen over a stored device path; dispositivo: the line written last, if any
    columns<QString, QString, bool, QByteArray, QByteArray>("comPort", "device", "clearDevice", "porta", "dispositivo");
    row("Com12: no device path chosen, no Dispositivo", "Com12", "", false, QByteArray("12"), QByteArray());
    row("short text", "Com", "", false, QByteArray("0"), QByteArray());
    row("blanks trimmed first", "  Com3  ", "", false, QByteArray("3"), QByteArray());
    row("a device path", "Com2", " /dev/ttyUSB0 ", false, QByteArray("2"), QByteArray("Dispositivo=/dev/ttyUSB0\r\n"));
    row("a stored device path cleared", "Com2", "", true, QByteArray("2"), QByteArray("Dispositivo=\r\n"));
}

void AppTest::textLists_data()
{
    columns<bool, QByteArray, QStringList>("extensions", "file", "list");
    row("extensions: one per line, slot n is line n", true, QByteArray("[exe]\r\n[bat]\r\n[drev]\r\n"),
        QStringList{"exe", "bat", "drev"});
    row("extensions: other forms take a slot", true, QByteArray("[exe]\r\nexe\r\n[\r\n[tmp]\n"),
        QStringList{"exe", "", "", "tmp"});
    row("extensions: text between [ and the first ]", true, QByteArray("[a]b]\r\n"), QStringList{"a"});
    row("extensions: empty brackets", true, QByteArray("[]\r\n"), QStringList{""});
    row("extensions: commas split items", true, QByteArray("[a],[b]\r\n"), QStringList{"a", "b"});
    row("extensions: quotes removed", true, QByteArray("\"[x]\"\r\n"), QStringList{"x"});
    row("extensions: empty file", true, QByteArray(), QStringList{});
    row("items: commas and lines", false, QByteArray("a/,b/\r\nc/\n"), QStringList{"a/", "b/", "c/"});
    row("items: leading blanks skipped, trailing dropped", false, QByteArray("  a/  ,\tb/ \r\n"), QStringList{"a/", "b/"});
    row("items: quoted item keeps commas", false, QByteArray("\"x, y\",z\r\n"), QStringList{"x, y", "z"});
    row("items: an empty quoted item", false, QByteArray("\"\",z"), QStringList{"", "z"});
    row("items: empty line is an empty item", false, QByteArray("a\r\n\r\nb"), QStringList{"a", "", "b"});
    row("items: unclosed quote takes the rest", false, QByteArray("\"abc"), QStringList{"abc"});
}

void AppTest::systemPortName_data()
{
    columns<QString, QString, QString>("port", "device", "name");
#ifdef Q_OS_WIN
    row("Com3 as it stands", "Com3", "", "Com3");
#else
    row("Com1 is the first serial port", "Com1", "", "/dev/ttyS0");
    row("empty Porta stays Com", "Com", "", "Com");
    row("Com0 is no port", "Com0", "", "Com0");
#endif
    row("device wins", "Com1", "/dev/ttyUSB0", "/dev/ttyUSB0");
    row("Windows device path", "Com1", "\\\\.\\COM12", "\\\\.\\COM12");
}

QTEST_APPLESS_MAIN(AppTest)
#include "tst_app.moc"
