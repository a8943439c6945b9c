// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLockFile>
#include <QString>
#include <QStringList>

namespace tessaly {

/// What the program was started with, without its own name. To be called after the application
/// object was made, which has taken its own options out of `argv`. File names keep their bytes, as
/// fromNativePath() does.
QStringList commandLineArguments(int argc, char** argv);

/// Makes a write to a file that may not grow (SIGXFSZ), or to a pipe that nobody reads (SIGPIPE),
/// an error of that write instead of the end of the program. Every main() calls it first.
void turnWriteSignalsIntoErrors();

/// Finds out whether the program runs already.
class SingleInstance {
 public:
    virtual ~SingleInstance() = default;

    /// Whether this is the only instance, which it stays until it ends. May be asked again.
    virtual bool isOnlyOne() = 0;
};

/// By the lock file "tessaly.lock" in a folder of the user's own, which is made if it is missing.
/// The lock of a process that has crashed does not count.
class LocalSingleInstance : public SingleInstance {
 public:
    explicit LocalSingleInstance(const QString& folder);
    bool isOnlyOne() override;

 private:
    QLockFile lock_;
};

}  // namespace tessaly
