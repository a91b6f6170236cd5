#include "server/AnswerFiles.h"

#include "server/AnswerText.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>

namespace kelm::server {

namespace {

constexpr qint64 kRewriteMs = 500;
constexpr qint64 kSweepMs = 3600 * 1000;

} // namespace

AnswerFiles::AnswerFiles(OutcomeBook& book, QString folder, int keepDays)
    : book_(book), folder_(std::move(folder)), keepDays_(keepDays)
{
    QDir().mkpath(folder_);
    connect(&book_, &OutcomeBook::changed, this, &AnswerFiles::onChanged, Qt::DirectConnection);
}

QString AnswerFiles::folderFor(const QString& configured, const QString& serverDirPrefix)
{
    if (configured.compare(QStringLiteral("Off"), Qt::CaseInsensitive) == 0)
        return QString();
    // Answer files carry the receipts' names: in the server folder itself
    // they would be taken as receipts.
    if (configured.isEmpty() || QDir(configured) == QDir(serverDirPrefix))
        return serverDirPrefix + QStringLiteral("esiti");
    return configured;
}

QString AnswerFiles::pathFor(const QString& id) const
{
    return QDir(folder_).filePath(id);
}

void AnswerFiles::restore()
{
    const QDir dir(folder_);
    for (const QString& name : dir.entryList(QDir::Files)) {
        QFile file(dir.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const std::optional<ReceiptOutcome> receipt = parseAnswerText(file.readAll());
        if (receipt && receipt->id == name && !isFinal(receipt->state()))
            book_.restore(*receipt);
    }
    waiting_.clear();
}

void AnswerFiles::onChanged(const QString& id)
{
    const std::optional<ReceiptOutcome> receipt = book_.find(id);
    if (!receipt || receipt->source != LineOrigin::Source::File)
        return;
    const auto last = written_.constFind(id);
    if (isFinal(receipt->state()) || last == written_.constEnd() || last->hasExpired(kRewriteMs))
        write(id);
    else
        waiting_.insert(id);
}

void AnswerFiles::flush()
{
    if (!swept_.isValid() || swept_.hasExpired(kSweepMs)) {
        removeExpired();
        swept_.start();
    }
    const QSet<QString> ids = std::exchange(waiting_, {});
    for (const QString& id : ids)
        write(id);
}

void AnswerFiles::write(const QString& id)
{
    waiting_.remove(id);
    const std::optional<ReceiptOutcome> receipt = book_.find(id);
    if (!receipt)
        return;
    QSaveFile file(pathFor(id));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(answerText(*receipt));
        file.commit();
    }
    if (isFinal(receipt->state())) {
        // Its lines are all decided: the file on disk is all that is needed.
        written_.remove(id);
        book_.forget(id);
    } else {
        written_[id].start();
    }
}

void AnswerFiles::removeExpired()
{
    const QDateTime limit = QDateTime::currentDateTime().addDays(-keepDays_);
    const QDir dir(folder_);
    for (const QFileInfo& info : dir.entryInfoList(QDir::Files))
        if (info.lastModified() < limit)
            QFile::remove(info.filePath());
}

} // namespace kelm::server
