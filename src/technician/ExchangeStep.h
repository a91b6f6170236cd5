#pragma once

#include <QList>
#include <QString>

namespace kelm::technician {

// One step of an exchange that a technician button starts. The worker runs
// the list in order on the line it owns. Every send, whatever its road,
// stores its result as the last result; a bare transaction shows nothing,
// a panel command reports a failure on the status bar as it always does.
struct ExchangeStep {
    enum class Kind {
        ClearAnswer,    // empty the last answer
        Transaction,    // `record` through the bare link transaction, its answer into the last
                        // answer (a send that fails leaves the last answer as it was)
        PanelCommand,   // `record` through the panel command road
        Pause,          // wait `pauseMs` milliseconds
        RefreshDisplay, // read the register's display, up to three times (see
                        // readDisplayAgain), into the display of the keys that were pressed
    };

    Kind kind = Kind::Pause;
    QString record;
    int pauseMs = 0;

    static ExchangeStep clearAnswer() { return {Kind::ClearAnswer, QString(), 0}; }
    static ExchangeStep transaction(const QString& sent) { return {Kind::Transaction, sent, 0}; }
    static ExchangeStep panelCommand(const QString& sent) { return {Kind::PanelCommand, sent, 0}; }
    static ExchangeStep pause(int ms) { return {Kind::Pause, QString(), ms}; }
    static ExchangeStep refreshDisplay() { return {Kind::RefreshDisplay, QString(), 0}; }

    friend bool operator==(const ExchangeStep&, const ExchangeStep&) = default;
};

using ExchangeSteps = QList<ExchangeStep>;

// The register needs a moment between the keys of one press; a few keys
// start printing and need a longer one.
constexpr int kKeyPauseMs = 100;
constexpr int kLongPauseMs = 200;

} // namespace kelm::technician
