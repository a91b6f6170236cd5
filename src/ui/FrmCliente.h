#pragma once

#include "technician/FiscalDocuments.h"

#include <QDialog>

class QLineEdit;

namespace kelm::ui {

// The invoice's customer: VAT number and up to six name and address lines.
class FrmCliente final : public QDialog {
    Q_OBJECT

public:
    explicit FrmCliente(technician::FiscalDocuments& documents, QWidget* parent = nullptr);
    void CmdChiude_Click(int index);
    // Escape and the close box are the form's "ANNULLA".
    void reject() override { CmdChiude_Click(0); }

private:
    technician::FiscalDocuments& documents_;
    QLineEdit* TxtPIva;
    QList<QLineEdit*> TxtRiga;
};

} // namespace kelm::ui
