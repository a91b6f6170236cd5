#pragma once

#include "app/Configuration.h"
#include "technician/FiscalDocuments.h"
#include "technician/StepRunner.h"
#include "ui/Dialogs.h"
#include "ui/LineJobs.h"

#include <QObject>

#include <functional>

namespace kelm::ui {

class TechnicianPage;
class UsoEcrPage;

// What the keyboard page and the technician page do: key presses, the
// console, fiscal documents, closures, the journal and the test receipts.
// It keeps the document state between the forms and the cash key; every
// exchange goes to the line's worker, presses in the order they were made.
class TechnicianFunctions final : public QObject {
    Q_OBJECT

public:
    using CurrentConfig = std::function<ConfigPC()>;

    TechnicianFunctions(service::DriverSession& session, Operator& op, Dialogs& dialogs, UsoEcrPage* keyboard,
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

    const technician::FiscalDocuments& documents() const { return documents_; }

Q_SIGNALS:
    // The register's display as just read; both pages already show it.
    void displayRead(const QString& line1, const QString& line2);

private:
    enum class Display { None, Read };
    using AfterSteps = std::function<void(const technician::StepOutcome&)>;
    void run(technician::ExchangeSteps steps, Display display, AfterSteps after = {});
    void showDisplay(const technician::DisplayLines& lines);
    void showMessages(const QStringList& messages);

    LineJobs jobs_;
    Dialogs& dialogs_;
    UsoEcrPage* keyboard_;
    TechnicianPage* technician_;
    CurrentConfig config_;
    QWidget* dialogParent_;
    technician::FiscalDocuments documents_;
};

} // namespace kelm::ui
