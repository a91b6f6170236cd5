#include "technician/LastReceiptReprint.h"

namespace kelm::technician {

namespace {

const QString kReadParameterRecord = QStringLiteral("B/12/");
const QString kSetParameterRecord = QStringLiteral("G/12/1/1/42/");
const QString kReprintRecord = QStringLiteral(")/120/");
const QString kReprintParameterValue = QStringLiteral("42");
constexpr qsizetype kParameterAnswerLength = 12;
constexpr qsizetype kParameterValueStart = 9; // character 10

} // namespace

Question reprintQuestion()
{
    return {QStringLiteral("Vuoi ristampare\rl'ultimo scontrino?"), QStringLiteral("Attenzione"),
            Operator::Icon::Information, {Operator::Button::Yes, Operator::Button::No},
            Operator::Button::Yes, Operator::Button::Yes};
}

ExchangeSteps reprintRequestSteps(Operator::Button answer)
{
    if (answer != Operator::Button::Yes)
        return {};
    return {ExchangeStep::clearAnswer(), ExchangeStep::transaction(kReadParameterRecord)};
}

ExchangeSteps reprintStepsAfter(const QString& parameterAnswer)
{
    if (parameterAnswer.size() < kParameterAnswerLength)
        return {};
    ExchangeSteps steps;
    if (parameterAnswer.mid(kParameterValueStart, kReprintParameterValue.size()) != kReprintParameterValue)
        steps << ExchangeStep::transaction(kSetParameterRecord) << ExchangeStep::pause(kKeyPauseMs);
    steps << ExchangeStep::transaction(kReprintRecord);
    return steps;
}

} // namespace kelm::technician
