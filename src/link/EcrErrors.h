#pragma once

#include <QChar>
#include <QString>

namespace kelm {

// What the receipt server does about an ECR error number.
namespace errclass {
constexpr qint16 Unknown = 0;   // not in the table, or 0
constexpr qint16 Busy = 1;      // send the command again
constexpr qint16 Refused = 2;   // a command or data error: ignore it
constexpr qint16 Paper = 4;     // paper out or cover open: re-check, then repeat
constexpr qint16 Fatal = 9;     // a fault of the register: stop
} // namespace errclass

// Status text (hexadecimal, either case) → the register's message and the
// error's class. Unknown numbers, 0 and an empty status give class 0 and no
// message.
qint16 EcrErrorMessage(const QString& status, QString& message);

// "Comando '" + command + "' - Errore N. " + number. The status is read digit
// by digit with HexDigitValue (so lower-case letters count as 0) and is
// replaced by the number in decimal.
QString CommandErrorText(QString& status, const QString& command);

// "0".."9" → 0..9, "A".."F" → 10..15, anything else (lower case too) → 0.
qint16 HexDigitValue(QChar digit);

} // namespace kelm
