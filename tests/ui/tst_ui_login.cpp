// Technician login and password change, through the dialog's own buttons.
#include "ScriptedDialogs.h"
#include "ui/DlgLoginTecnico.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace kelm;
using technician::kChangeApplication;
using technician::kLoginApplication;

class LoginTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void login_data();
    void login();
    void change_data();
    void change();
    void secondChangeChecksTheOtherEntry();
};

void LoginTest::login_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("logged");
    QTest::newRow("nothing stored, nothing typed") << "" << "" << true;
    QTest::newRow("nothing stored, blanks typed") << "" << "   " << true;
    QTest::newRow("case and blanks do not count") << "Abc" << "abc " << true;
    QTest::newRow("upper case") << "Abc" << "ABC" << true;
    QTest::newRow("wrong") << "Abc" << "abd" << false;
    QTest::newRow("something stored, nothing typed") << "Abc" << "" << false;
}

void LoginTest::login()
{
    QFETCH(QString, stored);
    QFETCH(QString, typed);
    QFETCH(bool, logged);
    MemoryPasswords store;
    store.values[kLoginApplication] = stored;
    store.values[kChangeApplication] = QStringLiteral("never used by the login");
    ScriptedDialogs dialogs;
    ui::DlgLoginTecnico dialog(store, dialogs);
    dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(typed);
    dialog.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_0"))->setText(QStringLiteral("x"));
    QTest::keyClick(dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword")), Qt::Key_Return);
    QCOMPARE(dialog.outcome(), logged ? technician::LoginOutcome::LoggedIn : technician::LoginOutcome::LoginRefused);
    QCOMPARE(dialogs.shown, logged ? QStringList{} : QStringList{"Attenzione: Password Errata"});
    QCOMPARE(dialog.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_0"))->text().isEmpty(), !logged);
}

void LoginTest::change_data()
{
    QTest::addColumn<QString>("current");   // stored under the change's own entry
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("new0");
    QTest::addColumn<QString>("new1");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("storedAfter"); // under the login's entry
    QTest::newRow("changed, trimmed") << "" << "" << " Abc " << " Abc " << "" << "Abc";
    QTest::newRow("new entries differ in case") << "" << "" << "Abc" << "abc" << "Attenzione: Nuova Password Errata"
                                                << "old";
    QTest::newRow("wrong current password") << "Cur" << "nope" << "Abc" << "Abc"
                                            << "Attenzione: Password corrente errata" << "old";
    QTest::newRow("current compared without case") << "Cur" << " cur" << "New" << "New" << "" << "New";
}

void LoginTest::change()
{
    QFETCH(QString, current);
    QFETCH(QString, typed);
    QFETCH(QString, new0);
    QFETCH(QString, new1);
    QFETCH(QString, message);
    QFETCH(QString, storedAfter);
    MemoryPasswords store;
    store.values[kLoginApplication] = QStringLiteral("old");
    store.values[kChangeApplication] = current;
    ScriptedDialogs dialogs;
    ui::DlgLoginTecnico dialog(store, dialogs);
    dialog.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(typed);
    dialog.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_0"))->setText(new0);
    dialog.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_1"))->setText(new1);
    QTest::mouseClick(dialog.findChild<QPushButton*>(QStringLiteral("Command1")), Qt::LeftButton);
    QCOMPARE(dialogs.shown, message.isEmpty() ? QStringList{} : QStringList{message});
    QCOMPARE(store.values[kLoginApplication], storedAfter);
    QCOMPARE(dialog.outcome(), message.isEmpty() ? technician::LoginOutcome::PasswordChanged
                                                 : technician::LoginOutcome::ChangeRefused);
}

void LoginTest::secondChangeChecksTheOtherEntry()
{
    MemoryPasswords store;
    ScriptedDialogs dialogs;
    {
        ui::DlgLoginTecnico first(store, dialogs);
        first.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_0"))->setText(QStringLiteral("Abc"));
        first.findChild<QLineEdit*>(QStringLiteral("txtNewPassword_1"))->setText(QStringLiteral("Abc"));
        first.Command1_Click();
    }
    // The login now wants the new password ...
    ui::DlgLoginTecnico login(store, dialogs);
    login.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(QStringLiteral("abc"));
    login.OKButton_Click();
    QCOMPARE(login.outcome(), technician::LoginOutcome::LoggedIn);
    // ... while a second change still compares with the entry nobody wrote.
    ui::DlgLoginTecnico second(store, dialogs);
    second.findChild<QLineEdit*>(QStringLiteral("txtPassword"))->setText(QStringLiteral("abc"));
    second.Command1_Click();
    QCOMPARE(dialogs.shown, QStringList{"Attenzione: Password corrente errata"});
}

QTEST_MAIN(LoginTest)
#include "tst_ui_login.moc"
