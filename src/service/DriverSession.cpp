#include "service/DriverSession.h"

#include "app/InstanceLock.h"
#include "app/ProgramFolder.h"
#include "app/ServerDirectory.h"
#include "link/PanelCommand.h"
#include "server/PendingQueue.h"
#include "server/StatusQuery.h"
#include "technician/ModelTable.h"

#include <QDir>

namespace kelm::service {

namespace {

constexpr int kTickMs = 250;

bool isOn(const QString& value)
{
    return value == QStringLiteral("On");
}

} // namespace

const QString kKeyboardSaleHold =
    QStringLiteral("Vendita in corso dalla tastiera virtuale: gli scontrini dal PC attendono nella cartella");

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
    retry_ = std::make_unique<QTimer>();
    retry_->setSingleShot(true);
    connect(retry_.get(), &QTimer::timeout, retry_.get(), [this] { tryLine(); });
    if (!configured_)
        return QStringLiteral("Configurazione incompleta"); // the port stays closed
    return line_->open() ? QString() : line_->openError();
}

void DriverSession::identify()
{
    if (stopping_)
        return;
    startServer(); // it takes nothing until the register has said who it is
    if (configured_)
        tryLine();
}

void DriverSession::tryLine()
{
    if (stopping_)
        return;
    EcrLink& link = line_->link();
    if (lineLost_) {
        // A device that went away (a pulled USB adapter) is only found
        // again by opening its name afresh.
        line_->close();
        line_->open();
    }
    const int state = line_->port().isOpen() ? server::QueryStatusByte(link) : 0;
    link.clock().sleepMs(100);
    QString answer;
    const LinkResult result = link.EcrTransaction(QStringLiteral("a/"), answer);
    const EcrIdentity identity = result == link::Ok ? parseIdentity(answer) : EcrIdentity{};
    if (result != link::Ok || identity.serialNumber.isEmpty()) {
        lineDown(QStringLiteral("Err. %1, stato %2").arg(result).arg(state), false);
        return;
    }
    lineUp(identity);
}

void DriverSession::lineUp(const EcrIdentity& identity)
{
    writeIdentity(IniFile(IniPath(options_.programFolder)), identity, QStringLiteral(KELMDREV_VERSION));
    op_.setPanel(3, identity.field + u'-' + identity.serialNumber);
    op_.setPanel(4, identity.firmware);
    op_.update([&](DriverStatus& st) {
        st.identity = identity;
        st.lineUp = true;
        st.nextTry = {};
    });
    outcomes_.setIdentity(identity);

    PanelCommand panel(line_->link(), op_);
    const VatRatesRead rates = panel(QStringLiteral("e/")) == 0 ? parseVatRates(panel.LastAnswer) : VatRatesRead{};
    if (panel.LastResult == 0)
        vatRates_ = rates.table;
    server_->setVatRates(vatRates_);
    server_->serialNumber = identity.serialNumber;
    server_->lineLost = false;
    if (lineLost_) {
        lineLost_ = false;
        const QString back = QStringLiteral("ECR di nuovo in linea");
        log_->WriteLog(back, identity.field + u'-' + identity.serialNumber);
        op_.setPanel(1, QString());
        op_.setPanel(2, back);
    }
    if (!vatRatesShown_) {
        vatRatesShown_ = true;
        Q_EMIT vatRatesRead(QStringList(rates.texts.cbegin(), rates.texts.cend()));
    }
    if (serverEnabled_)
        sendQueue();
}

void DriverSession::sendQueue()
{
    // What was queued when the line went (or when the last run stopped)
    // goes first, in its order.
    if (!server_->queue.isEmpty() && !keyboardSale_)
        server_->ProcessReceiptQueue();
    if (answers_)
        answers_->flush();
    if (server_->lineLost)
        lineDown(QString(), true);
    else if (serverEnabled_ && !timer_->isActive())
        timer_->start();
}

void DriverSession::setKeyboardSaleOpen(bool open)
{
    session_.post([this, open] {
        if (keyboardSale_ == open || !server_)
            return;
        keyboardSale_ = open;
        op_.setPanel(1, open ? QStringLiteral("Attenzione!") : QString());
        op_.setPanel(2, open ? kKeyboardSaleHold : QString());
        if (!open && !lineLost_ && serverEnabled_ && !server_->serialNumber.isEmpty())
            sendQueue();
    });
}

