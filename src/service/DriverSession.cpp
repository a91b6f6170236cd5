#include "service/DriverSession.h"

#include "app/InstanceLock.h"
#include "app/PendingQueue.h"
#include "app/ProgramFolder.h"
#include "app/ServerDirectory.h"
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

    const bool headless = options_.mode == Mode::Headless;
    const IniFile ini(IniPath(options_.programFolder));
    configured_ = LoadConfiguration(ini, options_.programFolder, config_, op_);
    serverEnabled_ = headless || isOn(config_.serverState);
    if (headless) {
        if (!configured_)
            return QStringLiteral("Tipo Modello non impostato in ") + ini.path();
        if (!technician::findModel(config_.model))
            return QStringLiteral("Modello sconosciuto: \"%1\" (in %2)").arg(config_.model, ini.path());
        const QString spool = serverDirectoryPrefix(config_.serverDir, options_.programFolder);
        if (!QDir(spool).exists())
            return QStringLiteral("La cartella del server non esiste: ") + spool;
    }

    QString error;
    session_.run([&] { error = openLine(); });
    if (headless && !error.isEmpty())
        return error;
    // The window learns of a port that would not open from the empty
    // identity and from the first command that fails, as it always has.
    session_.post([this] { identify(); });
    return QString();
}

QString DriverSession::openLine()
{
    line_ = std::make_unique<EcrLine>(config_, options_.programFolder);
    log_ = std::make_unique<RunTimeLog>(options_.programFolder);
    log_->setServerDir(config_.serverDir);
    log_->setEnabled(config_.serverLog.toUpper() != QStringLiteral("OFF"));
    timer_ = std::make_unique<QTimer>();
    timer_->setSingleShot(true);
    timer_->setInterval(kTickMs);
    connect(timer_.get(), &QTimer::timeout, timer_.get(), [this] { tick(); });
    if (!configured_)
        return QStringLiteral("Configurazione incompleta"); // the port stays closed
    return line_->open() ? QString() : line_->openError();
}

void DriverSession::identify()
{
    if (stopping_)
        return;
    if (configured_) {
        readIdentityAndRates();
        if (server_ || options_.mode == Mode::Window)
            return;
        QTimer::singleShot(kIdentityRetryMs, timer_.get(), [this] { identify(); });
        return;
    }
    startServer();
}

void DriverSession::readIdentityAndRates()
{
    EcrLink& link = line_->link();
    const int state = line_->port().isOpen() ? server::QueryStatusByte(link) : 0;
    link.clock().sleepMs(100);
    QString answer;
    const LinkResult result = link.EcrTransaction(QStringLiteral("a/"), answer);
    const EcrIdentity identity = result == link::Ok ? parseIdentity(answer) : EcrIdentity{};
    if (result != link::Ok || identity.serialNumber.isEmpty()) {
        if (options_.mode == Mode::Headless) {
            op_.setPanel(1, QStringLiteral("Attenzione!"));
            op_.setPanel(2, QStringLiteral("ECR non risponde (Err. %1, stato %2): nuovo tentativo fra %3 s")
                                .arg(result)
                                .arg(state)
                                .arg(kIdentityRetryMs / 1000));
        } else {
            startServer(); // it takes nothing while the serial number is empty
        }
        return;
    }
    writeIdentity(IniFile(IniPath(options_.programFolder)), identity, QStringLiteral(KELMDREV_VERSION));
    op_.setPanel(3, identity.field + u'-' + identity.serialNumber);
    op_.setPanel(4, identity.firmware);
    op_.update([&](DriverStatus& st) {
        st.identity = identity;
        st.lineUp = true;
    });
    Q_EMIT identityRead(identity);

    PanelCommand panel(link, op_);
    if (panel(QStringLiteral("e/")) == 0)
        vatRates_ = parseVatRates(panel.LastAnswer).table;
    startServer();
    server_->serialNumber = identity.serialNumber;
    // What the last run could not send goes first.
    if (!server_->queue.isEmpty())
        server_->ProcessReceiptQueue();
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
    settings.itemLines.vatRates = vatRates_;

    server_ = std::make_unique<server::ReceiptServer>(line_->link(), op_, *log_, settings, &stopping_);
    server_->runTimeListOn = runTimeListOn_;
    server_->queue = takePendingQueue(pendingQueuePath(options_.programFolder));

    // A new file starts the next tick at once instead of up to 250 ms later.
    const QString spool = serverDirectoryPrefix(config_.serverDir, options_.programFolder);
    if (QDir(spool).exists()) {
        watcher_ = std::make_unique<QFileSystemWatcher>(QStringList{spool});
        connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, timer_.get(), [this] {
            if (timer_->isActive()) {
                timer_->stop();
                tick();
            }
        });
    }
    if (serverEnabled_)
        timer_->start();
}

void DriverSession::tick()
{
    if (stopping_ || !server_)
        return;
    server_->ScanServerDir();
    receiptOpen_ = server_->ReceiptOpen;
    if (!stopping_ && serverEnabled_)
        timer_->start();
}

DriverStatus DriverSession::status() const
{
    DriverStatus st = op_.status();
    st.serverOn = serverEnabled_;
    st.receiptOpen = receiptOpen_;
    return st;
}

void DriverSession::queueRequest(const QString& id, const QStringList& lines)
{
    server::ReceiptOutcome receipt;
    receipt.source = server::LineOrigin::Source::Request;
    receipt.id = id;
    for (int n = 1; n <= lines.size(); ++n)
        receipt.lines.append(server::LineOutcome::pending(n, lines[n - 1]));
    outcomes_.begin(receipt);
    session_.post([this, lines] {
        if (!server_ || stopping_)
            return;
        server_->queue.append(lines);
        op_.queueChanged(server_->queue);
        if (!server_->serialNumber.isEmpty() && serverEnabled_)
            server_->ProcessReceiptQueue();
    });
}

void DriverSession::post(LineJob job)
{
    session_.post([this, job = std::move(job)] {
        if (line_ && !stopping_)
            job(line_->link());
    });
}

void DriverSession::inspectVirtualEcr(std::function<void(const sim::VirtualEcr&)> look)
{
    session_.post([this, look = std::move(look)] {
        if (line_ && line_->virtualEcr())
            look(*line_->virtualEcr());
    });
}

void DriverSession::setVatRates(const VatRateTable& rates)
{
    session_.post([this, rates] {
        vatRates_ = rates;
        if (server_)
            server_->setVatRates(rates);
    });
}

void DriverSession::setServerEnabled(bool on)
{
    session_.post([this, on] {
        serverEnabled_ = on;
        if (!timer_ || !server_)
            return;
        if (on && !timer_->isActive())
            timer_->start();
        else if (!on)
            timer_->stop();
    });
}

void DriverSession::setRunTimeListOn(bool on)
{
    session_.post([this, on] {
        runTimeListOn_ = on;
        if (server_)
            server_->runTimeListOn = on;
    });
}

void DriverSession::setLogOn(bool on)
{
    session_.post([this, on] {
        if (log_)
            log_->setEnabled(on);
    });
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
    if (server_ && log_ && !server_->queue.isEmpty()) {
        const bool kept = savePendingQueue(pendingQueuePath(options_.programFolder), server_->queue);
        for (const QString& line : server_->queue)
            log_->WriteLog(kept ? QStringLiteral("Riga non inviata: sarà inviata al prossimo avvio")
                                : QStringLiteral("Riga non inviata: driver fermato"),
                           line);
    }
    watcher_.reset();
    timer_.reset();
    server_.reset();
    log_.reset();
    if (line_)
        line_->close();
    line_.reset();
}

} // namespace kelm::service
