#include "http/ReceiptIds.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSaveFile>

namespace kelm::http {

namespace {

QByteArray fingerprint(const QStringList& lines)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString& line : lines) {
        hash.addData(line.toUtf8());
        hash.addData(QByteArrayView("\n"));
    }
    return hash.result().toHex();
}

QByteArray entryLine(const QString& id, const QDate& date, const QByteArray& print)
{
    return date.toString(Qt::ISODate).toLatin1() + '\t' + print + '\t' + id.toUtf8() + '\n';
}

} // namespace

ReceiptIds::ReceiptIds(QString path, int keepDays, QDate today) : path_(std::move(path))
{
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly))
        return;
    bool dropped = false;
    for (const QByteArray& raw : file.readAll().split('\n')) {
        const QList<QByteArray> parts = raw.split('\t');
        const QDate date = parts.size() == 3 ? QDate::fromString(QString::fromLatin1(parts[0]), Qt::ISODate) : QDate();
        if (!date.isValid() || date.daysTo(today) > keepDays) {
            dropped = dropped || !raw.isEmpty();
            continue;
        }
        entries_.insert(QString::fromUtf8(parts[2]), {date, parts[1]});
    }
    file.close();
    if (!dropped)
        return;
    QSaveFile kept(path_);
    if (kept.open(QIODevice::WriteOnly)) {
        for (auto it = entries_.cbegin(); it != entries_.cend(); ++it)
            kept.write(entryLine(it.key(), it->date, it->fingerprint));
        kept.commit();
    }
}

ReceiptIds::Match ReceiptIds::match(const QString& id, const QStringList& lines) const
{
    const auto found = entries_.constFind(id);
    if (found == entries_.cend())
        return Match::New;
    return found->fingerprint == fingerprint(lines) ? Match::Same : Match::Other;
}

bool ReceiptIds::remember(const QString& id, const QStringList& lines)
{
    const QByteArray print = fingerprint(lines);
    QFile file(path_);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append) || file.write(entryLine(id, QDate::currentDate(), print)) < 0
        || !file.flush())
        return false;
    entries_.insert(id, {QDate::currentDate(), print});
    return true;
}

} // namespace kelm::http
