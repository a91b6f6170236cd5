#include "technician/StepRunner.h"

#include "link/PanelCommand.h"

namespace kelm::technician {

StepOutcome runSteps(EcrLink& link, StatusPanels& status, const ExchangeSteps& steps)
{
    StepOutcome out;
    PanelCommand panel(link, status);
    for (const ExchangeStep& step : steps) {
        switch (step.kind) {
        case ExchangeStep::Kind::ClearAnswer:
            out.lastAnswer.clear();
            break;
        case ExchangeStep::Kind::Transaction:
            out.lastResult = link.EcrTransaction(step.record, out.lastAnswer);
            break;
        case ExchangeStep::Kind::PanelCommand:
            out.lastResult = panel(step.record);
            out.lastAnswer = panel.LastAnswer;
            break;
        case ExchangeStep::Kind::Pause:
            link.clock().sleepMs(step.pauseMs);
            break;
        case ExchangeStep::Kind::RefreshDisplay: {
            int reads = 0;
            do {
                out.lastAnswer.clear();
                out.lastResult = link.EcrTransaction(kDisplayReadRecord, out.lastAnswer);
                ++reads;
            } while (readDisplayAgain(reads, out.lastAnswer));
            if (const auto lines = displayLines(out.lastAnswer))
                out.display = lines;
            break;
        }
        }
    }
    return out;
}

} // namespace kelm::technician
