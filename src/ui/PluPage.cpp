#include "ui/PluPage.h"

#include "ui/EditorRules.h"

#include "ui/PluFileCommands.h"
#include "ui/Widgets.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QStyledItemDelegate>
#include <QProgressBar>
#include <QSet>
#include <QTableWidget>
#include <QVBoxLayout>

namespace kelm::ui {

using programming::kPluColumns;
using programming::PluRow;

namespace {

// The widths of the code and description columns, in pixels at 96 dpi.
constexpr int kCodeColumnWidth = 100;
constexpr int kDescriptionColumnWidth = 167;

// The numeric columns (department, bonus, prices, stock): a comma typed the
// Italian way becomes the decimal point at once, so that "2,50" is not sent
// as 2.
constexpr int kFirstNumericColumn = 2;
constexpr int kLastNumericColumn = 6;

class DecimalPointDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        auto* line = qobject_cast<QLineEdit*>(editor);
        if (line)
            makeSlashSafe(line); // a "/" would split the record
        if (line && index.column() >= kFirstNumericColumn && index.column() <= kLastNumericColumn)
            QObject::connect(line, &QLineEdit::textEdited, line, [line](const QString& text) {
                if (!text.contains(u','))
                    return;
                const int cursor = line->cursorPosition();
                line->setText(QString(text).replace(u',', u'.'));
                line->setCursorPosition(cursor);
            });
        return editor;
    }
};

} // namespace

PluPage::PluPage(Dialogs& dialogs, const QString& programFolder, QWidget* parent)
    : QWidget(parent), dialogs_(dialogs), programFolder_(programFolder),
      fgPLU(named<QTableWidget>(QStringLiteral("fgPLU"), 0, int(kPluColumns)))
{
    setObjectName(QStringLiteral("pagePLU"));
    fgPLU->setHorizontalHeaderLabels(programming::pluColumnHeadings());
    fgPLU->setColumnWidth(0, kCodeColumnWidth);
    fgPLU->setColumnWidth(1, kDescriptionColumnWidth);
    fgPLU->setItemDelegate(new DecimalPointDelegate(fgPLU));

    auto* read = namedButton(QStringLiteral("cmdReadPLU"), QStringLiteral("Leggi PLU"));
    auto* clear = namedButton(QStringLiteral("cmdCancellaPLU"), QStringLiteral("Cancella"));
    auto* load = namedButton(QStringLiteral("cmdPLULeggiFile"), QStringLiteral("Leggi file"));
    auto* save = namedButton(QStringLiteral("cmdPLUSalvaFile"), QStringLiteral("Salva file"));
    auto* download = namedButton(QStringLiteral("cmdSetParametri_4"), QStringLiteral("Scarica PLU"));
    stop_ = namedButton(QStringLiteral("cmdStopPLU"), QStringLiteral("Interrompi"));
    auto* addRow = namedButton(QStringLiteral("cmdPLUAggiungiRiga"), QStringLiteral("Aggiungi riga"));
    auto* removeRows = namedButton(QStringLiteral("cmdPLUEliminaRiga"), QStringLiteral("Elimina riga"));
    startButtons_ = {read, clear, load, download, addRow, removeRows};
    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {addRow, removeRows, read, clear, load, save, download, stop_})
        buttons->addWidget(b);
    buttons->addStretch();
    auto* bars = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        pbPLU.append(named<QProgressBar>(indexed(QStringLiteral("pbPLU"), i)));
        bars->addWidget(pbPLU.back());
    }
    pbPLU[1]->setRange(0, 0); // busy, with no end known
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(fgPLU);
    layout->addLayout(bars);
    layout->addLayout(buttons);
    operationEnded();

    connect(download, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(4); });
    connect(read, &QPushButton::clicked, this, &PluPage::cmdReadPLU_Click);
    connect(stop_, &QPushButton::clicked, this, &PluPage::cmdStopPLU_Click);
    connect(clear, &QPushButton::clicked, this, &PluPage::cmdCancellaPLU_Click);
    connect(save, &QPushButton::clicked, this, &PluPage::cmdPLUSalvaFile_Click);
    connect(load, &QPushButton::clicked, this, &PluPage::cmdPLULeggiFile_Click);
    connect(addRow, &QPushButton::clicked, this, &PluPage::cmdPLUAggiungiRiga_Click);
    connect(removeRows, &QPushButton::clicked, this, &PluPage::cmdPLUEliminaRiga_Click);
}

