#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <optional>

namespace kelm::sim {

// A stretch of time during which a fault holds. A window set before the
// register has seen any byte starts with the first byte it sees, so that a
// fault given at start-up lasts as long as asked whatever the clock's origin.
class FaultWindow {
public:
    void set(qint64 durationMs, std::optional<qint64> nowMs);
    void anchor(qint64 nowMs);
    bool active(qint64 nowMs) const;
    void clear() { *this = FaultWindow(); }

private:
    qint64 duration_ = 0;
    std::optional<qint64> start_;
};

// A record refused with a given error while this fault stands.
struct Refusal {
    QByteArray prefix;
    int error = 0;
};

// Everything that can be made to go wrong, at the link and at the register.
// Counters count down as the fault is used; windows run out by themselves.
struct Faults {
    // Link level.
    int canToEnq = 0;     // answer the next N ENQ with CAN
    int nakFrames = 0;    // NAK the next N frames even when their checksum is right
    int garbage = 0;      // put stray bytes before STX in the next N answers sent
    int broken = 0;       // stop the next N answers sent half-way, without ETX
    int shortAnswers = 0; // send the next N answers cut to fewer than 11 characters
    FaultWindow silence;  // no reply to anything
    bool unplugged = false;
    qint32 baud = 0;      // 0: every byte arrives at once

    // Register level.
    int busy = 0;         // refuse the next N records with "busy"
    int fatal = 0;        // refuse the next record with this error
    QList<Refusal> refusals;
    FaultWindow paperOut;
    FaultWindow coverOpen;

    void anchor(qint64 nowMs);
    // The refusal that applies to a record, if any.
    std::optional<int> refusalFor(const QByteArray& record) const;
};

// Applies one fault command ("busy 3", "paper 3000", "refuse 3/ 8", "clear",
// ...; the first argument may also follow an "=", as in "busy=3"). nowMs is
// the current time, or nullopt before the register runs. Returns an empty
// text on success, else what is wrong with the command.
QString applyFault(Faults& faults, const QString& command, std::optional<qint64> nowMs);

// The fault language, for help texts.
QString faultHelp();

} // namespace kelm::sim
