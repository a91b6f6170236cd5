#pragma once

#include <QtGlobal>

namespace kelm {

// Result of every exchange on the line. ECR error numbers (1..255) share the
// same integer space in the callers' results.
using LinkResult = qint16;

namespace link {
constexpr LinkResult Ok = 0;
constexpr LinkResult NakToFrame = 1001;       // the ECR refused the command frame
constexpr LinkResult CanToEnq = 1002;         // the ECR answered CAN to ENQ
constexpr LinkResult CanToFrame = 1003;       // the ECR answered CAN to the command frame
constexpr LinkResult NoAckToEnq = 1004;       // no ACK to ENQ in 3 rounds
constexpr LinkResult NoStx = 1005;            // no STX within 2000 ms
constexpr LinkResult NoAnswer = 1006;         // no acceptable answer frame in 3 rounds
constexpr LinkResult NoReplyToFrame = 1007;   // no ACK, NAK or CAN to the frame in 3 rounds
constexpr LinkResult PortNotOpen = 9999;      // added by panel commands
} // namespace link

} // namespace kelm
