#pragma once

#include <QString>
#include <QStringList>

namespace kelm {

struct CommandLine {
    enum class Mode { Window, Headless, Send, Help, Version };
    Mode mode = Mode::Window;
    QString home;          // --home DIR
    QStringList records;   // send RECORD…
    QString http;          // --http [ADDRESS:]PORT
    bool verbose = false;  // --verbose
    bool testMode = false; // what is left, upper-cased, is exactly "/TESTMODE"
    QString error;         // not empty when the words make no sense
};

// `arguments` without the program's own name. The program's options are
// taken off first; what is left is the old command line, compared with
// "/TESTMODE" as a whole. After "send" every other word is a record, so
// records that begin with "-" ("-/…") need no quoting.
CommandLine ParseCommandLine(const QStringList& arguments);

QString UsageText();

} // namespace kelm
