#pragma once

#include "LineFile.h"

#include <QByteArray>

namespace kelm::sim {

// The register's printer: 32 characters a line on a paper roll. Text comes
// in the register's code page and is written to the roll file as UTF-8.
class Printer {
public:
    static constexpr int kWidth = 32;

    explicit Printer(LineFile& roll) : roll_(roll) {}

    void line(const QByteArray& ansiText);
    // The gap the cutter leaves between two documents.
    void cut();

    // Label on the left, amount on the right, on one line.
    static QByteArray amountText(const QByteArray& label, qint64 cents);
    static QByteArray centredText(const QByteArray& ansiText);
    static QByteArray rule(char c = '-') { return QByteArray(kWidth, c); }

private:
    LineFile& roll_;
};

} // namespace kelm::sim
