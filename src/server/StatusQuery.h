#pragma once

#include "app/Operator.h"
#include "link/EcrLink.h"

namespace kelm::server {

// "s/": the register's status byte (its error number, or when that is 0 the
// state digit of the answer), or the link's result code when the exchange
// failed.
int QueryStatusByte(EcrLink& link);

// "?/": the error the register is in (0 for none), or the link's result
// code. An error is also shown to the operator in the register's words.
int QueryErrorState(EcrLink& link, Operator& op);

} // namespace kelm::server
