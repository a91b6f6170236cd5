#include "programming/Numbers.h"

namespace kelm::programming {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

struct LeadingNumber {
    bool negative = false;
    QString whole;    // without leading zeros; may be empty
    QString fraction; // without trailing zeros; may be empty
};

LeadingNumber leadingNumber(const QString& text)
{
    LeadingNumber n;
    qsizetype i = 0;
    while (i < text.size() && text[i] == u' ')
        ++i;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+')) {
        n.negative = text[i] == u'-';
        ++i;
    }
    const qsizetype wholeStart = i;
    while (i < text.size() && isDigit(text[i]))
        ++i;
    n.whole = text.mid(wholeStart, i - wholeStart);
    if (i < text.size() && text[i] == u'.') {
        const qsizetype fractionStart = ++i;
        while (i < text.size() && isDigit(text[i]))
            ++i;
        n.fraction = text.mid(fractionStart, i - fractionStart);
    }
    while (n.whole.startsWith(u'0'))
        n.whole.remove(0, 1);
    while (n.fraction.endsWith(u'0'))
        n.fraction.chop(1);
    return n;
}

QString signedForm(bool negative, const QString& digits)
{
    if (digits == QStringLiteral("0"))
        return digits;
    return negative ? u'-' + digits : digits;
}

} // namespace

QString decimalForm(const QString& text)
{
    const LeadingNumber n = leadingNumber(text);
    const QString whole = n.whole.isEmpty() ? QStringLiteral("0") : n.whole;
    if (n.fraction.isEmpty())
        return signedForm(n.negative, whole);
    return signedForm(n.negative, whole + u'.' + n.fraction);
}

QString wholeNumberForm(const QString& text)
{
    const LeadingNumber n = leadingNumber(text);
    return signedForm(n.negative, n.whole.isEmpty() ? QStringLiteral("0") : n.whole);
}

} // namespace kelm::programming
