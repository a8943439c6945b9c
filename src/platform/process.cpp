// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process.h"

#include <QCoreApplication>
#include <QDir>
#include <csignal>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

#ifdef Q_OS_WIN

QStringList commandLineArguments(int, char**) {
    return QCoreApplication::arguments().mid(1);  // argv has lost what the code page lacks
}

void turnWriteSignalsIntoErrors() {}

#else

QStringList commandLineArguments(int argc, char** argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(fromNativePath(argv[i]));
    return arguments;
}

void turnWriteSignalsIntoErrors() {
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
}

#endif

LocalSingleInstance::LocalSingleInstance(const QString& folder)
    : lock_(pathIn(folder, u"tessaly.lock"_s)) {
    QDir().mkpath(folder);
    lock_.setStaleLockTime(0);  // however old a lock is, it counts while its process lives
}

bool LocalSingleInstance::isOnlyOne() {
    // A folder that cannot be written must not keep the program from starting.
    return lock_.isLocked() || lock_.tryLock() || lock_.error() != QLockFile::LockFailedError;
}

}  // namespace tessaly
