#include "ui/UsoEcrPage.h"

#include "technician/VirtualKeyboard.h"
#include "ui/Widgets.h"

#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

QLabel* displayLine(const QString& name)
{
    auto* label = named<QLabel>(name);
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSize(16);
    font.setBold(true);
    label->setFont(font);
    label->setStyleSheet(QStringLiteral("background: #102010; color: #7CFC00; padding: 2px 8px;"));
    label->setText(QString(16, u' '));
    return label;
}

constexpr int kKeyColumns = 8;

} // namespace

UsoEcrPage::UsoEcrPage(QWidget* parent)
    : QWidget(parent), LblDisp1_0(displayLine(QStringLiteral("LblDisp1_0"))),
      LblDisp1_1(displayLine(QStringLiteral("LblDisp1_1")))
{
    setObjectName(QStringLiteral("pageUsoEcr"));
    auto* display = new QVBoxLayout;
    display->setSpacing(0);
    display->addWidget(LblDisp1_0);
    display->addWidget(LblDisp1_1);

    auto* keys = new QGridLayout;
    int slot = 0;
    for (const technician::EcrKey& key : technician::ecrKeys()) {
        auto* button = namedButton(indexed(QStringLiteral("cmdECR"), key.index), key.caption);
        button->setMinimumHeight(36);
        button->setProperty("Tag", key.code);
        keys->addWidget(button, slot / kKeyColumns, slot % kKeyColumns);
        ++slot;
        connect(button, &QPushButton::clicked, this, [this, index = key.index] { Q_EMIT cmdECR_Click(index); });
    }

    auto* documents = new QGroupBox(QStringLiteral("Documenti"));
    auto* documentButtons = new QHBoxLayout(documents);
    auto* fat = namedButton(QStringLiteral("CmdFat"), QStringLiteral("FATTURA"));
    auto* credit = namedButton(QStringLiteral("CmdNotaCredito"), QStringLiteral("Nota Cred."));
    auto* piCf = namedButton(QStringLiteral("CmdCfPi"), QStringLiteral("Scontrino Parlante"));
    for (QPushButton* b : {fat, credit, piCf})
        documentButtons->addWidget(b);

    auto* closing = new QGroupBox(QStringLiteral("Operazioni di Chiusura"));
    auto* closingButtons = new QHBoxLayout(closing);
    auto* closure = namedButton(indexed(QStringLiteral("cmdChiusuraGIornaliera"), 0), QStringLiteral("Chiusura Giornaliera"));
    auto* totals = namedButton(indexed(QStringLiteral("cmdReportVenditeOP01"), 0), QStringLiteral("Totali Venduto"));
    closingButtons->addWidget(closure);
    closingButtons->addWidget(totals);

    auto* side = new QHBoxLayout;
    side->addWidget(documents);
    side->addWidget(closing);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(display);
    layout->addLayout(keys);
    layout->addLayout(side);
    layout->addStretch();

    connect(fat, &QPushButton::clicked, this, &UsoEcrPage::CmdFat_Click);
    connect(credit, &QPushButton::clicked, this, &UsoEcrPage::CmdNotaCredito_Click);
    connect(piCf, &QPushButton::clicked, this, &UsoEcrPage::CmdCfPi_Click);
    connect(closure, &QPushButton::clicked, this, &UsoEcrPage::cmdChiusuraGIornaliera_Click);
    connect(totals, &QPushButton::clicked, this, &UsoEcrPage::cmdReportVenditeOP01_Click);
}

void UsoEcrPage::setDisplay(const QString& line1, const QString& line2)
{
    LblDisp1_0->setText(line1);
    LblDisp1_1->setText(line2);
}

} // namespace kelm::ui
