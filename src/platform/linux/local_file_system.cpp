// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/local_file_system.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <QSaveFile>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/error.h"
#include "platform/linux/files.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

TessalyError systemError(int code, const QString& path) {
    return {code, shownPath(path) + u": "_s + QString::fromLocal8Bit(strerror(code))};
}

TessalyError lastSystemError(const QString& path) {
    return systemError(errno, path);
}

std::optional<FileStamp> LocalFileSystem::stamp(const QString& path) const {
    struct stat status {};
    if (::stat(toNativePath(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    constexpr qint64 NanosecondsASecond = 1'000'000'000;
    return FileStamp{status.st_size,
                     status.st_mtim.tv_sec * NanosecondsASecond + status.st_mtim.tv_nsec};
}

bool LocalFileSystem::isFolder(const QString& path) const {
    struct stat status {};
    return ::stat(toNativePath(path).constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QList<FolderEntry> LocalFileSystem::entries(const QString& folder) const {
    return listFolder(openedFolder(folder, AT_FDCWD, toNativePath(folder)), folder);
}

std::optional<FileIdentity> LocalFileSystem::identity(const QString& path) const {
    struct stat status {};
    if (::stat(toNativePath(path).constData(), &status) != 0)
        return std::nullopt;
    return FileIdentity{.volume = status.st_dev, .high = 0, .low = status.st_ino};
}

QString LocalFileSystem::canonicalPath(const QString& path) const {
    const std::unique_ptr<char, void (*)(void*)> real(
        ::realpath(toNativePath(path).constData(), nullptr), std::free);
    return real ? fromNativePath(real.get()) : QString();
}

bool LocalFileSystem::isWritableFolder(const QString& folder) const {
    return ::access(toNativePath(folder).constData(), W_OK | X_OK) == 0;
}

void LocalFileSystem::makeFolder(const QString& path) {
    if (::mkdir(toNativePath(path).constData(), 0777) != 0)
        throw lastSystemError(path);
}

void LocalFileSystem::removeFile(const QString& path) {
    const QByteArray name = toNativePath(path);
    const qsizetype slash = name.lastIndexOf('/');
    const QByteArray above = slash < 0 ? "." : name.left(slash + 1);
    const Descriptor folder = openedFolder(path, AT_FDCWD, above);
    removeForced(path, folder.get(), name.mid(slash + 1), 0);
}

std::unique_ptr<OpenFolder> LocalFileSystem::openFolder(const QString& path) {
    return openFolderAt(path);
}

std::unique_ptr<InputFile> LocalFileSystem::openForReading(const QString& path, ReadMode mode) {
    return openInputFile(path, mode);
}

std::unique_ptr<OutputFile> LocalFileSystem::create(const QString& path) {
    return createOutputFile(path, AT_FDCWD, toNativePath(path));
}

void LocalFileSystem::replaceFile(const QString& path, QByteArrayView bytes, Links links) {
    const QByteArray given = toNativePath(path);
    struct stat old {};
    if (links == Links::Refuse && ::lstat(given.constData(), &old) == 0 && S_ISLNK(old.st_mode))
        throw linkInTheWay(path);
    const bool isThere = ::stat(given.constData(), &old) == 0;
    if (isThere && S_ISDIR(old.st_mode))
        throw systemError(EISDIR, path);
    // A file would take the place of the device itself.
    if (isThere && !S_ISREG(old.st_mode))
        throw notAFile(path);
    // The folder's rights would do; but a file that is read-only is meant to stay.
    if (isThere && ::access(given.constData(), W_OK) != 0)
        throw lastSystemError(path);

    const QByteArray target = toNativePath(isThere ? canonicalPath(path) : absolutePath(path));
    const qsizetype slash = target.lastIndexOf('/');
    const Descriptor folder(
        ::open(target.left(slash + 1).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // QSaveFile knows names in UTF-8 only. Any other file is saved under a name of this process in
    // the same folder, and gets its own name last.
    const bool isUtf8 = QString::fromUtf8(target).toUtf8() == target;
    const QString place =
        isUtf8 ? QString::fromUtf8(target)
               : u"/proc/self/fd/%1/%2.tessaly-new"_s.arg(folder.get()).arg(::getpid());
    QSaveFile file(place);
    errno = 0;
    bool isSaved = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (isSaved && isThere)
        ::fchmod(file.handle(), old.st_mode & 07777);  // may fail where there are no rights
    // A device that cannot take the bytes says so at the fsync at the latest, which QSaveFile does
    // not heed. EINVAL: there is no device.
    isSaved = isSaved && file.write(bytes.data(), bytes.size()) == bytes.size() &&
              (::fsync(file.handle()) == 0 || errno == EINVAL) && file.commit() &&
              (isUtf8 || ::renameat(AT_FDCWD, place.toUtf8().constData(), folder.get(),
                                    target.mid(slash + 1).constData()) == 0);
    if (!isSaved) {
        const int code = errno == 0 ? EIO : errno;
        if (!isUtf8)
            ::unlink(place.toUtf8().constData());
        throw systemError(code, path);
    }
    ::fsync(folder.get());  // so that the rename is durable
}

void LocalFileSystem::settle(const QString& path) {
    const Descriptor file(::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!file.isOpen())
        throw lastSystemError(path);
    // Without the metadata: a commit for every file would take longer than all the data.
    constexpr auto WriteAndWait =
        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
    // Some file systems take the bytes and find only now that there is no room for them.
    const bool isLost = ::sync_file_range(file.get(), 0, 0, WriteAndWait) != 0 &&
                        (errno == EIO || errno == ENOSPC || errno == EDQUOT);
    if (isLost)
        throw lastSystemError(path);
}

void LocalFileSystem::flushVolume(const QString& path) {
    const Descriptor folder(::open(toNativePath(path).constData(), O_RDONLY | O_CLOEXEC));
    if (!folder.isOpen() || ::syncfs(folder.get()) != 0)
        throw lastSystemError(path);
}

}  // namespace tessaly