void PluPage::cmdPLUAggiungiRiga_Click()
{
    // A new PLU goes after the last: the numbers of the others stay.
    PluRow empty;
    empty[7] = QStringLiteral("00000000");
    appendRows({empty});
    fgPLU->setCurrentCell(fgPLU->rowCount() - 1, 0);
    fgPLU->scrollToBottom();
}

void PluPage::cmdPLUEliminaRiga_Click()
{
    // The rows after a removed one move up: their PLU numbers follow the rows.
    QSet<int> rows;
    for (const QModelIndex& index : fgPLU->selectionModel()->selectedIndexes())
        rows.insert(index.row());
    if (rows.isEmpty() && fgPLU->currentRow() >= 0)
        rows.insert(fgPLU->currentRow());
    QList<int> selected(rows.begin(), rows.end());
    std::sort(selected.begin(), selected.end(), std::greater<>());
    for (int row : selected)
        fgPLU->removeRow(row);
}

QList<PluRow> PluPage::rows() const
{
    QList<PluRow> rows;
    rows.reserve(fgPLU->rowCount());
    for (int r = 0; r < fgPLU->rowCount(); ++r) {
        PluRow row;
        for (int c = 0; c < int(kPluColumns); ++c)
            if (const QTableWidgetItem* item = fgPLU->item(r, c))
                row[static_cast<size_t>(c)] = item->text();
        rows.append(row);
    }
    return rows;
}

void PluPage::setRow(int r, const PluRow& row)
{
    for (int c = 0; c < int(kPluColumns); ++c) {
        const QString& text = row[static_cast<size_t>(c)];
        if (QTableWidgetItem* item = fgPLU->item(r, c))
            item->setText(text);
        else
            fgPLU->setItem(r, c, new QTableWidgetItem(text));
    }
}

void PluPage::setRows(const QList<PluRow>& rows)
{
    fgPLU->setRowCount(0);
    appendRows(rows);
}

void PluPage::appendRows(const QList<PluRow>& rows)
{
    const int first = fgPLU->rowCount();
    fgPLU->setRowCount(first + int(rows.size()));
    for (int i = 0; i < int(rows.size()); ++i)
        setRow(first + i, rows[i]);
}

QList<PluRow> PluPage::normaliseNumbers()
{
    QList<PluRow> rows = this->rows();
    for (int r = 0; r < int(rows.size()); ++r) {
        rows[r] = programming::withNormalisedNumbers(rows[r]);
        setRow(r, rows[r]);
    }
    return rows;
}

void PluPage::operationStarted(int total)
{
    pbPLU[0]->setRange(0, total);
    pbPLU[0]->setValue(0);
    pbPLU[0]->show();
    setBusy(true);
}

void PluPage::setProgress(int done)
{
    pbPLU[0]->setValue(done);
}

void PluPage::beyondGridSearchStarted()
{
    pbPLU[1]->show();
}

void PluPage::operationEnded()
{
    for (QProgressBar* bar : pbPLU)
        bar->hide();
    setBusy(false);
}

void PluPage::setBusy(bool busy)
{
    for (QPushButton* b : startButtons_)
        b->setEnabled(!busy);
    stop_->setEnabled(busy);
}

void PluPage::cmdCancellaPLU_Click()
{
    fgPLU->setRowCount(0);
    operationEnded();
}

void PluPage::cmdPLUSalvaFile_Click()
{
    savePluRows(dialogs_, programFolder_, rows());
}

void PluPage::cmdPLULeggiFile_Click()
{
    loadPluRows(dialogs_, programFolder_, [this](const QList<programming::PluRow>& rows) { appendRows(rows); });
}

} // namespace kelm::ui
