#include "VatRates.h"

#include <QRegularExpression>

#include <cmath>

namespace kelm {

namespace {

constexpr qsizetype kAnswerHeader = 9;

// The number at the start of a text, "." as the decimal point; 0 for none.
double leadingNumber(const QString& text)
{
    static const QRegularExpression number(QStringLiteral(R"(^\s*[-+]?(\d+\.?\d*|\.\d+))"));
    const auto m = number.match(text);
    return m.hasMatch() ? m.captured(0).trimmed().toDouble() : 0.0;
}

} // namespace

VatRatesRead parseVatRates(const QString& answer)
{
    VatRatesRead read;
    qsizetype pos = kAnswerHeader;
    for (int i = 0; i < kVatRateCount; ++i) {
        const qsizetype slash = answer.indexOf(u'/', pos);
        const qsizetype end = slash < 0 ? answer.size() : slash;
        read.texts[static_cast<size_t>(i)] = answer.mid(pos, end - pos);
        const double value = std::nearbyint(leadingNumber(read.texts[static_cast<size_t>(i)]));
        read.table[static_cast<size_t>(i)] = std::abs(value) < 2e9 ? static_cast<qint32>(value) : 0;
        pos = end + 1;
    }
    return read;
}

} // namespace kelm
