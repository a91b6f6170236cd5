#include "server/ReceiptServer.h"

#include "app/ServerDirectory.h"
#include "link/CodePage.h"
#include "link/EcrErrors.h"
#include "server/CommandTable.h"
#include "server/EcrState.h"
#include "server/FileMask.h"
#include "server/FileSettle.h"
#include "server/ReceiptLines.h"

#include <QFile>
#include <QFileInfo>

#include <filesystem>

namespace kelm::server {

namespace {

const QString kLinkLostMessage =
    QStringLiteral("Comunicazione impossibile ! Cassa spenta o cavo interrotto o velocità errata");
const QString kPaperMessage = QStringLiteral("Sostituire rotolo scontrino");
const QString kFatalMessage = QStringLiteral("errore grave. Chiamare Casa madre");
const QString kStatusQuery = QStringLiteral("?/");
constexpr qint64 kRetryClaimMs = 250;
const QString kSnapshotDone = QStringLiteral("Eseguito dal PC (file .FMN)");

// The reason of a line refused by the command table: its run-time entry
// without the direction tag.
QString skipReason(const QString& runTimeEntry)
{
    return runTimeEntry.startsWith(kEcrTag) ? runTimeEntry.mid(kEcrTag.size()).trimmed() : runTimeEntry.trimmed();
}

// What the run-time list adds after an ECR error, by its class.
QString classAction(qint16 errorClass)
{
    switch (errorClass) {
    case errclass::Busy:
        return QStringLiteral(" Ripeto comando");
    case errclass::Refused:
        return QStringLiteral(" Ignoro l'errore");
    case 3: // no error carries it today; the register may one day
        return QStringLiteral(" Ricontrollo stato ECR e continuo ignorando");
    case errclass::Paper:
        return QStringLiteral(" Ricontrollo stato ECR e ripeto comando");
    default:
        return QString();
    }
}

} // namespace

QStringList queueTexts(const QList<QueuedLine>& lines)
{
    QStringList texts;
    texts.reserve(lines.size());
    for (const QueuedLine& line : lines)
        texts.append(line.text);
    return texts;
}

ReceiptServer::ReceiptServer(EcrLink& link, Operator& op, RunTimeLog& log, Settings settings,
                             const std::atomic<bool>* stop, Now now, std::atomic<bool>* receiptOpen)
    : ReceiptOpen(receiptOpen ? *receiptOpen : ownReceiptOpen_), link_(link), op_(op), log_(log),
      settings_(std::move(settings)), now_(std::move(now)), stop_(stop)
{
}

void ReceiptServer::setSpool(const QString& serverDir, const QString& serverFile)
{
    settings_.serverDir = serverDir;
    settings_.serverFile = serverFile;
    seen_.clear();
    unclaimable_.clear();
    reportedUnreadable_.clear();
}

void ReceiptServer::list(const QString& entry)
{
    if (runTimeListOn)
        op_.addRunTimeEntry(entry);
}

bool ReceiptServer::pause(qint64 ms)
{
    link_.clock().sleepMs(ms);
    return !stopRequested();
}

void ReceiptServer::linkLost(const QString& record)
{
    lineLost = true;
    list(kEcrTag + kLinkLostMessage);
    log_.WriteLog(kLinkLostMessage, record);
    // Whoever watches the window or the service log must see it at once: a
    // pulled cable stops the till's receipts.
    op_.setPanel(1, QStringLiteral("Attenzione!"));
    op_.setPanel(2, kLinkLostMessage);
}

QString ReceiptServer::statusQuery()
{
    link_.SendFrame(kStatusQuery);
    QString answer;
    link_.ReceiveAnswer(answer);
    return answer;
}

void ReceiptServer::setQueue(QList<QueuedLine> lines)
{
    queue = std::move(lines);
    op_.queueChanged(queueTexts(queue));
}

void ReceiptServer::report(const LineOrigin& origin, const LineOutcome& outcome)
{
    if (outcomes_)
        outcomes_->record(origin, outcome);
}

QString ReceiptServer::enqueue(LineOrigin::Source source, const QString& name, const QStringList& lines)
{
    ReceiptOutcome receipt;
    receipt.source = source;
    receipt.id = name;
    for (qsizetype i = 0; i < lines.size(); ++i)
        if (normalizeQueueLine(lines[i])) // blank lines are no records: nobody waits for them
            receipt.lines.append(LineOutcome::pending(int(i) + 1, lines[i]));
    const QString id = outcomes_ ? outcomes_->begin(receipt) : name;
    QList<QueuedLine> added = queue;
    for (qsizetype i = 0; i < lines.size(); ++i)
        added.append({lines[i], {source, id, int(i) + 1}});
    setQueue(std::move(added));
    return id;
}

ReceiptServer::SendOutcome ReceiptServer::SendRecord(const QString& record)
{
    for (;;) { // each round sends the record once more
        if (link_.LinkHandshake() > 0) {
            linkLost(record);
            sent_ = LineOutcome::notSent(record, NotSentReason::LinkLost);
            return SendOutcome::LinkLost;
        }
        if (link_.SendFrame(record) == link::NakToFrame) {
            if (!pause(1000))
                return SendOutcome::Stopped;
            continue;
        }
        answer_.clear();
        link_.ReceiveAnswer(answer_);

        if (answer_.isEmpty()) {
            // No answer: ask the register for its error state; "00" means
            // the record did not get through and goes again, anything else
            // that it did and failed, and it is given up.
            link_.LinkHandshake();
            if (!pause(100))
                return SendOutcome::Stopped;
            if (statusQuery().startsWith(QStringLiteral("00")))
                continue;
            sent_ = LineOutcome::uncertain(record);
            return SendOutcome::Done;
        }

        paperOut_ = paperOutAfter(answer_, paperOut_);
        if (paperOut_) {
            list(kEcrTag + kPaperMessage);
            if (!pause(2000))
                return SendOutcome::Stopped;
            log_.WriteLog(kPaperMessage, record);
            continue;
        }

        // Evaluate the answer; classes 3 and 4 evaluate the status query's
        // answer in its place until it settles.
        QString evaluated = answer_;
        bool resend = false;
        // A "00" of the status query after a refusal means the register is
        // ready again, not that it carried out the record.
        sent_ = LineOutcome::accepted(record);
        while (!resend) {
            const QString status = evaluated.left(2);
            if (status == QStringLiteral("00"))
                return SendOutcome::Done;
            QString message;
            const qint16 errorClass = EcrErrorMessage(status, message);
            QString number = status;
            CommandErrorText(number, record); // the error number in decimal
            if (errorClass == errclass::Unknown)
                return SendOutcome::Done;
            sent_ = LineOutcome::refused(record, number, message);
            // The register's own words, with the record they answered: what
            // the shop reads when it asks why a line is missing.
            log_.WriteLog(message, record);
            if (errorClass == errclass::Fatal) {
                log_.WriteLog(kFatalMessage, record);
                op_.showMessage(kFatalMessage, QStringLiteral("ATTENZIONE"), Operator::Icon::Critical);
                for (const QueuedLine& dropped : std::as_const(queue))
                    report(dropped.origin, LineOutcome::notSent(dropped.text, NotSentReason::FatalError));
                setQueue({});
                ReceiptOpen = false;
                return SendOutcome::Done;
            }
            const QString action = classAction(errorClass);
            if (action.isEmpty())
                return SendOutcome::Done;
            list(QStringLiteral("ECR-errore :") + number + u'-' + message + action);
            switch (errorClass) {
            case errclass::Busy:
                if (!pause(100))
                    return SendOutcome::Stopped;
                resend = true;
                break;
            case errclass::Refused:
                return SendOutcome::Done;
            case 3:
                link_.LinkHandshake();
                if (!pause(2000))
                    return SendOutcome::Stopped;
                evaluated = statusQuery();
                break;
            case errclass::Paper:
                link_.LinkHandshake();
                if (!pause(3000))
                    return SendOutcome::Stopped;
                evaluated = statusQuery();
                if (evaluated.startsWith(QStringLiteral("00"))) {
                    if (!pause(3000))
                        return SendOutcome::Stopped;
                    resend = true;
                } else {
                    if (!pause(500))
                        return SendOutcome::Stopped;
                    link_.LinkHandshake();
                }
                break;
            default:
                return SendOutcome::Done;
            }
        }
    }
}

void ReceiptServer::ProcessReceiptQueue()
{
    while (!queue.isEmpty() && !stopRequested()) {
        const QueuedLine taken = queue.takeFirst();
        const QString& line = taken.text;
        op_.queueChanged(queueTexts(queue));
        list(kPcToEcrTag + line);
        const std::optional<QString> normalized = normalizeQueueLine(line);
        if (!normalized)
            continue;
        if (const auto reason = uncarriableReason(*normalized)) {
            log_.WriteLog(*reason, *normalized);
            list(kEcrTag + *reason);
            report(taken.origin, LineOutcome::skipped(*normalized, *reason));
            continue;
        }
        const ItemLineRewrite rewrite = rewriteItemLine(*normalized, settings_.itemLines);
        if (!rewrite.logMessage.isEmpty())
            log_.WriteLog(rewrite.logMessage, *normalized);
        const CommandDecision decision = decideCommand(rewrite.line, ReceiptOpen);
        ReceiptOpen = decision.receiptOpen;
        switch (decision.action) {
        case CommandAction::WriteSnapshot:
            if (!WriteSnapshotFile()) {
                report(taken.origin, LineOutcome::notSent(*normalized, NotSentReason::LinkLost));
                return;
            }
            report(taken.origin, LineOutcome::skipped(*normalized, kSnapshotDone));
            break;
        case CommandAction::Skip:
            if (!decision.logMessage.isEmpty())
                log_.WriteLog(decision.logMessage, *normalized);
            list(decision.runTimeEntry);
            report(taken.origin, LineOutcome::skipped(*normalized, skipReason(decision.runTimeEntry)));
            break;
        case CommandAction::StopQueue:
            log_.WriteLog(decision.logMessage, *normalized);
            list(decision.runTimeEntry);
            report(taken.origin, LineOutcome::skipped(*normalized, skipReason(decision.runTimeEntry)));
            return;
        case CommandAction::Send:
            switch (SendRecord(decision.record)) {
            case SendOutcome::Done:
                report(taken.origin, sent_);
                break;
            case SendOutcome::LinkLost:
                report(taken.origin, sent_);
                return;
            case SendOutcome::Stopped:
                // Never confirmed by the register: it goes first next time.
                setQueue(QList<QueuedLine>{taken} + queue);
                return;
            }
            break;
        }
    }
}

bool ReceiptServer::WriteSnapshotFile()
{
    const QString path = serverDirectoryPrefix(settings_.serverDir, settings_.fallbackDir)
        + serialNumber.trimmed() + now_().date().toString(QStringLiteral("yyyyMMdd"))
        + QStringLiteral(".FMN");
    QFile::remove(path);
    if (QFile::exists(path))
        return true;
    QFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Append);
    for (const char* query : {"t/", "0/", "9/", "X/"}) {
        const QString record = QString::fromLatin1(query);
        pause(50);
        if (link_.LinkHandshake() > 0) {
            linkLost(record);
            return false;
        }
        pause(50);
        link_.SendFrame(record);
        QString answer;
        link_.ReceiveAnswer(answer);
        const QString line = u'<' + record.left(1) + u'>' + (answer.isEmpty() ? QStringLiteral("?") : answer);
        file.write(ansi::encode(line + QStringLiteral("\r\n")));
    }
    return true;
}

