#include "CodePage.h"

#include <QList>
#include <QStringDecoder>
#include <QStringEncoder>

namespace kelm::ansi {

namespace {

constexpr char kUnmappable = 0x1A; // what the encoder writes for a character it lacks
constexpr char32_t kSubstitute = 0x1A;


} // namespace

QByteArray encode(QStringView text)
{
    QStringEncoder encoder("windows-1252");
    QByteArray bytes = encoder.encode(text);
    if (!bytes.contains(kUnmappable))
        return bytes;
    // The encoder emits one byte per code point; put "?" where it gave up,
    // keeping a genuine SUB character as it is.
    const QList<uint> points = text.toUcs4();
    if (bytes.size() != points.size()) {
        bytes.clear();
        for (uint point : points) {
            const auto cp = static_cast<char32_t>(point);
            const QString one = QString::fromUcs4(&cp, 1);
            const QByteArray b = QStringEncoder("windows-1252").encode(one);
            bytes.append(b.size() == 1 ? b : QByteArray(1, kUnmappable));
        }
    }
    for (qsizetype i = 0; i < bytes.size(); ++i)
        if (bytes[i] == kUnmappable && points[i] != kSubstitute)
            bytes[i] = '?';
    return bytes;
}

QString decode(QByteArrayView bytes)
{
    QStringDecoder decoder("windows-1252");
    return decoder.decode(bytes);
}

} // namespace kelm::ansi
