#pragma once

#include "Answer.h"
#include "Sales.h"

#include <QByteArray>

namespace kelm::sim {

// The register's own keyboard and its two-line, 16-character display, as
// the PC drives them with key codes. Digits and the decimal comma build an
// entry; "x" turns it into a quantity; a department key sells it (an entry
// without a comma is in cents); the PLU key sells the PLU of that number;
// subtotal, cash, clear and receipt cancellation do what their captions say.
class Keyboard {
public:
    static constexpr int kDisplayWidth = 16;

    explicit Keyboard(Sales& sales) : sales_(sales) {}

    Answer press(int keyCode);
    QByteArray line1() const;
    QByteArray line2() const;

private:
    void clearEntry();

    Sales& sales_;
    QByteArray entry_;
    qint64 quantity_ = 1000; // thousandths
};

} // namespace kelm::sim
