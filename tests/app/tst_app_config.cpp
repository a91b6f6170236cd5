// Loading and saving the PC settings, and the forbidden-extension list.
#include "RecordingStatus.h"
#include "app/Configuration.h"
#include "app/InputItems.h"
#include "app/PortName.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace kelm;

namespace {

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray readFile(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

class ConfigurationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void load_data();
    void load();
    void missingModelStopsEverything();
    void forbiddenExtensions_data();
    void forbiddenExtensions();
    void inputItems_data();
    void inputItems();
    void saveWritesEveryKeyInOrder();
    void savedPortNumber_data();
    void savedPortNumber();
    void saveThenLoadRoundTrip();
    void trimNulls_data();
    void trimNulls();
    void systemPortName_data();
    void systemPortName();
};

void ConfigurationTest::load_data()
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

void ConfigurationTest::load()
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

void ConfigurationTest::missingModelStopsEverything()
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

void ConfigurationTest::forbiddenExtensions_data()
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

void ConfigurationTest::forbiddenExtensions()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, table);
    QCOMPARE(LoadForbiddenExtensions(file), table);
}

void ConfigurationTest::inputItems_data()
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

void ConfigurationTest::inputItems()
{
    QFETCH(QByteArray, file);
    QFETCH(QStringList, items);
    QCOMPARE(readInputItems(file), items);
}

void ConfigurationTest::saveWritesEveryKeyInOrder()
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("KelmDrev.ini"));
    writeFile(path, "[Current]\r\nSN=99MEA012345\r\n");
    ConfigForm form;
    form.model = QStringLiteral(" Velt ");
    form.comPort = QStringLiteral("Com7");
    form.speed = QStringLiteral(" 115200 ");
    form.serverOn = true;
    form.serverMode = QStringLiteral("Minimized");
    form.serverDir = QStringLiteral("/var/spool/kelm");
    form.serverFile = QStringLiteral("*.txt");
    form.logOn = true;
    form.wrapDescription = false;
    form.alIvaAuto = true;
    ConfigPC c;
    RecordingStatus status;
    status.setPanel(2, QStringLiteral("old message"));
    SaveConfigPC(IniFile(path), form, c, status);

    QCOMPARE(readFile(path), QByteArray("[Current]\r\nSN=99MEA012345\r\n"
                                        "[Parametri]\r\nModello=Velt\r\nPorta=7\r\nVelocita=115200\r\n"
                                        "ServerStato=On\r\nServerModalita=Minimized\r\n"
                                        "ServerDir=/var/spool/kelm\r\nServerFile=*.txt\r\nServerLog=On\r\n"
                                        "WrapDescription=Off\r\nAlIvaAuto=On\r\n")); // no device path chosen: no Dispositivo
    QCOMPARE(status.panels.value(2), QString());
    QCOMPARE(c.port, QStringLiteral("Com7"));
    QCOMPARE(c.speed, 115200);
    QCOMPARE(c.serverState, QStringLiteral("On"));
}

void ConfigurationTest::savedPortNumber_data()
{
    QTest::addColumn<QString>("combo");
    QTest::addColumn<QString>("written");
    QTest::newRow("Com7") << "Com7" << "7";
    QTest::newRow("Com12") << "Com12" << "12";
    QTest::newRow("short text") << "Com" << "0";
    QTest::newRow("blanks trimmed first") << "  Com3  " << "3";
}

void ConfigurationTest::savedPortNumber()
{
    QFETCH(QString, combo);
    QFETCH(QString, written);
    QTemporaryDir dir;
    const IniFile ini(dir.filePath(QStringLiteral("KelmDrev.ini")));
    ConfigForm form;
    form.comPort = combo;
    ConfigPC c;
    RecordingStatus status;
    SaveConfigPC(ini, form, c, status);
    QCOMPARE(ini.read(kSection, QStringLiteral("Porta"), QStringLiteral("?"), 10), written);
}

void ConfigurationTest::saveThenLoadRoundTrip()
{
    QTemporaryDir dir;
    const IniFile ini(dir.filePath(QStringLiteral("KelmDrev.ini")));
    ConfigForm form;
    form.model = QStringLiteral("Kelm Brio");
    form.comPort = QStringLiteral("Com2");
    form.device = QStringLiteral("/dev/ttyUSB0");
    form.speed = QStringLiteral("9600");
    form.serverMode = QStringLiteral("Iconized");
    form.serverDir = QStringLiteral("C:\\Srv");
    form.serverFile = QStringLiteral("scontrino.txt");
    form.wrapDescription = true;
    ConfigPC saved;
    RecordingStatus status;
    SaveConfigPC(ini, form, saved, status);
    ConfigPC loaded;
    QVERIFY(LoadConfiguration(ini, dir.path(), loaded, status));
    QCOMPARE(loaded.model, saved.model);
    QCOMPARE(loaded.port, QStringLiteral("Com2"));
    QCOMPARE(loaded.device, QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(loaded.speed, 9600);
    QCOMPARE(loaded.serverState, QStringLiteral("Off"));
    QCOMPARE(loaded.serverMode, QStringLiteral("Iconized"));
    QCOMPARE(loaded.serverDir, QStringLiteral("C:\\Srv"));
    QCOMPARE(loaded.serverFile, QStringLiteral("scontrino.txt"));
    QCOMPARE(loaded.wrapDescription, QStringLiteral("On"));
    QCOMPARE(loaded.alIvaAuto, QStringLiteral("Off"));
}

void ConfigurationTest::trimNulls_data()
{
    QTest::addColumn<QString>("in");
    QTest::addColumn<QString>("out");
    QTest::newRow("padded buffer") << QStringLiteral("Velt\0\0\0") << "Velt";
    QTest::newRow("blanks both ends") << "  a b  " << "a b";
    QTest::newRow("NUL inside becomes a blank") << QString::fromUtf16(u"a\0b", 3) << "a b";
    QTest::newRow("only NULs") << QString(3, QChar(0)) << "";
}

void ConfigurationTest::trimNulls()
{
    QFETCH(QString, in);
    QFETCH(QString, out);
    QCOMPARE(TrimNulls(in), out);
}

void ConfigurationTest::systemPortName_data()
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

void ConfigurationTest::systemPortName()
{
    QFETCH(QString, port);
    QFETCH(QString, device);
    QFETCH(QString, name);
    ConfigPC c;
    c.port = port;
    c.device = device;
    QCOMPARE(SystemPortName(c), name);
}

QTEST_APPLESS_MAIN(ConfigurationTest)
#include "tst_app_config.moc"
