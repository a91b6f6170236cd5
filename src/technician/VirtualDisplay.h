#pragma once

#include <QString>

#include <optional>

// The register's own display, two lines of 16 characters, as the PC reads
// it with "(/".
namespace kelm::technician {

inline const QString kDisplayReadRecord = QStringLiteral("(/");

// A display read that keeps getting short answers gives up after this many
// sends, and the display keeps what it showed.
constexpr int kMaxDisplayReads = 3;

struct DisplayLines {
    QString line1;
    QString line2;

    friend bool operator==(const DisplayLines&, const DisplayLines&) = default;
};

// Line 1 is characters 10 to 25 of the answer, line 2 characters 27 to 42;
// an answer shorter than 43 characters is not a display.
std::optional<DisplayLines> displayLines(const QString& answer);

// After `readsDone` sends of "(/", the last one answered with `lastAnswer`:
// true when another read is due.
bool readDisplayAgain(int readsDone, const QString& lastAnswer);

// A display line that reads the value 0: its leading number, blanks
// skipped, is zero or missing, so no sale is in progress. Only a number at
// the start counts: "0,50" reads 0 (the comma ends the number) and so does a
// line that starts with a word.
bool displayReadsZero(const QString& line);

} // namespace kelm::technician
