#include "ProgramFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

namespace kelm {

QString ProgramFolder(const QString& homeOption)
{
    if (!homeOption.isEmpty())
        return QDir::cleanPath(QFileInfo(homeOption).absoluteFilePath());
    const QString exeDir = QCoreApplication::applicationDirPath();
#ifdef Q_OS_WIN
    return exeDir;
#else
    if (QFileInfo::exists(IniPath(exeDir)) || QFileInfo(exeDir).isWritable())
        return exeDir;
    const QString perUser = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation);
    QDir().mkpath(perUser);
    return perUser;
#endif
}

} // namespace kelm
