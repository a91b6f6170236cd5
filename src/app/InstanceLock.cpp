#include "InstanceLock.h"

namespace kelm {

std::unique_ptr<QLockFile> acquireInstanceLock(const QString& programFolder)
{
    auto lock = std::make_unique<QLockFile>(programFolder + QStringLiteral("/KelmDrev.lock"));
    lock->setStaleLockTime(0); // only a dead owner makes it stale
    if (!lock->tryLock(0))
        return nullptr;
    return lock;
}

} // namespace kelm
