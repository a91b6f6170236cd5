#pragma once

#include <QImage>
#include <QString>

// Reading a BMP file into a logo picture.
namespace kelm::logos {

// Every logo picture is held in this format: three bytes a pixel, red, green,
// blue. The threshold and the row encoding read the components in that order.
constexpr QImage::Format kLogoFormat = QImage::Format_RGB888;

inline const QString kFileUnreadable = QStringLiteral("Impossibile aprire il file");
inline const QString kFileEmpty = QStringLiteral("Il file è vuoto");
inline const QString kNotBmp = QStringLiteral("Il file non è un'immagine BMP");
inline const QString kDamagedBmp = QStringLiteral("Il file BMP è danneggiato");

struct LoadedBitmap {
    QImage image;  // in kLogoFormat; null when there is an error
    QString error; // empty on success, else one of the texts above
};

// The picture of a BMP file, whatever its size and colour depth. A missing
// file, an empty one, one that does not begin as a BMP and a BMP that cannot
// be decoded (cut short, impossible sizes) each give their error text.
LoadedBitmap readBmpFile(const QString& path);

} // namespace kelm::logos
