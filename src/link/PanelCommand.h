#pragma once

#include "EcrLink.h"
#include "LinkResult.h"
#include "StatusPanels.h"

#include <QString>

namespace kelm {

// The command road of the interactive panels: one transaction, its failure
// folded into one number and one status-bar text. The outcome stays here for
// the caller to read (LastAnswer is parsed by the table that asked).
class PanelCommand {
public:
    PanelCommand(EcrLink& link, StatusPanels& status) : link_(link), status_(status) {}

    // Runs the record and returns LastResult: 0, an ECR error number (1..255),
    // a link failure (1001..1007) or 9999 for a port never opened.
    qint16 operator()(const QString& record);

    QString LastAnswer;
    qint16 LastResult = 0;
    QString LastErrorText;

private:
    EcrLink& link_;
    StatusPanels& status_;
};

} // namespace kelm
