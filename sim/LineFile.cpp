#include "LineFile.h"

namespace kelm::sim {

bool LineFile::open(const QString& path, QString* error, Mode mode)
{
    file_.setFileName(path);
    if (file_.open(QIODevice::WriteOnly | (mode == Mode::Append ? QIODevice::Append : QIODevice::Truncate)))
        return true;
    if (error)
        *error = QStringLiteral("cannot write %1: %2").arg(path, file_.errorString());
    return false;
}

void LineFile::append(const QByteArray& line)
{
    lines_.append(line);
    if (file_.isOpen()) {
        file_.write(line + '\n');
        file_.flush();
    }
}

} // namespace kelm::sim
