#pragma once

#include "app/Operator.h"
#include "link/EcrLink.h"
#include "technician/FiscalDocuments.h"
#include "technician/StepRunner.h"

namespace kelm::technician {

// The three document forms, shown to the person when the press that opens
// one has its turn on the line. Each fills `documents` as its buttons say;
// a form closed in any other way, or one that cannot be shown, cancels.
class DocumentForms {
public:
    virtual ~DocumentForms() = default;
    virtual void customer(FiscalDocuments& documents) = 0;   // FrmCliente
    virtual void creditNote(FiscalDocuments& documents) = 0; // FrmNCred
    virtual void piCf(FiscalDocuments& documents) = 0;       // FrmPiCf
};

// The document state and the presses of the keyboard page that read or
// change it. It lives on the line's worker and every call runs there, one
// press at a time in the order they were made: each press decides what it
// sends when its turn comes, so an answer that comes late can never leave
// one customer's records to the next invoice, nor a cash key go out without
// the records of the document it closes.
class DocumentDesk {
public:
    // cmdECR(index); the cash key completes and ends a pending document.
    StepOutcome keyPress(EcrLink& link, StatusPanels& status, int index);
    // CmdFat, CmdNotaCredito, CmdCfPi.
    void invoice(EcrLink& link, Operator& op, DocumentForms& forms);
    void creditNote(EcrLink& link, Operator& op, DocumentForms& forms);
    void piCf(EcrLink& link, StatusPanels& status, DocumentForms& forms);

    const FiscalDocuments& documents() const { return documents_; }

private:
    bool showStart(Operator& op, const DocumentStart& start) const;

    FiscalDocuments documents_;
    QString displayLine1_; // the keyboard display's first line, as last read
};

} // namespace kelm::technician
