#include "technician/EndOfDay.h"

namespace kelm::technician {

Question dailyClosureQuestion()
{
    return {QStringLiteral("Si conferma di voler fare la chiusura giornaliera?"), QStringLiteral("ATTENZIONE"),
            Operator::Icon::Information, {Operator::Button::Ok, Operator::Button::Cancel},
            Operator::Button::Cancel};
}

ExchangeSteps dailyClosureSteps(Operator::Button answer)
{
    if (answer != Operator::Button::Ok)
        return {};
    return {ExchangeStep::panelCommand(kDailyClosureRecord)};
}

ExchangeSteps salesTotalsSteps()
{
    return {ExchangeStep::panelCommand(kSalesTotalsRecord)};
}

} // namespace kelm::technician
