#include "server/PendingQueue.h"

#include "link/CodePage.h"

#include <QFile>
#include <QSaveFile>

namespace kelm::server {

namespace {

// After this header each line is: source TAB line number TAB id TAB text.
const QString kHeader = QStringLiteral("KelmDrev.pending 2");

QString sourceCode(LineOrigin::Source source)
{
    switch (source) {
    case LineOrigin::Source::File:
        return QStringLiteral("F");
    case LineOrigin::Source::Request:
        return QStringLiteral("R");
    case LineOrigin::Source::None:
        break;
    }
    return QStringLiteral("-");
}

QueuedLine readLine(const QString& row)
{
    const QStringList parts = row.split(u'\t');
    if (parts.size() < 4)
        return QueuedLine(row);
    const QString code = parts[0];
    LineOrigin origin;
    origin.source = code == QStringLiteral("F")   ? LineOrigin::Source::File
                    : code == QStringLiteral("R") ? LineOrigin::Source::Request
                                                  : LineOrigin::Source::None;
    origin.line = parts[1].toInt();
    origin.id = parts[2];
    return QueuedLine(QStringList(parts.mid(3)).join(u'\t'), origin.source == LineOrigin::Source::None ? LineOrigin{} : origin);
}

} // namespace

QString pendingQueuePath(const QString& programFolder)
{
    return programFolder + QStringLiteral("/KelmDrev.pending");
}

bool savePendingQueue(const QString& path, const QList<QueuedLine>& lines)
{
    if (lines.isEmpty())
        return QFile::remove(path) || !QFile::exists(path);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QString text = kHeader + QStringLiteral("\r\n");
    for (const QueuedLine& line : lines)
        text += sourceCode(line.origin.source) + u'\t' + QString::number(line.origin.line) + u'\t' + line.origin.id
            + u'\t' + line.text + QStringLiteral("\r\n");
    file.write(ansi::encode(text));
    return file.commit();
}

QList<QueuedLine> takePendingQueue(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = ansi::decode(file.readAll());
    file.close();
    QFile::remove(path);
    QStringList rows = text.split(QStringLiteral("\r\n"));
    if (!rows.isEmpty() && rows.back().isEmpty())
        rows.removeLast();
    const bool withOrigins = !rows.isEmpty() && rows.front() == kHeader;
    if (withOrigins)
        rows.removeFirst();
    QList<QueuedLine> lines;
    for (const QString& row : rows)
        lines.append(withOrigins ? readLine(row) : QueuedLine(row));
    return lines;
}

} // namespace kelm::server
