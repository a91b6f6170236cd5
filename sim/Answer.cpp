#include "Answer.h"

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

} // namespace kelm::sim
