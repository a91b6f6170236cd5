#pragma once

#include "programming/PaymentTypes.h"

#include <QWidget>

class QCheckBox;
class QLineEdit;
class QPushButton;

namespace kelm::ui {

// The nine payment types, one row of editors each.
class PaymentsPage final : public QWidget {
    Q_OBJECT

public:
    explicit PaymentsPage(QWidget* parent = nullptr);

    programming::PaymentType payment(int number) const;
    // A read that succeeded: the row takes the register's values and is
    // marked active; the download becomes possible.
    void setPaymentRead(int number, const programming::PaymentTypeRead& read);
    void setDownloadEnabled(bool enabled);
    // The credit boxes are the technician's.
    void setTechnician(bool logged);
    void cmdClearPagamenti_Click();

Q_SIGNALS:
    void downloadRequested(int index); // 6
    void cmdReadPagamenti_Click();

private:
    struct Row {
        QLineEdit* description;
        QLineEdit* shortDescription;
        QCheckBox* active;
        QCheckBox* credit;
        std::array<QCheckBox*, programming::kPaymentFlags> flags;
        QLineEdit* rate;
        QLineEdit* markUp;
        QLineEdit* change;
    };
    QList<Row> rows_;
    QPushButton* download_;
};

} // namespace kelm::ui
