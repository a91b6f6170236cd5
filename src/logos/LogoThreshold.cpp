#include "logos/LogoThreshold.h"

#include "logos/LogoBitmap.h"

#include <algorithm>

namespace kelm::logos {

QImage thresholdToBlackAndWhite(const QImage& picture)
{
    QImage result = picture.convertToFormat(kLogoFormat);
    const int width = std::min(result.width(), kThresholdSquare);
    const int height = std::min(result.height(), kThresholdSquare);
    for (int y = 0; y < height; ++y) {
        uchar* pixel = result.scanLine(y);
        for (int x = 0; x < width; ++x, pixel += 3) {
            const bool white = pixel[0] >= kWhiteFromRed && pixel[1] >= kWhiteFromGreen
                && pixel[2] >= kWhiteFromBlue;
            const uchar level = white ? 255 : 0;
            pixel[0] = pixel[1] = pixel[2] = level;
        }
    }
    return result;
}

} // namespace kelm::logos
