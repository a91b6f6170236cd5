#pragma once

#include "technician/ExchangeStep.h"
#include "technician/FiscalDocuments.h"

#include <QList>
#include <QString>

#include <optional>

// The virtual keyboard: buttons whose presses reach the register as its own
// key codes, each followed by a fresh look at its display.
namespace kelm::technician {

// One button of the main keyboard cmdECR: its index in the control array,
// caption and key code (kept as the button's Tag).
struct EcrKey {
    int index = 0;
    QString caption;
    int code = 0;
};

// The keys of cmdECR in index order, 0 to 50; indices 28 to 31 do not exist.
const QList<EcrKey>& ecrKeys();
std::optional<EcrKey> ecrKey(int index);

constexpr int kCashKeyIndex = 43;

// One key press: ")/" + code + "/".
QString keyRecord(int code);

// A press of cmdECR(index), in order: the key, the keys that tell apart the
// keys sharing a code, the pauses, the completion of a pending document on
// the cash key (which ends it in `documents`), and a display refresh into
// LblDisp1. An index without a key gives no steps and leaves `documents`
// alone.
ExchangeSteps keyPressSteps(int index, FiscalDocuments& documents);

// A press of the technician keypad cmdVirtKBD, whose Tag is `code`; its
// display refresh goes into txtVirtDSP.
ExchangeSteps keypadPressSteps(int code);

// Switching to the technician tab reads the display once by the panel road,
// with no repeat; txtVirtDSP shows displayLines() of the answer when it is a
// display.
ExchangeSteps technicianTabSteps();

// The button Command1 "Prelievi" carries a whole record instead of a key code.
inline const QString kPrelieviCaption = QStringLiteral("Prelievi");
inline const QString kPrelieviRecord = QStringLiteral("6/1/");
ExchangeSteps prelieviSteps();

} // namespace kelm::technician
