#include "Sales.h"

#include "EcrError.h"
#include "Money.h"

namespace kelm::sim {

namespace {

QByteArray displayAmount(const QByteArray& label, qint64 cents)
{
    const QByteArray value = formatCents(cents);
    return label.leftJustified(16 - value.size(), ' ', true) + value;
}

} // namespace

bool Sales::receiptOpen() const
{
    return document_ != Document::None && document_ != Document::NonFiscal;
}

void Sales::print(const QByteArray& text)
{
    printer_.line(text);
    current_.append(text.left(Printer::kWidth));
}

void Sales::open(Document kind)
{
    document_ = kind;
    lines_.clear();
    subtotal_ = 0;
    paid_ = 0;
    current_.clear();
    for (const PrintLine& h : tables_.header)
        if (!h.text.trimmed().isEmpty())
            print(Printer::centredText(h.text));
    print(Printer::rule());
    if (kind == Document::Invoice)
        print(Printer::centredText("FATTURA"));
    else if (kind == Document::CreditNote)
        print(Printer::centredText("NOTA DI CREDITO"));
    else if (kind == Document::NonFiscal)
        print(Printer::centredText("DOCUMENTO NON FISCALE"));
}

Answer Sales::item(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 7, 7))
        return *bad;
    const QByteArray kind = r.field(1);
    if (kind == "F") {
        if (document_ != Document::None)
            return Answer::refused(err::ReceiptIsOpen);
        open(Document::Invoice);
        message_ = "FATTURA";
        return Answer::ok();
    }
    if (kind != "S" && kind != "R" && kind != "N")
        return Answer::refused(err::CheckFields);
    const auto quantity = parseQuantity(r.field(4));
    const auto price = parseCents(r.field(5));
    const auto department = fieldNumber(r.field(6), 1, Tables::kDepartments);
    if (!quantity || *quantity <= 0)
        return Answer::refused(err::BadQuantity);
    if (!price || *price < 0)
        return Answer::refused(err::BadPrice);
    if (!department)
        return Answer::refused(err::NoDepartment);
    if (!allDigits(r.field(7)))
        return Answer::refused(err::BadVat);
    return addLine(kind[0], *department, *quantity, *price, r.field(2), r.field(3));
}

Answer Sales::sell(int department, qint64 quantity, qint64 priceCents, const QByteArray& description)
{
    if (!tables_.department(department))
        return Answer::refused(err::NoDepartment);
    return addLine(keyedKind(), department, quantity, priceCents, description, {});
}

Answer Sales::sellPlu(int plu, qint64 quantity)
{
    const auto it = tables_.plus.find(plu);
    if (it == tables_.plus.end())
        return Answer::refused(err::NoPlu);
    const Answer a = addLine(keyedKind(), it->department, quantity, it->price, it->description, {});
    if (a.accepted()) {
        it->soldQuantity += quantity;
        it->soldAmount += lineAmount(quantity, it->price);
    }
    return a;
}

char Sales::keyedKind() const
{
    // A key inside a credit note gives back what it would otherwise sell.
    return document_ == Document::CreditNote ? 'N' : 'S';
}

Answer Sales::addLine(char kind, int department, qint64 quantity, qint64 priceCents,
                      const QByteArray& description, const QByteArray& second)
{
    // A credit note holds only its own lines, and its lines need one.
    const bool creditNote = document_ == Document::CreditNote;
    if ((kind == 'N') != creditNote || document_ == Document::NonFiscal)
        return Answer::refused(document_ == Document::NonFiscal ? err::ReceiptIsOpen : err::InvalidSale);
    const qint64 amount = lineAmount(quantity, priceCents);
    if (amount == 0)
        return Answer::refused(err::ZeroSale);
    const qint64 signedAmount = kind == 'R' ? -amount : amount;
    if (subtotal_ + signedAmount < 0)
        return Answer::refused(err::NegativeTotal);
    if (document_ == Document::None)
        open(Document::Receipt);
    const QByteArray text = description.trimmed().isEmpty() ? tables_.department(department)->description
                                                            : description;
    if (quantity != 1000)
        print(formatQuantity(quantity) + " x " + formatCents(priceCents));
    print(Printer::amountText((kind == 'R' ? "RESO " : "") + text, signedAmount));
    if (!second.trimmed().isEmpty())
        print(second);
    lines_.append({signedAmount, tables_.department(department)->vatCode, department, kind});
    subtotal_ += signedAmount;
    message_ = displayAmount(text, signedAmount);
    return Answer::ok();
}

