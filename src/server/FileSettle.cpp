#include "server/FileSettle.h"

namespace kelm::server {

namespace {

constexpr qint64 kSettleMs = 200;

} // namespace

bool hasSettled(const FileLook* earlier, const FileLook& now, const QDateTime& clockNow)
{
    if (now.modified.msecsTo(clockNow) >= kSettleMs)
        return true;
    return earlier && earlier->size == now.size && earlier->modified == now.modified
        && now.seenAtMs - earlier->seenAtMs >= kSettleMs;
}

} // namespace kelm::server
