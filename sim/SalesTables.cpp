// The tables that prices and VAT are taken from: VAT rates, departments,
// PLUs and payment types.
#include "Tables.h"

#include "EcrError.h"
#include "Money.h"

namespace kelm::sim {

namespace {

constexpr int kDescriptionLength = 20;
constexpr int kPluCodeLength = 20;

bool isFlagString(const QByteArray& text)
{
    if (text.size() != 8)
        return false;
    for (char c : text)
        if (c != '0' && c != '1')
            return false;
    return true;
}

bool isBit(const QByteArray& text) { return text == "0" || text == "1"; }

} // namespace

Answer Tables::writeVatRates(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, kVatRates, kVatRates))
        return *bad;
    std::array<qint64, kVatRates> rates {};
    for (int i = 0; i < kVatRates; ++i) {
        const auto rate = parseCents(r.fields[i]);
        if (!rate || *rate < 0 || *rate > 9999)
            return Answer::refused(err::BadVat);
        rates[i] = *rate;
    }
    if (vatChanges >= kVatChangeLimit)
        return Answer::refused(err::VatLimit);
    ++vatChanges;
    vatRates = rates;
    return Answer::ok();
}

Answer Tables::readVatRates() const
{
    QList<QByteArray> fields;
    for (qint64 rate : vatRates)
        fields.append(formatCents(rate));
    return Answer::ok(fields);
}

Answer Tables::writeDepartment(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 3, 8))
        return *bad;
    const auto n = fieldNumber(r.field(1), 1, kDepartments);
    if (!n)
        return Answer::refused(err::NoDepartment);
    const auto vat = fieldNumber(r.field(3), 1, kVatRates);
    if (!vat)
        return Answer::refused(err::BadVat);
    if (r.field(2).size() > kDescriptionLength)
        return Answer::refused(err::CheckFields);
    departments[*n - 1] = {r.field(2), *vat};
    return Answer::ok();
}

Answer Tables::readDepartment(const Record& r) const
{
    const auto n = fieldNumber(r.field(1), 1, kDepartments);
    if (!n)
        return Answer::refused(err::NoDepartment);
    const Department& d = departments[*n - 1];
    return Answer::ok({d.description, QByteArray::number(d.vatCode)});
}

Answer Tables::writePlu(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 9, 9))
        return *bad;
    const auto n = fieldNumber(r.field(1), 1, 999999);
    if (!n)
        return Answer::refused(err::CheckFields);
    if (*n > kMaxPlu)
        return Answer::refused(err::PluLimit);
    if (r.field(2).isEmpty()) {
        plus.remove(*n);
        return Answer::ok();
    }
    Plu plu;
    plu.code = r.field(2);
    plu.description = r.field(3);
    const auto dept = fieldNumber(r.field(4), 1, kDepartments);
    if (!dept)
        return Answer::refused(err::NoDepartment);
    plu.department = *dept;
    plu.bonus = r.field(5);
    const auto price = parseCents(r.field(6));
    const auto maxPrice = parseCents(r.field(7));
    if (!price || !maxPrice || *price < 0 || *maxPrice < 0)
        return Answer::refused(err::BadPrice);
    plu.price = *price;
    plu.maxPrice = *maxPrice;
    const auto stock = parseQuantity(r.field(8));
    plu.flags = r.field(9);
    if (!stock || !parseCents(plu.bonus) || !isFlagString(plu.flags)
        || plu.code.size() > kPluCodeLength || plu.description.size() > kDescriptionLength)
        return Answer::refused(err::CheckFields);
    plu.stock = *stock;
    if (const auto old = plus.constFind(*n); old != plus.constEnd() && old->code == plu.code) {
        plu.soldQuantity = old->soldQuantity;
        plu.soldAmount = old->soldAmount;
    }
    plus[*n] = plu;
    return Answer::ok();
}

Answer Tables::readPlu(const Record& r) const
{
    const auto n = fieldNumber(r.field(1), 1, kMaxPlu);
    if (!n)
        return Answer::refused(err::NoPlu);
    const auto it = plus.constFind(*n);
    if (it == plus.constEnd())
        return Answer::ok(QList<QByteArray>(14)); // a free number: no code
    const Plu& p = *it;
    const int vatCode = departments[p.department - 1].vatCode;
    return Answer::ok({p.code, p.description, QByteArray::number(p.department), p.bonus, p.flags,
                       QByteArray::number(vatCode), formatCents(p.price), formatCents(p.maxPrice),
                       formatQuantity(p.stock), formatQuantity(p.soldQuantity), formatCents(p.soldAmount),
                       "0", "0", "0"});
}

Answer Tables::writePayment(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 9, 9))
        return *bad;
    const auto p = fieldNumber(r.field(1), 1, kPayments);
    if (!p)
        return Answer::refused(err::NoPayment);
    PaymentType t {r.field(2), r.field(3), r.field(4), r.field(5), r.field(6),
                   r.field(8) == "1", r.field(9) == "1"};
    if (t.description.size() > 8 || t.shortDescription.size() > 4 || !isFlagString(t.flags)
        || t.rate.size() > 4 || t.markup.size() > 4 || !r.field(7).isEmpty()
        || !isBit(r.field(8)) || !isBit(r.field(9)))
        return Answer::refused(err::CheckFields);
    payments[*p - 1] = t;
    return Answer::ok();
}

Answer Tables::readPayment(const Record& r) const
{
    const auto p = fieldNumber(r.field(1), 1, kPayments);
    if (!p)
        return Answer::refused(err::NoPayment);
    const PaymentType& t = payments[*p - 1];
    return Answer::ok({t.description, t.shortDescription, t.flags, t.rate, t.active ? "1" : "0",
                       t.credit ? "1" : "0", "0", t.rate, t.markup, "0", "0"});
}

} // namespace kelm::sim
