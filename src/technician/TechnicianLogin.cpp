#include "technician/TechnicianLogin.h"

#include <QSettings>

namespace kelm::technician {

namespace {

std::unique_ptr<QSettings> settingsFor(const QString& application)
{
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\VB and VBA Program Settings\\") + application,
        QSettings::NativeFormat);
#else
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QStringLiteral("VB and VBA Program Settings"), application);
#endif
}

const QString kKey = QStringLiteral("Tecnico/Password");

} // namespace

QString SettingsPasswordStore::read(const QString& application) const
{
    return settingsFor(application)->value(kKey, QString()).toString();
}

void SettingsPasswordStore::write(const QString& application, const QString& password)
{
    settingsFor(application)->setValue(kKey, password);
}

bool passwordMatches(const QString& entry, const QString& stored)
{
    return entry.trimmed().toUpper() == stored.trimmed().toUpper();
}

LoginResult logIn(const PasswordStore& store, const QString& entry)
{
    return passwordMatches(entry, store.read(kLoginApplication)) ? LoginResult::LoggedIn
                                                                 : LoginResult::WrongPassword;
}

ChangeResult changePassword(PasswordStore& store, const QString& entry, const QString& newPassword,
                            const QString& confirmation)
{
    if (!passwordMatches(entry, store.read(kChangeApplication)))
        return ChangeResult::WrongCurrentPassword;
    if (newPassword != confirmation)
        return ChangeResult::NewPasswordsDiffer;
    store.write(kLoginApplication, newPassword.trimmed());
    return ChangeResult::Changed;
}

bool technicianOpenAtStart(const PasswordStore& store)
{
    return store.read(kLoginApplication).trimmed().isEmpty();
}

TechnicianAccess accessAfter(LoginOutcome outcome)
{
    switch (outcome) {
    case LoginOutcome::LoggedIn:
        return {true, true, true, true};
    case LoginOutcome::LoginRefused:
        return {false, false, false, false};
    case LoginOutcome::PasswordChanged:
        return {true, true, std::nullopt, std::nullopt};
    case LoginOutcome::ChangeRefused:
        return {false, false, std::nullopt, std::nullopt};
    case LoginOutcome::Cancelled:
        break;
    }
    return {false, std::nullopt, false, std::nullopt};
}

} // namespace kelm::technician
