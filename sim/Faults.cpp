#include "Faults.h"

#include "link/CodePage.h"

#include <QStringList>

namespace kelm::sim {

void FaultWindow::set(qint64 durationMs, std::optional<qint64> nowMs)
{
    duration_ = durationMs;
    start_ = nowMs;
}

void FaultWindow::anchor(qint64 nowMs)
{
    if (duration_ > 0 && !start_)
        start_ = nowMs;
}

bool FaultWindow::active(qint64 nowMs) const
{
    return start_ && nowMs >= *start_ && nowMs < *start_ + duration_;
}

void Faults::anchor(qint64 nowMs)
{
    silence.anchor(nowMs);
    paperOut.anchor(nowMs);
    coverOpen.anchor(nowMs);
}

std::optional<int> Faults::refusalFor(const QByteArray& record) const
{
    for (const Refusal& r : refusals)
        if (record.startsWith(r.prefix))
            return r.error;
    return std::nullopt;
}

namespace {

struct FaultSyntax {
    const char* name;
    const char* arguments;
    const char* meaning;
};

// One table drives both the parser's idea of what exists and the help text.
constexpr FaultSyntax kFaultSyntax[] = {
    {"busy", "[N]", "refuse the next N records (default 1) with error 26, busy"},
    {"nak", "[N]", "answer the next N command frames with NAK"},
    {"can", "[N]", "answer the next N ENQ with CAN"},
    {"silence", "MS", "answer nothing at all for MS milliseconds"},
    {"garbage", "[N]", "send stray bytes before STX in the next N answers"},
    {"broken", "[N]", "stop the next N answers half-way, without ETX"},
    {"short", "[N]", "cut the next N answers to fewer than 11 characters"},
    {"paper", "MS", "paper out for MS milliseconds: state bit 2, printing records refused with error 49"},
    {"cover", "MS", "paper cover open for MS milliseconds: printing records refused with error 50"},
    {"fatal", "ERR", "refuse the next record with error ERR (for example 52)"},
    {"refuse", "PREFIX ERR", "refuse every record that begins with PREFIX with error ERR"},
    {"baud", "N", "pace the bytes sent at N baud, 10 bits a byte (0: no pacing)"},
    {"unplug", "", "the line goes away: nothing more is answered; ecrsim closes the pty and removes the link"},
    {"replug", "", "the line comes back after unplug: ecrsim makes a new pty at the same link path; the register keeps its state"},
    {"clear", "", "remove every fault, the pacing apart; this also plugs the line back"},
};

std::optional<qint64> number(const QString& text, qint64 min, qint64 max)
{
    bool ok = false;
    const qint64 value = text.toLongLong(&ok);
    if (!ok || value < min || value > max)
        return std::nullopt;
    return value;
}

} // namespace

QString applyFault(Faults& faults, const QString& command, std::optional<qint64> nowMs)
{
    QString text = command.trimmed();
    const qsizetype eq = text.indexOf('=');
    if (eq > 0)
        text[eq] = ' ';
    const QStringList words = text.split(' ', Qt::SkipEmptyParts);
    if (words.isEmpty())
        return QStringLiteral("empty fault command");
    const QString name = words[0].toLower();
    const QStringList args = words.mid(1);
    const auto usage = [&name]() -> QString {
        for (const FaultSyntax& s : kFaultSyntax)
            if (name == QLatin1String(s.name))
                return QStringLiteral("usage: %1 %2").arg(QLatin1String(s.name), QLatin1String(s.arguments));
        return QStringLiteral("unknown fault \"%1\"; known: busy nak can silence garbage broken short "
                              "paper cover fatal refuse baud unplug replug clear").arg(name);
    };

    int* counter = name == "busy" ? &faults.busy
                 : name == "nak" ? &faults.nakFrames
                 : name == "can" ? &faults.canToEnq
                 : name == "garbage" ? &faults.garbage
                 : name == "broken" ? &faults.broken
                 : name == "short" ? &faults.shortAnswers
                 : nullptr;
    if (counter) {
        const auto n = args.isEmpty() ? std::optional<qint64>(1) : number(args[0], 0, 1000000);
        if (!n || args.size() > 1)
            return usage();
        *counter = static_cast<int>(*n);
        return {};
    }
    FaultWindow* window = name == "silence" ? &faults.silence
                        : name == "paper" ? &faults.paperOut
                        : name == "cover" ? &faults.coverOpen
                        : nullptr;
    if (window) {
        const auto ms = args.size() == 1 ? number(args[0], 0, 86400000) : std::nullopt;
        if (!ms)
            return usage();
        window->set(*ms, nowMs);
        return {};
    }
    if (name == "fatal") {
        const auto e = args.size() == 1 ? number(args[0], 1, 255) : std::nullopt;
        if (!e)
            return usage();
        faults.fatal = static_cast<int>(*e);
        return {};
    }
    if (name == "refuse") {
        const auto e = args.size() == 2 ? number(args[1], 1, 255) : std::nullopt;
        if (!e)
            return usage();
        faults.refusals.append({kelm::ansi::encode(args[0]), static_cast<int>(*e)});
        return {};
    }
    if (name == "baud") {
        const auto b = args.size() == 1 ? number(args[0], 0, 10000000) : std::nullopt;
        if (!b)
            return usage();
        faults.baud = static_cast<qint32>(*b);
        return {};
    }
    if (name == "unplug" || name == "replug" || name == "clear") {
        if (!args.isEmpty())
            return usage();
        if (name != "clear") {
            faults.unplugged = name == "unplug";
        } else {
            const qint32 baud = faults.baud;
            faults = Faults();
            faults.baud = baud;
        }
        return {};
    }
    return usage();
}

QString faultHelp()
{
    QString help;
    for (const FaultSyntax& s : kFaultSyntax)
        help += QStringLiteral("  %1\n      %2\n")
                    .arg(QStringLiteral("%1 %2").arg(QLatin1String(s.name), QLatin1String(s.arguments)).trimmed(),
                         QLatin1String(s.meaning));
    return help;
}

} // namespace kelm::sim
