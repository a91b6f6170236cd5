#include "programming/PluFile.h"

#include "link/CodePage.h"
#include "programming/RecordFields.h"

#include <QRegularExpression>

namespace kelm::programming {

namespace {

constexpr qsizetype kShortestUsedLine = 16;
constexpr qsizetype kLeastFields = kPluSentColumns;
constexpr qsizetype kMostFields = kPluColumns;

} // namespace

QByteArray pluFileBytes(const QList<PluRow>& rows)
{
    QString text;
    for (const PluRow& row : rows) {
        for (const QString& cell : row)
            text += replaceSlashes(cell) + u'/';
        text += QStringLiteral("\r\n");
    }
    return ansi::encode(text);
}

PluFileLoad loadPluFile(const QByteArray& bytes)
{
    static const QRegularExpression lineEnd(QStringLiteral("\r\n|\r|\n"));
    QStringList lines = ansi::decode(bytes).split(lineEnd);
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast(); // the end of the last line, not a line of its own
    PluFileLoad load;
    for (qsizetype i = 0; i < lines.size() && i < kPluFileMaxLines; ++i) {
        QString line = lines[i];
        if (line.size() < kShortestUsedLine)
            continue;
        if (!line.endsWith(u'/'))
            line += u'/';
        const QStringList cells = line.split(u'/');
        const qsizetype fields = cells.size() - 1; // the text after the last "/" is empty
        if (fields < kLeastFields || fields > kMostFields)
            load.oddLines.append(static_cast<int>(i + 1));
        PluRow row;
        for (qsizetype c = 0; c < kPluSentColumns && c < fields; ++c)
            row[static_cast<size_t>(c)] = cells[c];
        load.rows.append(row);
    }
    return load;
}

} // namespace kelm::programming
