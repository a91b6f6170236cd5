#pragma once

#include <QString>
#include <QStringList>

// Which files of the server directory are receipt files: the configured
// waiting-file name, or a mask with "*".
namespace kelm::server {

enum class MaskMode : char {
    Exact = '=',      // no "*": the name itself
    EndsWith = 'F',   // "*name"
    BeginsWith = 'I', // "name*", "name*.*", "name**"
    Contains = 'C',   // "*part*"
    All = 'A',        // "*", "*.*": any form whose pattern is empty
};

struct FileMask {
    MaskMode mode = MaskMode::All;
    QString pattern;
};

// The mode and pattern of a name or mask (trimmed first): the first "*"
// from the left decides, and a second "*" is looked for after it.
FileMask parseFileMask(const QString& mask);

// Letter case is ignored.
bool matchesFileMask(const FileMask& mask, const QString& fileName);

// The extension is the text from the last "." on; it is forbidden when it
// equals "." + one of the slots of the forbidden-extension table, letter
// case ignored. The table has a fixed number of slots and the unfilled ones
// are empty, so a name ending in "." is always forbidden unless every slot
// is filled. A name without "." has no extension and is never forbidden.
bool hasForbiddenExtension(const QString& fileName, const QStringList& forbiddenExtensions);

// Files the program writes next to the receipts and must never read back as
// one: the daily log, ".FMN" snapshots, ".drev" working copies, "Totali.txt",
// and, when the spool is the program folder, its settings, pending queue and
// lock; also the temporary files of their safe saves.
bool isOwnFile(const QString& fileName);

// The names (without directory) of the files, hidden ones included, in `directory` that match the
// mask and have no forbidden extension, in the order the directory listing
// gives them. Empty when the directory does not exist.
QStringList MatchFileMask(const QString& directory, const QString& mask,
                          const QStringList& forbiddenExtensions);

// Entries that match the mask but are not taken: symbolic links, folders,
// pipes and other non-regular files. They are left alone.
QStringList UnreadableMatches(const QString& directory, const QString& mask);

// The log's base name after a mask has been used: the pattern when there is
// one; a mask with an empty pattern leaves the name as it was (initially
// empty, which the log turns into "DREV").
QString logNameAfterMask(const FileMask& mask, const QString& currentLogName);

} // namespace kelm::server
