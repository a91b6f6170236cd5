#include "logos/LogoFit.h"

#include "app/Configuration.h"
#include "logos/LogoBitmap.h"
#include "logos/LogoTexts.h"
#include "logos/LogoThreshold.h"

#include <algorithm>

namespace kelm::logos {

namespace {

int roundUpToLogoSide(int length)
{
    for (const int side : kLogoSides) {
        if (length <= side)
            return side;
    }
    return kLogoSides.back();
}

} // namespace

bool isStandardSize(QSize size)
{
    return sideListPosition(size.width()) >= 0 && sideListPosition(size.height()) >= 0;
}

QSize fittedLogoSize(QSize pictureSize)
{
    return {roundUpToLogoSide(pictureSize.width()), roundUpToLogoSide(pictureSize.height())};
}

int sideListPosition(int side)
{
    const auto found = std::find(kLogoSides.begin(), kLogoSides.end(), side);
    return found == kLogoSides.end() ? -1 : static_cast<int>(found - kLogoSides.begin());
}

QImage stretchLogo(const QImage& picture, QSize size)
{
    return picture.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation)
        .convertToFormat(kLogoFormat);
}

FittedLogo fitLoadedLogo(const QImage& loaded)
{
    const QImage blackAndWhite = thresholdToBlackAndWhite(loaded);
    return {loaded.size(), isStandardSize(loaded.size()),
            stretchLogo(blackAndWhite, fittedLogoSize(loaded.size()))};
}

ResizedLogo resizeByHand(const QImage& logo, const QString& widthText, const QString& heightText)
{
    const QSize size(WholeNumber(widthText), WholeNumber(heightText));
    if (!isStandardSize(size))
        return {{}, kWrongResizeValue};
    return {stretchLogo(logo, size), {}};
}

} // namespace kelm::logos
