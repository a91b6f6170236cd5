#pragma once

#include "link/EcrLink.h"

namespace kelm::server {

// "s/": the register's status byte (its error number, or when that is 0 the
// state digit of the answer), or the link's result code when the exchange
// failed.
int QueryStatusByte(EcrLink& link);

} // namespace kelm::server
