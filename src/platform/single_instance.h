#pragma once

#include <QLockFile>
#include <QString>

namespace tessaly {

/// Finds out whether the program runs already.
class SingleInstance {
 public:
    virtual ~SingleInstance() = default;

    /// Whether this is the only instance, which it stays until it ends. May be asked again.
    virtual bool isOnlyOne() = 0;
};

/// By a lock file in a folder of the user's own. A run that crashed leaves no lock behind: its
/// process is known to be gone.
class LocalSingleInstance : public SingleInstance {
 public:
    explicit LocalSingleInstance(const QString& folder);
    bool isOnlyOne() override;

 private:
    QLockFile lock_;
};

}  // namespace tessaly
