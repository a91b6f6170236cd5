#include "technician/FiscalDocuments.h"

#include "technician/VirtualDisplay.h"

#include <iterator>

namespace kelm::technician {

namespace {

constexpr QChar kFillDigit = u'1';

QString ones(qsizetype count)
{
    return QString(count, kFillDigit);
}

QString customerRecord(const std::array<QString, kCustomerLineCount>& lines)
{
    QString record = QStringLiteral("j/");
    for (const QString& line : lines)
        record += line + u'/';
    return record + QStringLiteral("///0/");
}

} // namespace

QString vatNumberRecord(const QString& vatNumber)
{
    return QStringLiteral("'/1/") + vatNumber + u'/' + ones(kFiscalCodeLength) + u'/';
}

QString fiscalCodeRecord(const QString& fiscalCode)
{
    return QStringLiteral("'/2/") + ones(kVatNumberLength) + u'/' + fiscalCode.toUpper() + u'/';
}

PiCfOutcome piCfButton(FiscalDocuments& documents, int index, const QString& text)
{
    documents.PiCfLength = 0;
    documents.PendingDocRecord.clear();
    if (index != kAcceptButton)
        return PiCfOutcome::Closes;
    if (text.size() == kVatNumberLength)
        documents.PendingDocRecord = vatNumberRecord(text);
    else if (text.size() == kFiscalCodeLength)
        documents.PendingDocRecord = fiscalCodeRecord(text);
    else
        return PiCfOutcome::WrongLength;
    documents.PiCfLength = static_cast<qint16>(text.size());
    return PiCfOutcome::Closes;
}

std::optional<CustomerBox> customerButton(FiscalDocuments& documents, int index, const CustomerEntry& entry)
{
    documents.CustomerSet = false;
    if (index != kAcceptButton)
        return std::nullopt;
    if (entry.PIva.isEmpty())
        return CustomerBox::PIva;
    // The name and the first two address lines are required, the rest may be empty.
    constexpr CustomerBox kRequiredLines[] = {CustomerBox::Riga0, CustomerBox::Riga1, CustomerBox::Riga2};
    for (std::size_t i = 0; i < std::size(kRequiredLines); ++i) {
        if (entry.Righe[i].isEmpty())
            return kRequiredLines[i];
    }
    documents.CustomerVatNumber = entry.PIva;
    documents.CustomerLines = entry.Righe;
    documents.CustomerSet = true;
    return std::nullopt;
}

void creditNoteButton(FiscalDocuments& documents, int index, const QString& pratica, const QString& riferimento)
{
    const bool accepted = index == kAcceptButton;
    documents.PendingDocRecord = accepted ? QStringLiteral("-/") + pratica + u'/' : QString();
    documents.CreditNoteRefRecord = accepted ? QStringLiteral("7/1/1/") + riferimento + u'/' : QString();
    documents.CreditNoteSet = accepted;
}

DocumentStart startInvoice(const FiscalDocuments& documents, const QString& displayLine1)
{
    if (documents.CustomerSet)
        return {{kCustomerAlreadySet}, false};
    if (documents.CreditNoteSet)
        return {{kCreditNoteAlreadySet}, false};
    return {{}, displayReadsZero(displayLine1)};
}

DocumentStart startCreditNote(const FiscalDocuments& documents, const QString& displayLine1)
{
    // A credit note already set only warns: its form may be filled again.
    DocumentStart start;
    if (documents.CreditNoteSet)
        start.messages.append(kCreditNoteAlreadySet);
    if (documents.CustomerSet) {
        start.messages.append(kInvoiceAlreadySet);
        return start;
    }
    start.showForm = displayReadsZero(displayLine1);
    return start;
}

ExchangeSteps piCfSteps(const FiscalDocuments& documents)
{
    if (documents.PiCfLength <= 0)
        return {};
    return {ExchangeStep::panelCommand(documents.PendingDocRecord)};
}

ExchangeSteps invoiceOpeningSteps(FiscalDocuments& documents)
{
    if (!documents.CustomerSet)
        return {};
    documents.InvoiceOpenRecord = kInvoiceOpenRecord;
    return {ExchangeStep::panelCommand(documents.InvoiceOpenRecord)};
}

void invoiceOpened(FiscalDocuments& documents, int result)
{
    if (result != 0)
        return;
    documents.InvoicePiRecord = vatNumberRecord(documents.CustomerVatNumber);
    documents.InvoiceCustomerRecord = customerRecord(documents.CustomerLines);
}

ExchangeSteps creditNoteOpeningSteps(FiscalDocuments& documents)
{
    if (documents.PendingDocRecord.isEmpty())
        return {};
    documents.CreditNoteMark = QStringLiteral("N/");
    return {ExchangeStep::panelCommand(documents.PendingDocRecord)};
}

} // namespace kelm::technician
