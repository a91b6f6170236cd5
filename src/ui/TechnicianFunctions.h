#pragma once

#include "app/Configuration.h"
#include "technician/DocumentDesk.h"
#include "technician/StepRunner.h"
#include "ui/Dialogs.h"
#include "ui/LineJobs.h"
#include "ui/WindowOperator.h"

#include <QObject>

#include <functional>
#include <memory>

namespace kelm::ui {

class TechnicianPage;
class UsoEcrPage;

// What the keyboard page and the technician page do: key presses, the
// console, fiscal documents, closures, the journal and the test receipts.
// Every press goes to the line's worker in the order it was made; the
// document state lives there (DocumentDesk), and the document forms are
// shown when their press has its turn.
class TechnicianFunctions final : public QObject {
    Q_OBJECT

public:
    using CurrentConfig = std::function<ConfigPC()>;

    TechnicianFunctions(service::DriverSession& session, WindowOperator& op, Dialogs& dialogs, UsoEcrPage* keyboard,
                        TechnicianPage* technician, CurrentConfig config, QWidget* dialogParent);

    void cmdECR_Click(int index);
    void cmdVirtKBD_Click(int code);
    void Command1_Click();
    void technicianPageShown();
    void cmdSendCommand_Click(int index);
    void cmdTechFile_Click();
    void CmdFat_Click();
    void CmdNotaCredito_Click();
    void CmdCfPi_Click();
    void cmdChiusuraGIornaliera_Click();
    void cmdReportVenditeOP01_Click();
    void cmdDGFE_Click(int index);
    void cmdDemoTicket_Click(int index);

Q_SIGNALS:
    // The register's display as just read; both pages already show it.
    void displayRead(const QString& line1, const QString& line2);

private:
    enum class Display { None, Read };
    using AfterSteps = std::function<void(const technician::StepOutcome&)>;
    using StepsJob = std::function<technician::StepOutcome(EcrLink&, Operator&)>;
    void run(technician::ExchangeSteps steps, Display display, AfterSteps after = {});
    void run(StepsJob job, Display display, AfterSteps after = {});
    // A document press: `f` runs on the worker with the desk and the forms.
    void document(std::function<void(technician::DocumentDesk&, EcrLink&, Operator&, technician::DocumentForms&)> f);
    void showDisplay(const technician::DisplayLines& lines);

    LineJobs jobs_;
    Dialogs& dialogs_;
    UsoEcrPage* keyboard_;
    TechnicianPage* technician_;
    CurrentConfig config_;
    QWidget* dialogParent_;
    // Touched on the worker only, by the jobs this object posts.
    std::shared_ptr<technician::DocumentDesk> desk_ = std::make_shared<technician::DocumentDesk>();
    std::shared_ptr<technician::DocumentForms> forms_;
};

} // namespace kelm::ui
