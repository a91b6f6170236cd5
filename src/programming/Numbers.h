#pragma once

#include <QString>

// Numbers typed into the tables' editors, rewritten in the one form the
// register reads: the value of the text's longest leading part that reads as
// a decimal number ("." as the point; 0 if none), written in its shortest
// form. The digits are moved as text, never through a binary fraction, so a
// long number keeps every digit.
namespace kelm::programming {

// "1.50" → "1.5", "007" → "7", ".5" → "0.5", "3,5" → "3", "abc" → "0",
// "-0.0" → "0".
QString decimalForm(const QString& text);

// The whole part only: "999999.99" → "999999", "0.00" → "0", "-0.5" → "0".
QString wholeNumberForm(const QString& text);

} // namespace kelm::programming
