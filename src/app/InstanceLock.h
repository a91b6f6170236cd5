#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace kelm {

// One driver per program folder: two would fight over the port and both
// claim the same receipt files. A lock left by a crashed run is taken over.
// Null when another instance holds it.
std::unique_ptr<QLockFile> acquireInstanceLock(const QString& programFolder);

inline const QString kAlreadyRunning = QStringLiteral("Driver già attivo");

} // namespace kelm
