#include "programming/DownloadJob.h"

#include "link/PanelCommand.h"
#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

void show(Operator& op, const Notice& notice)
{
    op.showMessage(notice.text, notice.title, notice.icon);
}

bool stopped(const std::atomic<bool>* stop)
{
    return stop && *stop;
}

void report(const Progress& progress, int done, int total)
{
    if (progress)
        progress(done, total);
}

} // namespace

qint16 runDownload(EcrLink& link, Operator& op, const DownloadBranch& branch,
                   const QList<DownloadRecord>& records, const Progress& progress, const std::atomic<bool>* stop)
{
    PanelCommand panel(link, op);
    qint16 result = 0;
    bool failed = false;
    const int total = int(records.size());
    for (int i = 0; i < total && !stopped(stop); ++i) {
        result = panel(records[i].record);
        if (result != 0) {
            failed = true;
            show(op, downloadFailure(branch, panel.LastAnswer, records[i].identification));
        }
        report(progress, i + 1, total);
    }
    if (branch.recordByRecord || !failed)
        show(op, downloadSuccess(branch));
    return result;
}

QList<PluRow> runPluDownload(EcrLink& link, Operator& op, const QList<PluRow>& rows, const Progress& progress,
                             const std::atomic<bool>* stop)
{
    const DownloadBranch branch = downloadBranch(4);
    PanelCommand panel(link, op);
    QList<PluRow> sent;
    const int total = int(rows.size());
    // The failure box of a row offers to stop: a file of bad rows would
    // otherwise bring one box after another, and the stop button cannot be
    // reached while a box is up.
    bool halted = false;
    for (int r = 0; r < total && !halted; ++r) {
        sent.append(withNormalisedNumbers(rows[r]));
        if (panel(pluRecord(r + 1, sent.back())) != 0) {
            const Notice failure = downloadFailure(branch, panel.LastAnswer, sent.back()[0]);
            halted = op.ask(failure.text, failure.title, failure.icon, {Operator::Button::Ok, Operator::Button::Cancel},
                                 Operator::Button::Ok)
                == Operator::Button::Cancel;
        }
        report(progress, r + 1, total);
        halted = halted || stopped(stop);
    }
    if (halted || stopped(stop)) {
        show(op, pluDownloadStopped(int(sent.size()), total));
        return sent;
    }
    // The register may hold PLUs that the grid no longer has.
    for (SurplusPluScan scan(total); !scan.finished() && !stopped(stop);) {
        const int number = scan.number();
        const QString code = panel(pluReadRecord(number)) == 0 ? answerFields(panel.LastAnswer, 1).front().trimmed()
                                                                : QString();
        if (!scan.probed(code))
            continue;
        link.WaitForData(5); // the register gets a breath before the deletion
        if (panel(pluDeletionRecord(number)) != 0)
            break;
    }
    show(op, stopped(stop) ? pluDownloadStopped(total, total) : downloadSuccess(branch));
    return sent;
}

QList<PluRow> readPluTable(EcrLink& link, Operator& op, const PluRowRead& rowRead, const std::atomic<bool>* stop)
{
    PanelCommand panel(link, op);
    QList<PluRow> rows;
    for (int n = 1; n <= kPluLimit && !stopped(stop); ++n) {
        if (panel(pluReadRecord(n)) != 0)
            break;
        const PluRow row = parsePlu(panel.LastAnswer);
        if (row[0].isEmpty())
            break;
        rows.append(row);
        if (rowRead)
            rowRead(n, row);
    }
    return rows;
}

} // namespace kelm::programming