bool ReceiptServer::claimFile(const QString& directory, const QString& name)
{
    const QString original = directory + name;
    const QString working = original + QStringLiteral(".drev");
    const QFileInfo info(original);
    if (!info.exists())
        return false; // gone since the listing
    // Half a receipt must never be sent: a file is taken once it has
    // stopped changing, at a later tick if need be.
    const FileLook look{info.size(), info.lastModified(), link_.clock().nowMs()};
    const auto earlier = seen_.constFind(name);
    const bool sameLook = earlier != seen_.constEnd() && earlier->size == look.size && earlier->modified == look.modified;
    if (!hasSettled(sameLook ? &*earlier : nullptr, look, QDateTime::currentDateTime())) {
        if (!sameLook)
            seen_.insert(name, look);
        return false;
    }
    // A claim that failed is tried again at the pace of the timer, whatever
    // wakes the server in between (its own log line changes the folder).
    const auto failed = unclaimable_.constFind(name);
    if (failed != unclaimable_.constEnd() && look.seenAtMs - *failed < kRetryClaimMs)
        return false;
    QFile::remove(working);
    if (!claim(original, working)) {
        // Not ours to move (locked, no rights): it stays for the next tick
        // rather than being deleted unread, and the log says so once.
        if (failed == unclaimable_.constEnd())
            log_.WriteLog(QStringLiteral("File non acquisito, riprovo"), name);
        unclaimable_.insert(name, look.seenAtMs);
        return false;
    }
    seen_.remove(name);
    unclaimable_.remove(name);
    QFile file(working);
    if (file.open(QIODevice::ReadOnly)) {
        enqueue(LineOrigin::Source::File, name, splitReceiptLines(file.readAll()));
        file.close();
    }
    QFile::remove(working);
    if (settings_.testMode) {
        if (op_.ask(QStringLiteral("Vuoi cancellare file?"), QStringLiteral("Tes Mode"),
                    Operator::Icon::Question, {Operator::Button::Yes, Operator::Button::No},
                    Operator::Button::Yes)
            == Operator::Button::Yes)
            QFile::remove(original);
    } else {
        QFile::remove(original);
    }
    return true;
}

