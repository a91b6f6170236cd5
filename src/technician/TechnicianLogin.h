#pragma once

#include <QString>

#include <optional>

namespace kelm::technician {

// Where the technician password lives: the per-user settings store, by
// application name, section "Tecnico", key "Password". The login reads and
// the change writes under "Kelm-DREV"; the change checks the current
// password under "KelmDREV". The two names are two different entries and
// stay apart: installations in the field depend on exactly this.
class PasswordStore {
public:
    virtual ~PasswordStore() = default;
    virtual QString read(const QString& application) const = 0;
    virtual void write(const QString& application, const QString& password) = 0;
};

inline const QString kLoginApplication = QStringLiteral("Kelm-DREV");
inline const QString kChangeApplication = QStringLiteral("KelmDREV");

// The platform's store: the registry area of the old runtime's settings
// functions on Windows, a per-user settings file elsewhere.
class SettingsPasswordStore final : public PasswordStore {
public:
    QString read(const QString& application) const override;
    void write(const QString& application, const QString& password) override;
};

// Passwords compare trimmed and without regard to case.
bool passwordMatches(const QString& entry, const QString& stored);

enum class LoginResult { LoggedIn, WrongPassword };
LoginResult logIn(const PasswordStore& store, const QString& entry);

enum class ChangeResult { Changed, WrongCurrentPassword, NewPasswordsDiffer };
// The two new entries must be equal exactly (case and blanks count); the
// trimmed text is stored.
ChangeResult changePassword(PasswordStore& store, const QString& entry, const QString& newPassword,
                            const QString& confirmation);

// No stored password (blank counts as none): the technician page is open
// from the start. The technician is not logged in for that: the payment
// types' credit flags wait for a login.
bool technicianOpenAtStart(const PasswordStore& store);

// How the login dialog was closed. Escape and the close box are Cancel.
enum class LoginOutcome { Cancelled, LoggedIn, LoginRefused, PasswordChanged, ChangeRefused };

// What a closing of the login dialog changes on the window; what is not
// given stays as it was. `logged` is the technician's flag; `creditFlags`
// the Enabled state of the payment types' credit flags 1 to 8; `firmware`
// whether status-bar panel 4 (the register's firmware) shows.
struct TechnicianAccess {
    bool logged = false;
    std::optional<bool> page;
    std::optional<bool> firmware;
    std::optional<bool> creditFlags;
};
TechnicianAccess accessAfter(LoginOutcome outcome);

} // namespace kelm::technician
