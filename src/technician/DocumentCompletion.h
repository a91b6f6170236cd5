#pragma once

#include "technician/ExchangeStep.h"
#include "technician/FiscalDocuments.h"

// The cash key of the virtual keyboard completes a pending invoice or credit
// note and ends it.
namespace kelm::technician {

// The cash key goes to the register by its usual key press unless an
// invoice customer is pending: the invoice is paid by its own record.
bool cashKeySentAsKey(const FiscalDocuments& documents);

// What follows the cash key's own press, `cashKeyCode` being its code;
// afterwards neither an invoice customer nor a credit note is pending. A
// credit note thus sends the cash key twice, by design.
ExchangeSteps completeDocument(FiscalDocuments& documents, int cashKeyCode);

} // namespace kelm::technician
