#include "programming/PrintLine.h"

#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

constexpr int kRightAlignment = 1;
constexpr int kCentredAlignment = 2;
constexpr qsizetype kNormalWidth = 32;
constexpr qsizetype kDoubleWidth = 16;

bool isPrintSize(int sizeIndex)
{
    return sizeIndex >= 0 && sizeIndex < printSizeItems().size();
}

QString blanks(qsizetype count)
{
    return QString(count, u' ');
}

} // namespace

const QStringList& printSizeItems()
{
    static const QStringList items = {QStringLiteral("Normale"), QStringLiteral("Doppia Altezza"),
                                      QStringLiteral("Doppia Larghezza"),
                                      QStringLiteral("Doppia Altezza e Larghezza")};
    return items;
}

const QStringList& printAlignmentItems()
{
    static const QStringList items = {QStringLiteral("Sinistra"), QStringLiteral("Destra"),
                                      QStringLiteral("Centrato")};
    return items;
}

QString printSizeCode(int sizeIndex)
{
    return QString::number(isPrintSize(sizeIndex) ? sizeIndex + 1 : 0);
}

qsizetype printLineWidth(int sizeIndex)
{
    const bool doubleWidth = sizeIndex == 2 || sizeIndex == 3;
    return doubleWidth ? kDoubleWidth : kNormalWidth;
}

QString paddedLine(const QString& text, int sizeIndex, int alignIndex)
{
    const QString t = trimBlanks(text);
    const qsizetype width = printLineWidth(sizeIndex);
    if (alignIndex == kRightAlignment)
        return (blanks(width) + t).right(width);
    if (alignIndex == kCentredAlignment) {
        const qsizetype lead = (width - t.size()) / 2;
        if (lead >= 1)
            return (blanks(lead) + t + blanks(width)).left(width);
    }
    return (t + blanks(width)).left(width);
}

} // namespace kelm::programming
