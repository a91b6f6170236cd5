#include "app/RunTimeLog.h"

#include "app/ServerDirectory.h"
#include "link/CodePage.h"

#include <QFile>

#include <utility>

namespace kelm {

namespace {

constexpr qsizetype kRecordWidth = 50;
constexpr qsizetype kMessageWidth = 150;
constexpr qsizetype kTagWidth = 12;

// The log's base name when the waiting file or mask gives none.
const QString kDefaultLogName = QStringLiteral("DREV");

QString fitted(const QString& text, qsizetype width)
{
    return text.left(width).leftJustified(width, u' ');
}

} // namespace

QString logFileName(const QString& serverDir, const QString& logName, QDate day,
                    const QString& fallbackDir)
{
    QString name = logName.trimmed();
    if (name.isEmpty())
        name = kDefaultLogName;
    return serverDirectoryPrefix(serverDir, fallbackDir) + name + u' '
        + day.toString(QStringLiteral("yyyyMMdd")) + QStringLiteral(".log");
}

QString logLine(const QDateTime& when, const QString& message, const QString& record)
{
    return when.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral(" - ")
        + fitted(record, kRecordWidth) + QStringLiteral(" - ") + fitted(message, kMessageWidth);
}

bool isSuppressedLogMessage(const QString& message)
{
    return message.endsWith(QStringLiteral("26"));
}

RunTimeLog::RunTimeLog(QString fallbackDir, Now now)
    : fallbackDir_(std::move(fallbackDir)), now_(std::move(now))
{
}

void RunTimeLog::WriteLog(const QString& message, const QString& record) const
{
    if (!enabled_ || isSuppressedLogMessage(message))
        return;
    const QDateTime when = now_();
    QFile file(logFileName(serverDir_, logName_, when.date(), fallbackDir_));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    file.write(ansi::encode(logLine(when, message, record) + QStringLiteral("\r\n")));
}

RunTimeEntryDetail runTimeEntryDetail(const QString& entry)
{
    if (entry.size() <= kTagWidth)
        return {false, QString(), QStringLiteral("Trasmissione Non Coerente")};
    const QString text = entry.mid(kTagWidth);
    if (entry.startsWith(QStringLiteral("ECR")))
        return {true, QStringLiteral("Messaggio Da ECR a PC"), text};
    return {true, QStringLiteral("Messaggio Da PC a ECR"), text};
}

} // namespace kelm
