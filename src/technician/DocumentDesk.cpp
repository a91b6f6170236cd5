#include "technician/DocumentDesk.h"

#include "technician/VirtualKeyboard.h"

namespace kelm::technician {

StepOutcome DocumentDesk::keyPress(EcrLink& link, StatusPanels& status, int index)
{
    const StepOutcome outcome = runSteps(link, status, keyPressSteps(index, documents_));
    if (outcome.display)
        displayLine1_ = outcome.display->line1;
    return outcome;
}

bool DocumentDesk::showStart(Operator& op, const DocumentStart& start) const
{
    for (const QString& message : start.messages)
        op.showMessage(message, kDocumentMessageTitle, Operator::Icon::Information);
    return start.showForm;
}

void DocumentDesk::invoice(EcrLink& link, Operator& op, DocumentForms& forms)
{
    if (!showStart(op, startInvoice(documents_, displayLine1_)))
        return;
    forms.customer(documents_);
    if (!documents_.CustomerSet)
        return;
    invoiceOpened(documents_, runSteps(link, op, invoiceOpeningSteps(documents_)).lastResult);
}

void DocumentDesk::creditNote(EcrLink& link, Operator& op, DocumentForms& forms)
{
    if (!showStart(op, startCreditNote(documents_, displayLine1_)))
        return;
    forms.creditNote(documents_);
    runSteps(link, op, creditNoteOpeningSteps(documents_));
}

void DocumentDesk::piCf(EcrLink& link, StatusPanels& status, DocumentForms& forms)
{
    forms.piCf(documents_);
    runSteps(link, status, piCfSteps(documents_));
}

} // namespace kelm::technician
