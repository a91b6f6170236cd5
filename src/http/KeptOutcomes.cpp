#include "http/KeptOutcomes.h"

#include "server/AnswerText.h"

#include <QDir>
#include <QSaveFile>

namespace kelm::http {

void KeptOutcomes::restoreInto(server::OutcomeBook& book) const
{
    const QDateTime limit = QDateTime::currentDateTime().addDays(-keepDays_);
    for (const QFileInfo& info : QDir(folder_).entryInfoList(QDir::Files)) {
        if (info.lastModified() < limit) {
            QFile::remove(info.filePath());
            continue;
        }
        QFile file(info.filePath());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const std::optional<server::ReceiptOutcome> receipt = server::parseAnswerText(file.readAll());
        if (receipt && receipt->source == server::LineOrigin::Source::Request && !book.find(receipt->id))
            book.restore(*receipt);
    }
}

void KeptOutcomes::keep(const server::ReceiptOutcome& receipt) const
{
    QDir().mkpath(folder_);
    QSaveFile file(QDir(folder_).filePath(receipt.id));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(server::answerText(receipt));
        file.commit();
    }
}

} // namespace kelm::http