bool ReceiptServer::claim(const QString& original, const QString& working) const
{
    if (settings_.testMode)
        return QFile::copy(original, working);
    // A plain rename: QFile::rename falls back to copy-and-delete, which on a
    // locked file leaves a copy behind at every try.
    std::error_code error;
    std::filesystem::rename(std::filesystem::path(original.toStdU16String()),
                            std::filesystem::path(working.toStdU16String()), error);
    return !error;
}

void ReceiptServer::ScanServerDir()
{
    if (serialNumber.trimmed().isEmpty())
        return;
    const QString directory = serverDirectoryPrefix(settings_.serverDir, settings_.fallbackDir);
    const QString mask = settings_.serverFile.trimmed();
    const QStringList names = MatchFileMask(directory, mask, settings_.forbiddenExtensions);
    log_.setLogName(logNameAfterMask(parseFileMask(mask), log_.logName()));
    for (const QString& name : UnreadableMatches(directory, mask))
        if (!reportedUnreadable_.contains(name)) { // once, not every 250 ms
            reportedUnreadable_.insert(name);
            log_.WriteLog(QStringLiteral("Non è un file normale (collegamento, cartella o altro): lasciato com'è"), name);
        }
    // Files that went away unclaimed are forgotten.
    const QSet<QString> listed(names.cbegin(), names.cend());
    seen_.removeIf([&](const auto& entry) { return !listed.contains(entry.key()); });
    unclaimable_.removeIf([&](const auto& entry) { return !listed.contains(entry.key()); });
    bool taken = false;
    for (const QString& name : names)
        taken = claimFile(directory, name) || taken;
    if (taken)
        ProcessReceiptQueue();
}

} // namespace kelm::server
