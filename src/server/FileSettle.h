#pragma once

#include <QDateTime>

namespace kelm::server {

// How a waiting receipt file looked at one scan.
struct FileLook {
    qint64 size = -1;
    QDateTime modified;
    qint64 seenAtMs = 0; // the line clock's time of that scan
};

// Whether a receipt file has stopped changing and can be taken. One whose
// time stamp is at least 200 ms old is taken at once: a file moved in whole
// must not wait. Any other (still being written, or stamped by a clock that
// runs ahead, as on a share) must look the same, size and time stamp, at two
// scans at least 200 ms apart. `earlier` is the first scan that saw it as it
// is now, if any.
bool hasSettled(const FileLook* earlier, const FileLook& now, const QDateTime& clockNow);

} // namespace kelm::server
