#include "logos/LogoRecords.h"

#include "logos/LogoBitmap.h"
#include "logos/LogoTexts.h"

namespace kelm::logos {

namespace {

constexpr int kPixelsPerDigit = 4;

bool isWhite(const uchar* pixel)
{
    return pixel[0] == 255 && pixel[1] == 255 && pixel[2] == 255;
}

void appendRowData(QString& record, const uchar* row, int width)
{
    static constexpr char kHexDigits[] = "0123456789ABCDEF";
    const uchar* pixel = row + 3 * (width - 1);
    for (int digit = 0; digit < width / kPixelsPerDigit; ++digit) {
        int value = 0;
        for (int weight = 8; weight > 0; weight /= 2, pixel -= 3) {
            if (isWhite(pixel))
                value += weight;
        }
        record.append(QLatin1Char(kHexDigits[value]));
    }
}

} // namespace

bool acceptedForDownload(QSize size)
{
    return size.height() > 63 && size.width() > 63 && size.width() < 257;
}

LogoDownload logoDownload(const QList<QImage>& pictures, qsizetype pageOnShow)
{
    const QImage logo = pictures.value(pageOnShow).convertToFormat(kLogoFormat);
    if (!acceptedForDownload(logo.size()))
        return {{}, kLogoNotSet};

    const QString head = QStringLiteral("$/%1/%2/%3/")
                             .arg(pageOnShow + 1)
                             .arg(logo.width())
                             .arg(logo.height());
    LogoDownload download;
    download.records.reserve(logo.height());
    for (int y = 0; y < logo.height(); ++y) {
        const int row = y + 1;
        QString record;
        record.reserve(head.size() + 4 + logo.width() / kPixelsPerDigit + 1);
        record.append(head).append(QString::number(row)).append(u'/');
        appendRowData(record, logo.constScanLine(y), logo.width());
        record.append(u'/');
        download.records.append({row, record});
    }
    return download;
}

} // namespace kelm::logos
