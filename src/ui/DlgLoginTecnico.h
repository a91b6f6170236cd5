#pragma once

#include "technician/TechnicianLogin.h"
#include "ui/Dialogs.h"

#include <QDialog>

class QLineEdit;

namespace kelm::ui {

// "Login tecnico": logs the technician in, or changes the password. The
// outcome is read with outcome() once the dialog has closed.
class DlgLoginTecnico final : public QDialog {
    Q_OBJECT

public:
    DlgLoginTecnico(technician::PasswordStore& store, Dialogs& dialogs, QWidget* parent = nullptr);

    technician::LoginOutcome outcome() const { return outcome_; }

    void OKButton_Click();
    void Command1_Click();
    void CancelButton_Click();
    // Escape and the close box are Cancel.
    void reject() override { CancelButton_Click(); }

private:
    void clearNewPasswords();

    technician::PasswordStore& store_;
    Dialogs& dialogs_;
    technician::LoginOutcome outcome_ = technician::LoginOutcome::Cancelled;
    QLineEdit* txtPassword;
    QLineEdit* txtNewPassword0;
    QLineEdit* txtNewPassword1;
};

} // namespace kelm::ui
