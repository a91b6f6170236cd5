#pragma once

#include "app/Operator.h"
#include "technician/ExchangeStep.h"

// The end-of-day buttons: the daily closure and the sales totals report,
// both by the panel road, which reports the register's errors itself.
namespace kelm::technician {

inline const QString kDailyClosureCaption = QStringLiteral("Chiusura Giornaliera");
inline const QString kSalesTotalsCaption = QStringLiteral("Totali Venduto");
inline const QString kDailyClosureRecord = QStringLiteral("x/7/0/0/");
inline const QString kSalesTotalsRecord = QStringLiteral("x/1/1/1/");

// Closing the day cannot be undone, so Enter on the question cancels it.
Question dailyClosureQuestion();

// The closure on the given answer to its question: nothing unless OK.
ExchangeSteps dailyClosureSteps(Operator::Button answer);

// The sales totals are printed at once, with no question.
ExchangeSteps salesTotalsSteps();

} // namespace kelm::technician
