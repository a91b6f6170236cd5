#include "http/Answers.h"

#include "server/ReceiptOutcome.h"
#include "service/DriverStatus.h"

#include <QJsonArray>

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

namespace {

QJsonValue time(const QDateTime& at)
{
    return at.isValid() ? QJsonValue(at.toString(Qt::ISODate)) : QJsonValue();
}

QJsonObject identityJson(const EcrIdentity& id)
{
    return {{QStringLiteral("serialNumber"), id.serialNumber},
            {QStringLiteral("number"), id.number},
            {QStringLiteral("field"), id.field},
            {QStringLiteral("firmware"), id.firmware}};
}

} // namespace

QJsonObject outcomeJson(const server::ReceiptOutcome& receipt)
{
    using server::LineFate;
    QJsonArray lines;
    for (const server::LineOutcome& l : receipt.lines) {
        QJsonObject line{{QStringLiteral("line"), l.line},
                         {QStringLiteral("outcome"), server::fateName(l.fate)},
                         {QStringLiteral("record"), l.record}};
        if (l.fate == LineFate::Refused)
            line.insert(QStringLiteral("error"), l.errorNumber);
        if (l.fate == LineFate::Refused || l.fate == LineFate::Skipped)
            line.insert(QStringLiteral("text"), l.text);
        if (l.fate == LineFate::NotSent)
            line.insert(QStringLiteral("reason"), server::reasonName(l.reason));
        lines.append(line);
    }
    return {{QStringLiteral("id"), receipt.id},
            {QStringLiteral("state"), server::stateName(receipt.state())},
            {QStringLiteral("taken"), time(receipt.taken)},
            {QStringLiteral("finished"), time(receipt.finished)},
            {QStringLiteral("register"), identityJson(receipt.identity)},
            {QStringLiteral("lines"), lines}};
}

QJsonObject statusJson(const service::DriverStatus& status)
{
    const EcrIdentity& id = status.identity;
    QJsonObject lastError;
    if (!status.lastError.isEmpty())
        lastError = {{QStringLiteral("text"), status.lastError},
                     {QStringLiteral("at"), status.lastErrorAt.toString(Qt::ISODate)}};
    return {
        {QStringLiteral("register"), identityJson(id)},
        {QStringLiteral("line"), QJsonObject{{QStringLiteral("state"), status.lineUp ? QStringLiteral("up") : QStringLiteral("down")},
                                             {QStringLiteral("nextTry"), time(status.nextTry)}}},
        {QStringLiteral("server"), status.serverOn ? QStringLiteral("on") : QStringLiteral("off")},
        {QStringLiteral("queue"), status.queueLength},
        {QStringLiteral("receiptOpen"), status.receiptOpen},
        {QStringLiteral("lastError"), lastError.isEmpty() ? QJsonValue() : QJsonValue(lastError)},
    };
}

QByteArray statusPage(const service::DriverStatus& status, const QList<server::ReceiptOutcome>& latest)
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
    const QString down = status.nextTry.isValid()
        ? QStringLiteral("interrotta, nuovo tentativo alle ") + status.nextTry.toString(QStringLiteral("HH:mm:ss"))
        : QStringLiteral("interrotta");
    row(QStringLiteral("Linea"), status.lineUp ? QStringLiteral("attiva") : down, status.lineUp);
    row(QStringLiteral("Server scontrini"), status.serverOn ? QStringLiteral("acceso") : QStringLiteral("spento"), status.serverOn);
    row(QStringLiteral("Righe in coda"), QString::number(status.queueLength), true);
    row(QStringLiteral("Scontrino aperto"), yesNo(status.receiptOpen), true);
    row(QStringLiteral("Ultimo errore"), error, status.lastError.isEmpty());
    QString receipts;
    for (const server::ReceiptOutcome& r : latest)
        receipts += QStringLiteral("<tr><td>%1</td><td>%2</td><td>%3</td><td>%4</td></tr>\n")
                        .arg(r.taken.toString(QStringLiteral("dd/MM HH:mm:ss")),
                             r.source == server::LineOrigin::Source::Request ? QStringLiteral("HTTP") : QStringLiteral("file"),
                             escaped(r.id), server::stateName(r.state()));
    if (receipts.isEmpty())
        receipts = QStringLiteral("<tr><td colspan=\"4\">nessuno scontrino finora</td></tr>\n");
    return QStringLiteral(
               "<!DOCTYPE html>\n<html lang=\"it\"><head><meta charset=\"utf-8\">"
               "<meta http-equiv=\"refresh\" content=\"5\"><title>KelmDrev - stato</title>\n"
               "<style>body{font-family:sans-serif;margin:2em;color:#222}table{border-collapse:collapse}"
               "th,td{text-align:left;padding:.35em 1em;border-bottom:1px solid #ddd}"
               ".ok{color:#186a18}.ko{color:#b01c1c;font-weight:bold}small{color:#777}</style></head>\n"
               "<body><h1>KelmDrev</h1>\n<table>\n%1</table>\n<h2>Ultimi scontrini</h2>\n"
               "<table>\n<tr><th>Preso</th><th>Da</th><th>Id</th><th>Stato</th></tr>\n%2</table>\n"
               "<p><small>Aggiornata alle %3; si aggiorna da sola ogni 5 secondi.</small></p>\n</body></html>\n")
        .arg(rows, receipts, QTime::currentTime().toString(QStringLiteral("HH:mm:ss")))
        .toUtf8();
}

} // namespace kelm::http
