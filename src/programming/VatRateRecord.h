#pragma once

#include "app/VatRates.h"

#include <QString>

#include <array>

// The five VAT rates go out in one "b/" record; they come back with "e/",
// read by kelm::parseVatRates.
namespace kelm::programming {

// "b/" and each rate's trimmed text closed by "/": b/4.00/10.00/22.00/0.00/0.00/
QString vatRatesRecord(const std::array<QString, kVatRateCount>& rates);

} // namespace kelm::programming
