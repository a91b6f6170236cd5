#pragma once

#include <QImage>
#include <QList>
#include <QSize>
#include <QString>

// Turning a logo into the "$/" records that store it in the register, one
// record per pixel row.
namespace kelm::logos {

struct LogoRowRecord {
    int row = 0;    // 1 for the top row of the picture
    QString record; // "$/" logo number / width / height / row / row data "/"
};

struct LogoDownload {
    QList<LogoRowRecord> records; // top row first; empty when refused
    QString refusal;              // kLogoNotSet, or empty
};

// Whether the register takes a logo of this size: at least 64 pixels each
// way and at most 256 wide. Taller pictures never reach the download, as
// every load and resize ends on a logo size.
bool acceptedForDownload(QSize size);

// The records of the logo on the page on show, `pictures` holding the
// picture of every page in page order (see kLogoPageCaptions). The logo
// number is the page's plus 1, whichever page the picture was loaded on.
// Each row's data is one upper-case hexadecimal digit per four pixels,
// walking from the right edge to the left: the first pixel of the four
// counts 8, then 4, 2, 1; a pixel counts when it is pure white. A page
// with no picture, or one of a size the register does not take, is
// refused with kLogoNotSet.
LogoDownload logoDownload(const QList<QImage>& pictures, qsizetype pageOnShow);

} // namespace kelm::logos
