#include "http/ApiRules.h"

#include "server/ReceiptLines.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace kelm::http {

namespace {

Refusal refuse(int status, const QString& message)
{
    return {status, message};
}

std::optional<QJsonObject> jsonObject(const QByteArray& body, Refusal& refusal)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(body, &error);
    if (error.error != QJsonParseError::NoError) {
        refusal = refuse(400, QStringLiteral("JSON non valido (carattere %1): %2").arg(error.offset).arg(error.errorString()));
        return std::nullopt;
    }
    if (!document.isObject()) {
        refusal = refuse(400, QStringLiteral("Il corpo deve essere un oggetto JSON"));
        return std::nullopt;
    }
    return document.object();
}

// Why a record cannot go to the register as it stands, if so.
std::optional<QString> recordProblem(const QString& record)
{
    // A line break or any other control character has no place in a
    // record: in a file it would have split the line.
    if (std::any_of(record.begin(), record.end(), [](QChar c) { return c.unicode() < 0x20 || c.unicode() == 0x7F; }))
        return QStringLiteral("Record con caratteri di controllo: non inviato");
    const std::optional<QString> normalized = server::normalizeQueueLine(record);
    return normalized ? server::uncarriableReason(*normalized) : std::nullopt;
}

} // namespace

std::optional<ListenAddress> parseListenAddress(const QString& text, QString& error)
{
    const QString trimmed = text.trimmed();
    const qsizetype colon = trimmed.lastIndexOf(u':');
    QString host = colon < 0 ? QString() : trimmed.left(colon);
    const QString portText = colon < 0 ? trimmed : trimmed.mid(colon + 1);
    if (host.startsWith(u'[') && host.endsWith(u']'))
        host = host.mid(1, host.size() - 2);
    bool number = false;
    const uint port = portText.toUInt(&number);
    if (!number || port == 0 || port > 65535) {
        error = QStringLiteral("Porta HTTP non valida: \"%1\" (atteso [INDIRIZZO:]PORTA)").arg(text);
        return std::nullopt;
    }
    ListenAddress listen{QHostAddress(QHostAddress::LocalHost), quint16(port)};
    if (colon >= 0 && !listen.address.setAddress(host)) {
        error = QStringLiteral("Indirizzo HTTP non valido: \"%1\"").arg(host);
        return std::nullopt;
    }
    return listen;
}

Refusal checkToken(bool loopback, bool panelCommand, const QString& token, const QByteArray& authorization)
{
    if (!loopback || panelCommand) {
        if (token.isEmpty())
            return refuse(403, QStringLiteral("Comandi non abilitati: manca TokenHttp nella configurazione"));
        if (authorization != "Bearer " + token.toUtf8())
            return refuse(401, QStringLiteral("Token mancante o errato (Authorization: Bearer …)"));
    }
    return {};
}

Refusal checkHost(const QByteArray& host, const ListenAddress& bound)
{
    for (const auto any : {QHostAddress::Any, QHostAddress::AnyIPv4, QHostAddress::AnyIPv6})
        if (bound.address == QHostAddress(any))
            return {};
    const QByteArray port = ':' + QByteArray::number(bound.port);
    QList<QByteArray> names;
    names << (bound.address.protocol() == QAbstractSocket::IPv6Protocol
                  ? '[' + bound.address.toString().toLatin1() + ']'
                  : bound.address.toString().toLatin1());
    if (bound.address.isLoopback())
        names << QByteArrayLiteral("localhost");
    for (const QByteArray& name : names)
        if (host.compare(name + port, Qt::CaseInsensitive) == 0)
            return {};
    return refuse(421, QStringLiteral("Richiesta per un altro indirizzo: il servizio risponde solo a %1")
                           .arg(QString::fromLatin1(names.first() + port)));
}

bool validId(const QString& id)
{
    if (id.isEmpty() || id.size() > kMaxIdCharacters || id.startsWith(u'.'))
        return false;
    return std::all_of(id.begin(), id.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'.'
            || c == u'_' || c == u'-';
    });
}

std::optional<ReceiptPost> parseReceiptPost(const QByteArray& body, Refusal& refusal)
{
    const std::optional<QJsonObject> object = jsonObject(body, refusal);
    if (!object)
        return std::nullopt;
    const QJsonValue id = object->value(QStringLiteral("id"));
    if (!id.isString() || !validId(id.toString())) {
        refusal = refuse(400, QStringLiteral("\"id\" deve essere un testo di 1..%1 lettere, cifre, \".\", \"_\" o \"-\" "
                                             "(non all'inizio il \".\")")
                                  .arg(kMaxIdCharacters));
        return std::nullopt;
    }
    const QJsonValue lines = object->value(QStringLiteral("lines"));
    if (!lines.isArray() || lines.toArray().isEmpty()) {
        refusal = refuse(400, QStringLiteral("\"lines\" deve essere un elenco non vuoto di righe"));
        return std::nullopt;
    }
    ReceiptPost post{id.toString(), {}};
    const QJsonArray array = lines.toArray();
    for (qsizetype i = 0; i < array.size(); ++i) {
        if (!array[i].isString()) {
            refusal = refuse(400, QStringLiteral("Riga %1: deve essere un testo").arg(i + 1));
            return std::nullopt;
        }
        const QString line = array[i].toString();
        if (const auto problem = recordProblem(line)) {
            refusal = refuse(400, QStringLiteral("Riga %1: %2").arg(i + 1).arg(*problem));
            return std::nullopt;
        }
        post.lines.append(line);
    }
    return post;
}

std::optional<QString> parseCommandPost(const QByteArray& body, Refusal& refusal)
{
    const std::optional<QJsonObject> object = jsonObject(body, refusal);
    if (!object)
        return std::nullopt;
    const QJsonValue record = object->value(QStringLiteral("record"));
    if (!record.isString() || record.toString().trimmed().isEmpty()) {
        refusal = refuse(400, QStringLiteral("\"record\" deve essere un record non vuoto, per esempio \"a/\""));
        return std::nullopt;
    }
    if (const auto problem = recordProblem(record.toString())) {
        refusal = refuse(400, *problem);
        return std::nullopt;
    }
    return record.toString();
}

} // namespace kelm::http
