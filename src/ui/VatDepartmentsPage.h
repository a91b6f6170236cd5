#pragma once

#include "app/VatRates.h"
#include "programming/Departments.h"

#include <QWidget>

class QComboBox;
class QLineEdit;
class QPushButton;

namespace kelm::ui {

// The five VAT rates and the twenty departments.
class VatDepartmentsPage final : public QWidget {
    Q_OBJECT

public:
    explicit VatDepartmentsPage(QWidget* parent = nullptr);

    std::array<QString, kVatRateCount> rates() const;
    void setRates(const std::array<QString, kVatRateCount>& rates);
    programming::Department department(int number) const;
    void setDepartment(int number, const programming::Department& department);
    // The department download is possible only with values that came from
    // the register: the last read decides.
    void setDepartmentsFromRegister(bool fromRegister);
    void cmdDPTClear_Click();

Q_SIGNALS:
    void downloadRequested(int index); // 3 and 10
    void cmdReadIVA_Click();
    void cmdreadParmIVAREP_Click();

private:
    QList<QLineEdit*> txtIVA;
    QList<QLineEdit*> txtDEPTDescription;
    QList<QComboBox*> cmbDPTCodIVA;
    QPushButton* downloadDepartments_;
};

} // namespace kelm::ui
