#include "technician/CommandConsole.h"

#include "app/InputItems.h"

namespace kelm::technician {

namespace {

const QString kAcceptedPrefix = QStringLiteral("00/");

} // namespace

QString singleCommandRecord(const QString& typed)
{
    return typed.trimmed() + u'/';
}

QStringList commandFileRecords(const QByteArray& contents)
{
    QStringList records;
    for (QString item : readInputItems(contents)) {
        if (!item.endsWith(u'/'))
            item += u'/';
        records.append(item.trimmed());
    }
    return records;
}

QString consoleAnswerText(const QString& answer)
{
    return answer.startsWith(kAcceptedPrefix) ? answer : kConsoleError;
}

} // namespace kelm::technician
