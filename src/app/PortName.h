#pragma once

#include "app/Configuration.h"

namespace kelm {

// The name handed to the system for the configured line. A device path in
// Dispositivo wins on any platform. Otherwise "Com" + Porta: on Windows as it
// stands; elsewhere "ComN" is the N-th serial port, /dev/ttyS(N−1). A name
// that is no such thing ("Com" for an empty Porta) is passed on and fails to
// open, which is how the user learns of it.
QString SystemPortName(const ConfigPC& config);

// Dispositivo = "virtual" (any case) selects the built-in virtual register.
bool IsVirtualDevice(const ConfigPC& config);

} // namespace kelm
