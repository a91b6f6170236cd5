#pragma once

#include "programming/PluRecord.h"

#include <QList>
#include <QWidget>

class QProgressBar;
class QPushButton;
class QTableWidget;

namespace kelm::ui {

class Dialogs;

// The PLU table as a grid, one row per PLU (the row's number is the PLU's),
// with the PLU text file. Exchanges with the register are the tab's; the
// page shows their progress and offers to stop them.
class PluPage final : public QWidget {
    Q_OBJECT

public:
    PluPage(Dialogs& dialogs, const QString& programFolder, QWidget* parent = nullptr);

    QList<programming::PluRow> rows() const;
    void setRows(const QList<programming::PluRow>& rows);
    void appendRows(const QList<programming::PluRow>& rows);
    // Normalises the numeric columns in the grid itself, so that the grid
    // shows what is about to be sent, and returns the rows.
    QList<programming::PluRow> normaliseNumbers();

    // While an exchange runs, the bars show it and only the stop button
    // starts nothing new. `total` is the first bar's maximum.
    void operationStarted(int total);
    void setProgress(int done);
    // The download's second part: the register's PLUs beyond the grid.
    void beyondGridSearchStarted();
    void operationEnded();

    void cmdCancellaPLU_Click();
    void cmdPLUSalvaFile_Click();
    void cmdPLULeggiFile_Click();
    // An empty row at the end; the selected rows (or the current one) away.
    void cmdPLUAggiungiRiga_Click();
    void cmdPLUEliminaRiga_Click();

Q_SIGNALS:
    void downloadRequested(int index); // 4
    void cmdReadPLU_Click();
    void cmdStopPLU_Click();

private:
    void setRow(int r, const programming::PluRow& row);
    void setBusy(bool busy);

    Dialogs& dialogs_;
    QString programFolder_;
    QTableWidget* fgPLU;
    // [0]: the records sent or read; [1]: the search for the register's PLUs
    // beyond the grid, whose length nobody knows beforehand.
    QList<QProgressBar*> pbPLU;
    QList<QPushButton*> startButtons_;
    QPushButton* stop_;
};

} // namespace kelm::ui
