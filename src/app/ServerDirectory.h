#pragma once

#include <QString>

namespace kelm {

// The server directory as a prefix for file names: a value shorter than two
// characters is replaced by `fallbackDir` (the program folder, where an old
// Windows install fell back to the root of C:), and a directory separator is
// added when missing.
QString serverDirectoryPrefix(const QString& serverDir, const QString& fallbackDir);

} // namespace kelm
