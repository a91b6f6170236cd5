#include "server/FileMask.h"

#include "app/Configuration.h"

#include <QDir>
#include <QRegularExpression>
#include <QFileInfo>

namespace kelm::server {

namespace {

FileMask modeAndPattern(const QString& mask)
{
    const qsizetype first = mask.indexOf(u'*');
    if (first < 0)
        return {MaskMode::Exact, mask};
    const qsizetype second = mask.indexOf(u'*', first + 1);
    if (second < 0) {
        if (first == 0)
            return {MaskMode::EndsWith, mask.mid(1)};
        return {MaskMode::BeginsWith, mask.left(first)};
    }
    const QString between = mask.mid(first + 1, second - first - 1);
    if (between.isEmpty() || between == u".")
        return {MaskMode::BeginsWith, mask.left(first)};
    return {MaskMode::Contains, between};
}

} // namespace

FileMask parseFileMask(const QString& mask)
{
    FileMask parsed = modeAndPattern(mask.trimmed());
    if (parsed.pattern.isEmpty())
        parsed.mode = MaskMode::All;
    return parsed;
}

bool matchesFileMask(const FileMask& mask, const QString& fileName)
{
    switch (mask.mode) {
    case MaskMode::Exact:
        return fileName.compare(mask.pattern, Qt::CaseInsensitive) == 0;
    case MaskMode::EndsWith:
        return fileName.endsWith(mask.pattern, Qt::CaseInsensitive);
    case MaskMode::BeginsWith:
        return fileName.startsWith(mask.pattern, Qt::CaseInsensitive);
    case MaskMode::Contains:
        return fileName.contains(mask.pattern, Qt::CaseInsensitive);
    case MaskMode::All:
        return true;
    }
    return false;
}

bool hasForbiddenExtension(const QString& fileName, const QStringList& forbiddenExtensions)
{
    const qsizetype dot = fileName.lastIndexOf(u'.');
    if (dot < 0)
        return false;
    const QStringView extension = QStringView(fileName).mid(dot + 1);
    for (qsizetype slot = 0; slot < kMaxForbiddenExtensions; ++slot) {
        if (extension.compare(forbiddenExtensions.value(slot), Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

bool isOwnFile(const QString& fileName)
{
    // Each may carry the six-character suffix of the temporary file that a
    // safe save writes before its rename.
    static const QRegularExpression own(
        QStringLiteral(R"(^(.*\d{8}\.log|.*\.fmn|.*\.drev|totali\.txt|kelmdrev\..+|fileext\.ini)(\.\w{6})?$)"),
        QRegularExpression::CaseInsensitiveOption);
    return own.match(fileName).hasMatch();
}

QStringList MatchFileMask(const QString& directory, const QString& mask,
                          const QStringList& forbiddenExtensions)
{
    const QDir dir(directory);
    if (!dir.exists())
        return {};
    const FileMask parsed = parseFileMask(mask);
    QStringList names;
    // Links are not followed and only regular files are read: a link may
    // lead anywhere, and reading a pipe would never end.
    for (const QString& name : dir.entryList(QDir::Files | QDir::Hidden | QDir::NoSymLinks,
                                                    QDir::Unsorted)) {
        if (!isOwnFile(name) && !hasForbiddenExtension(name, forbiddenExtensions)
            && matchesFileMask(parsed, name))
            names.append(name);
    }
    return names;
}

QStringList UnreadableMatches(const QString& directory, const QString& mask)
{
    const QDir dir(directory);
    if (!dir.exists())
        return {};
    const FileMask parsed = parseFileMask(mask);
    QStringList names;
    const auto all = QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot;
    for (const QFileInfo& info : dir.entryInfoList(all, QDir::Unsorted))
        if ((info.isSymLink() || !info.isFile()) && matchesFileMask(parsed, info.fileName()))
            names.append(info.fileName());
    return names;
}

QString logNameAfterMask(const FileMask& mask, const QString& currentLogName)
{
    return mask.pattern.isEmpty() ? currentLogName : mask.pattern;
}

} // namespace kelm::server
