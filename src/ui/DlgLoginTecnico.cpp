#include "ui/DlgLoginTecnico.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

QLineEdit* passwordEdit(const QString& name)
{
    auto* edit = new QLineEdit;
    edit->setObjectName(name);
    edit->setEchoMode(QLineEdit::Password);
    return edit;
}

QPushButton* button(const QString& text, const QString& name)
{
    auto* b = new QPushButton(text);
    b->setObjectName(name);
    b->setAutoDefault(false);
    return b;
}

const QString kTitle = QStringLiteral("Attenzione");

} // namespace

DlgLoginTecnico::DlgLoginTecnico(technician::PasswordStore& store, Dialogs& dialogs, QWidget* parent)
    : QDialog(parent), store_(store), dialogs_(dialogs), txtPassword(passwordEdit(QStringLiteral("txtPassword"))),
      txtNewPassword0(passwordEdit(QStringLiteral("txtNewPassword_0"))),
      txtNewPassword1(passwordEdit(QStringLiteral("txtNewPassword_1")))
{
    setObjectName(QStringLiteral("DlgLoginTecnico"));
    setWindowTitle(QStringLiteral("Login tecnico"));

    auto* frame = new QGroupBox(QStringLiteral("Nuova Password"));
    frame->setObjectName(QStringLiteral("Frame1"));
    auto* frameForm = new QFormLayout(frame);
    frameForm->addRow(QString(), txtNewPassword0);
    frameForm->addRow(QStringLiteral("Conferma"), txtNewPassword1);
    auto* change = button(QStringLiteral("Cambia Password"), QStringLiteral("Command1"));
    frameForm->addRow(change);

    auto* ok = button(QStringLiteral("OK"), QStringLiteral("OKButton"));
    auto* cancel = button(QStringLiteral("Annulla"), QStringLiteral("CancelButton"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(cancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Password tecnico Qualificato")));
    layout->addWidget(txtPassword);
    layout->addWidget(frame);
    layout->addLayout(buttons);

    // Enter in the password field logs in.
    connect(txtPassword, &QLineEdit::returnPressed, this, &DlgLoginTecnico::OKButton_Click);
    connect(ok, &QPushButton::clicked, this, &DlgLoginTecnico::OKButton_Click);
    connect(change, &QPushButton::clicked, this, &DlgLoginTecnico::Command1_Click);
    connect(cancel, &QPushButton::clicked, this, &DlgLoginTecnico::CancelButton_Click);
}

void DlgLoginTecnico::clearNewPasswords()
{
    txtNewPassword0->clear();
    txtNewPassword1->clear();
}

void DlgLoginTecnico::OKButton_Click()
{
    const bool logged = technician::logIn(store_, txtPassword->text()) == technician::LoginResult::LoggedIn;
    outcome_ = logged ? technician::LoginOutcome::LoggedIn : technician::LoginOutcome::LoginRefused;
    if (!logged) {
        dialogs_.showMessage(QStringLiteral("Password Errata"), kTitle, Dialogs::Icon::Critical);
        clearNewPasswords();
    }
    accept();
}

void DlgLoginTecnico::Command1_Click()
{
    using technician::ChangeResult;
    const ChangeResult result =
        technician::changePassword(store_, txtPassword->text(), txtNewPassword0->text(), txtNewPassword1->text());
    outcome_ = result == ChangeResult::Changed ? technician::LoginOutcome::PasswordChanged
                                               : technician::LoginOutcome::ChangeRefused;
    if (result == ChangeResult::WrongCurrentPassword) {
        dialogs_.showMessage(QStringLiteral("Password corrente errata"), kTitle, Dialogs::Icon::Critical);
    } else if (result == ChangeResult::NewPasswordsDiffer) {
        dialogs_.showMessage(QStringLiteral("Nuova Password Errata"), kTitle, Dialogs::Icon::Critical);
        clearNewPasswords();
    }
    accept();
}

void DlgLoginTecnico::CancelButton_Click()
{
    outcome_ = technician::LoginOutcome::Cancelled;
    QDialog::reject();
}

} // namespace kelm::ui
