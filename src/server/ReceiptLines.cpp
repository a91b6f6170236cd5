#include "server/ReceiptLines.h"

#include "link/CodePage.h"

namespace kelm::server {

namespace {

constexpr char kDosEndOfFile = 0x1A;

} // namespace

QStringList splitReceiptLines(QByteArrayView bytes)
{
    const qsizetype eof = bytes.indexOf(kDosEndOfFile);
    const QString text = ansi::decode(eof < 0 ? bytes : bytes.first(eof));

    QStringList lines;
    QString current;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c != u'\r' && c != u'\n') {
            current += c;
            continue;
        }
        lines.append(current);
        current.clear();
        if (c == u'\r' && i + 1 < text.size() && text[i + 1] == u'\n')
            ++i;
    }
    if (!current.isEmpty())
        lines.append(current);
    return lines;
}

std::optional<QString> normalizeQueueLine(const QString& line)
{
    if (line.trimmed().isEmpty())
        return std::nullopt;
    if (line.endsWith(u'/'))
        return line;
    return line + u'/';
}

} // namespace kelm::server
