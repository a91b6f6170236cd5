#pragma once

#include "http/ApiRules.h"

#include <QObject>
#include <QThread>

#include <memory>

namespace kelm::service {
class DriverSession;
}

namespace kelm::http {

class ApiServer;

// The local HTTP service on a thread of its own. It reads the driver's
// status without waiting and hands work to the driver's worker by queued
// calls, so a slow or silent register never holds up an answer.
class HttpService final : public QObject {
    Q_OBJECT

public:
    struct Options {
        ListenAddress listen;
        QString token;         // TokenHttp; empty: no panel commands, loopback only
        QString programFolder; // where the receipt ids are kept
        int keepDays = 7;      // how long ids are remembered: as long as answer files
    };

    HttpService(service::DriverSession& driver, Options options);
    ~HttpService() override;

    // Empty when listening; otherwise why not.
    QString start();
    // The port actually bound (useful with port 0 in tests).
    quint16 port() const { return port_; }

private:
    service::DriverSession& driver_;
    Options options_;
    QThread thread_;
    ApiServer* server_ = nullptr; // lives on thread_, deleted there
    quint16 port_ = 0;
};

// The HTTP settings of the command line (`--http`) or, without it, of
// [Parametri]: nullopt when the service stays off, with `error` set when the
// setting cannot be used.
std::optional<HttpService::Options> httpOptions(const QString& commandLine, const QString& configured,
                                                const QString& token, const QString& programFolder,
                                                int keepDays, QString& error);

} // namespace kelm::http
