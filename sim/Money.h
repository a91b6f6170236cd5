#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QtGlobal>

#include <optional>

// Amounts in cents and quantities in thousandths: the register never rounds
// a price the PC sent, and every total it prints adds up to the cent.
namespace kelm::sim {

// "5.26", "80", "0.5", "-1.5": at most `decimals` digits after the point.
// Anything else (blanks, a comma, letters, too many decimals) is nullopt.
std::optional<qint64> parseFixed(QByteArrayView text, int decimals);

inline std::optional<qint64> parseCents(QByteArrayView text) { return parseFixed(text, 2); }
inline std::optional<qint64> parseQuantity(QByteArrayView text) { return parseFixed(text, 3); }

// 526 -> "5.26", -5 -> "-0.05".
QByteArray formatCents(qint64 cents);

// 1500 -> "1.5", 2000 -> "2": the shortest form a person would write.
QByteArray formatQuantity(qint64 thousandths);

// Price times quantity, rounded half away from zero to the cent.
qint64 lineAmount(qint64 quantity, qint64 priceCents);

} // namespace kelm::sim
