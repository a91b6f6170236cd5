#include "http/Answers.h"

#include "service/DriverStatus.h"

#include <QJsonDocument>

namespace kelm::http {

namespace {

QString yesNo(bool value)
{
    return value ? QStringLiteral("sì") : QStringLiteral("no");
}

QString escaped(const QString& text)
{
    return text.toHtmlEscaped();
}

} // namespace

QByteArray errorBody(const QString& message)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("error"), message}}).toJson(QJsonDocument::Compact);
}

QJsonObject statusJson(const service::DriverStatus& status)
{
    const EcrIdentity& id = status.identity;
    QJsonObject lastError;
    if (!status.lastError.isEmpty())
        lastError = {{QStringLiteral("text"), status.lastError},
                     {QStringLiteral("at"), status.lastErrorAt.toString(Qt::ISODate)}};
    return {
        {QStringLiteral("register"),
         QJsonObject{{QStringLiteral("serialNumber"), id.serialNumber},
                     {QStringLiteral("number"), id.number},
                     {QStringLiteral("field"), id.field},
                     {QStringLiteral("firmware"), id.firmware}}},
        {QStringLiteral("line"), QJsonObject{{QStringLiteral("state"), status.lineUp ? QStringLiteral("up") : QStringLiteral("down")}}},
        {QStringLiteral("server"), status.serverOn ? QStringLiteral("on") : QStringLiteral("off")},
        {QStringLiteral("queue"), status.queueLength},
        {QStringLiteral("receiptOpen"), status.receiptOpen},
        {QStringLiteral("lastError"), lastError.isEmpty() ? QJsonValue() : QJsonValue(lastError)},
    };
}

QByteArray statusPage(const service::DriverStatus& status)
{
    const EcrIdentity& id = status.identity;
    const QString registerText = id.serialNumber.isEmpty()
        ? QStringLiteral("non ha ancora risposto")
        : QStringLiteral("%1-%2, firmware %3").arg(escaped(id.field), escaped(id.serialNumber), escaped(id.firmware));
    const QString error = status.lastError.isEmpty()
        ? QStringLiteral("nessuno")
        : QStringLiteral("%1 (%2)").arg(escaped(status.lastError), status.lastErrorAt.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")));
    QString rows;
    const auto row = [&rows](const QString& name, const QString& value, bool good) {
        rows += QStringLiteral("<tr><th>%1</th><td class=\"%2\">%3</td></tr>\n")
                    .arg(name, good ? QStringLiteral("ok") : QStringLiteral("ko"), value);
    };
    row(QStringLiteral("Registratore"), registerText, !id.serialNumber.isEmpty());
    row(QStringLiteral("Linea"), status.lineUp ? QStringLiteral("attiva") : QStringLiteral("interrotta"), status.lineUp);
    row(QStringLiteral("Server scontrini"), status.serverOn ? QStringLiteral("acceso") : QStringLiteral("spento"), status.serverOn);
    row(QStringLiteral("Righe in coda"), QString::number(status.queueLength), true);
    row(QStringLiteral("Scontrino aperto"), yesNo(status.receiptOpen), true);
    row(QStringLiteral("Ultimo errore"), error, status.lastError.isEmpty());
    return QStringLiteral(
               "<!DOCTYPE html>\n<html lang=\"it\"><head><meta charset=\"utf-8\">"
               "<meta http-equiv=\"refresh\" content=\"5\"><title>KelmDrev - stato</title>\n"
               "<style>body{font-family:sans-serif;margin:2em;color:#222}table{border-collapse:collapse}"
               "th,td{text-align:left;padding:.35em 1em;border-bottom:1px solid #ddd}"
               ".ok{color:#186a18}.ko{color:#b01c1c;font-weight:bold}small{color:#777}</style></head>\n"
               "<body><h1>KelmDrev</h1>\n<table>\n%1</table>\n"
               "<p><small>Aggiornata alle %2; si aggiorna da sola ogni 5 secondi.</small></p>\n</body></html>\n")
        .arg(rows, QTime::currentTime().toString(QStringLiteral("HH:mm:ss")))
        .toUtf8();
}

} // namespace kelm::http
