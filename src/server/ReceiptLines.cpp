#include "server/ReceiptLines.h"

#include "link/CodePage.h"
#include "link/Framing.h"

#include <QStringDecoder>

#include <algorithm>

namespace kelm::server {

namespace {

constexpr char kDosEndOfFile = 0x1A;

// Receipt files are Windows-1252, but a point-of-sale program on Linux may
// write UTF-8: with its mark, or when the bytes read as UTF-8 and are not
// plain ASCII, the text is taken as UTF-8 so that "è" stays "è" on the
// register and is not sent as two wrong characters.
QString receiptText(QByteArrayView bytes)
{
    if (bytes.startsWith("\xEF\xBB\xBF"))
        return QString::fromUtf8(bytes.sliced(3));
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString asUtf8 = utf8.decode(bytes);
    const bool ascii = std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<quint8>(c) < 0x80; });
    if (!ascii && !utf8.hasError())
        return asUtf8;
    return ansi::decode(bytes);
}

} // namespace

QStringList splitReceiptLines(QByteArrayView bytes)
{
    const qsizetype eof = bytes.indexOf(kDosEndOfFile);
    const QString text = receiptText(eof < 0 ? bytes : bytes.first(eof));

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

namespace kelm::server {

std::optional<QString> uncarriableReason(const QString& line)
{
    using namespace frame;
    const bool controlByte = std::any_of(line.begin(), line.end(), [](QChar c) {
        const char16_t u = c.unicode();
        return u == STX || u == ETX || u == ENQ || u == ACK || u == NAK || u == CAN;
    });
    if (controlByte)
        return QStringLiteral("Record con caratteri di controllo: non inviato");
    if (line.size() > kMaxRecordCharacters)
        return QStringLiteral("Record troppo lungo (oltre %1 caratteri): non inviato").arg(kMaxRecordCharacters);
    return std::nullopt;
}

} // namespace kelm::server
