#include "ui/TechnicianFunctions.h"

#include "link/PanelCommand.h"
#include "server/TotalsFile.h"
#include "technician/CommandConsole.h"
#include "technician/DocumentCompletion.h"
#include "technician/EndOfDay.h"
#include "technician/LastReceiptReprint.h"
#include "technician/TestReceipts.h"
#include "technician/VirtualKeyboard.h"
#include "ui/FrmCliente.h"
#include "ui/FrmNCred.h"
#include "ui/FrmPiCf.h"
#include "ui/TechnicianPage.h"
#include "ui/UsoEcrPage.h"

#include <QFile>
#include <QGuiApplication>
#include <QPointer>

namespace kelm::ui {

using namespace technician;

namespace {

// The document forms on the window, for the worker: each is shown modally
// on the UI thread while the worker waits. Once the window is closing a
// form is not shown and counts as cancelled.
class WindowForms final : public DocumentForms {
public:
    WindowForms(WindowOperator& op, Dialogs& dialogs, QWidget* parent) : op_(op), dialogs_(dialogs), parent_(parent) {}

    void customer(FiscalDocuments& documents) override
    {
        if (!show([&] { return std::make_unique<FrmCliente>(documents, parent_); }))
            customerButton(documents, 0, {});
    }
    void creditNote(FiscalDocuments& documents) override
    {
        if (!show([&] { return std::make_unique<FrmNCred>(documents, parent_); }))
            creditNoteButton(documents, 0, QString(), QString());
    }
    void piCf(FiscalDocuments& documents) override
    {
        if (!show([&] { return std::make_unique<FrmPiCf>(documents, dialogs_, parent_); }))
            piCfButton(documents, 0, QString());
    }

private:
    template <typename MakeForm>
    bool show(MakeForm make)
    {
        return op_.converse([&] {
            // The hourglass of the running press is not the form's.
            QGuiApplication::setOverrideCursor(QCursor(Qt::ArrowCursor));
            make()->exec();
            QGuiApplication::restoreOverrideCursor();
        });
    }

    WindowOperator& op_;
    Dialogs& dialogs_;
    QWidget* parent_;
};

} // namespace

TechnicianFunctions::TechnicianFunctions(service::DriverSession& session, WindowOperator& op, Dialogs& dialogs,
                                         UsoEcrPage* keyboard, TechnicianPage* technician, CurrentConfig config,
                                         QWidget* dialogParent)
    : QObject(dialogParent), jobs_(session, op), dialogs_(dialogs), keyboard_(keyboard), technician_(technician),
      config_(std::move(config)), dialogParent_(dialogParent),
      forms_(std::make_shared<WindowForms>(op, dialogs, dialogParent))
{
    connect(keyboard_, &UsoEcrPage::cmdECR_Click, this, &TechnicianFunctions::cmdECR_Click);
    connect(keyboard_, &UsoEcrPage::CmdFat_Click, this, &TechnicianFunctions::CmdFat_Click);
    connect(keyboard_, &UsoEcrPage::CmdNotaCredito_Click, this, &TechnicianFunctions::CmdNotaCredito_Click);
    connect(keyboard_, &UsoEcrPage::CmdCfPi_Click, this, &TechnicianFunctions::CmdCfPi_Click);
    connect(keyboard_, &UsoEcrPage::cmdChiusuraGIornaliera_Click, this, &TechnicianFunctions::cmdChiusuraGIornaliera_Click);
    connect(keyboard_, &UsoEcrPage::cmdReportVenditeOP01_Click, this, &TechnicianFunctions::cmdReportVenditeOP01_Click);
    connect(technician_, &TechnicianPage::cmdVirtKBD_Click, this, &TechnicianFunctions::cmdVirtKBD_Click);
    connect(technician_, &TechnicianPage::Command1_Click, this, &TechnicianFunctions::Command1_Click);
    connect(technician_, &TechnicianPage::cmdSendCommand_Click, this, &TechnicianFunctions::cmdSendCommand_Click);
    connect(technician_, &TechnicianPage::cmdTechFile_Click, this, &TechnicianFunctions::cmdTechFile_Click);
    connect(technician_, &TechnicianPage::cmdChiusuraGIornaliera_Click, this,
            &TechnicianFunctions::cmdChiusuraGIornaliera_Click);
    connect(technician_, &TechnicianPage::cmdReportVenditeOP01_Click, this,
            &TechnicianFunctions::cmdReportVenditeOP01_Click);
    connect(technician_, &TechnicianPage::cmdDGFE_Click, this, &TechnicianFunctions::cmdDGFE_Click);
    connect(technician_, &TechnicianPage::cmdDemoTicket_Click, this, &TechnicianFunctions::cmdDemoTicket_Click);
}

void TechnicianFunctions::run(ExchangeSteps steps, Display display, AfterSteps after)
{
    run([steps = std::move(steps)](EcrLink& link, Operator& op) { return runSteps(link, op, steps); }, display,
        std::move(after));
}

void TechnicianFunctions::run(StepsJob job, Display display, AfterSteps after)
{
    auto outcome = std::make_shared<StepOutcome>();
    jobs_.run(
        this, [job = std::move(job), outcome](EcrLink& link, Operator& op) { *outcome = job(link, op); },
        [this, outcome, display, after = std::move(after)] {
            if (outcome->display && display == Display::Read)
                showDisplay(*outcome->display);
            if (after)
                after(*outcome);
        });
}

void TechnicianFunctions::showDisplay(const DisplayLines& lines)
{
    // One register, one display: wherever it was read, every copy shows it.
    keyboard_->setDisplay(lines.line1, lines.line2);
    technician_->setDisplay(lines.line1, lines.line2);
    Q_EMIT displayRead(lines.line1, lines.line2);
}

void TechnicianFunctions::document(
    std::function<void(DocumentDesk&, EcrLink&, Operator&, DocumentForms&)> f)
{
    jobs_.run(this, [f = std::move(f), desk = desk_, forms = forms_](EcrLink& link, Operator& op) {
        f(*desk, link, op, *forms);
    });
}

void TechnicianFunctions::cmdECR_Click(int index)
{
    run([desk = desk_, index](EcrLink& link, Operator& op) { return desk->keyPress(link, op, index); },
        Display::Read);
}

void TechnicianFunctions::cmdVirtKBD_Click(int code)
{
    run(keypadPressSteps(code), Display::Read);
}

void TechnicianFunctions::Command1_Click()
{
    run(prelieviSteps(), Display::None);
}

void TechnicianFunctions::technicianPageShown()
{
    technician_->focusConsole();
    run(technicianTabSteps(), Display::None, [this](const StepOutcome& outcome) {
        if (const auto lines = displayLines(outcome.lastAnswer))
            showDisplay(*lines);
    });
}

void TechnicianFunctions::cmdSendCommand_Click(int index)
{
    technician_->setAnswer(QString());
    QStringList records;
    if (index == 0) {
        records << singleCommandRecord(technician_->singleCommand());
    } else if (index == 1) {
        const QString path = technician_->commandFile().trimmed();
        if (path.isEmpty())
            return;
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly)) {
            technician_->setAnswer(kConsoleFileMissing);
            return;
        }
        records = commandFileRecords(file.readAll());
    } else {
        technician_->setAnswer(kConsoleUnknownButton);
        return;
    }
    QPointer<TechnicianPage> page = technician_;
    jobs_.run(this, [records, page](EcrLink& link, Operator& op) {
        PanelCommand panel(link, op);
        for (const QString& record : records) {
            panel(record);
            const QString shown = consoleAnswerText(panel.LastAnswer);
            LineJobs::onUiThread(page, [page, shown] { if (page) page->setAnswer(shown); });
        }
    });
}

