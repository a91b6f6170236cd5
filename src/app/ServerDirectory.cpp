#include "ServerDirectory.h"

#include <QDir>

namespace kelm {

QString serverDirectoryPrefix(const QString& serverDir, const QString& fallbackDir)
{
    const QString dir = serverDir.size() < 2 ? fallbackDir : serverDir;
    if (dir.endsWith(u'/') || dir.endsWith(QDir::separator()))
        return dir;
    return dir + QDir::separator();
}

} // namespace kelm
