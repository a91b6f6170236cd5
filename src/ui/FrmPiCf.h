#pragma once

#include "technician/FiscalDocuments.h"
#include "ui/Dialogs.h"

#include <QDialog>

class QLineEdit;

namespace kelm::ui {

// "P.IVA - CODICE FISCALE": the customer's VAT number (11) or fiscal code (16).
class FrmPiCf final : public QDialog {
    Q_OBJECT

public:
    FrmPiCf(technician::FiscalDocuments& documents, Dialogs& dialogs, QWidget* parent = nullptr);
    void CmdChiude_Click(int index);
    // Escape and the close box are the form's "ANNULLA".
    void reject() override { CmdChiude_Click(0); }

private:
    technician::FiscalDocuments& documents_;
    Dialogs& dialogs_;
    QLineEdit* TxtPiCf;
};

} // namespace kelm::ui
