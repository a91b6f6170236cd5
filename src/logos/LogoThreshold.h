#pragma once

#include <QImage>

// Forcing a loaded picture to pure black and white.
namespace kelm::logos {

// A pixel turns white only when each of its components reaches its own
// limit; the three limits differ on purpose.
constexpr int kWhiteFromRed = 151;
constexpr int kWhiteFromGreen = 101;
constexpr int kWhiteFromBlue = 161;

// The threshold walks a fixed square from the top left corner, the largest
// logo there is, whatever the picture's size.
constexpr int kThresholdSquare = 256;

// The picture in kLogoFormat with every pixel of the square set to white
// (255, 255, 255) or black (0, 0, 0). Pixels of a larger picture beyond the
// square keep their colours; points of the square beyond a smaller picture
// are not part of it and change nothing. The size never changes.
QImage thresholdToBlackAndWhite(const QImage& picture);

} // namespace kelm::logos
