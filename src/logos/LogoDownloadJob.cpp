#include "logos/LogoDownloadJob.h"

#include "link/PanelCommand.h"
#include "programming/Downloads.h"

namespace kelm::logos {

qint16 runLogoDownload(EcrLink& link, Operator& op, const QList<logos::LogoRowRecord>& rows,
                       const programming::Progress& progress)
{
    PanelCommand panel(link, op);
    qint16 failedResult = 0;
    QString failedAnswer;
    const int total = int(rows.size());
    for (int i = 0; i < total; ++i) {
        if (const qint16 result = panel(rows[i].record); result != 0) {
            failedResult = result;
            failedAnswer = panel.LastAnswer;
        }
        if (progress)
            progress(i + 1, total);
    }
    const programming::DownloadBranch branch = programming::downloadBranch(2);
    const programming::Notice notice = failedResult != 0 ? programming::downloadFailure(branch, failedAnswer)
                                                         : programming::downloadSuccess(branch);
    op.showMessage(notice.text, notice.title, notice.icon);
    return failedResult;
}

} // namespace kelm::logos
