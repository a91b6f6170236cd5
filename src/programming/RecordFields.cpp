#include "programming/RecordFields.h"

namespace kelm::programming {

namespace {

// The answer's first nine characters are its status and header.
constexpr qsizetype kAnswerHeader = 9;

} // namespace

QString trimBlanks(const QString& text)
{
    qsizetype b = 0;
    qsizetype e = text.size();
    while (b < e && text[b] == u' ')
        ++b;
    while (e > b && text[e - 1] == u' ')
        --e;
    return text.mid(b, e - b);
}

QString replaceSlashes(const QString& text)
{
    QString s = text;
    return s.replace(u'/', u'\\');
}

QString digitsOnly(const QString& text)
{
    QString digits;
    for (const QChar c : text)
        if (c >= u'0' && c <= u'9')
            digits.append(c);
    return digits;
}

QString fieldText(const QString& text, qsizetype width)
{
    const QString t = replaceSlashes(trimBlanks(text));
    if (width < 0 || t.size() <= width)
        return t;
    return trimBlanks(t.right(width));
}

QStringList answerFields(const QString& answer, qsizetype count)
{
    QStringList fields;
    qsizetype pos = kAnswerHeader;
    for (qsizetype i = 0; i < count; ++i) {
        if (pos >= answer.size()) {
            fields.append(QString());
            continue;
        }
        const qsizetype slash = answer.indexOf(u'/', pos);
        const qsizetype end = slash < 0 ? answer.size() : slash;
        fields.append(answer.mid(pos, end - pos));
        pos = end + 1;
    }
    return fields;
}

QString cutAtNul(const QString& value)
{
    const qsizetype nul = value.indexOf(QChar(u'\0'));
    return nul < 0 ? value : value.left(nul);
}

int digitValue(QChar c)
{
    return c >= u'0' && c <= u'9' ? c.unicode() - u'0' : 0;
}

} // namespace kelm::programming
