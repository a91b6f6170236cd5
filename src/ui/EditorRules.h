#pragma once

#include "technician/DocumentKeyFilter.h"

class QLineEdit;

namespace kelm::ui {

// A free-text box whose text goes into a record: a typed or pasted "/"
// becomes "\" at once, so that the text can never close a field early.
void makeSlashSafe(QLineEdit* edit);

// A numeric box: only digits stay, whether typed or pasted.
void makeDigitsOnly(QLineEdit* edit);

// A box of a document form: each typed or pasted character goes through the
// box's key rule; the whole text is selected when the box gets the focus.
void makeDocumentBox(QLineEdit* edit, technician::DocumentBox box);

} // namespace kelm::ui
