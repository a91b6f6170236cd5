#include "service/DriverSession.h"

#include "app/InstanceLock.h"
#include "app/ProgramFolder.h"
#include "app/ServerDirectory.h"
#include "app/VatRates.h"
#include "link/PanelCommand.h"
#include "server/StatusQuery.h"
#include "technician/ModelTable.h"

#include <QDir>

namespace kelm::service {

namespace {

constexpr int kTickMs = 250;
constexpr int kIdentityRetryMs = 5000;

bool isOn(const QString& value)
{
    return value == QStringLiteral("On");
}

} // namespace

DriverSession::DriverSession(Options options, Operator& op) : options_(std::move(options)), op_(op) {}

DriverSession::~DriverSession()
{
    session_.run([this] { shutDownOnWorker(); });
}

QString DriverSession::start()
{
    lock_ = acquireInstanceLock(options_.programFolder);
    if (!lock_)
        return kAlreadyRunning;

    const IniFile ini(IniPath(options_.programFolder));
    if (!LoadConfiguration(ini, options_.programFolder, config_, op_))
        return QStringLiteral("Tipo Modello non impostato in ") + ini.path();
    if (!technician::findModel(config_.model))
        return QStringLiteral("Modello sconosciuto: \"%1\" (in %2)").arg(config_.model, ini.path());
    const QString spool = serverDirectoryPrefix(config_.serverDir, options_.programFolder);
    if (!QDir(spool).exists())
        return QStringLiteral("La cartella del server non esiste: ") + spool;

    QString error;
    session_.run([&] { error = openLine(); });
    if (!error.isEmpty())
        return error;
    session_.post([this] { readIdentity(); });
    return QString();
}

QString DriverSession::openLine()
{
    line_ = std::make_unique<EcrLine>(config_, options_.programFolder);
    if (!line_->open())
        return line_->openError();
    log_ = std::make_unique<RunTimeLog>(options_.programFolder);
    log_->setServerDir(config_.serverDir);
    log_->setEnabled(config_.serverLog.toUpper() != QStringLiteral("OFF"));
    timer_ = std::make_unique<QTimer>();
    timer_->setSingleShot(true);
    timer_->setInterval(kTickMs);
    connect(timer_.get(), &QTimer::timeout, timer_.get(), [this] { tick(); });
    return QString();
}

void DriverSession::readIdentity()
{
    if (stopping_)
        return;
    EcrLink& link = line_->link();
    // The register's state first, as the window does; its result only
    // matters to the person reading the log.
    const int state = server::QueryStatusByte(link);
    link.clock().sleepMs(100);
    QString answer;
    const LinkResult result = link.EcrTransaction(QStringLiteral("a/"), answer);
    const EcrIdentity identity = result == link::Ok ? parseIdentity(answer) : EcrIdentity{};
    if (identity.serialNumber.isEmpty()) {
        op_.setPanel(1, QStringLiteral("Attenzione!"));
        op_.setPanel(2, QStringLiteral("ECR non risponde (Err. %1, stato %2): nuovo tentativo fra %3 s")
                            .arg(result)
                            .arg(state)
                            .arg(kIdentityRetryMs / 1000));
        QTimer::singleShot(kIdentityRetryMs, timer_.get(), [this] { readIdentity(); });
        return;
    }
    writeIdentity(IniFile(IniPath(options_.programFolder)), identity,
                  QStringLiteral(KELMDREV_VERSION));
    op_.setPanel(3, identity.field + u'-' + identity.serialNumber);
    op_.setPanel(4, identity.firmware);
    Q_EMIT identityRead(identity);
    startServer();
    server_->serialNumber = identity.serialNumber;
}

void DriverSession::startServer()
{
    server::ReceiptServer::Settings settings;
    settings.serverDir = config_.serverDir;
    settings.serverFile = config_.serverFile;
    settings.forbiddenExtensions = config_.forbiddenExtensions;
    settings.testMode = options_.testMode;
    settings.fallbackDir = options_.programFolder;
    settings.itemLines.wrapDescription = isOn(config_.wrapDescription);
    settings.itemLines.alIvaAuto = isOn(config_.alIvaAuto);
    settings.itemLines.widths = technician::descriptionWidthsFor(config_.model);

    PanelCommand panel(line_->link(), op_);
    if (panel(QStringLiteral("e/")) == 0)
        settings.itemLines.vatRates = parseVatRates(panel.LastAnswer).table;

    server_ = std::make_unique<server::ReceiptServer>(line_->link(), op_, *log_, settings, &stopping_);
    server_->runTimeListOn = options_.runTimeList;

    // A new file starts the next tick at once instead of up to 250 ms later.
    watcher_ = std::make_unique<QFileSystemWatcher>();
    watcher_->addPath(serverDirectoryPrefix(config_.serverDir, options_.programFolder));
    connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, timer_.get(), [this] {
        if (timer_->isActive()) {
            timer_->stop();
            tick();
        }
    });
    timer_->start();
}

void DriverSession::tick()
{
    if (stopping_)
        return;
    server_->ScanServerDir();
    if (!stopping_)
        timer_->start();
}

void DriverSession::stop()
{
    // The server reads the flag at its next wait; the rest happens on the
    // worker once the job in progress has returned.
    if (stopping_.exchange(true))
        return;
    session_.post([this] {
        shutDownOnWorker();
        Q_EMIT stopped();
    });
}

void DriverSession::shutDownOnWorker()
{
    stopping_ = true;
    if (server_ && !server_->queue.isEmpty())
        for (const QString& line : server_->queue)
            log_->WriteLog(QStringLiteral("Riga non inviata: driver fermato"), line);
    watcher_.reset();
    timer_.reset();
    server_.reset();
    if (line_)
        line_->close();
    line_.reset();
}

} // namespace kelm::service
