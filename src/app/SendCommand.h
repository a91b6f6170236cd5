#pragma once

#include "app/CommandLine.h"

#include <QTextStream>

namespace kelm {

// `kelmdrev send RECORD…`: each record through the panel command road, one
// line "result<TAB>answer" per record on `out`. Returns the exit status:
// 0 all results 0, 1 any other result, 2 configuration or port unusable.
int RunSendCommand(const CommandLine& commandLine, QTextStream& out, QTextStream& err);

} // namespace kelm
