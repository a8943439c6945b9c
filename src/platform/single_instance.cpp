#include "platform/single_instance.h"

#include <QDir>

#include "platform/paths.h"

namespace tessaly {

LocalSingleInstance::LocalSingleInstance(const QString& folder)
    : lock_(pathIn(folder, "tessaly.lock")) {
    QDir().mkpath(folder);
    lock_.setStaleLockTime(0);  // only a process that is gone gives the lock up
}

bool LocalSingleInstance::isOnlyOne() {
    // A folder that cannot be written must not keep the program from starting.
    return lock_.isLocked() || lock_.tryLock() || lock_.error() != QLockFile::LockFailedError;
}

}  // namespace tessaly
