#pragma once

#include "http/ApiRules.h"
#include "http/HttpService.h"
#include "http/KeptOutcomes.h"
#include "http/ReceiptIds.h"
#include "server/ReceiptOutcome.h"

#include <QAbstractHttpServer>
#include <QHttpServerResponder>
#include <QMap>
#include <QMutex>
#include <QPointer>
#include <QSet>
#include <QTcpSocket>

#include <memory>

namespace kelm::http {

// The routes of the service, on the service's thread. Every answer is
// written from here; work for the register goes to the driver's worker and
// its result comes back as a queued call.
class ApiServer final : public QAbstractHttpServer {
    Q_OBJECT

public:
    ApiServer(service::DriverSession& driver, HttpService::Options options);
    ~ApiServer() override;

    // On the service's thread. Empty when listening.
    QString listen();
    quint16 port() const { return port_; }

protected:
    bool handleRequest(const QHttpServerRequest& request, QTcpSocket* socket) override;
    void missingHandler(const QHttpServerRequest& request, QTcpSocket* socket) override;

private:
    void route(const QHttpServerRequest& request, QHttpServerResponder& responder);
    void postReceipt(const QHttpServerRequest& request, QHttpServerResponder& responder);
    void getReceipt(const QString& id, QHttpServerResponder& responder);
    QList<server::ReceiptOutcome> latestReceipts() const;
    void runCommand(const QString& record, QTcpSocket* socket);
    void finishCommand(quint64 ticket, qint16 result, const QString& answer, const QString& errorText);
    void expireCommand(quint64 ticket);

    // Shared with the jobs on the driver's worker: they answer only while
    // the server is there and the client has not been told it timed out.
    struct Mailbox {
        QMutex mutex;
        ApiServer* server = nullptr;
        QSet<quint64> started;
        QSet<quint64> cancelled;
    };

    service::DriverSession& driver_;
    HttpService::Options options_;
    quint16 port_ = 0;
    std::shared_ptr<Mailbox> mailbox_;
    std::unique_ptr<ReceiptIds> ids_;
    std::unique_ptr<KeptOutcomes> kept_;
    QSet<QString> unfinished_; // accepted in this run, outcome not final yet
    quint64 accepted_ = 0; // receipts accepted since the service started
    // Clients of panel commands still under way. Answered on the socket
    // directly: a responder may not outlive the request it was made for.
    QMap<quint64, QPointer<QTcpSocket>> waiting_;
    quint64 nextTicket_ = 1;
};

} // namespace kelm::http
