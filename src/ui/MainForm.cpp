#include "ui/MainForm.h"

#include "app/InstanceLock.h"
#include "app/PortName.h"
#include "app/ProgramFolder.h"
#include "sim/VirtualEcr.h"
#include "ui/AboutBox.h"
#include "ui/ConfigPcTab.h"
#include "ui/DlgLoginTecnico.h"
#include "ui/EcrConfigTab.h"
#include "ui/ModelAdaptation.h"
#include "ui/ProgramIcon.h"
#include "ui/RunningWindow.h"
#include "service/ReceiptAlert.h"
#include "technician/VirtualDisplay.h"
#include "ui/TitleFit.h"
#include "ui/TechnicianFunctions.h"
#include "ui/TechnicianPage.h"
#include "ui/UsoEcrPage.h"
#include "ui/VirtualEcrPanel.h"
#include "ui/Widgets.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QSystemTrayIcon>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace kelm::ui {

namespace {

constexpr int kTechnicianPage = 3;
constexpr int kVirtualEcrPage = 2;
// Panel 1's title for the driver's own troubles (refusals, lost line).
const QString kAttention = QStringLiteral("Attenzione!");

} // namespace

QString MainForm::caption()
{
    return QStringLiteral(" KelmDrev - Versione : ") + QStringLiteral(KELMDREV_VERSION);
}

MainForm::MainForm(Options options, Dialogs* dialogs, technician::PasswordStore* passwords)
    : options_(std::move(options)), ownDialogs_(dialogs ? nullptr : std::make_unique<QtDialogs>(this)),
      dialogs_(dialogs ? *dialogs : *ownDialogs_),
      ownPasswords_(passwords ? nullptr : std::make_unique<technician::SettingsPasswordStore>()),
      passwords_(passwords ? *passwords : *ownPasswords_), operator_(dialogs_),
      session_(std::make_unique<service::DriverSession>(
          service::DriverSession::Options{options_.programFolder, options_.testMode,
                                          service::DriverSession::Mode::Window},
          operator_)),
      SSTabPrimaria(new QTabWidget), configTab_(new ConfigPcTab(dialogs_))
{
    setObjectName(QStringLiteral("MainForm"));
    setWindowTitle(caption());
    setWindowIcon(programIcon());
    qApp->installEventFilter(new TitleFit(this));

    SSTabPrimaria->setObjectName(QStringLiteral("SSTabPrimaria"));
    SSTabPrimaria->addTab(scrolling(configTab_), QStringLiteral("Configuraz. &PC"));
    auto* ecrTab = new EcrConfigTab(*session_, operator_, dialogs_, options_.programFolder);
    SSTabPrimaria->addTab(ecrTab, QStringLiteral("&Configuraz. ECR"));
    connect(this, &MainForm::technicianControlsEnabled, ecrTab, &EcrConfigTab::setTechnician);
    auto* keyboard = new UsoEcrPage;
    auto* technicianPage = new TechnicianPage;
    SSTabPrimaria->addTab(scrolling(keyboard), QStringLiteral("Uso come &ECR"));
    SSTabPrimaria->addTab(scrolling(technicianPage), QStringLiteral("*Pannello del &Tecnico"));
    technicianFunctions_ = new TechnicianFunctions(*session_, operator_, dialogs_, keyboard, technicianPage,
                                                   [this] { return config_; }, this);
    connect(technicianFunctions_, &TechnicianFunctions::displayRead, this,
            [this](const QString& line1, const QString& line2) {
                if (virtualEcr_)
                    virtualEcr_->showDisplay(line1, line2);
                session_->setKeyboardSaleOpen(!technician::displayReadsZero(line1));
            });
    // Looked at where it is recorded: a finished receipt may leave the book
    // (into its answer file) before a queued call could read it.
    connect(&session_->outcomes(), &server::OutcomeBook::changed, this, &MainForm::receiptChanged,
            Qt::DirectConnection);
    connect(SSTabPrimaria, &QTabWidget::currentChanged, this, [this](int index) {
        if (index == kTechnicianPage)
            technicianFunctions_->technicianPageShown();
    });
    setCentralWidget(SSTabPrimaria);

    auto* bar = new QStatusBar;
    bar->setObjectName(QStringLiteral("sbMain"));
    for (int i = 0; i < 4; ++i) {
        panels_[i] = new QLabel;
        panels_[i]->setObjectName(QStringLiteral("sbMain_%1").arg(i + 1));
        // A long message must not widen the window past the screen: it is
        // cut on the bar and whole in the panel's tip.
        panels_[i]->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
        bar->addWidget(panels_[i], i == 1 ? 3 : 1);
    }
    setStatusBar(bar);
    buildMenus();

    connect(&operator_, &WindowOperator::panelChanged, this, &MainForm::setPanel);
    connect(&operator_, &WindowOperator::runTimeEntryAdded, configTab_, &ConfigPcTab::addRunTimeEntry);
    connect(&operator_, &WindowOperator::queueLinesChanged, configTab_, &ConfigPcTab::setQueueLines);
    connect(configTab_, &ConfigPcTab::saveRequested, this, &MainForm::saveConfiguration);
    connect(configTab_, &ConfigPcTab::serverToggled, this, [this](bool on) {
        session_->setServerEnabled(on);
        if (tray_)
            tray_->setToolTip(trayTip());
    });
    connect(configTab_, &ConfigPcTab::runTimeListToggled, this, [this](bool on) { session_->setRunTimeListOn(on); });
    connect(configTab_, &ConfigPcTab::logToggled, this, [this](bool on) { session_->setLogOn(on); });
    resize(980, 640);
}

