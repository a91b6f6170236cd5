#pragma once

#include <QByteArray>
#include <QString>

namespace kelm {

// A settings file read and written the way the Windows profile functions do
// it, because the files are shared with programs and people that expect
// exactly that: section and key names in any case, values raw (no escapes;
// ";" and "," are ordinary characters), blanks and one pair of enclosing
// double quotes removed on read, Windows-1252 text. Writing one key changes
// that one line and nothing else of the file, line ends included.
//
// Every call reads the file afresh; nothing is cached, so two holders of the
// same path never disagree.
class IniFile {
public:
    explicit IniFile(QString path) : path_(std::move(path)) {}

    const QString& path() const { return path_; }

    // The value, or `fallback` when the file, the section or the key is
    // missing. Like a read buffer of `bufferSize` characters, at most
    // bufferSize − 1 characters come back (the fallback is cut the same way).
    QString read(const QString& section, const QString& key, const QString& fallback,
                 int bufferSize) const;

    // Sets key = value, creating the file and the section when needed.
    // Returns false when the file could not be written.
    bool write(const QString& section, const QString& key, const QString& value) const;

private:
    QString path_;
};

} // namespace kelm
