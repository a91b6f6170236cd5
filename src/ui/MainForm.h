#pragma once

#include "service/DriverSession.h"
#include "technician/TechnicianLogin.h"
#include "ui/Dialogs.h"
#include "ui/WindowOperator.h"

#include <QDateTime>
#include <QMainWindow>
#include <QPointer>

class QLabel;
class QMenu;
class QSystemTrayIcon;
class QTabWidget;
class QTimer;

namespace kelm::ui {

class ConfigPcTab;
class TechnicianFunctions;
class VirtualEcrPanel;

// The main window: it starts the driver session, shows the register's
// identity, hosts the tabs and lives on in the tray. It only assembles; the
// tabs and dialogs have files of their own.
class MainForm final : public QMainWindow {
    Q_OBJECT

public:
    struct Options {
        QString programFolder;
        bool testMode = false;
    };

    // `dialogs` and `passwords` default to the real ones; tests pass scripts.
    MainForm(Options options, Dialogs* dialogs = nullptr, technician::PasswordStore* passwords = nullptr);
    ~MainForm() override;

    // The start-up sequence. False when the program must end at once
    // (another instance is running).
    bool start();

    bool technicianLogged() const { return technicianLogged_; }
    service::DriverSession& session() { return *session_; }

    void mnuFileTecnico_Click();
    void mnuFileExit_Click();
    void mnuPopEsci_Click();
    void mnuPopApri_Click();
    void mnuPopStato_Click();

    static QString caption();
    // What the tray icon's tip says: the register and the driver's state.
    QString trayTip() const;

Q_SIGNALS:
    // The technician-only controls of the tabs (the payment types' credit
    // flags) are switched on or off.
    void technicianControlsEnabled(bool enabled);

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void buildMenus();
    void buildTray();
    void setPanel(int panel, const QString& text);
    void setTechnicianAccess(const technician::TechnicianAccess& access);
    // On the thread that recorded the change: what it means for the status
    // bar goes to the UI thread.
    void receiptChanged(const QString& id);
    void saveConfiguration();
    void showVirtualEcr();
    void showInStartMode(const QString& mode);
    void quit();

    Options options_;
    std::unique_ptr<Dialogs> ownDialogs_;
    Dialogs& dialogs_;
    std::unique_ptr<technician::PasswordStore> ownPasswords_;
    technician::PasswordStore& passwords_;
    WindowOperator operator_;
    std::unique_ptr<service::DriverSession> session_;
    QTabWidget* SSTabPrimaria;
    ConfigPcTab* configTab_;
    TechnicianFunctions* technicianFunctions_ = nullptr;
    ConfigPC config_; // as loaded, then as last saved
    QLabel* panels_[4];
    QSystemTrayIcon* tray_ = nullptr;
    QMenu* mPopupSys = nullptr;
    QMenu* mnuView_ = nullptr;
    QDateTime startedAt_;
    VirtualEcrPanel* virtualEcr_ = nullptr;
    QTimer* virtualDisplayTimer_ = nullptr;
    bool technicianLogged_ = false;
    bool iconized_ = false;
    bool quitting_ = false;
};

} // namespace kelm::ui
