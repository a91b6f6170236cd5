#pragma once

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

// The receipt server's daily log file and the entries of its on-screen
// run-time list.
namespace kelm {

// Server directory + log name + " " + YYYYMMDD + ".log"; the directory is
// made a prefix as serverDirectoryPrefix does (`fallbackDir` is the program
// folder). A blank log name becomes "DREV".
QString logFileName(const QString& serverDir, const QString& logName, QDate day,
                    const QString& fallbackDir);

// One log line without its line break: time stamp (19), " - ", the record
// cut or padded to 50, " - ", the message cut or padded to 150: always 225
// characters.
QString logLine(const QDateTime& when, const QString& message, const QString& record);

// A message ending in "26" is never logged: it is how the busy refusal
// "… - Errore N. 26" ends, and the server repeats such a command anyway.
bool isSuppressedLogMessage(const QString& message);

// Appends one line to today's log file while switched on. The file is opened
// and closed for every line; any failure is ignored, as a log must never stop
// the server.
class RunTimeLog {
public:
    using Now = std::function<QDateTime()>;

    explicit RunTimeLog(QString fallbackDir, Now now = &QDateTime::currentDateTime);

    void setEnabled(bool on) { enabled_ = on; }
    void setServerDir(const QString& dir) { serverDir_ = dir; }
    void setLogName(const QString& name) { logName_ = name; }
    const QString& logName() const { return logName_; }

    void WriteLog(const QString& message, const QString& record) const;

private:
    QString fallbackDir_;
    Now now_;
    bool enabled_ = false;
    QString serverDir_;
    QString logName_;
};

// Direction tags of the run-time list; the text proper starts at the 13th
// character of an entry.
inline const QString kPcToEcrTag = QStringLiteral("PC -> ECR : ");
inline const QString kEcrTag = QStringLiteral("ECR        : ");

// The list keeps the newest entry on top and at most this many entries.
constexpr qsizetype kRunTimeListCap = 10000;

// What a double click on a run-time list entry shows.
struct RunTimeEntryDetail {
    bool coherent = false; // false: a critical box with `text` and the program's own title
    QString title;
    QString text;
};

RunTimeEntryDetail runTimeEntryDetail(const QString& entry);

} // namespace kelm
