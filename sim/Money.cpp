#include "Money.h"

#include <algorithm>

namespace kelm::sim {

std::optional<qint64> parseFixed(QByteArrayView text, int decimals)
{
    qsizetype i = 0;
    const bool negative = !text.isEmpty() && text[0] == '-';
    if (negative)
        ++i;
    qint64 whole = 0;
    qint64 fraction = 0;
    int digits = 0;
    int fractionDigits = -1; // -1: no point seen yet
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '.' && fractionDigits < 0) {
            fractionDigits = 0;
            continue;
        }
        if (c < '0' || c > '9')
            return std::nullopt;
        ++digits;
        if (digits > 12)
            return std::nullopt; // no register holds amounts of that size
        if (fractionDigits < 0) {
            whole = whole * 10 + (c - '0');
        } else {
            if (++fractionDigits > decimals)
                return std::nullopt;
            fraction = fraction * 10 + (c - '0');
        }
    }
    if (digits == 0)
        return std::nullopt;
    for (int d = std::max(fractionDigits, 0); d < decimals; ++d)
        fraction *= 10;
    qint64 scale = 1;
    for (int d = 0; d < decimals; ++d)
        scale *= 10;
    const qint64 value = whole * scale + fraction;
    return negative ? -value : value;
}

QByteArray formatCents(qint64 cents)
{
    const qint64 magnitude = cents < 0 ? -cents : cents;
    QByteArray text = QByteArray::number(magnitude / 100) + '.'
                      + QByteArray::number(magnitude % 100).rightJustified(2, '0');
    return cents < 0 ? '-' + text : text;
}

QByteArray formatQuantity(qint64 thousandths)
{
    QByteArray text = QByteArray::number(thousandths / 1000);
    const qint64 fraction = thousandths % 1000;
    if (fraction != 0) {
        QByteArray digits = QByteArray::number(fraction < 0 ? -fraction : fraction).rightJustified(3, '0');
        while (digits.endsWith('0'))
            digits.chop(1);
        text += '.' + digits;
    }
    return text;
}

qint64 lineAmount(qint64 quantity, qint64 priceCents)
{
    const qint64 product = quantity * priceCents;
    return product >= 0 ? (product + 500) / 1000 : -((-product + 500) / 1000);
}

} // namespace kelm::sim
