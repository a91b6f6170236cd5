#include "Keyboard.h"

#include "EcrError.h"
#include "Money.h"

#include <QHash>

namespace kelm::sim {

namespace {

enum class Key { Digit, Point, Department, Times, Plu, Subtotal, Cash, Clear, Cancel, Inert };

struct KeyInfo {
    Key key;
    int value; // the digit, or the department number
};

// The codes of the register's keys. Keys whose work is done on the register
// itself (discounts, operator, drawer, arrows...) are taken without effect.
const QHash<int, KeyInfo>& keyTable()
{
    static const QHash<int, KeyInfo> table = {
        {69, {Key::Digit, 0}}, {22, {Key::Digit, 1}}, {30, {Key::Digit, 2}}, {38, {Key::Digit, 3}},
        {37, {Key::Digit, 4}}, {46, {Key::Digit, 5}}, {54, {Key::Digit, 6}}, {61, {Key::Digit, 7}},
        {62, {Key::Digit, 8}}, {70, {Key::Digit, 9}}, {73, {Key::Point, 0}},
        {5, {Key::Department, 1}}, {6, {Key::Department, 2}}, {4, {Key::Department, 3}},
        {12, {Key::Department, 4}}, {3, {Key::Department, 5}}, {11, {Key::Department, 6}},
        {34, {Key::Times, 0}}, {51, {Key::Plu, 0}}, {102, {Key::Subtotal, 0}}, {90, {Key::Cash, 0}},
        {118, {Key::Clear, 0}}, {28, {Key::Cancel, 0}},
        {60, {Key::Inert, 0}}, {67, {Key::Inert, 0}}, {53, {Key::Inert, 0}}, {26, {Key::Inert, 0}},
        {36, {Key::Inert, 0}}, {43, {Key::Inert, 0}}, {35, {Key::Inert, 0}}, {21, {Key::Inert, 0}},
        {78, {Key::Inert, 0}}, {7, {Key::Inert, 0}}, {65, {Key::Inert, 0}}, {29, {Key::Inert, 0}},
        {9, {Key::Inert, 0}}, {58, {Key::Inert, 0}}, {1, {Key::Inert, 0}}, {114, {Key::Inert, 0}},
        {116, {Key::Inert, 0}}, {107, {Key::Inert, 0}}, {13, {Key::Inert, 0}}, {117, {Key::Inert, 0}},
    };
    return table;
}

// An entry typed with a comma is a decimal amount; without, it is in cents.
std::optional<qint64> entryCents(const QByteArray& entry)
{
    return entry.contains('.') ? parseCents(entry) : parseFixed(entry, 0);
}

} // namespace

void Keyboard::clearEntry()
{
    entry_.clear();
    quantity_ = 1000;
}

Answer Keyboard::press(int keyCode)
{
    const auto it = keyTable().constFind(keyCode);
    if (it == keyTable().constEnd())
        return Answer::refused(err::BadKeyboard);
    Answer result = Answer::ok();
    switch (it->key) {
    case Key::Digit:
        if (entry_.size() < 9)
            entry_ += char('0' + it->value);
        return result;
    case Key::Point:
        if (!entry_.contains('.'))
            entry_ += '.';
        return result;
    case Key::Times: {
        const auto q = parseQuantity(entry_);
        if (!q || *q <= 0)
            return Answer::refused(err::BadQuantity);
        quantity_ = *q;
        entry_.clear();
        return result;
    }
    case Key::Department: {
        const auto price = entryCents(entry_);
        result = price ? sales_.sell(it->value, quantity_, *price, {}) : Answer::refused(err::BadPrice);
        break;
    }
    case Key::Plu: {
        const auto plu = parseFixed(entry_, 0);
        result = plu && *plu <= Tables::kMaxPlu ? sales_.sellPlu(int(*plu), quantity_) : Answer::refused(err::NoPlu);
        break;
    }
    case Key::Subtotal:
        result = sales_.showSubtotal();
        break;
    case Key::Cash: {
        const auto tendered = entry_.isEmpty() ? std::optional<qint64>(0) : entryCents(entry_);
        result = tendered ? sales_.payWith(1, *tendered) : Answer::refused(err::BadPrice);
        break;
    }
    case Key::Cancel:
        result = sales_.cancel();
        break;
    case Key::Clear:
    case Key::Inert:
        break;
    }
    clearEntry();
    return result;
}

QByteArray Keyboard::line1() const
{
    // While nothing is being sold the display reads zero.
    const QByteArray text = !entry_.isEmpty() ? entry_
                          : sales_.receiptOpen() ? formatCents(sales_.subtotal())
                                                 : QByteArray("0.00");
    return text.rightJustified(kDisplayWidth, ' ', true);
}

QByteArray Keyboard::line2() const
{
    return sales_.displayMessage().leftJustified(kDisplayWidth, ' ', true);
}

} // namespace kelm::sim
