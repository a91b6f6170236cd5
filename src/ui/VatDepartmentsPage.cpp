#include "ui/VatDepartmentsPage.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kelm::ui {

using programming::Department;

VatDepartmentsPage::VatDepartmentsPage(QWidget* parent) : QWidget(parent)
{
    setObjectName(QStringLiteral("pageIvaReparti"));
    auto* ratesBox = new QGroupBox(QStringLiteral("Aliquote IVA"));
    auto* ratesLayout = new QHBoxLayout(ratesBox);
    for (int i = 0; i < kVatRateCount; ++i) {
        auto* edit = named<QLineEdit>(indexed(QStringLiteral("txtIVA"), i));
        makeSlashSafe(edit);
        ratesLayout->addWidget(new QLabel(QString::number(i + 1)));
        ratesLayout->addWidget(edit);
        txtIVA.append(edit);
    }
    auto* readRates = namedButton(QStringLiteral("cmdReadIVA"), QStringLiteral("Leggi aliquote"));
    auto* downloadRates = namedButton(QStringLiteral("cmdSetParametri_10"), QStringLiteral("Scarica aliquote"));
    ratesLayout->addWidget(readRates);
    ratesLayout->addWidget(downloadRates);

    auto* departmentsBox = new QGroupBox(QStringLiteral("Reparti"));
    auto* grid = new QGridLayout;
    for (int i = 0; i < programming::kDepartmentCount; ++i) {
        auto* text = named<QLineEdit>(indexed(QStringLiteral("txtDEPTDescription"), i));
        makeSlashSafe(text);
        auto* vat = named<QComboBox>(indexed(QStringLiteral("cmbDPTCodIVA"), i));
        vat->addItems({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4"),
                       QStringLiteral("5")});
        vat->setCurrentIndex(-1);
        const int row = i % 10;
        const int column = (i / 10) * 3;
        grid->addWidget(new QLabel(QString::number(i + 1)), row, column);
        grid->addWidget(text, row, column + 1);
        grid->addWidget(vat, row, column + 2);
        txtDEPTDescription.append(text);
        cmbDPTCodIVA.append(vat);
    }
    auto* buttons = new QHBoxLayout;
    auto* readAll = namedButton(QStringLiteral("cmdreadParmIVAREP"), QStringLiteral("Leggi aliquote e reparti"));
    auto* clear = namedButton(QStringLiteral("cmdDPTClear"), QStringLiteral("Cancella"));
    downloadDepartments_ = namedButton(QStringLiteral("cmdSetParametri_3"), QStringLiteral("Scarica reparti"));
    downloadDepartments_->setEnabled(false);
    buttons->addWidget(readAll);
    buttons->addWidget(clear);
    buttons->addWidget(downloadDepartments_);
    buttons->addStretch();
    auto* departmentsLayout = new QVBoxLayout(departmentsBox);
    departmentsLayout->addLayout(grid);
    departmentsLayout->addLayout(buttons);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(ratesBox);
    layout->addWidget(departmentsBox);
    layout->addStretch();

    connect(downloadRates, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(10); });
    connect(downloadDepartments_, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(3); });
    connect(readRates, &QPushButton::clicked, this, &VatDepartmentsPage::cmdReadIVA_Click);
    connect(readAll, &QPushButton::clicked, this, &VatDepartmentsPage::cmdreadParmIVAREP_Click);
    connect(clear, &QPushButton::clicked, this, &VatDepartmentsPage::cmdDPTClear_Click);
}

std::array<QString, kVatRateCount> VatDepartmentsPage::rates() const
{
    std::array<QString, kVatRateCount> out;
    for (int i = 0; i < kVatRateCount; ++i)
        out[static_cast<size_t>(i)] = txtIVA[i]->text();
    return out;
}

void VatDepartmentsPage::setRates(const std::array<QString, kVatRateCount>& rates)
{
    for (int i = 0; i < kVatRateCount; ++i)
        txtIVA[i]->setText(rates[static_cast<size_t>(i)]);
}

Department VatDepartmentsPage::department(int number) const
{
    return {txtDEPTDescription[number - 1]->text(), cmbDPTCodIVA[number - 1]->currentIndex()};
}

void VatDepartmentsPage::setDepartment(int number, const Department& department)
{
    txtDEPTDescription[number - 1]->setText(department.description);
    cmbDPTCodIVA[number - 1]->setCurrentIndex(department.vatIndex);
}

void VatDepartmentsPage::setDepartmentsFromRegister(bool fromRegister)
{
    downloadDepartments_->setEnabled(fromRegister);
}

void VatDepartmentsPage::cmdDPTClear_Click()
{
    for (QLineEdit* edit : txtDEPTDescription)
        edit->clear();
    setDepartmentsFromRegister(false);
}

} // namespace kelm::ui
