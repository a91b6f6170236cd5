#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <array>

// The sizes the register takes for a logo, and bringing a picture to one.
namespace kelm::logos {

// Each side is one of these, independently (64×256 is a logo). Their order
// is the order of the width and height lists.
constexpr std::array<int, 3> kLogoSides{64, 128, 256};

// Whether both sides are logo sides.
bool isStandardSize(QSize size);

// The logo size for a picture: each side rounded up to the next logo side,
// and 256 for anything longer (70×200 → 128×256, 300×10 → 256×64).
QSize fittedLogoSize(QSize pictureSize);

// Position of a side in the width and height lists; -1 when it is none.
int sideListPosition(int side);

// The picture stretched to `size`, aspect ratio not kept. Pixels are picked,
// not blended, so a black and white picture stays black and white.
QImage stretchLogo(const QImage& picture, QSize size);

struct FittedLogo {
    QSize loadedSize;          // the picture as read, for the labels before the fit
    bool standardSize = false; // false: kNonStandardSize is shown before fitting
    QImage image;              // thresholded, then stretched to fittedLogoSize
};

// What a freshly read picture becomes on its logo page.
FittedLogo fitLoadedLogo(const QImage& loaded);

struct ResizedLogo {
    QImage image;  // the stretched picture; null when there is an error
    QString error; // kWrongResizeValue, or empty
};

// Resizing by hand to the texts of the width and height lists, each read as
// its leading number. Only logo sides are taken, so a value that is missing,
// 0 or anything else gives kWrongResizeValue. The picture is not thresholded
// again.
ResizedLogo resizeByHand(const QImage& logo, const QString& widthText, const QString& heightText);

} // namespace kelm::logos
