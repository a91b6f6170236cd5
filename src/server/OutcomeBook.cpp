#include "server/OutcomeBook.h"

#include <QMutexLocker>

namespace kelm::server {

OutcomeBook::OutcomeBook(Now now) : now_(std::move(now)) {}

void OutcomeBook::setIdentity(const EcrIdentity& identity)
{
    const QMutexLocker lock(&mutex_);
    identity_ = identity;
}

EcrIdentity OutcomeBook::identity() const
{
    const QMutexLocker lock(&mutex_);
    return identity_;
}

QString OutcomeBook::begin(ReceiptOutcome receipt)
{
    {
        const QMutexLocker lock(&mutex_);
        const QString name = receipt.id;
        for (int n = 2; receipts_.contains(receipt.id) && !isFinal(receipts_[receipt.id].state()); ++n)
            receipt.id = name + u'.' + QString::number(n);
        if (receipt.identity.serialNumber.isEmpty())
            receipt.identity = identity_;
        if (!receipt.taken.isValid())
            receipt.taken = now_();
        receipt.finished = isFinal(receipt.state()) ? now_() : QDateTime();
        receipts_.insert(receipt.id, receipt);
    }
    Q_EMIT changed(receipt.id);
    return receipt.id;
}

void OutcomeBook::restore(const ReceiptOutcome& receipt)
{
    {
        const QMutexLocker lock(&mutex_);
        receipts_.insert(receipt.id, receipt);
    }
    Q_EMIT changed(receipt.id);
}

void OutcomeBook::record(const LineOrigin& origin, const LineOutcome& outcome)
{
    if (origin.isNone())
        return;
    {
        const QMutexLocker lock(&mutex_);
        const auto found = receipts_.find(origin.id);
        if (found == receipts_.end())
            return;
        LineOutcome* line = found->line(origin.line);
        if (!line)
            return;
        *line = outcome;
        line->line = origin.line;
        if (isFinal(found->state()) && !found->finished.isValid())
            found->finished = now_();
    }
    Q_EMIT changed(origin.id);
}

std::optional<ReceiptOutcome> OutcomeBook::find(const QString& id) const
{
    const QMutexLocker lock(&mutex_);
    const auto found = receipts_.constFind(id);
    if (found == receipts_.constEnd())
        return std::nullopt;
    return *found;
}

QStringList OutcomeBook::ids() const
{
    const QMutexLocker lock(&mutex_);
    return receipts_.keys();
}

void OutcomeBook::forget(const QString& id)
{
    const QMutexLocker lock(&mutex_);
    receipts_.remove(id);
}

} // namespace kelm::server
