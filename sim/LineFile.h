#pragma once

#include <QByteArray>
#include <QFile>
#include <QList>
#include <QString>

namespace kelm::sim {

// A file written one line at a time and kept in memory as well: the journal
// of records and the paper roll. Every line is flushed at once, so a test or
// a person reading the file sees it while the register runs. With no path
// the lines are only kept in memory.
class LineFile {
public:
    enum class Mode { Fresh, Append };
    // Creates or empties the file (Fresh), or writes on at its end (Append);
    // false with a message when it cannot.
    bool open(const QString& path, QString* error, Mode mode = Mode::Fresh);
    void append(const QByteArray& line);
    const QList<QByteArray>& lines() const { return lines_; }

private:
    QFile file_;
    QList<QByteArray> lines_;
};

} // namespace kelm::sim
