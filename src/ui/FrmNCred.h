#pragma once

#include "technician/FiscalDocuments.h"

#include <QDialog>

class QLineEdit;

namespace kelm::ui {

// "NOTA CREDITO": the credit note's file number and reference.
class FrmNCred final : public QDialog {
    Q_OBJECT

public:
    explicit FrmNCred(technician::FiscalDocuments& documents, QWidget* parent = nullptr);
    void CmdChiude_Click(int index);
    // Escape and the close box are the form's "ANNULLA".
    void reject() override { CmdChiude_Click(0); }

private:
    technician::FiscalDocuments& documents_;
    QLineEdit* TxtPratica;
    QLineEdit* TxtRifer;
};

} // namespace kelm::ui
