// SPDX-License-Identifier: GPL-3.0-or-later
// Folders: listed, removed from, and held open while a card is erased and written.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <QStringList>
#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/error.h"
#include "platform/linux/files.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

// Removes `name` from the open folder `at`. What protects an entry on Linux is the mode of the
// folder it stands in.
void removeForced(const QString& path, int at, const QByteArray& name, int flags) {
    if (::unlinkat(at, name.constData(), flags) == 0)
        return;
    if (errno == EACCES) {
        if (::fchmod(at, 0700) == 0 && ::unlinkat(at, name.constData(), flags) == 0)
            return;
        errno = EACCES;
    }
    throw lastSystemError(path);
}

QList<FolderEntry> listFolder(Descriptor folder, const QString& path) {
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::fdopendir(folder.get()), ::closedir);
    if (!stream)
        throw lastSystemError(path);
    folder.release();
    QList<FolderEntry> found;
    while (true) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (!entry) {
            if (errno != 0)
                throw lastSystemError(path);
            return found;
        }
        if (!strcmp(entry->d_name, ".") || !strcmp(entry->d_name, ".."))
            continue;
        FolderEntry item{.name = fromNativePath(entry->d_name)};
        struct stat status {};
        if (::fstatat(::dirfd(stream.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) == 0) {
            item.isFolder = S_ISDIR(status.st_mode);
            item.isLink = S_ISLNK(status.st_mode);
            item.size = S_ISREG(status.st_mode) ? status.st_size : 0;
        }
        found.append(item);
    }
}

Descriptor openedFolder(const QString& path, int at, const QByteArray& name, int flags) {
    Descriptor folder(::openat(at, name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags));
    if (!folder.isOpen())
        throw lastSystemError(path);
    return folder;
}

namespace {

// Tells one mount from another, also two bind mounts of one volume. Kernels before 5.8 tell the
// device only.
struct MountPlace {
    quint64 device = 0;
    quint64 mount = 0;
    bool operator==(const MountPlace&) const = default;
};

MountPlace mountOf(const Descriptor& folder, const QString& path) {
    struct statx status {};
    if (::statx(folder.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_MNT_ID, &status) != 0)
        throw lastSystemError(path);
    return {.device = ::makedev(status.stx_dev_major, status.stx_dev_minor),
            .mount = status.stx_mask & STATX_MNT_ID ? status.stx_mnt_id : 0};
}

class LinuxOpenFolder : public OpenFolder {
 public:
    explicit LinuxOpenFolder(const QString& path)
        : path_(path),
          folder_(openedFolder(path, AT_FDCWD, toNativePath(path))),
          mount_(mountOf(folder_, path)) {}

    FileIdentity identity() const override {
        struct stat status {};
        if (::fstat(folder_.get(), &status) != 0)
            throw lastSystemError(path_);
        return {.volume = status.st_dev, .high = 0, .low = status.st_ino};
    }

    QList<FolderEntry> entries(const QString& inside) const override {
        return listFolder(enter(inside), pathOf(inside));
    }

    void removeFile(const QString& inside) override { remove(inside, 0); }
    void removeFolder(const QString& inside) override { remove(inside, AT_REMOVEDIR); }

    std::unique_ptr<OutputFile> create(const QString& name) override {
        return createOutputFile(pathOf(name), folder_.get(), toNativePath(name));
    }

 private:
    QString pathOf(const QString& inside) const {
        return inside.isEmpty() ? path_ : pathIn(path_, inside);
    }

    // Opens name by name, each with O_NOFOLLOW: a link or a mount that took the place of a folder
    // since it was listed is refused.
    Descriptor enter(const QString& inside) const {
        Descriptor folder = openedFolder(path_, folder_.get(), ".");
        for (const QString& name : inside.split(u'/', Qt::SkipEmptyParts)) {
            if (name == u"..")
                throw systemError(EINVAL, pathOf(inside));
            folder = openedFolder(pathOf(inside), folder.get(), toNativePath(name), O_NOFOLLOW);
            if (mountOf(folder, pathOf(inside)) != mount_)
                throw TessalyError(
                    error_number::SystemFolder,
                    pathOf(inside) + u": another drive is mounted here and will not be erased."_s);
        }
        return folder;
    }

    void remove(const QString& inside, int flags) {
        const qsizetype slash = inside.lastIndexOf(u'/');
        const Descriptor folder = enter(inside.left(std::max<qsizetype>(slash, 0)));
        removeForced(pathOf(inside), folder.get(), toNativePath(inside.mid(slash + 1)), flags);
    }

    QString path_;
    Descriptor folder_;
    MountPlace mount_;
};

}  // namespace

std::unique_ptr<OpenFolder> openFolderAt(const QString& path) {
    return std::make_unique<LinuxOpenFolder>(path);
}

}  // namespace tessaly
