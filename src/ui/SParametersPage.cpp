#include "ui/SParametersPage.h"

#include "ui/EditorRules.h"
#include "ui/Widgets.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QVBoxLayout>

namespace kelm::ui {

using namespace programming;

namespace {

QList<QLineEdit*> editRow(const QString& name, qsizetype count, bool digits, QHBoxLayout* layout)
{
    QList<QLineEdit*> edits;
    for (int i = 0; i < count; ++i) {
        auto* e = named<QLineEdit>(indexed(name, i));
        digits ? makeDigitsOnly(e) : makeSlashSafe(e);
        e->setMaximumWidth(90);
        layout->addWidget(e);
        edits.append(e);
    }
    return edits;
}

} // namespace

SParametersPage::SParametersPage(QWidget* parent)
    : QWidget(parent), txtIdECR(named<QLineEdit>(QStringLiteral("txtIdECR"))),
      txtNameECR(named<QLineEdit>(QStringLiteral("txtNameECR"))),
      txtPRTIntensity(named<QLineEdit>(QStringLiteral("txtPRTIntensity"))),
      txtPayRateCode(named<QLineEdit>(QStringLiteral("txtPayRateCode")))
{
    setObjectName(QStringLiteral("pageParametriS"));
    auto* flagsBox = new QGroupBox(QStringLiteral("Flag"));
    auto* flagsGrid = new QGridLayout(flagsBox);
    QStringList digits;
    for (int d = 0; d <= 9; ++d)
        digits << QString::number(d);
    for (int i = 0; i < int(kSFlagCount); ++i) {
        auto* combo = named<QComboBox>(indexed(QStringLiteral("cmbFlagS"), i));
        combo->addItems(digits);
        combo->setCurrentIndex(-1);
        flagsGrid->addWidget(new QLabel(QString::number(i + 1)), (i / 10) * 2, i % 10);
        flagsGrid->addWidget(combo, (i / 10) * 2 + 1, i % 10);
        cmbFlagS.append(combo);
    }

    auto* valuesBox = new QGroupBox(QStringLiteral("Valori"));
    auto* form = new QFormLayout(valuesBox);
    auto* maxRow = new QHBoxLayout;
    txtMaximumS = editRow(QStringLiteral("txtMaximumS"), kSMaximums, true, maxRow);
    form->addRow(QStringLiteral("Massimi"), maxRow);
    makeDigitsOnly(txtIdECR);
    makeSlashSafe(txtNameECR);
    makeSlashSafe(txtPRTIntensity);
    makeDigitsOnly(txtPayRateCode);
    form->addRow(QStringLiteral("Numero cassa"), txtIdECR);
    form->addRow(QStringLiteral("Nome cassa"), txtNameECR);
    auto* weightRow = new QHBoxLayout;
    txtBCWeight = editRow(QStringLiteral("txtBCWeight"), kBarcodeSettings, true, weightRow);
    form->addRow(QStringLiteral("Barcode peso"), weightRow);
    auto* priceRow = new QHBoxLayout;
    txtBCPriceLead = editRow(QStringLiteral("txtBCPriceLead"), kBarcodeSettings, false, priceRow);
    form->addRow(QStringLiteral("Barcode prezzo"), priceRow);
    form->addRow(QStringLiteral("Intensità stampa"), txtPRTIntensity);
    form->addRow(QStringLiteral("Codice pay-rate"), txtPayRateCode);

    auto* read = namedButton(QStringLiteral("CmdReadParamS"), QStringLiteral("Leggi parametri"));
    auto* reset = namedButton(QStringLiteral("cmdResetParmS"), QStringLiteral("Valori di default"));
    downloadS_ = namedButton(QStringLiteral("cmdSetParametri_9"), QStringLiteral("Scarica parametri S"));
    auto* sButtons = new QHBoxLayout;
    sButtons->addWidget(read);
    sButtons->addWidget(reset);
    sButtons->addWidget(downloadS_);
    sButtons->addStretch();

    auto* messagesBox = new QGroupBox(QStringLiteral("Messaggio scorrevole"));
    auto* messagesGrid = new QGridLayout;
    auto* group = new QButtonGroup(this);
    for (int i = 0; i < kScrollMessageCount; ++i) {
        auto* option = named<QRadioButton>(indexed(QStringLiteral("optScrollMSGEnable"), i));
        auto* text = named<QLineEdit>(indexed(QStringLiteral("txtScrollMSG"), i));
        makeSlashSafe(text);
        group->addButton(option, i);
        messagesGrid->addWidget(option, i % 5, (i / 5) * 2);
        messagesGrid->addWidget(text, i % 5, (i / 5) * 2 + 1);
        optScrollMSGEnable.append(option);
        txtScrollMSG.append(text);
    }
    auto* readMessages = namedButton(QStringLiteral("cmdReadScrolMSG"), QStringLiteral("Recupera da file ini"));
    auto* downloadMessage = namedButton(QStringLiteral("cmdSetParametri_7"), QStringLiteral("Scarica messaggio"));
    auto* mButtons = new QHBoxLayout;
    mButtons->addWidget(readMessages);
    mButtons->addWidget(downloadMessage);
    mButtons->addStretch();
    auto* messagesLayout = new QVBoxLayout(messagesBox);
    messagesLayout->addLayout(messagesGrid);
    messagesLayout->addLayout(mButtons);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(flagsBox);
    layout->addWidget(valuesBox);
    layout->addLayout(sButtons);
    layout->addWidget(messagesBox);
    layout->addStretch();

    // Empty editors would reset the register: the download waits for a read
    // or a reset to the defaults.
    setDownloadEnabled(false);
    // Typing a message makes it the one to download.
    for (int i = 0; i < kScrollMessageCount; ++i)
        connect(txtScrollMSG[i], &QLineEdit::textEdited, optScrollMSGEnable[i], [option = optScrollMSGEnable[i]] {
            option->setChecked(true);
        });

    connect(downloadS_, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(9); });
    connect(downloadMessage, &QPushButton::clicked, this, [this] { Q_EMIT downloadRequested(7); });
    connect(read, &QPushButton::clicked, this, &SParametersPage::CmdReadParamS_Click);
    connect(reset, &QPushButton::clicked, this, &SParametersPage::cmdResetParmS_Click);
    connect(readMessages, &QPushButton::clicked, this, &SParametersPage::cmdReadScrolMSG_Click);
}

