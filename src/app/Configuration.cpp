#include "Configuration.h"

#include "app/InputItems.h"

#include <QFile>

namespace kelm {

namespace {

const QString kOn = QStringLiteral("On");
const QString kOff = QStringLiteral("Off");

QString onOff(const QString& value)
{
    return value.toUpper() == QStringLiteral("ON") ? kOn : kOff;
}

QString onOff(bool ticked)
{
    return ticked ? kOn : kOff;
}

QString normalisedMode(const QString& value)
{
    static const QStringList modes = {QStringLiteral("Normal"), QStringLiteral("Minimized"),
                                      QStringLiteral("Iconized"), QStringLiteral("VirtualECR")};
    const QString upper = value.toUpper();
    for (const QString& mode : modes)
        if (mode.toUpper() == upper)
            return mode;
    return modes.front();
}

} // namespace

QString TrimNulls(const QString& text)
{
    QString s = text;
    s.replace(QChar(u'\0'), QChar(u' '));
    qsizetype b = 0;
    qsizetype e = s.size();
    while (b < e && s[b] == u' ')
        ++b;
    while (e > b && s[e - 1] == u' ')
        --e;
    return s.mid(b, e - b);
}

qint32 WholeNumber(const QString& text)
{
    const QString t = text.trimmed();
    qsizetype end = 0;
    if (end < t.size() && (t[end] == u'-' || t[end] == u'+'))
        ++end;
    while (end < t.size() && t[end].isDigit() && t[end].unicode() < 128)
        ++end;
    bool ok = false;
    const qint32 value = t.left(end).toInt(&ok);
    return ok ? value : 0;
}

QStringList LoadForbiddenExtensions(const QByteArray& fileExtIni)
{
    QStringList table;
    for (const QString& item : readInputItems(fileExtIni)) {
        if (table.size() >= kMaxForbiddenExtensions)
            break;
        const qsizetype close = item.indexOf(u']');
        const bool bracketed = item.size() > 1 && item.startsWith(u'[') && close > 0;
        table.append(bracketed ? item.mid(1, close - 1) : QString());
    }
    return table;
}

bool LoadConfiguration(const IniFile& ini, const QString& programFolder, ConfigPC& config,
                       StatusPanels& status)
{
    auto read = [&](const QString& key, const QString& fallback, int buffer) {
        return TrimNulls(ini.read(kSection, key, fallback, buffer));
    };

    config.model = read(QStringLiteral("Modello"), QString(), 64);
    if (config.model.isEmpty()) {
        status.setPanel(1, QStringLiteral("Errore Nei Parametri"));
        status.setPanel(2, QStringLiteral("Tipo Modello non impostato"));
        return false;
    }

    // An empty Porta gives the name "Com": the open fails and says so later.
    config.port = QStringLiteral("Com") + read(QStringLiteral("Porta"), QString(), 3);
    config.device = read(QStringLiteral("Dispositivo"), QString(), 255);

    config.speed = WholeNumber(read(QStringLiteral("Velocita"), QString(), 10));
    if (config.speed < 1) {
        status.setPanel(1, QStringLiteral("Errore Nei Parametri"));
        status.setPanel(2, QStringLiteral("Velocità Comunicazione non impostata"));
    }

    config.serverState = onOff(read(QStringLiteral("ServerStato"), kOff, 10));
    config.serverMode = normalisedMode(read(QStringLiteral("ServerModalita"), QStringLiteral("Normal"), 32));

    config.serverDir = read(QStringLiteral("ServerDir"), programFolder, 255);
    if (config.serverDir.isEmpty())
        config.serverDir = programFolder;

    config.serverFile = read(QStringLiteral("ServerFile"), kDefaultServerFile, 128);
    if (config.serverFile.isEmpty())
        config.serverFile = kDefaultServerFile;

    config.wrapDescription = onOff(read(QStringLiteral("WrapDescription"), kOff, 10));
    config.alIvaAuto = onOff(read(QStringLiteral("AlIvaAuto"), kOff, 10));
    // Not read back by the window, which starts with its log switch as the
    // form sets it; headless mode follows it (on unless "Off").
    config.serverLog = read(QStringLiteral("ServerLog"), QString(), 10);
    config.httpListen = read(QStringLiteral("ServerHttp"), QString(), 64);
    config.httpToken = read(QStringLiteral("TokenHttp"), QString(), 256);
    config.answers = read(QStringLiteral("Esiti"), QString(), 255).trimmed();
    const int days = WholeNumber(read(QStringLiteral("EsitiGiorni"), QString(), 10));
    config.answerDays = days > 0 ? days : 7;

    QFile fileExt(programFolder + QStringLiteral("/FileExt.ini"));
    config.forbiddenExtensions = fileExt.open(QIODevice::ReadOnly)
                                     ? LoadForbiddenExtensions(fileExt.readAll())
                                     : QStringList();
    return true;
}

void SaveConfigPC(const IniFile& ini, const ConfigForm& form, ConfigPC& config,
                  StatusPanels& status)
{
    auto write = [&](const QString& key, const QString& value) { ini.write(kSection, key, value); };

    status.setPanel(1, QString());
    status.setPanel(2, QString());

    config.model = form.model.trimmed();
    write(QStringLiteral("Modello"), config.model);

    const QString comPort = form.comPort.trimmed();
    const QString portNumber = comPort.size() >= 4 ? comPort.mid(3) : QStringLiteral("0");
    config.port = QStringLiteral("Com") + portNumber;
    write(QStringLiteral("Porta"), portNumber);

    const QString speed = form.speed.trimmed();
    config.speed = WholeNumber(speed);
    write(QStringLiteral("Velocita"), speed);

    config.serverState = onOff(form.serverOn);
    write(QStringLiteral("ServerStato"), config.serverState);

    config.serverMode = form.serverMode;
    write(QStringLiteral("ServerModalita"), form.serverMode);

    config.serverDir = form.serverDir;
    write(QStringLiteral("ServerDir"), form.serverDir);

    config.serverFile = form.serverFile;
    write(QStringLiteral("ServerFile"), form.serverFile);

    config.serverLog = onOff(form.logOn);
    write(QStringLiteral("ServerLog"), config.serverLog);

    config.wrapDescription = onOff(form.wrapDescription);
    write(QStringLiteral("WrapDescription"), config.wrapDescription);

    config.alIvaAuto = onOff(form.alIvaAuto);
    write(QStringLiteral("AlIvaAuto"), config.alIvaAuto);

    // The device path is this program's own key: written only when one was
    // chosen, or emptied when a ComN port replaces it.
    config.device = form.device.trimmed();
    if (!config.device.isEmpty() || form.clearDevice)
        write(QStringLiteral("Dispositivo"), config.device);
}

} // namespace kelm
