#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

// The bodies the service answers with.
namespace kelm::service {
struct DriverStatus;
}
namespace kelm::server {
struct ReceiptOutcome;
}

namespace kelm::http {

QByteArray errorBody(const QString& message);
QJsonObject statusJson(const service::DriverStatus& status);
// A receipt with its state and every line's outcome, in the words of the
// answer files.
QJsonObject outcomeJson(const server::ReceiptOutcome& receipt);
// The status page: Italian, refreshing itself every few seconds, with the
// latest receipts first.
QByteArray statusPage(const service::DriverStatus& status, const QList<server::ReceiptOutcome>& latest);

} // namespace kelm::http
