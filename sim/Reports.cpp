// Closures, reports and the answers that tell the day's figures.
#include "Sales.h"

#include "EcrError.h"
#include "Money.h"

namespace kelm::sim {

void Sales::printTotals(const QByteArray& title, int number)
{
    for (const PrintLine& h : tables_.header)
        if (!h.text.trimmed().isEmpty())
            printer_.line(Printer::centredText(h.text));
    printer_.line(Printer::rule());
    printer_.line(Printer::centredText(title + " N. " + QByteArray::number(number)));
    for (int i = 0; i < Tables::kVatRates; ++i)
        printer_.line(Printer::amountText("IVA " + QByteArray::number(i + 1) + " " + formatCents(tables_.vatRates[i]) + "%",
                                          totals_.byVat[i]));
    printer_.line(Printer::amountText("TOTALE VENDITE", totals_.sales));
    printer_.line(Printer::amountText("RESI", totals_.returns));
    printer_.line(Printer::amountText("NOTE DI CREDITO", totals_.voids));
    printer_.line(Printer::amountText("ANNULLI", totals_.cancelled));
    printer_.line("SCONTRINI " + QByteArray::number(totals_.receipts).rightJustified(Printer::kWidth - 10));
    printer_.line("NON FISCALI " + QByteArray::number(totals_.nonFiscal).rightJustified(Printer::kWidth - 12));
    printer_.line(Printer::amountText("GRAN TOTALE", grandTotal_));
    printer_.line(Printer::rule('='));
    printer_.cut();
}

Answer Sales::dailyClosure()
{
    if (document_ != Document::None)
        return Answer::refused(err::ReceiptIsOpen);
    ++closureNumber_;
    printTotals("CHIUSURA FISCALE", closureNumber_);
    totals_ = DayTotals();
    receiptNumber_ = 0;
    return Answer::ok();
}

Answer Sales::salesReport()
{
    if (document_ != Document::None)
        return Answer::refused(err::ReceiptIsOpen);
    printTotals("LETTURA GIORNALIERA", closureNumber_ + 1);
    return Answer::ok();
}

Answer Sales::reprintLast(bool allowed)
{
    if (document_ != Document::None)
        return Answer::refused(err::ReceiptIsOpen);
    if (!allowed)
        return Answer::refused(err::NotAllowed);
    if (lastDocument_.isEmpty())
        return Answer::refused(err::NoFiscalRecord);
    printer_.line(Printer::centredText("COPIA NON FISCALE"));
    for (const QByteArray& l : lastDocument_)
        printer_.line(l);
    printer_.cut();
    return Answer::ok();
}

Answer Sales::totalsAnswer() const
{
    QList<QByteArray> f;
    for (qint64 v : totals_.byVat)
        f.append(formatCents(v));
    f << formatCents(totals_.sales) << QByteArray::number(totals_.receipts) << QByteArray::number(totals_.nonFiscal)
      << formatCents(totals_.voids) << formatCents(totals_.returns) << formatCents(totals_.cancelled);
    return Answer::ok(f);
}

Answer Sales::countersAnswer() const
{
    return Answer::ok({QByteArray::number(receiptNumber_), QByteArray::number(closureNumber_),
                       receiptOpen() ? "1" : "0", formatCents(subtotal_)});
}

Answer Sales::grandTotalAnswer() const
{
    return Answer::ok({formatCents(grandTotal_), QByteArray::number(closureNumber_)});
}

Answer Sales::departmentsAnswer() const
{
    QList<QByteArray> f;
    for (qint64 v : totals_.byDepartment)
        f.append(formatCents(v));
    return Answer::ok(f);
}

} // namespace kelm::sim
