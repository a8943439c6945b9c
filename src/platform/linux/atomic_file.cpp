#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QFileInfo>
#include <cerrno>
#include <memory>

#include "platform/atomic_file.h"
#include "platform/error.h"
#include "platform/native_path.h"

namespace tessaly {

namespace {

QByteArray folderOf(const QString& path) {
    return toNativePath(QFileInfo(path).path());
}

// Whoever writes such a file holds its lock. Where a file system knows no locks, the file stays.
void removeUnlessWritten(int folder, const char* name) {
    const int file = ::openat(folder, name, O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (file < 0)
        return;
    struct stat opened {};
    struct stat named {};
    if (::flock(file, LOCK_EX | LOCK_NB) == 0 && ::fstat(file, &opened) == 0 &&
        S_ISREG(opened.st_mode) && ::fstatat(folder, name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
        named.st_ino == opened.st_ino)
        ::unlinkat(folder, name, 0);
    ::close(file);
}

void removeAbandoned(const QByteArray& folder) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.constData()), ::closedir);
    if (!stream)
        return;
    while (const dirent* entry = ::readdir(stream.get()))
        if (isTemporaryName(fromNativePath(entry->d_name)))
            removeUnlessWritten(::dirfd(stream.get()), entry->d_name);
}

}  // namespace

AtomicFile::AtomicFile(const QString& path, FileSystem::Links links)
    : shown_(path), target_(replacedFile(path, links)) {
    struct stat old {};
    const QByteArray target = toNativePath(target_);
    const bool isThere = ::stat(target.constData(), &old) == 0;
    if (isThere && !S_ISREG(old.st_mode))
        throw systemError(S_ISDIR(old.st_mode) ? EISDIR : EINVAL, shown_);
    // The folder's rights would do; but a file that is read-only is meant to stay.
    if (isThere && ::access(target.constData(), W_OK) != 0)
        throw lastSystemError(shown_);
    removeAbandoned(folderOf(target_));
    create();
    if (isThere)
        ::fchmod(file_, old.st_mode & 07777);  // may fail where there are no rights
}

AtomicFile::~AtomicFile() {
    if (file_ < 0)
        return;
    ::unlink(toNativePath(path_).constData());
    ::close(file_);
}

void AtomicFile::create() {
    while (true) {
        path_ = temporaryPath(target_);
        const QByteArray name = toNativePath(path_);
        file_ = ::open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (file_ < 0 && errno == EEXIST)
            continue;
        if (file_ < 0)
            throw lastSystemError(shown_);
        // Between these two calls somebody may have taken it for abandoned.
        ::flock(file_, LOCK_EX | LOCK_NB);
        struct stat made {};
        if (::fstat(file_, &made) == 0 && made.st_nlink > 0)
            return;
        ::close(file_);
    }
}

void AtomicFile::write(QByteArrayView bytes) {
    while (!bytes.isEmpty()) {
        const ssize_t count = ::write(file_, bytes.data(), size_t(bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throw lastSystemError(shown_);
        bytes = bytes.sliced(count);
    }
}

void AtomicFile::putInPlace() {
    // A device that cannot take the bytes says so here at the latest. EINVAL: it is no such device.
    if (::fsync(file_) != 0 && errno != EINVAL)
        throw lastSystemError(shown_);
    if (::rename(toNativePath(path_).constData(), toNativePath(target_).constData()) != 0)
        throw lastSystemError(shown_);
    ::close(std::exchange(file_, -1));
    // The new name reaches the device, too, before anybody removes what it makes superfluous.
    const int folder = ::open(folderOf(target_).constData(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    if (folder < 0)
        return;
    ::fsync(folder);
    ::close(folder);
}

}  // namespace tessaly
