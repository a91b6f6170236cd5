#include "ui/PaymentsPage.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kelm::ui {

using programming::kPaymentFlags;

namespace {

// The flag boxes in the order of the record's flag string.
const char* const kFlagNames[kPaymentFlags] = {"chkPagResto",    "chkPagAmmontare", "chkPagSubtotale",
                                               "chkPagCashIN",   "chkPagCashOut",   "chkPagComments",
                                               "chkPagPositivo", "chkPagDecimali"};
const char* const kFlagCaptions[kPaymentFlags] = {"Resto", "Amm.", "Subt.", "Cash in",
                                                  "Cash out", "Comm.", "Pos.", "Dec."};

} // namespace

PaymentsPage::PaymentsPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("pagePagamenti"));
    auto* grid = new QGridLayout;
    const QStringList headings = {QStringLiteral("Descrizione"), QStringLiteral("Breve"), QStringLiteral("Attivo"),
                                  QStringLiteral("Crediti")};
    int column = 1;
    for (const QString& h : headings)
        grid->addWidget(new QLabel(h), 0, column++);
    for (const char* caption : kFlagCaptions)
        grid->addWidget(new QLabel(QString::fromLatin1(caption)), 0, column++);
    for (const QString& h : {QStringLiteral("Tasso"), QStringLiteral("Mark-up"), QStringLiteral("Cambio")})
        grid->addWidget(new QLabel(h), 0, column++);

    for (int i = 0; i < programming::kPaymentTypeCount; ++i) {
        Row row{};
        row.description = named<QLineEdit>(indexed(QStringLiteral("txtPagDescr"), i));
        row.shortDescription = named<QLineEdit>(indexed(QStringLiteral("txtPagDescrBreve"), i));
        makeSlashSafe(row.description);
        makeSlashSafe(row.shortDescription);
        row.active = named<QCheckBox>(indexed(QStringLiteral("chkPagAttivo"), i));
        row.credit = named<QCheckBox>(indexed(QStringLiteral("chkPagCrediti"), i));
        for (size_t f = 0; f < kPaymentFlags; ++f)
            row.flags[f] = named<QCheckBox>(indexed(QString::fromLatin1(kFlagNames[f]), i));
        row.rate = named<QLineEdit>(indexed(QStringLiteral("txtPagTasso"), i));
        row.markUp = named<QLineEdit>(indexed(QStringLiteral("txtPagMarkUp"), i));
        makeSlashSafe(row.rate);
        makeSlashSafe(row.markUp);
        row.change = named<QLineEdit>(indexed(QStringLiteral("txtPagChange"), i));
        row.change->setReadOnly(true);
        const int r = i + 1;
        column = 0;
        grid->addWidget(new QLabel(QString::number(r)), r, column++);
        grid->addWidget(row.description, r, column++);
        grid->addWidget(row.shortDescription, r, column++);
        grid->addWidget(row.active, r, column++);
        grid->addWidget(row.credit, r, column++);
        for (QCheckBox* flag : row.flags)
            grid->addWidget(flag, r, column++);
        grid->addWidget(row.rate, r, column++);
        grid->addWidget(row.markUp, r, column++);
        grid->addWidget(row.change, r, column++);
        rows_.append(row);
    }
    auto* read = namedButton(QStringLiteral("cmdReadPagamenti"), QStringLiteral("Leggi pagamenti"));
    auto* clear = namedButton(QStringLiteral("cmdClearPagamenti"), QStringLiteral("Cancella"));
    download_ = namedButton(QStringLiteral("cmdSetParametri_6"), QStringLiteral("Scarica pagamenti"));
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(read);
    buttons->addWidget(clear);
    buttons->addWidget(download_);
    buttons->addStretch();
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);
    layout->addStretch();
    setTechnician(false);
    // Nine empty rows would wipe the register's payment types: the download
    // waits for a read.
    setDownloadEnabled(false);

    connect(download_, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(6); });
    connect(read, &QPushButton::clicked, this, &PaymentsPage::cmdReadPagamenti_Click);
    connect(clear, &QPushButton::clicked, this, &PaymentsPage::cmdClearPagamenti_Click);
}

programming::PaymentType PaymentsPage::payment(int number) const
{
    const Row& row = rows_[number - 1];
    programming::PaymentType p;
    p.description = row.description->text();
    p.shortDescription = row.shortDescription->text();
    p.active = row.active->isChecked();
    p.credit = row.credit->isChecked();
    for (size_t f = 0; f < kPaymentFlags; ++f)
        p.flags[f] = row.flags[f]->isChecked();
    p.exchangeRate = row.rate->text();
    p.markUp = row.markUp->text();
    return p;
}

void PaymentsPage::setPaymentRead(int number, const programming::PaymentTypeRead& read)
{
    const Row& row = rows_[number - 1];
    row.active->setChecked(true);
    row.description->setText(read.description);
    row.shortDescription->setText(read.shortDescription);
    for (size_t f = 0; f < kPaymentFlags; ++f)
        row.flags[f]->setChecked(read.flags[f]);
    row.rate->setText(read.exchangeRate);
    row.change->setText(read.change);
    row.markUp->setText(read.markUp);
}

void PaymentsPage::setDownloadEnabled(bool enabled)
{
    download_->setEnabled(enabled);
}

void PaymentsPage::setTechnician(bool logged)
{
    // The credit flag of the first payment type (cash) is never the
    // technician's; the other eight are.
    for (qsizetype i = 1; i < rows_.size(); ++i)
        rows_[i].credit->setEnabled(logged);
}

void PaymentsPage::cmdClearPagamenti_Click()
{
    for (const Row& row : rows_) {
        for (QLineEdit* e : {row.description, row.shortDescription, row.rate, row.markUp, row.change})
            e->clear();
        for (QCheckBox* c : row.flags)
            c->setChecked(false);
        row.active->setChecked(false);
        row.credit->setChecked(false);
    }
}

} // namespace kelm::ui
