#pragma once

#include "app/Operator.h"
#include "technician/ExchangeStep.h"
#include "app/Operator.h"

// Reprint of the last receipt from the electronic journal (cmdDGFE(0)). The
// register must have parameter 12 at 42 before it reprints, so it is read
// first and set only when it differs. Every send is a bare transaction:
// nothing here shows a message, whatever fails.
namespace kelm::technician {

inline const QString kReprintCaption = QStringLiteral("Ultimo Scontrino");

Question reprintQuestion();

// On Yes: clear the answer and read parameter 12 ("B/12/").
ExchangeSteps reprintRequestSteps(Operator::Button answer);

// Given the answer to "B/12/": nothing when it is shorter than 12
// characters; else set the parameter unless characters 10 and 11 already
// read "42", and ask for the reprint.
ExchangeSteps reprintStepsAfter(const QString& parameterAnswer);

} // namespace kelm::technician
