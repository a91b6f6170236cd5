#pragma once

#include <QChar>

#include <optional>

// Which typed characters the boxes of the document forms take.
namespace kelm::technician {

enum class DocumentBox {
    FreeText,    // TxtPiCf, TxtPIva, TxtRiga: anything, a "/" typed becomes "\"
    Pratica,     // TxtPratica: digits, hyphen, blank and backspace only
    Riferimento, // TxtRifer: anything but "/"
};

// The character that `box` takes for the typed `key` (backspace is "\b"),
// or none when the key is swallowed.
std::optional<QChar> acceptedKey(DocumentBox box, QChar key);

} // namespace kelm::technician