void DriverSession::lineDown(const QString& why, bool logged)
{
    timer_->stop();
    if (!lineLost_ && !logged) // the server logs the handshake that failed
        log_->WriteLog(QStringLiteral("ECR non risponde: nuovo tentativo ogni %1 s").arg(options_.retryMs / 1000.0),
                       why);
    lineLost_ = true;
    const QTime next = QTime::currentTime().addMSecs(options_.retryMs);
    op_.update([&](DriverStatus& st) {
        st.lineUp = false;
        st.nextTry = QDateTime::currentDateTime().addMSecs(options_.retryMs);
    });
    op_.setPanel(1, QStringLiteral("Attenzione!"));
    op_.setPanel(2, QStringLiteral("ECR non risponde: nuovo tentativo alle ") + next.toString(QStringLiteral("HH:mm:ss")));
    retry_->start(options_.retryMs);
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

    server_ = std::make_unique<server::ReceiptServer>(line_->link(), op_, *log_, settings, &stopping_,
                                                      &QDateTime::currentDateTime, &receiptOpen_);
    server_->runTimeListOn = runTimeListOn_;
    server_->setOutcomeBook(&outcomes_);
    useSpool(config_.serverDir);
    if (answers_)
        answers_->restore();
    server_->queue = server::takePendingQueue(server::pendingQueuePath(options_.programFolder));
    settleOrphans();
    // Lines kept from the last run wait while the server is off.
    if (serverEnabled_)
        timer_->start();
}

void DriverSession::useSpool(const QString& serverDir)
{
    const QString spool = serverDirectoryPrefix(serverDir, options_.programFolder);
    const QString answers = server::AnswerFiles::folderFor(config_.answers, spool);
    if (answers_)
        answers_->flush();
    answers_.reset();
    if (!answers.isEmpty())
        answers_ = std::make_unique<server::AnswerFiles>(outcomes_, answers, config_.answerDays);

    // A new file starts the next tick at once instead of up to 250 ms later.
    watcher_.reset();
    if (QDir(spool).exists()) {
        watcher_ = std::make_unique<QFileSystemWatcher>(QStringList{spool});
        connect(watcher_.get(), &QFileSystemWatcher::directoryChanged, timer_.get(), [this] {
            if (timer_->isActive()) {
                timer_->stop();
                tick();
            }
        });
    }
}

void DriverSession::setSpool(const QString& serverDir, const QString& serverFile)
{
    session_.post([this, serverDir, serverFile] {
        if (!server_ || stopping_)
            return;
        server_->setSpool(serverDir, serverFile);
        log_->setServerDir(serverDir);
        useSpool(serverDir);
    });
}

void DriverSession::settleOrphans()
{
    QSet<QString> kept;
    for (const server::QueuedLine& line : std::as_const(server_->queue))
        kept.insert(line.origin.id + u'\t' + QString::number(line.origin.line));
    for (const QString& id : outcomes_.ids()) {
        const std::optional<server::ReceiptOutcome> receipt = outcomes_.find(id);
        for (const server::LineOutcome& line : receipt->lines)
            if (line.fate == server::LineFate::Pending && !kept.contains(id + u'\t' + QString::number(line.line)))
                outcomes_.record({server::LineOrigin::Source::File, id, line.line},
                                 server::LineOutcome::notSent(line.record, server::NotSentReason::QueueStopped));
    }
}

void DriverSession::tick()
{
    if (stopping_ || !server_ || lineLost_)
        return;
    if (!keyboardSale_)
        server_->ScanServerDir();
    if (answers_)
        answers_->flush();
    if (server_->lineLost && !stopping_) {
        lineDown(QString(), true);
        return;
    }
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
    session_.post([this, id, lines] {
        if (!server_ || stopping_)
            return;
        for (int n = 1; n <= lines.size(); ++n)
            server_->queue.append({lines[n - 1], {server::LineOrigin::Source::Request, id, n}});
        op_.queueChanged(server::queueTexts(server_->queue));
        // While the line is lost the retry sends them once it is back.
        if (!server_->serialNumber.isEmpty() && serverEnabled_ && !lineLost_)
            sendQueue();
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
        if (!on)
            timer_->stop();
        else if (!server_->serialNumber.isEmpty() && !lineLost_ && !timer_->isActive())
            sendQueue(); // what waited while the server was off goes first
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
        const bool kept = server::savePendingQueue(server::pendingQueuePath(options_.programFolder), server_->queue);
        for (const server::QueuedLine& line : std::as_const(server_->queue)) {
            log_->WriteLog(kept ? QStringLiteral("Riga non inviata: sarà inviata al prossimo avvio")
                                : QStringLiteral("Riga non inviata: driver fermato"),
                           line.text);
            if (!kept)
                outcomes_.record(line.origin, server::LineOutcome::notSent(line.text, server::NotSentReason::QueueStopped));
        }
    }
    if (answers_)
        answers_->flush();
    answers_.reset();
    watcher_.reset();
    retry_.reset();
    timer_.reset();
    server_.reset();
    log_.reset();
    if (line_)
        line_->close();
    line_.reset();
}

} // namespace kelm::service
