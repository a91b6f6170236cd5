#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

// The frame shape shared by both ends of the line: control bytes, the
// two-digit checksum and the command frame around a record.
namespace kelm::frame {

constexpr quint8 STX = 0x02;
constexpr quint8 ETX = 0x03;
constexpr quint8 ENQ = 0x05;
constexpr quint8 ACK = 0x06;
constexpr quint8 NAK = 0x15;
constexpr quint8 CAN = 0x18;

// Byte sum modulo 256, then modulo 100: "a/" gives 44, "x/7/0/0/" gives 3.
quint8 checksum(QByteArrayView record);

// The checksum as two decimal digits with a leading zero.
QByteArray checksumDigits(QByteArrayView record);

// STX + record + checksum digits + ETX.
QByteArray commandFrame(QByteArrayView record);

} // namespace kelm::frame
