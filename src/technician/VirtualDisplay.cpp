#include "technician/VirtualDisplay.h"

namespace kelm::technician {

namespace {

constexpr qsizetype kDisplayAnswerLength = 43;
constexpr qsizetype kLineWidth = 16;
constexpr qsizetype kLine1Start = 9;  // character 10
constexpr qsizetype kLine2Start = 26; // character 27

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

} // namespace

std::optional<DisplayLines> displayLines(const QString& answer)
{
    if (answer.size() < kDisplayAnswerLength)
        return std::nullopt;
    return DisplayLines{answer.mid(kLine1Start, kLineWidth), answer.mid(kLine2Start, kLineWidth)};
}

bool readDisplayAgain(int readsDone, const QString& lastAnswer)
{
    return readsDone < kMaxDisplayReads && !displayLines(lastAnswer);
}

bool displayReadsZero(const QString& line)
{
    qsizetype i = 0;
    while (i < line.size() && isBlank(line[i]))
        ++i;
    if (i < line.size() && (line[i] == u'-' || line[i] == u'+'))
        ++i;
    // Blanks between the digits belong to the number, as does one point.
    bool point = false;
    for (; i < line.size(); ++i) {
        const QChar c = line[i];
        if (c == u'.' && !point)
            point = true;
        else if (isDigit(c) && c != u'0')
            return false;
        else if (c != u'0' && !isBlank(c))
            break;
    }
    return true;
}

} // namespace kelm::technician
