#include "server/EcrState.h"

#include "app/Configuration.h"
#include "link/EcrErrors.h"

namespace kelm::server {

namespace {

constexpr int kPaperOutBit = 0x4;
constexpr int kHighestState = 7;
constexpr qsizetype kStateAt = 3;
constexpr qsizetype kStatusByteDigitAt = 22;

QChar charAt(const QString& text, qsizetype index)
{
    return index < text.size() ? text[index] : QChar();
}

} // namespace

int answerStatus(const QString& answer)
{
    return 16 * HexDigitValue(charAt(answer, 0)) + HexDigitValue(charAt(answer, 1));
}

bool paperOutAfter(const QString& answer, bool paperOutBefore)
{
    const qint32 state = WholeNumber(answer.mid(kStateAt, 2));
    if (state < 0 || state > kHighestState)
        return paperOutBefore;
    return (state & kPaperOutBit) != 0;
}

int statusByteFromAnswer(const QString& answer)
{
    const int status = answerStatus(answer);
    if (status != 0)
        return status;
    return WholeNumber(answer.mid(kStatusByteDigitAt, 1));
}

} // namespace kelm::server
