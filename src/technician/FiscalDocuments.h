#pragma once

#include "technician/ExchangeStep.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>

// Invoice, credit note and the customer's VAT number or fiscal code on a
// plain receipt: what the three document forms collect and keep until the
// cash key of the virtual keyboard completes the document.
namespace kelm::technician {

constexpr int kCustomerLineCount = 6;

// The document state between the forms, their buttons and the cash key. The
// main window's data reset puts it back to a default one.
struct FiscalDocuments {
    bool CustomerSet = false;   // an invoice customer has been entered
    bool CreditNoteSet = false; // a credit note has been entered
    qint16 PiCfLength = 0;      // length of the accepted VAT number or fiscal code, 0 for none
    // Prepared by FrmPiCf and by FrmNCred alike: one record on purpose, so
    // the form used last wins.
    QString PendingDocRecord;
    QString CreditNoteRefRecord;
    QString CustomerVatNumber;
    std::array<QString, kCustomerLineCount> CustomerLines; // name and address
    QString InvoiceOpenRecord;
    QString InvoicePiRecord;
    QString InvoiceCustomerRecord;
    QString CreditNoteMark; // "N/" once a credit note has been started
};

// Form captions and the words on their controls.
inline const QString kPiCfCaption = QStringLiteral("P.IVA - CODICE FISCALE");
inline const QString kCreditNoteCaption = QStringLiteral("NOTA CREDITO");
inline const QString kPraticaLabel = QStringLiteral("Pratica");
inline const QString kRiferimentoLabel = QStringLiteral("Riferimento");
inline const QString kCancelCaption = QStringLiteral("ANNULLA");
inline const QString kOkCaption = QStringLiteral("OK");

// Messages. "PI/CF errato" is a critical box, the others information boxes;
// all are titled "Attenzione".
inline const QString kDocumentMessageTitle = QStringLiteral("Attenzione");
inline const QString kPiCfWrong = QStringLiteral("PI/CF errato");
inline const QString kCustomerAlreadySet = QStringLiteral("Cliente già impostato");
inline const QString kCreditNoteAlreadySet = QStringLiteral("Nota Credito già impostata");
inline const QString kInvoiceAlreadySet = QStringLiteral("Fattura già impostata");

// CmdChiude(1) accepts a form; every other index cancels it.
constexpr int kAcceptButton = 1;

// The register wants both the VAT number (11 characters) and the fiscal code
// (16) in one record; the one not given is a run of "1" of its length.
constexpr qsizetype kVatNumberLength = 11;
constexpr qsizetype kFiscalCodeLength = 16;
QString vatNumberRecord(const QString& vatNumber);
QString fiscalCodeRecord(const QString& fiscalCode);

// FrmPiCf, CmdChiude(index). WrongLength: show kPiCfWrong, put the focus
// back into TxtPiCf and keep the form open.
enum class PiCfOutcome { Closes, WrongLength };
PiCfOutcome piCfButton(FiscalDocuments& documents, int index, const QString& text);

// FrmCliente, CmdChiude(index). The boxes it reads; the result is the box
// that must be filled and gets the focus while the form stays open (no
// message), or none when the form closes.
struct CustomerEntry {
    QString PIva;
    std::array<QString, kCustomerLineCount> Righe;
};
enum class CustomerBox { PIva, Riga0, Riga1, Riga2 };
std::optional<CustomerBox> customerButton(FiscalDocuments& documents, int index, const CustomerEntry& entry);

// FrmNCred, CmdChiude(index); the form always closes.
void creditNoteButton(FiscalDocuments& documents, int index, const QString& pratica,
                      const QString& riferimento);

// Starting a document: the messages to show, in order, and whether the form
// opens. The form opens only while the display's first line reads 0.
struct DocumentStart {
    QStringList messages;
    bool showForm = false;
};
DocumentStart startInvoice(const FiscalDocuments& documents, const QString& displayLine1);
DocumentStart startCreditNote(const FiscalDocuments& documents, const QString& displayLine1);

// After FrmPiCf: the accepted record by the panel road, nothing when none.
ExchangeSteps piCfSteps(const FiscalDocuments& documents);

// After FrmCliente: with a customer entered, the invoice is opened on the
// register by the panel road. Only when that is carried out (result 0) are
// the records that the cash key sends prepared; otherwise they stay empty
// and the cash key sends them empty.
inline const QString kInvoiceOpenRecord = QStringLiteral("3/F/OPENFAT//0/0/0/0/");
ExchangeSteps invoiceOpeningSteps(FiscalDocuments& documents);
void invoiceOpened(FiscalDocuments& documents, int result);

// After FrmNCred: the credit note's record by the panel road, nothing when
// the form was cancelled.
ExchangeSteps creditNoteOpeningSteps(FiscalDocuments& documents);

} // namespace kelm::technician
