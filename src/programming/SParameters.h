#pragma once

#include "programming/Messages.h"

#include <QString>

#include <array>

// The S-parameters, the register's general settings, in one "S" record;
// read back with "s/", or reset on the PC to a fixed default answer.
namespace kelm::programming {

constexpr qsizetype kSFlagCount = 30;   // combos filled by the answer
constexpr qsizetype kSFlagsSent = 26;   // of which the record sends these
constexpr qsizetype kSMaximums = 7;
constexpr qsizetype kBarcodeSettings = 9;
constexpr int kNoFlagSelection = -1;

struct SParameters {
    std::array<int, kSFlagCount> flags{}; // combo list indexes, -1 for none
    std::array<QString, kSMaximums> maximums;
    QString registerNumber;                // sent as at most 3 characters
    QString registerName;                  // at most 8
    std::array<QString, kBarcodeSettings> barcodeWeight;    // at most 2 each
    std::array<QString, kBarcodeSettings> barcodePriceLead; // at most 2 each
    QString printerIntensity;              // at most 3
    QString payRateCode;                   // at most 2

    friend bool operator==(const SParameters&, const SParameters&) = default;
};

// S/flags/maximums/number/name/weights/price leads/intensity/pay rate/ —
// flags 0..25 as one string of the last digit of each list index ("0" for no
// selection); every text trimmed, of a longer one its last N characters.
QString sParametersRecord(const SParameters& parameters);

// "s/".
QString sParametersReadRecord();

// An "s/" answer into the editors: from character 10, at most 30 fields.
// Character i + 1 of the first field is flag i's list index (a missing or
// non-digit character reads as 0), so all 30 flags get a value; then the
// maximums as whole numbers, register number and name, the bar-code
// settings, intensity and pay-rate code, as sent. Missing fields are empty
// (a missing maximum reads 0).
SParameters parseSParameters(const QString& answer);

// The answer that the reset feeds to the parser, as if the register had
// sent it; its last value "76" is never sent back.
const QString& defaultSParametersAnswer();

// "Ripristino tutti i valori a default ", Yes or No, No preselected.
Question resetSParametersQuestion();
// "Parametri S ripristinati a default ma non salvati."
Notice sParametersResetNotice();

} // namespace kelm::programming
