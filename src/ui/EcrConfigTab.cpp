#include "ui/EcrConfigTab.h"

#include "app/VatRates.h"
#include "link/PanelCommand.h"
#include "logos/LogoRecords.h"
#include "logos/LogoTexts.h"
#include "programming/Departments.h"
#include "programming/HeaderFooter.h"
#include "programming/PaymentTypes.h"
#include "programming/SParameters.h"
#include "programming/ScrollMessages.h"
#include "programming/VatRateRecord.h"
#include "ui/HeaderFooterPage.h"
#include "logos/LogoDownloadJob.h"
#include "ui/LogoPage.h"
#include "ui/PaymentsPage.h"
#include "ui/PluPage.h"
#include "ui/SParametersPage.h"
#include "ui/VatDepartmentsPage.h"
#include "ui/Widgets.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPointer>
#include <QScopeGuard>
#include <QTabWidget>
#include <QVBoxLayout>

namespace kelm::ui {

using namespace programming;

EcrConfigTab::EcrConfigTab(service::DriverSession& session, Operator& op, Dialogs& dialogs,
                           const QString& programFolder, QWidget* parent)
    : QWidget(parent), jobs_(session, op), session_(session), dialogs_(dialogs),
      ini_(programFolder + QStringLiteral("/KelmDrev.ini")), pages_(new QTabWidget), header_(new HeaderFooterPage),
      vat_(new VatDepartmentsPage), payments_(new PaymentsPage), sParameters_(new SParametersPage),
      logos_(new LogoPage(dialogs)), plu_(new PluPage(dialogs, programFolder))
{
    setObjectName(QStringLiteral("pageConfigEcr"));
    pages_->setObjectName(QStringLiteral("SSTabConfigEcr"));
    pages_->addTab(scrolling(header_), QStringLiteral("Intestazione"));
    pages_->addTab(scrolling(vat_), QStringLiteral("IVA e Reparti"));
    pages_->addTab(scrolling(payments_), QStringLiteral("Pagamenti"));
    pages_->addTab(scrolling(sParameters_), QStringLiteral("Parametri S"));
    pages_->addTab(scrolling(logos_), QStringLiteral("Loghi"));
    pages_->addTab(plu_, QStringLiteral("PLU"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages_);

    connect(header_, &HeaderFooterPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(vat_, &VatDepartmentsPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(payments_, &PaymentsPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(sParameters_, &SParametersPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(logos_, &LogoPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(plu_, &PluPage::downloadRequested, this, &EcrConfigTab::cmdSetParametri_Click);
    connect(plu_, &PluPage::cmdReadPLU_Click, this, &EcrConfigTab::cmdReadPLU_Click);
    connect(plu_, &PluPage::cmdStopPLU_Click, this, [this] {
        if (pluStop_)
            *pluStop_ = true;
    });
    connect(header_, &HeaderFooterPage::cmdRecHeader_Click, this,
            [this] { readHeaderFromFile(ReceiptLines::Header); });
    connect(header_, &HeaderFooterPage::cmdReadPiede_Click, this,
            [this] { readHeaderFromFile(ReceiptLines::Footer); });
    // The read at start-up fills the rate boxes as the read button would:
    // a download of boxes left empty would spend one of the register's
    // lifetime VAT changes on nothing.
    connect(&session_, &service::DriverSession::vatRatesRead, vat_, [page = vat_](const QStringList& texts) {
        std::array<QString, kVatRateCount> rates;
        for (int i = 0; i < kVatRateCount; ++i)
            rates[i] = texts.value(i);
        page->setRates(rates);
    });
    connect(vat_, &VatDepartmentsPage::cmdReadIVA_Click, this, [this] { cmdReadIVA_Click(false); });
    connect(vat_, &VatDepartmentsPage::cmdreadParmIVAREP_Click, this, [this] { cmdReadIVA_Click(true); });
    connect(payments_, &PaymentsPage::cmdReadPagamenti_Click, this, &EcrConfigTab::cmdReadPagamenti_Click);
    connect(sParameters_, &SParametersPage::CmdReadParamS_Click, this, &EcrConfigTab::CmdReadParamS_Click);
    connect(sParameters_, &SParametersPage::cmdResetParmS_Click, this, &EcrConfigTab::cmdResetParmS_Click);
    connect(sParameters_, &SParametersPage::cmdReadScrolMSG_Click, this,
            [this] { sParameters_->setMessages(loadScrollMessages(ini_)); });
}

void EcrConfigTab::setTechnician(bool logged)
{
    payments_->setTechnician(logged);
}

void EcrConfigTab::show(const Notice& notice)
{
    dialogs_.showMessage(notice.text, notice.title, notice.icon);
}

void EcrConfigTab::cmdSetParametri_Click(int index)
{
    // The hourglass for the part on this thread; the job keeps its own.
    QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
    const auto restore = qScopeGuard([] { QGuiApplication::restoreOverrideCursor(); });

    const DownloadBranch branch = downloadBranch(static_cast<qint16>(index));
    if (branch.table == DownloadTable::Nothing)
        return;
    if (branch.table == DownloadTable::Unknown) {
        show(unknownDownloadIndex());
        return;
    }
    if (branch.confirmation && !confirmed(dialogs_, *branch.confirmation))
        return;
    if (branch.table == DownloadTable::Logo)
        downloadLogo();
    else if (branch.table == DownloadTable::Plu)
        downloadPlu();
    else
        download(branch, recordsFor(branch.table));
}

QList<DownloadRecord> EcrConfigTab::recordsFor(DownloadTable table)
{
    QList<DownloadRecord> records;
    switch (table) {
    case DownloadTable::Header:
    case DownloadTable::Footer: {
        const ReceiptLines kind = table == DownloadTable::Header ? ReceiptLines::Header : ReceiptLines::Footer;
        const QList<HeaderLine> lines = header_->lines(kind);
        saveReceiptLines(ini_, kind, lines); // kept even if the register refuses them
        records << DownloadRecord{kind == ReceiptLines::Header ? headerRecord(lines) : footerRecord(lines), {}};
        break;
    }
    case DownloadTable::Departments:
        for (int n = 1; n <= kDepartmentCount; ++n)
            records << DownloadRecord{departmentRecord(n, vat_->department(n)), {}};
        break;
    case DownloadTable::PaymentTypes:
        for (int n = 1; n <= kPaymentTypeCount; ++n) {
            const PaymentType p = payments_->payment(n);
            records << DownloadRecord{paymentTypeRecord(n, p), p.description.trimmed()};
        }
        break;
    case DownloadTable::ScrollMessage: {
        const int selected = sParameters_->selectedMessage();
        const QString message = sParameters_->message(selected);
        saveScrollMessage(ini_, selected, message);
        records << DownloadRecord{scrollMessageRecord(message), {}};
        break;
    }
    case DownloadTable::SParameters:
        records << DownloadRecord{sParametersRecord(sParameters_->parameters()), {}};
        break;
    case DownloadTable::VatRates:
        records << DownloadRecord{vatRatesRecord(vat_->rates()), {}};
        break;
    default:
        break;
    }
    return records;
}

void EcrConfigTab::download(const DownloadBranch& branch, QList<DownloadRecord> records)
{
    jobs_.run(this, [branch, records = std::move(records)](EcrLink& link, Operator& op) {
        runDownload(link, op, branch, records);
    });
}

void EcrConfigTab::downloadLogo()
{
    const logos::LogoDownload logo = logos::logoDownload(logos_->pictures(), logos_->pageOnShow());
    if (!logo.refusal.isEmpty()) {
        show({logo.refusal, logos::kMessageTitle, Operator::Icon::Information});
        return;
    }
    QPointer<LogoPage> page = logos_;
    page->operationStarted(int(logo.records.size()));
    jobs_.run(
        this,
        [page, rows = logo.records](EcrLink& link, Operator& op) {
            logos::runLogoDownload(link, op, rows, [page](int done, int) {
                LineJobs::onUiThread(page, [page, done] { if (page) page->setProgress(done); });
            });
        },
        [this] { logos_->operationEnded(); });
}

std::shared_ptr<std::atomic<bool>> EcrConfigTab::newPluStop()
{
    pluStop_ = std::make_shared<std::atomic<bool>>(false);
    return pluStop_;
}

void EcrConfigTab::downloadPlu()
{
    const QList<PluRow> rows = plu_->normaliseNumbers();
    if (rows.isEmpty() && !confirmed(dialogs_, emptyPluGridQuestion()))
        return;
    QPointer<PluPage> page = plu_;
    page->operationStarted(int(rows.size()));
    if (rows.isEmpty())
        page->beyondGridSearchStarted();
    jobs_.run(
        this,
        [page, rows, stop = newPluStop()](EcrLink& link, Operator& op) {
            const auto progress = [page](int done, int total) {
                LineJobs::onUiThread(page, [page, done, total] {
                    if (!page)
                        return;
                    page->setProgress(done);
                    if (done == total)
                        page->beyondGridSearchStarted();
                });
            };
            runPluDownload(link, op, rows, progress, stop.get());
        },
        [this] { plu_->operationEnded(); });
}

void EcrConfigTab::cmdReadPLU_Click()
{
    plu_->setRows({});
    plu_->operationStarted(kPluLimit);
    QPointer<PluPage> page = plu_;
    jobs_.run(
        this,
        [page, stop = newPluStop()](EcrLink& link, Operator& op) {
            const auto rowRead = [page](int number, const PluRow& row) {
                LineJobs::onUiThread(page, [page, number, row] {
                    if (!page)
                        return;
                    page->appendRows({row});
                    page->setProgress(number);
                });
            };
            readPluTable(link, op, rowRead, stop.get());
        },
        [this] { plu_->operationEnded(); });
}

void EcrConfigTab::readHeaderFromFile(ReceiptLines kind)
{
    show(settingsReadBackNotice());
    header_->restore(kind, loadReceiptLines(ini_, kind));
}

void EcrConfigTab::cmdReadIVA_Click(bool thenDepartments)
{
    vat_->setRates({});
    QPointer<VatDepartmentsPage> page = vat_;
    service::DriverSession* session = &session_;
    jobs_.run(this, [page, session, thenDepartments](EcrLink& link, Operator& op) {
        PanelCommand panel(link, op);
        const VatRatesRead read = panel(QStringLiteral("e/")) == 0 ? parseVatRates(panel.LastAnswer) : VatRatesRead{};
        session->setVatRates(read.table);
        LineJobs::onUiThread(page, [page, read] { if (page) page->setRates(read.texts); });
        if (!thenDepartments)
            return;
        for (int n = 1; n <= kDepartmentCount; ++n) {
            // Each department shows as soon as it is read.
            LineJobs::onUiThread(page, [page, n] { if (page) page->setDepartment(n, Department{}); });
            const bool ok = panel(departmentReadRecord(n)) == 0;
            const Department department = ok ? parseDepartment(panel.LastAnswer) : Department{};
            LineJobs::onUiThread(page, [page, n, ok, department] {
                if (!page)
                    return;
                if (ok)
                    page->setDepartment(n, department);
                page->setDepartmentsFromRegister(ok);
            });
        }
    });
}

void EcrConfigTab::cmdReadPagamenti_Click()
{
    QPointer<PaymentsPage> page = payments_;
    jobs_.run(this, [page](EcrLink& link, Operator& op) {
        PanelCommand panel(link, op);
        for (int n = 1; n <= kPaymentTypeCount; ++n) {
            const bool ok = panel(paymentTypeReadRecord(n)) == 0;
            const PaymentTypeRead read = ok ? parsePaymentType(panel.LastAnswer) : PaymentTypeRead{};
            LineJobs::onUiThread(page, [page, n, ok, read] {
                if (!page)
                    return;
                if (ok)
                    page->setPaymentRead(n, read);
                page->setDownloadEnabled(ok);
            });
        }
    });
}

void EcrConfigTab::CmdReadParamS_Click()
{
    QPointer<SParametersPage> page = sParameters_;
    jobs_.run(this, [page](EcrLink& link, Operator& op) {
        PanelCommand panel(link, op);
        const bool ok = panel(sParametersReadRecord()) == 0;
        const SParameters read = ok ? parseSParameters(panel.LastAnswer) : SParameters{};
        LineJobs::onUiThread(page, [page, ok, read] {
            if (!page)
                return;
            if (ok)
                page->setParameters(read);
            page->setDownloadEnabled(ok);
        });
    });
}

void EcrConfigTab::cmdResetParmS_Click()
{
    if (!confirmed(dialogs_, resetSParametersQuestion()))
        return;
    sParameters_->setParameters(parseSParameters(defaultSParametersAnswer()));
    sParameters_->setDownloadEnabled(true);
    show(sParametersResetNotice());
}

} // namespace kelm::ui
