#pragma once

#include <QString>

#include <array>

namespace kelm {

constexpr int kVatRateCount = 5;
constexpr int kVatTableSize = 21;
constexpr qint32 kUnknownVatRate = -1;

// VatRateTable: entry i holds rate i + 1 rounded to a whole number, −1 where
// unknown. The rates read from the register fill entries 0..4; the item-line
// rewrite looks entries up by department number.
using VatRateTable = std::array<qint32, kVatTableSize>;

constexpr VatRateTable unknownVatRates()
{
    VatRateTable table{};
    table.fill(kUnknownVatRate);
    return table;
}

struct VatRatesRead {
    std::array<QString, kVatRateCount> texts; // as the register wrote them
    VatRateTable table = unknownVatRates();
};

// The answer to "e/": from character 10 on, five "/"-closed rates. A rate
// without its "/" takes the rest of the answer; the ones after it are empty.
// Every rate takes the value of the text read for it (0 for an empty one),
// rounded to the nearest whole number, a half to the even one.
VatRatesRead parseVatRates(const QString& answer);

} // namespace kelm
