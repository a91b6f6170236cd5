#include "technician/DocumentCompletion.h"

#include "technician/VirtualDisplay.h"
#include "technician/VirtualKeyboard.h"

namespace kelm::technician {

namespace {

const QString kInvoicePaymentRecord = QStringLiteral("5/1/0////");

void appendInvoiceCompletion(ExchangeSteps& steps, const FiscalDocuments& documents)
{
    steps << ExchangeStep::pause(kKeyPauseMs) << ExchangeStep::clearAnswer()
          << ExchangeStep::panelCommand(documents.InvoicePiRecord) << ExchangeStep::pause(kKeyPauseMs)
          << ExchangeStep::clearAnswer() << ExchangeStep::panelCommand(documents.InvoiceCustomerRecord)
          << ExchangeStep::pause(kKeyPauseMs) << ExchangeStep::pause(kKeyPauseMs)
          << ExchangeStep::transaction(kInvoicePaymentRecord) << ExchangeStep::pause(kLongPauseMs)
          << ExchangeStep::transaction(kDisplayReadRecord);
}

void appendCreditNoteCompletion(ExchangeSteps& steps, const FiscalDocuments& documents, int cashKeyCode)
{
    steps << ExchangeStep::pause(kKeyPauseMs) << ExchangeStep::clearAnswer()
          << ExchangeStep::panelCommand(documents.CreditNoteRefRecord) << ExchangeStep::pause(kKeyPauseMs)
          << ExchangeStep::transaction(keyRecord(cashKeyCode)) << ExchangeStep::pause(kLongPauseMs)
          << ExchangeStep::clearAnswer() << ExchangeStep::transaction(kDisplayReadRecord);
}

} // namespace

bool cashKeySentAsKey(const FiscalDocuments& documents)
{
    return !documents.CustomerSet;
}

ExchangeSteps completeDocument(FiscalDocuments& documents, int cashKeyCode)
{
    ExchangeSteps steps;
    if (documents.CustomerSet)
        appendInvoiceCompletion(steps, documents);
    if (documents.CreditNoteSet)
        appendCreditNoteCompletion(steps, documents, cashKeyCode);
    documents.CustomerSet = false;
    documents.CreditNoteSet = false;
    return steps;
}

} // namespace kelm::technician
