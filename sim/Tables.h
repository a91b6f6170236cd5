#pragma once

#include "Answer.h"
#include "Record.h"

#include <QByteArray>
#include <QList>
#include <QMap>
#include <array>

namespace kelm::sim {

struct PrintLine {
    int size = 1; // 0..4, as the register's size codes
    QByteArray text;
};

struct Logo {
    int width = 0;
    int height = 0;
    QMap<int, QByteArray> rows; // row number (from 1) -> hexadecimal row
};

struct Department {
    QByteArray description;
    int vatCode = 1; // 1..5
};

struct Plu {
    QByteArray code; // empty: the PLU number is free
    QByteArray description;
    int department = 0;
    QByteArray bonus;
    qint64 price = 0;    // cents
    qint64 maxPrice = 0; // cents
    qint64 stock = 0;    // thousandths
    QByteArray flags;
    qint64 soldQuantity = 0; // thousandths
    qint64 soldAmount = 0;   // cents
};

struct PaymentType {
    QByteArray description;
    QByteArray shortDescription;
    QByteArray flags = "00000000";
    QByteArray rate = "0";
    QByteArray markup = "0";
    bool active = false;
    bool credit = false;
};

// The programmable tables of the register, with its own defaults, and the
// records that write and read them.
class Tables {
public:
    static constexpr int kHeaderLines = 12;
    static constexpr int kFooterLines = 3;
    static constexpr int kVatRates = 5;
    static constexpr int kDepartments = 20;
    static constexpr int kMaxPlu = 9000;
    static constexpr int kPayments = 9;
    // Fiscal limits on how often the header and the VAT rates may change.
    static constexpr int kHeaderChangeLimit = 60;
    static constexpr int kVatChangeLimit = 20;

    Tables();

    Answer writeHeader(const Record& r);       // H/
    Answer writeFooter(const Record& r);       // F/
    Answer writeLogoRow(const Record& r);      // $/
    Answer writeScrollMessage(const Record& r); // o/
    Answer writeSParameters(const Record& r);  // S/
    Answer readSParameters() const;            // s/
    Answer writeVatRates(const Record& r);     // b/
    Answer readVatRates() const;               // e/
    Answer writeDepartment(const Record& r);   // D/
    Answer readDepartment(const Record& r) const; // d/
    Answer writePlu(const Record& r);          // P/
    Answer readPlu(const Record& r) const;     // p/
    Answer writePayment(const Record& r);      // Y/
    Answer readPayment(const Record& r) const; // y/

    QList<PrintLine> header;
    QList<PrintLine> footer;
    std::array<Logo, 2> logos;
    QByteArray scrollMessage;
    QList<QByteArray> sParameters; // the fields of the "s/" answer, in order
    std::array<qint64, kVatRates> vatRates {}; // hundredths of a per cent
    std::array<Department, kDepartments> departments;
    QMap<int, Plu> plus; // only PLUs with a code
    std::array<PaymentType, kPayments> payments;
    int headerChanges = 0;
    int vatChanges = 0;

    // The department n (1..20), or nullptr.
    const Department* department(int n) const;
};

} // namespace kelm::sim
