// The records around the sales: customer and tax code of the document,
// credit notes, text lines and non-fiscal documents, cash out.
#include "Sales.h"

#include "EcrError.h"

namespace kelm::sim {

Answer Sales::customer(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 10, 10))
        return *bad;
    customer_.clear();
    for (int i = 1; i <= 9; ++i)
        if (!r.field(i).trimmed().isEmpty())
            customer_.append(r.field(i).trimmed());
    return Answer::ok();
}

Answer Sales::taxCode(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 3, 3))
        return *bad;
    const QByteArray vat = r.field(2);
    const QByteArray fiscal = r.field(3);
    if ((r.field(1) != "1" && r.field(1) != "2") || vat.size() != 11 || !allDigits(vat) || fiscal.size() != 16)
        return Answer::refused(err::CheckFields);
    taxCode_ = r.field(1) == "1" ? vat : fiscal;
    return Answer::ok();
}

Answer Sales::creditNote(const Record& r)
{
    if (r.count() < 1 || r.field(1).trimmed().isEmpty())
        return Answer::refused(err::FieldsMissing);
    if (document_ != Document::None)
        return Answer::refused(err::ReceiptIsOpen);
    open(Document::CreditNote);
    print("RIF. " + r.field(1));
    message_ = "NOTA DI CREDITO";
    return Answer::ok();
}

Answer Sales::text(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 3, 3))
        return *bad;
    const QByteArray where = r.field(1);
    if (where == "0") {
        message_ = r.field(3).left(16);
        return Answer::ok();
    }
    if (where != "1")
        return Answer::refused(err::CheckFields);
    if (document_ == Document::None)
        open(Document::NonFiscal);
    print(r.field(3));
    return Answer::ok();
}

Answer Sales::feed(const Record& r)
{
    const auto lines = fieldNumber(r.field(1), 0, 9);
    if (!lines)
        return Answer::refused(err::CheckFields);
    for (int i = 0; i < *lines; ++i)
        print(QByteArray());
    return Answer::ok();
}

Answer Sales::endNonFiscal()
{
    if (document_ != Document::NonFiscal)
        return Answer::ok();
    print(Printer::rule());
    printer_.cut();
    ++totals_.nonFiscal;
    document_ = Document::None;
    return Answer::ok();
}

Answer Sales::inReceipt() const
{
    return receiptOpen() ? Answer::ok() : Answer::refused(err::NoReceipt);
}

Answer Sales::cashOut(const Record& r)
{
    if (document_ != Document::None)
        return Answer::refused(err::ReceiptIsOpen);
    if (!fieldNumber(r.field(1), 1, Tables::kPayments))
        return Answer::refused(err::NoPayment);
    open(Document::NonFiscal);
    print("PRELIEVO");
    return endNonFiscal();
}

} // namespace kelm::sim
