#include "logos/LogoBitmap.h"

#include <QFile>
#include <QImageReader>
#include <QtEndian>

namespace kelm::logos {

namespace {

// Qt decodes a BMP whose pixel data stops early without complaint, making up
// the missing rows; the file size that the header declares (bytes 2 to 5, 0
// when the writer left it out) tells a file that was cut short.
bool shorterThanDeclared(QFile& file)
{
    const QByteArray start = file.peek(6);
    if (start.size() < 6)
        return false;
    const auto declared = qFromLittleEndian<quint32>(start.constData() + 2);
    return declared != 0 && file.size() < declared;
}

} // namespace

LoadedBitmap readBmpFile(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {{}, kFileUnreadable};
    if (file.size() == 0)
        return {{}, kFileEmpty};

    QImageReader reader(&file, "bmp");
    reader.setDecideFormatFromContent(false);
    if (!reader.canRead())
        return {{}, kNotBmp};
    if (shorterThanDeclared(file))
        return {{}, kDamagedBmp};
    QImage image;
    if (!reader.read(&image))
        return {{}, kDamagedBmp};
    return {image.convertToFormat(kLogoFormat), {}};
}

} // namespace kelm::logos
