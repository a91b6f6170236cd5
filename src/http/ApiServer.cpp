#include "http/ApiServer.h"

#include "http/Answers.h"
#include "link/PanelCommand.h"
#include "service/DriverSession.h"

#include <QHttpServerRequest>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

namespace kelm::http {

namespace {

// Room for the request line and headers above the body limit.
constexpr qint64 kHeaderAllowance = 16 * 1024;
// A panel command waits at most this long for its turn on the line (a
// download may hold the line for minutes); then it is not run at all.
constexpr int kCommandWaitMs = 60 * 1000;

using Status = QHttpServerResponder::StatusCode;

const QByteArray kJson = QByteArrayLiteral("application/json");

void answer(QHttpServerResponder& responder, int status, const QJsonObject& body)
{
    responder.write(QJsonDocument(body), static_cast<Status>(status));
}

void fail(QHttpServerResponder& responder, int status, const QString& message)
{
    responder.write(errorBody(message), kJson, static_cast<Status>(status));
}

// An answer written straight on the connection, for answers that come after
// the request was handed back to the server.
void writeRaw(QTcpSocket* socket, int status, const QByteArray& reason, const QByteArray& body, bool close)
{
    socket->write("HTTP/1.1 " + QByteArray::number(status) + ' ' + reason + "\r\nContent-Type: application/json\r\n"
                  + "Content-Length: " + QByteArray::number(body.size()) + "\r\n"
                  + (close ? "Connection: close\r\n" : "") + "\r\n" + body);
}

// Counts the bytes a connection sends between two answers and cuts it off
// with 413 once they exceed what any accepted request can be, before the
// server has read a body it would refuse anyway.
class GuardedTcpServer final : public QTcpServer {
public:
    using QTcpServer::QTcpServer;

protected:
    void incomingConnection(qintptr handle) override
    {
        auto* socket = new QTcpSocket(this);
        if (!socket->setSocketDescriptor(handle)) {
            delete socket;
            return;
        }
        auto received = std::make_shared<qint64>(0);
        auto refused = std::make_shared<bool>(false);
        // Connected before the HTTP server's own slot, so it runs first.
        connect(socket, &QTcpSocket::readyRead, socket, [socket, received, refused] {
            if (!*refused) {
                *received += socket->bytesAvailable();
                if (*received <= kMaxBodyBytes + kHeaderAllowance)
                    return;
                *refused = true;
                writeRaw(socket, 413, "Payload Too Large",
                         errorBody(QStringLiteral("Richiesta troppo grande (oltre %1 byte)").arg(kMaxBodyBytes)), true);
                socket->disconnectFromHost();
            }
            socket->readAll(); // not for the HTTP server to parse
        });
        connect(socket, &QTcpSocket::bytesWritten, socket, [received] { *received = 0; });
        addPendingConnection(socket);
    }
};

} // namespace

ApiServer::ApiServer(service::DriverSession& driver, HttpService::Options options)
    : driver_(driver), options_(std::move(options)), mailbox_(std::make_shared<Mailbox>())
{
    mailbox_->server = this;
}

ApiServer::~ApiServer()
{
    const QMutexLocker lock(&mailbox_->mutex);
    mailbox_->server = nullptr;
}

QString ApiServer::listen()
{
    auto* tcp = new GuardedTcpServer(this);
    if (!tcp->listen(options_.listen.address, options_.listen.port))
        return QStringLiteral("Servizio HTTP: impossibile ascoltare su %1:%2 (%3)")
            .arg(options_.listen.address.toString())
            .arg(options_.listen.port)
            .arg(tcp->errorString());
    ids_ = std::make_unique<ReceiptIds>(options_.programFolder + QStringLiteral("/KelmDrev.http-ids"), options_.keepDays);
    kept_ = std::make_unique<KeptOutcomes>(options_.programFolder + QStringLiteral("/http-esiti"), options_.keepDays);
    server::OutcomeBook& book = driver_.outcomes();
    kept_->restoreInto(book);
    // Announced on the worker; written here, off the line's thread.
    connect(&book, &server::OutcomeBook::changed, this, [this, &book](const QString& id) {
        if (!unfinished_.contains(id))
            return;
        const std::optional<server::ReceiptOutcome> receipt = book.find(id);
        if (receipt && isFinal(receipt->state())) {
            kept_->keep(*receipt);
            unfinished_.remove(id);
        }
    });
    port_ = tcp->serverPort();
    options_.listen.port = port_;
    bind(tcp);
    return QString();
}

bool ApiServer::handleRequest(const QHttpServerRequest& request, QTcpSocket* socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    const QString path = request.url().path();
    const bool command = path == QStringLiteral("/api/v1/commands");
    Refusal refusal = checkHost(request.value("Host"), options_.listen);
    if (!refusal.refused())
        refusal = checkToken(options_.listen.address.isLoopback(), command, options_.token, request.value("Authorization"));
    if (!refusal.refused() && request.body().size() > kMaxBodyBytes)
        refusal = {413, QStringLiteral("Richiesta troppo grande (oltre %1 byte)").arg(kMaxBodyBytes)};
    if (refusal.refused()) {
        fail(responder, refusal.status, refusal.message);
        return true;
    }
    if (command && request.method() == QHttpServerRequest::Method::Post) {
        const std::optional<QString> record = parseCommandPost(request.body(), refusal);
        if (!record)
            fail(responder, refusal.status, refusal.message);
        else
            runCommand(*record, socket);
        return true;
    }
    route(request, responder);
    return true;
}

void ApiServer::route(const QHttpServerRequest& request, QHttpServerResponder& responder)
{
    const QString path = request.url().path();
    const bool get = request.method() == QHttpServerRequest::Method::Get;
    const QString receipts = QStringLiteral("/api/v1/receipts");
    if (path == QStringLiteral("/") && get) {
        responder.write(statusPage(driver_.status(), latestReceipts()), QByteArrayLiteral("text/html; charset=utf-8"));
    } else if (path == receipts && request.method() == QHttpServerRequest::Method::Post) {
        postReceipt(request, responder);
    } else if (path.startsWith(receipts + u'/') && get) {
        getReceipt(path.mid(receipts.size() + 1), responder);
    } else if (path == QStringLiteral("/api/v1/status") && get) {
        answer(responder, 200, statusJson(driver_.status()));
    } else if (path == QStringLiteral("/") || path == QStringLiteral("/api/v1/status")
               || path == QStringLiteral("/api/v1/commands") || path.startsWith(receipts)) {
        fail(responder, 405, QStringLiteral("Metodo non ammesso per %1").arg(path));
    } else {
        fail(responder, 404, QStringLiteral("Risorsa sconosciuta: %1").arg(path));
    }
}

void ApiServer::postReceipt(const QHttpServerRequest& request, QHttpServerResponder& responder)
{
    Refusal refusal;
    const std::optional<ReceiptPost> post = parseReceiptPost(request.body(), refusal);
    if (!post)
        return fail(responder, refusal.status, refusal.message);
    switch (ids_->match(post->id, post->lines)) {
    case ReceiptIds::Match::Other:
        return fail(responder, 409, QStringLiteral("Id \"%1\" già usato per altre righe").arg(post->id));
    case ReceiptIds::Match::Same:
        if (driver_.outcomes().find(post->id))
            return getReceipt(post->id, responder);
        // Accepted by an earlier run whose outcome is no longer kept: never
        // queued again all the same.
        return answer(responder, 200,
                      {{QStringLiteral("id"), post->id},
                       {QStringLiteral("state"), QJsonValue()},
                       {QStringLiteral("note"), QStringLiteral("Già accettato: esito non più disponibile, non ristampato")}});
    case ReceiptIds::Match::New:
        break;
    }
    const service::DriverStatus status = driver_.status();
    if (!status.serverOn)
        return fail(responder, 503, QStringLiteral("Server scontrini spento: scontrino non accettato"));
    if (!ids_->remember(post->id, post->lines))
        return fail(responder, 500, QStringLiteral("Impossibile scrivere l'elenco degli id: scontrino non accettato"));
    unfinished_.insert(post->id);
    driver_.queueRequest(post->id, post->lines);
    answer(responder, 202,
           {{QStringLiteral("id"), post->id},
            {QStringLiteral("state"), server::stateName(server::ReceiptState::InProgress)},
            {QStringLiteral("accepted"), qint64(++accepted_)}});
}

void ApiServer::getReceipt(const QString& id, QHttpServerResponder& responder)
{
    const std::optional<server::ReceiptOutcome> receipt = driver_.outcomes().find(id);
    if (!receipt || receipt->source != server::LineOrigin::Source::Request)
        return fail(responder, 404, QStringLiteral("Scontrino \"%1\" sconosciuto").arg(id));
    answer(responder, 200, outcomeJson(*receipt));
}

QList<server::ReceiptOutcome> ApiServer::latestReceipts() const
{
    constexpr qsizetype kShown = 10;
    QList<server::ReceiptOutcome> all;
    const server::OutcomeBook& book = driver_.outcomes();
    for (const QString& id : book.ids())
        if (const auto receipt = book.find(id))
            all.append(*receipt);
    std::sort(all.begin(), all.end(), [](const auto& a, const auto& b) { return a.taken > b.taken; });
    return all.mid(0, kShown);
}

void ApiServer::missingHandler(const QHttpServerRequest& request, QTcpSocket* socket)
{
    QHttpServerResponder responder = makeResponder(request, socket);
    fail(responder, 404, QStringLiteral("Risorsa sconosciuta: %1").arg(request.url().path()));
}

void ApiServer::runCommand(const QString& record, QTcpSocket* socket)
{
    const quint64 ticket = nextTicket_++;
    waiting_.insert(ticket, socket);
    QTimer::singleShot(kCommandWaitMs, this, [this, ticket] { expireCommand(ticket); });
    driver_.post([mailbox = mailbox_, ticket, record](EcrLink& link) {
        {
            const QMutexLocker lock(&mailbox->mutex);
            if (!mailbox->server || mailbox->cancelled.contains(ticket))
                return;
            mailbox->started.insert(ticket);
        }
        // The answer goes to the client; the window's status bar is not
        // the place for a command it did not give.
        struct : StatusPanels {
            void setPanel(int, const QString&) override {}
        } quiet;
        PanelCommand panel(link, quiet);
        panel(record);
        const QMutexLocker lock(&mailbox->mutex);
        if (ApiServer* server = mailbox->server)
            QMetaObject::invokeMethod(server, [server, ticket, result = panel.LastResult, answer = panel.LastAnswer,
                                               errorText = panel.LastErrorText] {
                server->finishCommand(ticket, result, answer, errorText);
            });
    });
}

void ApiServer::finishCommand(quint64 ticket, qint16 result, const QString& ecrAnswer, const QString& errorText)
{
    {
        const QMutexLocker lock(&mailbox_->mutex);
        mailbox_->started.remove(ticket);
    }
    const QPointer<QTcpSocket> socket = waiting_.take(ticket);
    if (!socket)
        return; // timed out, or the client went away
    const QJsonObject body{{QStringLiteral("result"), result}, {QStringLiteral("answer"), ecrAnswer},
                           {QStringLiteral("errorText"), errorText}};
    writeRaw(socket, 200, "OK", QJsonDocument(body).toJson(QJsonDocument::Compact), false);
}

void ApiServer::expireCommand(quint64 ticket)
{
    {
        const QMutexLocker lock(&mailbox_->mutex);
        if (mailbox_->started.contains(ticket))
            return; // under way: its answer comes
        mailbox_->cancelled.insert(ticket);
    }
    if (const QPointer<QTcpSocket> socket = waiting_.take(ticket))
        writeRaw(socket, 503, "Service Unavailable",
                 errorBody(QStringLiteral("Registratore occupato o non raggiungibile: comando non eseguito")), false);
}

} // namespace kelm::http
