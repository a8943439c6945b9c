#pragma once

#include <QByteArrayView>
#include <QString>

#include "platform/file_system.h"

#ifdef Q_OS_WIN
#include "platform/windows/calls.h"
#endif

namespace tessaly {

/// A new file beside the one that it is to replace. It is held against everybody else while it is
/// written, so that what a killed program left can be told from what a living one is writing.
class AtomicFile {
 public:
    /// Removes what killed programs left in the folder, whichever file it was for, and makes the
    /// new file. Where links are followed, the file that one points at is the one to replace, else
    /// the link itself. Throws, with the path of the old file, where that is a folder or cannot be
    /// written.
    explicit AtomicFile(const QString& path, FileSystem::Links links = FileSystem::Links::Follow);

    /// Removes the new file unless it was put in place.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    void write(QByteArrayView bytes);  ///< throws TessalyError, with the path of the old file

    /// Returns when the new file is on its device and has the old one's place and rights. Throws
    /// as write() does; the old file is then untouched.
    void putInPlace();

    /// The path of the new file: the old one's, six letters, and an ending of its own.
    const QString& path() const { return path_; }

 private:
    void create();

    const QString shown_;   // what the caller calls the old file
    const QString target_;  // where it stands
    QString path_;
#ifdef Q_OS_WIN
    HANDLE file_ = INVALID_HANDLE_VALUE;
#else
    int file_ = -1;
#endif
};

/// The file that is replaced: the one that `path` leads to, which need not exist, or `path` itself.
QString replacedFile(const QString& path, FileSystem::Links links);

/// A name for the new file that is most likely free.
QString temporaryPath(const QString& target);

/// Whether a name is one of temporaryPath()'s.
bool isTemporaryName(const QString& name);

}  // namespace tessaly
