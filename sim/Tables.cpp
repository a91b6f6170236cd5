#include "Tables.h"

#include "EcrError.h"
#include "Money.h"

namespace kelm::sim {

namespace {

// The register's general settings as they leave the factory.
constexpr char kDefaultSParameters[] =
    "00001100001000000001000000/999999.99/999999.999/1000000.00/99999999.99/0.00/0.00/0.00/"
    "1/CASSA -1/27/27/27/27/27/27/27/27/27/29/29/29/29/29/29/29/29/29/8/0/76/";

// Fields of the "S/" record, in order: flag string, 7 maximums, register
// number and name, 9 + 9 bar-code settings, printer intensity, pay-rate code.
constexpr int kSFields = 30;
constexpr int kScrollLength = 40;

int lineWidth(int sizeCode) { return sizeCode >= 3 ? 16 : 32; }

// Pairs of size code and text, as the header and footer records carry them.
std::optional<Answer> printLines(const Record& r, int lines, QList<PrintLine>& out)
{
    if (const auto bad = wrongFieldCount(r, 2 * lines, 2 * lines))
        return bad;
    QList<PrintLine> result;
    for (int i = 0; i < lines; ++i) {
        const auto size = fieldNumber(r.fields[2 * i], 0, 4);
        const QByteArray& text = r.fields[2 * i + 1];
        if (!size || text.size() > lineWidth(*size))
            return Answer::refused(err::CheckFields);
        result.append({*size, text});
    }
    out = result;
    return std::nullopt;
}

bool isHexRow(const QByteArray& text)
{
    for (char c : text)
        if (!((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F')))
            return false;
    return true;
}

} // namespace

Tables::Tables()
{
    for (int i = 0; i < kHeaderLines; ++i)
        header.append({1, QByteArray()});
    header[0].text = "REGISTRATORE VIRTUALE";
    for (int i = 0; i < kFooterLines; ++i)
        footer.append({1, QByteArray()});
    footer[0].text = "ARRIVEDERCI E GRAZIE";
    sParameters = Record::parse(QByteArray("s/") + kDefaultSParameters).fields;
    vatRates = {2200, 1000, 400, 500, 0};
    for (int n = 1; n <= kDepartments; ++n)
        departments[n - 1] = {"REPARTO " + QByteArray::number(n), n <= kVatRates ? n : 1};
    payments[0] = {"CONTANTI", "CONT", "10000001", "0", "0", true, false};
    payments[1] = {"ASSEGNI", "ASS", "00000000", "0", "0", true, false};
    payments[2] = {"CARTA", "CART", "00000001", "0", "0", true, true};
}

const Department* Tables::department(int n) const
{
    return n >= 1 && n <= kDepartments ? &departments[n - 1] : nullptr;
}

Answer Tables::writeHeader(const Record& r)
{
    QList<PrintLine> lines;
    if (const auto bad = printLines(r, kHeaderLines, lines))
        return *bad;
    if (headerChanges >= kHeaderChangeLimit)
        return Answer::refused(err::HeaderLimit);
    ++headerChanges;
    header = lines;
    return Answer::ok();
}

Answer Tables::writeFooter(const Record& r)
{
    QList<PrintLine> lines;
    if (const auto bad = printLines(r, kFooterLines, lines))
        return *bad;
    footer = lines;
    return Answer::ok();
}

Answer Tables::writeLogoRow(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 5, 5))
        return *bad;
    const auto index = fieldNumber(r.field(1), 1, 2);
    if (!index)
        return Answer::refused(err::BmpIndex);
    const auto width = fieldNumber(r.field(2), 64, 256);
    const auto height = fieldNumber(r.field(3), 64, 256);
    const auto legal = [](std::optional<int> v) { return v && (*v == 64 || *v == 128 || *v == 256); };
    if (!legal(width) || !legal(height))
        return Answer::refused(err::BmpData);
    const auto row = fieldNumber(r.field(4), 1, *height);
    const QByteArray data = r.field(5);
    if (!row || data.size() != *width / 4 || !isHexRow(data))
        return Answer::refused(err::BmpData);
    Logo& logo = logos[*index - 1];
    if (logo.width != *width || logo.height != *height)
        logo = {*width, *height, {}};
    logo.rows[*row] = data;
    return Answer::ok();
}

Answer Tables::writeScrollMessage(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, 1, 1))
        return *bad;
    if (r.field(1).size() > kScrollLength)
        return Answer::refused(err::CheckFields);
    scrollMessage = r.field(1);
    return Answer::ok();
}

Answer Tables::writeSParameters(const Record& r)
{
    if (const auto bad = wrongFieldCount(r, kSFields, kSFields))
        return *bad;
    bool good = allDigits(r.fields[0], 26, 26);
    for (int i = 1; i <= 7; ++i)
        good = good && parseQuantity(r.fields[i]).value_or(-1) >= 0;
    good = good && allDigits(r.fields[8], 1, 3) && r.fields[9].size() <= 8;
    for (int i = 10; i < 28; ++i)
        good = good && allDigits(r.fields[i], 0, 2);
    good = good && allDigits(r.fields[28], 0, 3) && allDigits(r.fields[29], 0, 2);
    if (!good)
        return Answer::refused(err::CheckFields);
    for (int i = 0; i < kSFields; ++i)
        sParameters[i] = r.fields[i];
    return Answer::ok();
}

Answer Tables::readSParameters() const
{
    return Answer::ok(sParameters);
}

} // namespace kelm::sim
