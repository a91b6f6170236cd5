#include "PendingQueue.h"

#include "link/CodePage.h"

#include <QFile>
#include <QSaveFile>

namespace kelm {

QString pendingQueuePath(const QString& programFolder)
{
    return programFolder + QStringLiteral("/KelmDrev.pending");
}

bool savePendingQueue(const QString& path, const QStringList& lines)
{
    if (lines.isEmpty())
        return QFile::remove(path) || !QFile::exists(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    for (const QString& line : lines)
        file.write(ansi::encode(line) + "\r\n");
    return file.commit();
}

QStringList takePendingQueue(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = ansi::decode(file.readAll());
    file.close();
    QFile::remove(path);
    QStringList lines = text.split(QStringLiteral("\r\n"));
    if (!lines.isEmpty() && lines.back().isEmpty())
        lines.removeLast();
    return lines;
}

} // namespace kelm
