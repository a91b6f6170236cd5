#pragma once

#include <QString>

// What the receipt server reads from the ECR's answers.
namespace kelm::server {

// The two hexadecimal status digits at the start of an answer as a number,
// read digit by digit (a lower-case letter counts as 0): the ECR's error
// number, 0 when the command was accepted. This is also the value of the
// error-state query "?/".
int answerStatus(const QString& answer);

// The paper-out flag after an answer: bit 2 of the state number in
// characters 4-5. A state number above 7 (or below 0) leaves the flag as it
// was after the previous answer.
bool paperOutAfter(const QString& answer, bool paperOutBefore);

// The value of the state-byte query "s/": the answer's status, or when that
// is 0, the digit in the 23rd character (0 when there is none).
int statusByteFromAnswer(const QString& answer);

} // namespace kelm::server
