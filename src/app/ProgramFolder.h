#pragma once

#include <QString>

namespace kelm {

// The folder of KelmDrev.ini and FileExt.ini. Named explicitly by
// `--home DIR`; on Windows the executable's folder; elsewhere the
// executable's folder when it already holds KelmDrev.ini or is writable (a
// portable install), else the per-user configuration folder.
QString ProgramFolder(const QString& homeOption);

inline QString IniPath(const QString& programFolder)
{
    return programFolder + QStringLiteral("/KelmDrev.ini");
}

} // namespace kelm
