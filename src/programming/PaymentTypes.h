#pragma once

#include <QString>

#include <array>

// The 9 payment types: one "Y/" record each to write, one "y/" each to read.
namespace kelm::programming {

constexpr int kPaymentTypeCount = 9;
constexpr qsizetype kPaymentFlags = 8;

// The behaviour flags in the order of the flag string: change given, amount
// required, subtotal required, cash in, cash out, comments, positive only,
// decimals.
using PaymentFlags = std::array<bool, kPaymentFlags>;

// One payment type's editors.
struct PaymentType {
    QString description;      // sent as at most 8 characters
    QString shortDescription; // at most 4
    bool active = false;
    bool credit = false;
    PaymentFlags flags{};
    QString exchangeRate;     // at most 4
    QString markUp;           // at most 4
};

// Y/number/description/short/flags/rate/mark-up//active/credit/ — each text
// trimmed, of a longer one its last N characters; check boxes as "0"/"1".
QString paymentTypeRecord(int number, const PaymentType& payment);

// "y/" number "/".
QString paymentTypeReadRecord(int number);

// What a "y/" answer puts into the editors.
struct PaymentTypeRead {
    QString description;
    QString shortDescription;
    PaymentFlags flags{};
    QString exchangeRate;
    QString change;
    QString markUp;

    friend bool operator==(const PaymentTypeRead&, const PaymentTypeRead&) = default;
};

// Fields from character 10, in the answer's own order: description, short
// description, flag string (character k ticks flag k when it is "1"),
// exchange rate, three ignored fields, change, mark-up; the rest is ignored.
// Texts as the register sent them.
PaymentTypeRead parsePaymentType(const QString& answer);

} // namespace kelm::programming
