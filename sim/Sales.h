#pragma once

#include "Answer.h"
#include "Printer.h"
#include "Record.h"
#include "Tables.h"

#include <QByteArray>
#include <QList>
#include <array>

namespace kelm::sim {

// What the register has taken since its last daily closure.
struct DayTotals {
    std::array<qint64, Tables::kVatRates> byVat {};       // cents per VAT code
    std::array<qint64, Tables::kDepartments> byDepartment {};
    qint64 sales = 0;     // fiscal documents closed, net
    int receipts = 0;     // fiscal receipts and invoices closed
    int nonFiscal = 0;    // non-fiscal documents printed
    qint64 voids = 0;     // credit notes
    qint64 returns = 0;   // goods returned inside receipts
    qint64 cancelled = 0; // receipts cancelled before payment
};

// The fiscal side of the register: the document being printed, its lines
// and payments, and the day's totals that closing it adds to.
class Sales {
public:
    enum class Document { None, Receipt, Invoice, CreditNote, NonFiscal };

    Sales(Tables& tables, Printer& printer) : tables_(tables), printer_(printer) {}

    // A fiscal document (receipt, invoice, credit note) is open.
    bool receiptOpen() const;
    qint64 subtotal() const { return subtotal_; }
    // What the customer display shows on its second line.
    const QByteArray& displayMessage() const { return message_; }

    // Records.
    Answer item(const Record& r);          // 3/
    Answer discount(const Record& r);      // 4/
    Answer showSubtotal();                 // U/
    Answer pay(const Record& r);           // 5/
    Answer customer(const Record& r);      // j/
    Answer taxCode(const Record& r);       // '/
    Answer creditNote(const Record& r);    // -/
    Answer text(const Record& r);          // 7/
    Answer feed(const Record& r);          // w/
    Answer endNonFiscal();                 // m/
    Answer inReceipt() const;              // +/
    Answer cashOut(const Record& r);       // 6/

    // The keyboard's way in.
    Answer sell(int department, qint64 quantity, qint64 priceCents, const QByteArray& description);
    Answer sellPlu(int plu, qint64 quantity);
    Answer payWith(int type, qint64 tenderedCents);
    Answer cancel();

    // Reports, closures and the journal copy.
    Answer dailyClosure();                 // x/7/0/0/
    Answer salesReport();                  // x/1/1/1/
    Answer reprintLast(bool allowed);      // )/120/
    Answer totalsAnswer() const;           // t/
    Answer countersAnswer() const;         // 0/
    Answer grandTotalAnswer() const;       // 9/
    Answer departmentsAnswer() const;      // X/

private:
    struct Line {
        qint64 amount;   // signed: returns and discounts are negative
        int vatCode;
        int department;
        char kind;       // 'S', 'R', 'N', 'D' (discount)
    };

    void open(Document kind);
    // What a department or PLU key adds in the document now open.
    char keyedKind() const;
    void print(const QByteArray& text);
    Answer addLine(char kind, int department, qint64 quantity, qint64 priceCents,
                   const QByteArray& description, const QByteArray& second);
    Answer close(qint64 change);
    // Back to no document, after a payment or a cancellation.
    void finish();
    void printTotals(const QByteArray& title, int number);

    Tables& tables_; // sales of a PLU add to its counters
    Printer& printer_;
    Document document_ = Document::None;
    QList<Line> lines_;
    qint64 subtotal_ = 0;
    qint64 paid_ = 0;
    QList<QByteArray> customer_;
    QByteArray taxCode_;
    QList<QByteArray> current_;
    QList<QByteArray> lastDocument_;
    QByteArray message_;
    DayTotals totals_;
    qint64 grandTotal_ = 0;
    int receiptNumber_ = 0;
    int closureNumber_ = 0;
};

} // namespace kelm::sim
