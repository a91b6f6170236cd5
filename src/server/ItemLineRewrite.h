#pragma once

#include "server/DescriptionWidths.h"
#include "app/VatRates.h"

#include <QString>

// The receipt server's rewrite of item lines ("3/kind/description/second
// description/quantity/price/department/VAT code/") before they are sent.
namespace kelm::server {

// A width of 0 or less (an unknown model, say) means this many characters.
constexpr int kDefaultDescriptionWidth = 10;

struct ItemLineOptions {
    bool wrapDescription = false; // WrapDescription
    bool alIvaAuto = false;       // AlIvaAuto
    DescriptionWidths widths;     // of the configured model
    VatRateTable vatRates = unknownVatRates();
};

struct ItemLineRewrite {
    QString line;       // the line to send
    QString logMessage; // empty, or why the VAT code was left as it came
};

// WrapDescription: both descriptions are trimmed; a first description longer
// than its width goes on at the front of the second one (joined by "-"),
// which is then cut to its own width.
// AlIvaAuto: the VAT code becomes the one the ECR has for the department.
// A department that is not 1..21, or whose VAT code is not known, leaves
// the VAT code as it came and says so in `logMessage`.
// A line too short to hold the fields a step needs is left alone by that
// step; lines other than item lines come back unchanged.
ItemLineRewrite rewriteItemLine(const QString& line, const ItemLineOptions& options);

} // namespace kelm::server
