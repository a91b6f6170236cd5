#include "Answer.h"

#include "EcrError.h"

namespace kelm::sim {

QByteArray formatAnswer(const Answer& answer, int stateBits, char commandCode)
{
    QByteArray text = QByteArray::number(answer.error & 0xFF, 16).toUpper().rightJustified(2, '0');
    text += '/' + QByteArray::number(stateBits).rightJustified(2, '0') + "/01/";
    if (answer.fields.isEmpty()) {
        text += commandCode > ' ' && commandCode < 0x7F ? commandCode : '?';
        text += '/';
    }
    for (const QByteArray& f : answer.fields)
        text += f + '/';
    return text;
}

std::optional<Answer> wrongFieldCount(const Record& r, qsizetype min, qsizetype max)
{
    if (r.count() < min)
        return Answer::refused(err::FieldsMissing);
    if (r.count() > max)
        return Answer::refused(err::FieldsExtra);
    return std::nullopt;
}

} // namespace kelm::sim
