#pragma once

#include "server/ReceiptOutcome.h"

#include <QHash>
#include <QMutex>
#include <QObject>

#include <functional>
#include <optional>

namespace kelm::server {

// The one place where receipts and their lines' outcomes are kept, by id.
// The receipt server records on the line's worker; answer files and the
// HTTP service read back from any thread. Every change is announced by
// changed(id), emitted on the recording thread after the book is unlocked.
class OutcomeBook final : public QObject {
    Q_OBJECT

public:
    using Now = std::function<QDateTime()>;
    explicit OutcomeBook(Now now = &QDateTime::currentDateTime);

    // The register that receipts begun from now on go to.
    void setIdentity(const EcrIdentity& identity);
    EcrIdentity identity() const;

    // A new receipt, its lines pending. An empty identity or taken time is
    // filled in by the book. When a receipt with the same id is still in
    // progress (a second file under the same name before the first was
    // done), the new one gets the id + "." + 2, 3, ...; returns the id used.
    QString begin(ReceiptOutcome receipt);
    // Puts back a receipt as it was (read from its answer file at start).
    void restore(const ReceiptOutcome& receipt);
    // The outcome of one line; ignored for lines with no origin or no
    // receipt (nobody is waiting for them). Sets the finish time when the
    // receipt's state becomes final.
    void record(const LineOrigin& origin, const LineOutcome& outcome);

    std::optional<ReceiptOutcome> find(const QString& id) const;
    QStringList ids() const;
    void forget(const QString& id);

Q_SIGNALS:
    void changed(const QString& id);

private:
    Now now_;
    mutable QMutex mutex_;
    EcrIdentity identity_;
    QHash<QString, ReceiptOutcome> receipts_;
};

} // namespace kelm::server
