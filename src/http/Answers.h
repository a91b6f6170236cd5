#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

// The bodies the service answers with.
namespace kelm::service {
struct DriverStatus;
}

namespace kelm::http {

QByteArray errorBody(const QString& message);
QJsonObject statusJson(const service::DriverStatus& status);
// The status page: Italian, refreshing itself every few seconds.
QByteArray statusPage(const service::DriverStatus& status);

} // namespace kelm::http