MainForm::~MainForm()
{
    // The worker may be waiting for a question to be answered: from now on
    // it gets the default answer, and the session can be joined.
    operator_.closeDown();
    disconnect(&session_->outcomes(), nullptr, this, nullptr);
    session_.reset();
}

void MainForm::buildMenus()
{
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* tecnico = file->addAction(QStringLiteral("&Tecnico..."), this, &MainForm::mnuFileTecnico_Click);
    tecnico->setObjectName(QStringLiteral("mnuFileTecnico"));
    file->addSeparator();
    QAction* exit = file->addAction(QStringLiteral("&Esci"), this, &MainForm::mnuFileExit_Click);
    exit->setObjectName(QStringLiteral("mnuFileExit"));
    // Filled by the panels that can be shown and hidden; hidden while empty.
    mnuView_ = menuBar()->addMenu(QStringLiteral("&Visualizza"));
    mnuView_->setObjectName(QStringLiteral("mnuView"));
    mnuView_->menuAction()->setVisible(false);
    QMenu* help = menuBar()->addMenu(QStringLiteral("&?"));
    QAction* about = help->addAction(QStringLiteral("&Informazioni su KelmDrev..."), this, [this] {
        AboutBox box(this);
        box.exec();
    });
    about->setObjectName(QStringLiteral("mnuHelpAbout"));
}

void MainForm::buildTray()
{
    if (!QSystemTrayIcon::isSystemTrayAvailable())
        return; // some desktops have none: the window stays the way in
    mPopupSys = new QMenu(this);
    mPopupSys->setObjectName(QStringLiteral("mPopupSys"));
    mPopupSys->addAction(QStringLiteral("Apri"), this, &MainForm::mnuPopApri_Click)
        ->setObjectName(QStringLiteral("mnuPopApri"));
    mPopupSys->addAction(QStringLiteral("Stato"), this, &MainForm::mnuPopStato_Click)
        ->setObjectName(QStringLiteral("mnuPopStato"));
    mPopupSys->addAction(QStringLiteral("Esci"), this, &MainForm::mnuPopEsci_Click)
        ->setObjectName(QStringLiteral("mnuPopEsci"));
    tray_ = new QSystemTrayIcon(windowIcon(), this);
    tray_->setToolTip(trayTip());
    tray_->setContextMenu(mPopupSys);
    connect(tray_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::DoubleClick)
            mnuPopApri_Click();
    });
    tray_->show();
}

