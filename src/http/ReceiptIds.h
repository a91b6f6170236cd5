#pragma once

#include <QDate>
#include <QHash>
#include <QString>
#include <QStringList>

namespace kelm::http {

// The receipt ids clients have used, with a fingerprint of their lines, kept
// in a file of the program folder so that a retry after a restart does not
// print twice. Entries older than the days answer files are kept drop out
// when the file is read. Used on the service's thread only.
class ReceiptIds {
public:
    enum class Match {
        New,   // never seen: queue it
        Same,  // seen with the same lines: answer with its outcome
        Other, // seen with other lines: a conflict
    };

    ReceiptIds(QString path, int keepDays, QDate today = QDate::currentDate());

    Match match(const QString& id, const QStringList& lines) const;
    // Written through to the file before the receipt is queued; false when
    // it could not be written (then nothing must be queued).
    bool remember(const QString& id, const QStringList& lines);

private:
    struct Entry {
        QDate date;
        QByteArray fingerprint;
    };

    QString path_;
    QHash<QString, Entry> entries_;
};

} // namespace kelm::http
