#pragma once

#include "link/EcrLink.h"
#include "link/StatusPanels.h"
#include "technician/ExchangeStep.h"
#include "technician/VirtualDisplay.h"

#include <optional>

namespace kelm::technician {

// What a run of steps leaves behind: the last answer and result, as the
// window keeps them, and the display if one was read.
struct StepOutcome {
    QString lastAnswer;
    qint16 lastResult = 0;
    std::optional<DisplayLines> display;
};

// Runs the steps in order on the line, on the worker: bare transactions,
// panel commands (which report on `status`), pauses and display reads. The
// one executor behind key presses, document completions and the reprint.
StepOutcome runSteps(EcrLink& link, StatusPanels& status, const ExchangeSteps& steps);

} // namespace kelm::technician