bool MainForm::start()
{
    // With no technician password the technician page is open at once.
    SSTabPrimaria->setTabEnabled(kTechnicianPage, technician::technicianOpenAtStart(passwords_));
    const QList<technician::ModelInfo> models = technician::setupModelli();
    configTab_->setModels(models);

    startedAt_ = QDateTime::currentDateTime();
    if (session_->start() == kAlreadyRunning) {
        RunningWindow::callForward(options_.programFolder);
        dialogs_.showMessage(kAlreadyRunning, QStringLiteral("ATTENZIONE"), Dialogs::Icon::Critical);
        return false;
    }
    new RunningWindow(options_.programFolder, [this] { mnuPopApri_Click(); }, this);
    config_ = session_->config();
    const ConfigPC& config = config_;
    configTab_->fill(config);
    session_->setRunTimeListOn(configTab_->runTimeListOn());
    session_->setLogOn(configTab_->logOn());
    if (const auto model = technician::findModel(config.model))
        adaptFormToModel(this, *model);
    if (IsVirtualDevice(config))
        showVirtualEcr();
    buildTray();
    showInStartMode(config.serverMode);
    return true;
}

void MainForm::showInStartMode(const QString& mode)
{
    iconized_ = mode == QStringLiteral("Iconized") && tray_;
    if (iconized_)
        return; // in the tray only
    if (mode == QStringLiteral("VirtualECR"))
        SSTabPrimaria->setCurrentIndex(kVirtualEcrPage);
    if (mode == QStringLiteral("Minimized"))
        showMinimized();
    else
        showNormal();
}

void MainForm::showVirtualEcr()
{
    virtualEcr_ = new VirtualEcrPanel(options_.programFolder + QStringLiteral("/virtual-ecr-paper.txt"));
    auto* dock = new QDockWidget(QStringLiteral("ECR virtuale"), this);
    dock->setObjectName(QStringLiteral("dockVirtualEcr"));
    dock->setWidget(virtualEcr_);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    // Room for the register beside the pages, as far as the screen allows.
    resize(qMin(width() + dock->sizeHint().width(), screen()->availableGeometry().width()), height());
    QAction* toggle = dock->toggleViewAction();
    toggle->setObjectName(QStringLiteral("mnuViewVirtualEcr"));
    mnuView_->addAction(toggle);
    mnuView_->menuAction()->setVisible(true);
    virtualDisplayTimer_ = new QTimer(this);
    connect(virtualDisplayTimer_, &QTimer::timeout, this, [this] {
        QPointer<VirtualEcrPanel> panel = virtualEcr_;
        session_->inspectVirtualEcr([panel](const sim::VirtualEcr& ecr) {
            const QString line1 = QString::fromLatin1(ecr.displayLine1());
            const QString line2 = QString::fromLatin1(ecr.displayLine2());
            QMetaObject::invokeMethod(
                panel, [panel, line1, line2] { if (panel) panel->showDisplay(line1, line2); },
                Qt::QueuedConnection);
        });
    });
    virtualDisplayTimer_->start(500);
}

void MainForm::setPanel(int panel, const QString& text)
{
    if (panel < 1 || panel > 4)
        return;
    // A command that clears the bar leaves the warning that receipts wait
    // while a sale is open on the keyboard: it goes when the sale closes.
    const bool held = text.isEmpty() && panel <= 2 && session_->keyboardSaleHolds();
    const QString shown = !held ? text : panel == 1 ? kAttention : service::kKeyboardSaleHold;
    panels_[panel - 1]->setText(shown);
    panels_[panel - 1]->setToolTip(shown);
    if (tray_)
        tray_->setToolTip(trayTip());
}

