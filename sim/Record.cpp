#include "Record.h"

namespace kelm::sim {

Record Record::parse(const QByteArray& raw)
{
    Record r;
    r.raw = raw;
    if (raw.isEmpty())
        return r;
    r.code = raw[0];
    r.wellFormed = raw.size() >= 2 && raw[1] == '/' && raw.endsWith('/');
    if (!r.wellFormed)
        return r;
    const QByteArray body = raw.mid(2); // after "c/", up to the closing "/"
    qsizetype start = 0;
    for (qsizetype i = 0; i < body.size(); ++i) {
        if (body[i] == '/') {
            r.fields.append(body.mid(start, i - start));
            start = i + 1;
        }
    }
    return r;
}

bool allDigits(const QByteArray& field, qsizetype minLength, qsizetype maxLength)
{
    if (field.size() < minLength || field.size() > maxLength)
        return false;
    for (char c : field)
        if (c < '0' || c > '9')
            return false;
    return true;
}

std::optional<int> fieldNumber(const QByteArray& field, int min, int max)
{
    if (!allDigits(field, 1, 9))
        return std::nullopt;
    const int value = field.toInt();
    if (value < min || value > max)
        return std::nullopt;
    return value;
}

} // namespace kelm::sim