SParameters SParametersPage::parameters() const
{
    SParameters p;
    for (qsizetype i = 0; i < kSFlagCount; ++i)
        p.flags[static_cast<size_t>(i)] = cmbFlagS[i]->currentIndex();
    for (qsizetype i = 0; i < kSMaximums; ++i)
        p.maximums[static_cast<size_t>(i)] = txtMaximumS[i]->text();
    p.registerNumber = txtIdECR->text();
    p.registerName = txtNameECR->text();
    for (qsizetype i = 0; i < kBarcodeSettings; ++i) {
        p.barcodeWeight[static_cast<size_t>(i)] = txtBCWeight[i]->text();
        p.barcodePriceLead[static_cast<size_t>(i)] = txtBCPriceLead[i]->text();
    }
    p.printerIntensity = txtPRTIntensity->text();
    p.payRateCode = txtPayRateCode->text();
    return p;
}

void SParametersPage::setParameters(const SParameters& p)
{
    for (qsizetype i = 0; i < kSFlagCount; ++i)
        cmbFlagS[i]->setCurrentIndex(p.flags[static_cast<size_t>(i)]);
    for (qsizetype i = 0; i < kSMaximums; ++i)
        txtMaximumS[i]->setText(p.maximums[static_cast<size_t>(i)]);
    txtIdECR->setText(p.registerNumber);
    txtNameECR->setText(p.registerName);
    for (qsizetype i = 0; i < kBarcodeSettings; ++i) {
        txtBCWeight[i]->setText(p.barcodeWeight[static_cast<size_t>(i)]);
        txtBCPriceLead[i]->setText(p.barcodePriceLead[static_cast<size_t>(i)]);
    }
    txtPRTIntensity->setText(p.printerIntensity);
    txtPayRateCode->setText(p.payRateCode);
}

void SParametersPage::setDownloadEnabled(bool enabled)
{
    downloadS_->setEnabled(enabled);
}

int SParametersPage::selectedMessage() const
{
    for (int i = 0; i < kScrollMessageCount; ++i)
        if (optScrollMSGEnable[i]->isChecked())
            return i;
    return -1;
}

QString SParametersPage::message(int index) const
{
    return index >= 0 && index < kScrollMessageCount ? txtScrollMSG[index]->text() : QString();
}

void SParametersPage::setMessages(const std::array<QString, kScrollMessageCount>& messages)
{
    for (int i = 0; i < kScrollMessageCount; ++i)
        txtScrollMSG[i]->setText(messages[static_cast<size_t>(i)]);
}

} // namespace kelm::ui
