#include "http/HttpService.h"

#include "http/ApiServer.h"

#include <QMetaObject>

namespace kelm::http {

HttpService::HttpService(service::DriverSession& driver, Options options)
    : driver_(driver), options_(std::move(options))
{
    thread_.setObjectName(QStringLiteral("http"));
    thread_.start();
}

HttpService::~HttpService()
{
    if (server_)
        QMetaObject::invokeMethod(server_, [this] { delete server_; }, Qt::BlockingQueuedConnection);
    thread_.quit();
    thread_.wait();
}

QString HttpService::start()
{
    if (!options_.listen.address.isLoopback() && options_.token.isEmpty())
        return QStringLiteral("Servizio HTTP su %1: serve TokenHttp nella configurazione per un indirizzo non locale")
            .arg(options_.listen.address.toString());
    auto server = std::make_unique<ApiServer>(driver_, options_);
    server->moveToThread(&thread_);
    QString error;
    QMetaObject::invokeMethod(server.get(), [&] { error = server->listen(); }, Qt::BlockingQueuedConnection);
    if (error.isEmpty()) {
        port_ = server->port();
        server_ = server.release();
    } else {
        QMetaObject::invokeMethod(server.release(), &QObject::deleteLater);
    }
    return error;
}

std::optional<HttpService::Options> httpOptions(const QString& commandLine, const QString& configured,
                                                const QString& token, const QString& programFolder,
                                                int keepDays, QString& error)
{
    const QString text = commandLine.isEmpty() ? configured : commandLine;
    if (text.trimmed().isEmpty())
        return std::nullopt;
    const std::optional<ListenAddress> listen = parseListenAddress(text, error);
    if (!listen)
        return std::nullopt;
    return HttpService::Options{*listen, token, programFolder, keepDays};
}

} // namespace kelm::http
