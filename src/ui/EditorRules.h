#pragma once

class QLineEdit;

namespace kelm::ui {

// A free-text box whose text goes into a record: a typed or pasted "/"
// becomes "\" at once, so that the text can never close a field early.
void makeSlashSafe(QLineEdit* edit);

// A numeric box: only digits stay, whether typed or pasted.
void makeDigitsOnly(QLineEdit* edit);

} // namespace kelm::ui