void TechnicianFunctions::cmdTechFile_Click()
{
    const QString path = dialogs_.chooseFile(QStringLiteral("File comandi"), kCommandFileFilter);
    if (!path.isEmpty())
        technician_->setCommandFile(path);
}

void TechnicianFunctions::CmdFat_Click()
{
    document([](DocumentDesk& desk, EcrLink& link, Operator& op, DocumentForms& forms) {
        desk.invoice(link, op, forms);
    });
}

void TechnicianFunctions::CmdNotaCredito_Click()
{
    document([](DocumentDesk& desk, EcrLink& link, Operator& op, DocumentForms& forms) {
        desk.creditNote(link, op, forms);
    });
}

void TechnicianFunctions::CmdCfPi_Click()
{
    document([](DocumentDesk& desk, EcrLink& link, Operator& op, DocumentForms& forms) {
        desk.piCf(link, op, forms);
    });
}

void TechnicianFunctions::cmdChiusuraGIornaliera_Click()
{
    const Question q = dailyClosureQuestion();
    const ExchangeSteps steps = dailyClosureSteps(dialogs_.ask(q.text, q.title, q.icon, q.buttons, q.defaultButton));
    if (steps.isEmpty())
        return;
    // The day's totals are read just before the closure puts them to zero,
    // and written to Totali.txt once the closure has gone through.
    const QString serverDir = config_().serverDir;
    auto totals = std::make_shared<QString>();
    jobs_.run(this, [steps, totals, serverDir](EcrLink& link, Operator& op) {
        PanelCommand panel(link, op);
        if (panel(QStringLiteral("t/")) == 0)
            *totals = panel.LastAnswer;
        if (runSteps(link, op, steps).lastResult == 0 && !totals->isEmpty())
            server::WriteTotals(serverDir, *totals);
    });
}

void TechnicianFunctions::cmdReportVenditeOP01_Click()
{
    run(salesTotalsSteps(), Display::None);
}

void TechnicianFunctions::cmdDGFE_Click(int index)
{
    if (index != 0)
        return; // journal functions of a later version
    const Question q = reprintQuestion();
    const ExchangeSteps request = reprintRequestSteps(dialogs_.ask(q.text, q.title, q.icon, q.buttons, q.defaultButton));
    if (request.isEmpty())
        return;
    jobs_.run(this, [request](EcrLink& link, Operator& op) {
        const StepOutcome read = runSteps(link, op, request);
        runSteps(link, op, reprintStepsAfter(read.lastAnswer));
    });
}

void TechnicianFunctions::cmdDemoTicket_Click(int index)
{
    const QByteArray content = testReceiptFile(index);
    if (content.isEmpty() || !confirmed(dialogs_, testReceiptQuestion()))
        return;
    const ConfigPC config = config_();
    const std::optional<QString> path = testReceiptPath(config.serverDir, config.serverFile);
    if (!path)
        return;
    if (QFile::exists(*path)) {
        dialogs_.showMessage(kTestFileExists, kTestFileExistsTitle, Dialogs::Icon::NoIcon);
        return;
    }
    // Written under another name and renamed, so that the server never
    // takes half a file.
    QFile file(*path + QStringLiteral(".tmp"));
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush()) {
        file.close();
        QFile::rename(file.fileName(), *path);
    }
}

} // namespace kelm::ui
