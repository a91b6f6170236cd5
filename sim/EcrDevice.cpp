#include "EcrDevice.h"

#include "EcrError.h"

#include <utility>

namespace kelm::sim {

namespace {

// Records that put ink on paper: refused while the paper is out or the
// cover is open. Queries and table programming go on regardless.
bool prints(char code)
{
    static const QByteArray printing = "345Uj'-7wm+6x2W[q)";
    return code != 0 && printing.contains(code);
}

// The journal copy of the last receipt is only allowed with this value in
// parameter 12.
constexpr int kReprintParameter = 12;
constexpr int kReprintAllowed = 42;
constexpr int kReprintKey = 120;

} // namespace

EcrDevice::EcrDevice(Faults& faults, Identity identity, LineFile& journal, LineFile& roll)
    : faults_(faults), identity_(std::move(identity)), journal_(journal), printer_(roll),
      sales_(tables_, printer_), keyboard_(sales_)
{
}

int EcrDevice::pendingError(qint64 nowMs) const
{
    if (faults_.paperOut.active(nowMs))
        return err::PaperOut;
    if (faults_.coverOpen.active(nowMs))
        return err::CoverOpen;
    return err::None;
}

QByteArray EcrDevice::execute(const QByteArray& record, qint64 nowMs)
{
    faults_.anchor(nowMs);
    nowMs_ = nowMs;
    const Record r = Record::parse(record);
    Answer answer;
    if (faults_.busy > 0) {
        --faults_.busy;
        answer = Answer::refused(err::Busy);
    } else if (faults_.fatal > 0) {
        answer = Answer::refused(std::exchange(faults_.fatal, 0));
    } else if (const auto refusal = faults_.refusalFor(record)) {
        answer = Answer::refused(*refusal);
    } else if (const int e = pendingError(nowMs); e != err::None && prints(r.code)) {
        answer = Answer::refused(e);
    } else {
        answer = dispatch(r);
    }
    if (answer.accepted())
        journal_.append(record);
    int stateBits = 0;
    if (sales_.receiptOpen())
        stateBits |= state::ReceiptOpen;
    if (faults_.coverOpen.active(nowMs))
        stateBits |= state::CoverOpen;
    if (faults_.paperOut.active(nowMs))
        stateBits |= state::PaperOut;
    return formatAnswer(answer, stateBits, r.code);
}

Answer EcrDevice::dispatch(const Record& r)
{
    if (!r.wellFormed)
        return Answer::refused(err::Unsupported);
    switch (r.code) {
    case 'a': return identity();
    case 's': return tables_.readSParameters();
    case '?': return {pendingError(nowMs_), {}};
    case 't': return sales_.totalsAnswer();
    case '0': return sales_.countersAnswer();
    case '9': return sales_.grandTotalAnswer();
    case 'X': return sales_.departmentsAnswer();
    case '3': return sales_.item(r);
    case '4': return sales_.discount(r);
    case '5': return sales_.pay(r);
    case 'U': return sales_.showSubtotal();
    case 'j': return sales_.customer(r);
    case '\'': return sales_.taxCode(r);
    case '-': return sales_.creditNote(r);
    case '7': return sales_.text(r);
    case 'w': return sales_.feed(r);
    case 'm': return sales_.endNonFiscal();
    case '+': return sales_.inReceipt();
    case '6': return sales_.cashOut(r);
    case '2': case 'W': case '[': case 'q':
        return Answer::ok(); // accepted as they are; nothing to show for them here
    case 'x': return report(r);
    case 'B': return readParameter(r);
    case 'G': return writeParameter(r);
    case ')': return key(r);
    case '(': return display();
    case 'H': return tables_.writeHeader(r);
    case 'F': return tables_.writeFooter(r);
    case '$': return tables_.writeLogoRow(r);
    case 'o': return tables_.writeScrollMessage(r);
    case 'S': return tables_.writeSParameters(r);
    case 'b': return tables_.writeVatRates(r);
    case 'e': return tables_.readVatRates();
    case 'D': return tables_.writeDepartment(r);
    case 'd': return tables_.readDepartment(r);
    case 'P': return tables_.writePlu(r);
    case 'p': return tables_.readPlu(r);
    case 'Y': return tables_.writePayment(r);
    case 'y': return tables_.readPayment(r);
    default: return Answer::refused(err::Unsupported);
    }
}

Answer EcrDevice::identity() const
{
    return Answer::ok({identity_.serialNumber, identity_.number, identity_.field, identity_.country,
                       identity_.firmware});
}

Answer EcrDevice::report(const Record& r)
{
    if (r.raw == "x/7/0/0/")
        return sales_.dailyClosure();
    if (r.raw == "x/1/1/1/")
        return sales_.salesReport();
    return Answer::refused(err::CheckFields);
}

Answer EcrDevice::readParameter(const Record& r) const
{
    const auto n = fieldNumber(r.field(1), 1, 99);
    if (!n || r.count() != 1)
        return Answer::refused(err::CheckFields);
    return Answer::ok({QByteArray::number(parameter(*n)).rightJustified(2, '0')});
}

Answer EcrDevice::writeParameter(const Record& r)
{
    // G/number/x/y/value/: the two middle fields select the parameter's
    // group on larger models and must be 1 here.
    if (const auto bad = wrongFieldCount(r, 4, 4))
        return *bad;
    const auto n = fieldNumber(r.field(1), 1, 99);
    const auto value = fieldNumber(r.field(4), 0, 99);
    if (!n || !value || r.field(2) != "1" || r.field(3) != "1")
        return Answer::refused(err::CheckFields);
    parameters_[*n] = *value;
    return Answer::ok();
}

Answer EcrDevice::key(const Record& r)
{
    const auto code = fieldNumber(r.field(1), 0, 999);
    if (!code || r.count() != 1)
        return Answer::refused(err::BadKeyboard);
    if (*code == kReprintKey)
        return sales_.reprintLast(parameter(kReprintParameter) == kReprintAllowed);
    return keyboard_.press(*code);
}

Answer EcrDevice::display() const
{
    return Answer::ok({keyboard_.line1(), keyboard_.line2()});
}

} // namespace kelm::sim
