#pragma once

#include "app/IniFile.h"
#include "programming/DownloadJob.h"
#include "programming/HeaderFooter.h"
#include "ui/Dialogs.h"
#include "ui/LineJobs.h"

#include <QWidget>

#include <atomic>
#include <memory>

class QTabWidget;

namespace kelm::ui {

class HeaderFooterPage;
class LogoPage;
class PaymentsPage;
class PluPage;
class SParametersPage;
class VatDepartmentsPage;

// "&Configuraz. ECR": the register's tables, edited on the PC and
// downloaded by one dispatcher, cmdSetParametri_Click(index), whose index
// names the table. Every exchange runs on the line's worker.
class EcrConfigTab final : public QWidget {
    Q_OBJECT

public:
    EcrConfigTab(service::DriverSession& session, Operator& op, Dialogs& dialogs, const QString& programFolder,
                 QWidget* parent = nullptr);

    void cmdSetParametri_Click(int index);
    void setTechnician(bool logged);

private:
    // What a table sends, built from its editors (and saved to the settings
    // file first, for the tables kept there).
    QList<programming::DownloadRecord> recordsFor(programming::DownloadTable table);
    void download(const programming::DownloadBranch& branch, QList<programming::DownloadRecord> records);
    void show(const programming::Notice& notice);
    void downloadLogo();
    void downloadPlu();
    void cmdReadPLU_Click();
    // A fresh stop request for the PLU exchange about to start, shared with
    // its job: the stop button sets it, the job looks at it between records.
    std::shared_ptr<std::atomic<bool>> newPluStop();

    void readHeaderFromFile(programming::ReceiptLines kind);
    void cmdReadIVA_Click(bool thenDepartments);
    void cmdReadPagamenti_Click();
    void CmdReadParamS_Click();
    void cmdResetParmS_Click();

    LineJobs jobs_;
    service::DriverSession& session_;
    Dialogs& dialogs_;
    IniFile ini_;
    QTabWidget* pages_;
    HeaderFooterPage* header_;
    VatDepartmentsPage* vat_;
    PaymentsPage* payments_;
    SParametersPage* sParameters_;
    LogoPage* logos_;
    PluPage* plu_;
    std::shared_ptr<std::atomic<bool>> pluStop_;
};

} // namespace kelm::ui
