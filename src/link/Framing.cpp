#include "Framing.h"

namespace kelm::frame {

quint8 checksum(QByteArrayView record)
{
    quint8 sum = 0; // wraps modulo 256 by itself
    for (char c : record)
        sum = static_cast<quint8>(sum + static_cast<quint8>(c));
    return static_cast<quint8>(sum % 100);
}

QByteArray checksumDigits(QByteArrayView record)
{
    const quint8 value = checksum(record);
    QByteArray digits(2, '0');
    digits[0] = static_cast<char>('0' + value / 10);
    digits[1] = static_cast<char>('0' + value % 10);
    return digits;
}

QByteArray commandFrame(QByteArrayView record)
{
    QByteArray bytes;
    bytes.reserve(record.size() + 4);
    bytes.append(static_cast<char>(STX));
    bytes.append(record);
    bytes.append(checksumDigits(record));
    bytes.append(static_cast<char>(ETX));
    return bytes;
}

} // namespace kelm::frame