void MainForm::receiptChanged(const QString& id)
{
    const std::optional<server::ReceiptOutcome> receipt = session_->outcomes().find(id);
    if (!receipt)
        return;
    const service::ReceiptAlert alert = service::receiptAlert(*receipt, startedAt_);
    if (alert.kind == service::ReceiptAlert::Kind::Keep)
        return;
    QMetaObject::invokeMethod(this, [this, alert] {
        if (alert.kind == service::ReceiptAlert::Kind::Show) {
            setPanel(1, kAttention);
            setPanel(2, alert.text);
        } else if (panels_[0]->text() == kAttention) {
            setPanel(1, QString());
            setPanel(2, QString());
        }
    }, Qt::QueuedConnection);
}

QString MainForm::trayTip() const
{
    QString tip = QStringLiteral("Kelm Drev");
    if (!panels_[2]->text().isEmpty())
        tip += QStringLiteral(" - ") + panels_[2]->text();
    const QString state = !panels_[1]->text().isEmpty() ? panels_[1]->text()
        : session_->status().serverOn                    ? QStringLiteral("Driver attivo")
                                                         : QStringLiteral("Server non attivo");
    return tip + u'\n' + state;
}

void MainForm::setTechnicianAccess(const technician::TechnicianAccess& access)
{
    technicianLogged_ = access.logged;
    if (access.page)
        SSTabPrimaria->setTabEnabled(kTechnicianPage, *access.page);
    if (access.firmware)
        panels_[3]->setVisible(*access.firmware);
    if (access.creditFlags)
        Q_EMIT technicianControlsEnabled(*access.creditFlags);
}

void MainForm::saveConfiguration()
{
    StatusPanels* bar = &operator_;
    SaveConfigPC(IniFile(IniPath(options_.programFolder)), configTab_->form(), config_, *bar);
    // Port, speed and the two rewrite options take effect at the next
    // start; the server's folder, file name and switch at once.
    session_->setSpool(config_.serverDir, config_.serverFile);
    session_->setServerEnabled(config_.serverState == QStringLiteral("On"));
}

void MainForm::mnuFileTecnico_Click()
{
    DlgLoginTecnico dialog(passwords_, dialogs_, this);
    dialog.exec();
    setTechnicianAccess(technician::accessAfter(dialog.outcome()));
}

void MainForm::mnuFileExit_Click()
{
    if (session_->receiptOpen()
        && dialogs_.ask(QStringLiteral("Scontrino Aperto !\r\n\r\nProseguo ?"), QStringLiteral("ATTENZIONE"),
                        Dialogs::Icon::Critical, {Dialogs::Button::Yes, Dialogs::Button::No},
                        Dialogs::Button::No)
            == Dialogs::Button::No)
        return;
    quit();
}

void MainForm::mnuPopEsci_Click()
{
    quit();
}

void MainForm::mnuPopApri_Click()
{
    showNormal();
    raise();
    activateWindow();
}

void MainForm::mnuPopStato_Click()
{
    QStringList lines;
    for (QLabel* panel : panels_)
        if (!panel->text().isEmpty())
            lines << panel->text();
    dialogs_.showMessage(lines.isEmpty() ? QStringLiteral("Nessuna informazione") : lines.join(u'\n'),
                         QStringLiteral("Kelm Drev"), Dialogs::Icon::Information);
}

void MainForm::quit()
{
    quitting_ = true;
    if (tray_)
        tray_->hide();
    operator_.closeDown();
    session_->stop();
    close();
    QCoreApplication::quit();
}

void MainForm::closeEvent(QCloseEvent* event)
{
    if (quitting_) {
        event->accept();
        return;
    }
    event->ignore(); // the close box exits like the menu, question included
    mnuFileExit_Click();
}

void MainForm::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && isMinimized() && iconized_)
        QTimer::singleShot(0, this, &QWidget::hide);
}

} // namespace kelm::ui
