#pragma once

#include "server/OutcomeBook.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QSet>

namespace kelm::server {

// Keeps one answer file per receipt file in a folder of its own, named as
// the receipt file, rewritten (temporary name, then rename) as the book
// records outcomes. A big receipt is not rewritten for every line: changes
// within half a second of the last write wait for the next one or for
// flush(); a final state is written at once.
class AnswerFiles final : public QObject {
    Q_OBJECT

public:
    AnswerFiles(OutcomeBook& book, QString folder, int keepDays);

    // The folder, from the configured value: empty means "esiti" in the
    // server folder, as does the server folder itself; "Off" (any case) no
    // answer files at all (empty result).
    static QString folderFor(const QString& configured, const QString& serverDirPrefix);

    QString pathFor(const QString& id) const;
    // Puts the receipts still in progress back into the book, so that lines
    // kept across a restart keep reporting to their file.
    void restore();
    // Writes what is still waiting; once an hour also removes answer files
    // older than the days to keep.
    void flush();

private:
    void onChanged(const QString& id);
    void write(const QString& id);
    void removeExpired();

    OutcomeBook& book_;
    QString folder_;
    int keepDays_;
    QSet<QString> waiting_;
    QHash<QString, QElapsedTimer> written_;
    QElapsedTimer swept_;
};

} // namespace kelm::server
