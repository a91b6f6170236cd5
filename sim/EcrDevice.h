#pragma once

#include "Answer.h"
#include "Faults.h"
#include "Keyboard.h"
#include "LineFile.h"
#include "Printer.h"
#include "Record.h"
#include "Sales.h"
#include "Tables.h"

#include <QByteArray>
#include <QMap>

namespace kelm::sim {

// What "a/" tells about the register.
struct Identity {
    QByteArray serialNumber = "99KDV000001";
    QByteArray number = "1";
    QByteArray field = "KD";
    QByteArray country = "IT";
    QByteArray firmware = "1.00";
};

// The register behind the line: record in, answer text out. It owns the
// tables, the fiscal side, the keyboard and display, the journal of every
// record it carried out, and the printer.
class EcrDevice {
public:
    EcrDevice(Faults& faults, Identity identity, LineFile& journal, LineFile& roll);

    // Carries out one record (as received, without frame) and returns the
    // whole answer text. Records refused are not written to the journal.
    QByteArray execute(const QByteArray& record, qint64 nowMs);

    const Tables& tables() const { return tables_; }
    const Sales& sales() const { return sales_; }
    const Keyboard& keyboard() const { return keyboard_; }
    int parameter(int n) const { return parameters_.value(n, 0); }

private:
    Answer dispatch(const Record& r);
    Answer identity() const;
    Answer report(const Record& r);
    Answer readParameter(const Record& r) const;
    Answer writeParameter(const Record& r);
    Answer key(const Record& r);
    Answer display() const;
    // The error the register is in, if any: what "?/" reports.
    int pendingError(qint64 nowMs) const;

    Faults& faults_;
    Identity identity_;
    LineFile& journal_;
    Printer printer_;
    Tables tables_;
    Sales sales_;
    Keyboard keyboard_;
    QMap<int, int> parameters_;
    qint64 nowMs_ = 0;
};

} // namespace kelm::sim
