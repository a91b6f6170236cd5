#pragma once

#include "programming/SParameters.h"
#include "programming/ScrollMessages.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kelm::ui {

// The register's general settings (S-parameters) and the ten scrolling
// messages of the customer display.
class SParametersPage final : public QWidget {
    Q_OBJECT

public:
    explicit SParametersPage(QWidget* parent = nullptr);

    programming::SParameters parameters() const;
    void setParameters(const programming::SParameters& parameters);
    void setDownloadEnabled(bool enabled);

    // The selected message (-1 when none) and its text.
    int selectedMessage() const;
    QString message(int index) const;
    void setMessages(const std::array<QString, programming::kScrollMessageCount>& messages);

Q_SIGNALS:
    void downloadRequested(int index); // 9 and 7
    void CmdReadParamS_Click();
    void cmdResetParmS_Click();
    void cmdReadScrolMSG_Click();

private:
    QList<QComboBox*> cmbFlagS;
    QList<QLineEdit*> txtMaximumS;
    QLineEdit* txtIdECR;
    QLineEdit* txtNameECR;
    QList<QLineEdit*> txtBCWeight;
    QList<QLineEdit*> txtBCPriceLead;
    QLineEdit* txtPRTIntensity;
    QLineEdit* txtPayRateCode;
    QPushButton* downloadS_;
    QList<QLineEdit*> txtScrollMSG;
    QList<QRadioButton*> optScrollMSGEnable;
};

} // namespace kelm::ui
