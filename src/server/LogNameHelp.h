#pragma once

#include <QString>

namespace kelm::server {

// What the button cmdSpiegaLog tells the user about the name of the
// server's log file; its lines are joined by CR.
QString logNameHelpText();

} // namespace kelm::server
