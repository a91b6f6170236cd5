#pragma once

#include <QWidget>

class QLabel;

namespace kelm::ui {

// "Uso come &ECR": the register's keyboard and display on the PC, the
// document buttons and the end-of-day operations.
class UsoEcrPage final : public QWidget {
    Q_OBJECT

public:
    explicit UsoEcrPage(QWidget* parent = nullptr);

    void setDisplay(const QString& line1, const QString& line2);

Q_SIGNALS:
    void cmdECR_Click(int index);
    void CmdFat_Click();
    void CmdNotaCredito_Click();
    void CmdCfPi_Click();
    void cmdChiusuraGIornaliera_Click();
    void cmdReportVenditeOP01_Click();

private:
    QLabel* LblDisp1_0;
    QLabel* LblDisp1_1;
};

} // namespace kelm::ui
