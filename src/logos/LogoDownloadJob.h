#pragma once

#include "app/Operator.h"
#include "link/EcrLink.h"
#include "logos/LogoRecords.h"
#include "programming/DownloadJob.h"

// Sending a logo, on the line's worker: every row goes out even when some
// fail, as a row left out would leave a hole in the printed logo; then one
// box tells the outcome, a failure naming the register's answer to the last
// row that failed. Returns the result of that row, 0 when none failed.
namespace kelm::logos {

qint16 runLogoDownload(EcrLink& link, Operator& op, const QList<logos::LogoRowRecord>& rows,
                       const programming::Progress& progress = {});

} // namespace kelm::logos