Answer Sales::discount(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 1, 7))
        return *bad;
    if (!receiptOpen())
        return Answer::refused(err::NoReceipt);
    const auto amount = parseCents(r.field(1));
    if (!amount || *amount <= 0)
        return Answer::refused(err::BadPrice);
    if (lines_.isEmpty())
        return Answer::refused(err::NegativeTotal);
    // The discount lowers the taxable amount of the last line's VAT rate,
    // which may not go below zero: a negative VAT total cannot be printed.
    const int vatCode = lines_.last().vatCode;
    qint64 taxable = 0;
    for (const Line& line : lines_)
        if (line.vatCode == vatCode)
            taxable += line.amount;
    if (*amount > taxable)
        return Answer::refused(err::NegativeTotal);
    lines_.append({-*amount, vatCode, lines_.last().department, 'D'});
    subtotal_ -= *amount;
    print(Printer::amountText("SCONTO", -*amount));
    message_ = displayAmount("SCONTO", -*amount);
    return Answer::ok();
}

Answer Sales::showSubtotal()
{
    if (!receiptOpen())
        return Answer::refused(err::NoReceipt);
    print(Printer::amountText("SUBTOTALE", subtotal_));
    message_ = displayAmount("SUBTOTALE", subtotal_);
    return Answer::ok();
}

Answer Sales::pay(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 2, 7))
        return *bad;
    const auto type = fieldNumber(r.field(1), 1, Tables::kPayments);
    if (!type)
        return Answer::refused(err::NoPayment);
    const auto tendered = r.field(2).isEmpty() ? std::optional<qint64>(0) : parseCents(r.field(2));
    if (!tendered || *tendered < 0)
        return Answer::refused(err::BadPrice);
    return payWith(*type, *tendered);
}

Answer Sales::payWith(int type, qint64 tenderedCents)
{
    if (!receiptOpen())
        return Answer::refused(err::NoReceipt);
    if (type < 1 || type > Tables::kPayments)
        return Answer::refused(err::NoPayment);
    const PaymentType& payment = tables_.payments[type - 1];
    if (!payment.active)
        return Answer::refused(err::PaymentInvalid);
    if (lines_.isEmpty())
        return Answer::refused(err::InvalidSale);
    const qint64 due = subtotal_ - paid_;
    // Nothing tendered means the exact amount due.
    const qint64 tendered = tenderedCents == 0 ? due : tenderedCents;
    const bool givesChange = payment.flags.startsWith('1');
    if (tendered > due && !givesChange)
        return Answer::refused(err::PaymentInvalid);
    if (paid_ == 0)
        print(Printer::amountText("TOTALE EURO", subtotal_));
    print(Printer::amountText(payment.description, tendered));
    paid_ += tendered;
    if (paid_ < subtotal_) {
        message_ = displayAmount("DA PAGARE", subtotal_ - paid_);
        return Answer::ok();
    }
    return close(paid_ - subtotal_);
}

Answer Sales::close(qint64 change)
{
    if (change > 0)
        print(Printer::amountText("RESTO", change));
    if (!taxCode_.isEmpty())
        print("C.F./P.IVA " + taxCode_);
    for (const QByteArray& c : customer_)
        print(c);
    print(Printer::rule());
    for (const PrintLine& f : tables_.footer)
        if (!f.text.trimmed().isEmpty())
            print(Printer::centredText(f.text));
    const bool creditNote = document_ == Document::CreditNote;
    if (creditNote) {
        totals_.voids += subtotal_;
    } else {
        for (const Line& l : lines_) {
            totals_.byVat[l.vatCode - 1] += l.amount;
            totals_.byDepartment[l.department - 1] += l.amount;
            if (l.kind == 'R')
                totals_.returns -= l.amount;
        }
        totals_.sales += subtotal_;
        ++totals_.receipts;
        grandTotal_ += subtotal_;
    }
    ++receiptNumber_;
    print((creditNote ? "NOTA DI CREDITO N. " : document_ == Document::Invoice ? "FATTURA N. " : "SCONTRINO N. ")
          + QByteArray::number(receiptNumber_));
    printer_.cut();
    lastDocument_ = current_;
    message_ = change > 0 ? displayAmount("RESTO", change) : displayAmount("TOTALE", subtotal_);
    finish();
    return Answer::ok();
}

void Sales::finish()
{
    document_ = Document::None;
    lines_.clear();
    subtotal_ = 0;
    paid_ = 0;
    customer_.clear();
    taxCode_.clear();
}

Answer Sales::cancel()
{
    if (!receiptOpen())
        return Answer::refused(err::NoReceipt);
    print(Printer::amountText("ANNULLATO", subtotal_));
    printer_.cut();
    totals_.cancelled += subtotal_;
    finish();
    message_ = "ANNULLATO";
    return Answer::ok();
}

} // namespace kelm::sim
