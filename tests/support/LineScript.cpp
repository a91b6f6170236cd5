#include "LineScript.h"

#include "link/Framing.h"

#include <QHash>
#include <QRegularExpression>

using namespace kelm::frame;

namespace linescript {

namespace {

// The control bytes the notation names.
const QHash<QString, quint8> kNames{{"STX", STX}, {"ETX", ETX}, {"ENQ", ENQ}, {"ACK", ACK}, {"NAK", NAK}, {"CAN", CAN}};

} // namespace

QList<Step> parse(const QString& script)
{
    QList<Step> steps;
    qint64 delay = 0;
    static const QRegularExpression token(QStringLiteral(R"(<([A-Z]{3})>|\{(\d+)\}|(.))"),
                                          QRegularExpression::DotMatchesEverythingOption);
    for (auto it = token.globalMatch(script); it.hasNext();) {
        const auto m = it.next();
        if (m.hasCaptured(2)) {
            delay += m.captured(2).toLongLong();
            continue;
        }
        Q_ASSERT_X(!m.hasCaptured(1) || kNames.contains(m.captured(1)), "linescript::parse", "unknown control byte name");
        steps.append({delay, m.hasCaptured(1) ? kNames.value(m.captured(1)) : quint8(m.captured(3).at(0).toLatin1())});
        delay = 0;
    }
    return steps;
}

QString render(const QByteArray& bytes)
{
    QString out;
    for (char c : bytes) {
        const QString name = kNames.key(static_cast<quint8>(c));
        out += name.isEmpty() ? QString(QChar(static_cast<quint8>(c))) : u'<' + name + u'>';
    }
    return out;
}

QStringList framedRecords(const QByteArray& written)
{
    QStringList out;
    qsizetype pos = 0;
    while ((pos = written.indexOf(char(STX), pos)) >= 0) {
        const qsizetype end = written.indexOf(char(ETX), pos);
        if (end < 0)
            break;
        out.append(QString::fromLatin1(written.mid(pos + 1, end - pos - 3))); // without the checksum
        pos = end + 1;
    }
    return out;
}

} // namespace linescript

void ScriptedPeer::answer(QStringList& queue, qint64 nowMs, QList<kelm::TimedByte>& reply)
{
    if (queue.isEmpty())
        return;
    qint64 at = nowMs;
    for (const linescript::Step& step : linescript::parse(queue.takeFirst())) {
        at += step.delayMs;
        reply.append({at, step.value});
    }
}

void ScriptedPeer::receive(quint8 value, qint64 nowMs, QList<kelm::TimedByte>& reply)
{
    written_.append(static_cast<char>(value));
    if (inFrame_) {
        if (value == ETX) {
            inFrame_ = false;
            answer(frameReplies, nowMs, reply);
        }
    } else if (value == STX) {
        inFrame_ = true;
    } else if (value == ENQ) {
        if (enqReplies.isEmpty() && !enqDefault.isEmpty())
            enqReplies.append(enqDefault);
        answer(enqReplies, nowMs, reply);
    } else if (value == NAK) {
        answer(nakReplies, nowMs, reply);
    }
}

QStringList ScriptedPeer::records() const
{
    return linescript::framedRecords(written_);
}
