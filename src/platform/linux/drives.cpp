// SPDX-License-Identifier: GPL-3.0-or-later
#include <fcntl.h>
#include <linux/msdos_fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <QFile>
#include <QFileInfo>
#include <cerrno>

#include "platform/drives.h"
#include "platform/error.h"
#include "platform/linux/files.h"
#include "platform/linux/mount_table.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<Mount> currentMounts() {
    return parseMountTable(contentOf(u"/proc/self/mountinfo"_s));
}

// The folder in which the system describes the block device of a mount; empty without one.
QString blockDeviceOf(const Mount& mount) {
    // The number of the mount is the device's, except for FUSE, whose source may still be one.
    QString folder = u"/sys/dev/block/"_s + mount.device;
    if (!QFileInfo::exists(folder) && mount.source.startsWith(u"/dev/"_s))
        folder = u"/sys/class/block/"_s +
                 QFileInfo(QFileInfo(mount.source).canonicalFilePath()).fileName();
    return QFileInfo(folder).canonicalFilePath();
}

DeviceAttributes attributesOf(QString folder) {
    if (folder.isEmpty())
        return {};
    if (QFileInfo::exists(folder + u"/partition"_s))
        folder = QFileInfo(folder).path();
    return {.name = QFileInfo(folder).fileName(),
            .removable = contentOf(folder + u"/removable"_s),
            .mmcType = contentOf(folder + u"/device/type"_s)};
}

TessalyError notReady(const QString& root) {
    return {error_number::DriveNotReady, shownPath(root) + u": the drive is not ready"_s};
}

Mount mountAt(const QString& root) {
    const auto mount = findMount(currentMounts(), root);
    if (!mount)
        throw notReady(root);
    return *mount;
}

struct statvfs statisticsOf(const QString& path) {
    struct statvfs statistics {};
    if (::statvfs(toNativePath(path).constData(), &statistics) != 0)
        throw lastSystemError(path);
    return statistics;
}

qint64 folderBytes(const QString& folder) {
    struct stat status {};
    return ::stat(toNativePath(folder).constData(), &status) == 0 ? status.st_size : 0;
}

// The kernel tells short and long names apart here, without any right to the device.
QHash<QString, int> entriesByName(const QString& folder) {
    constexpr qsizetype CharactersPerEntry = 13;
    QHash<QString, int> entries;
    const Descriptor open(
        ::open(toNativePath(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    __fat_dirent names[2] = {};  // the short name, then the long one, empty if there is none
    while (::ioctl(open.get(), VFAT_IOCTL_READDIR_BOTH, names) > 0 && names[0].d_reclen > 0) {
        const QString longName = fromNativePath(names[1].d_name);
        const QString name = longName.isEmpty() ? fromNativePath(names[0].d_name) : longName;
        entries.insert(name,
                       int(1 + (longName.size() + CharactersPerEntry - 1) / CharactersPerEntry));
    }
    return entries;
}

// Pseudo file systems hold no person's files.
bool isForPeople(const Mount& mount) {
    if (mount.fileSystem == u"autofs"_s)  // only says where something would be mounted
        return false;
    return mount.source.startsWith(u'/') || mount.source.contains(u":/"_s) ||
           mount.source.startsWith(u"//"_s) || mount.fileSystem.startsWith(u"fuse."_s) ||
           (mount.fileSystem == u"tmpfs"_s && mount.mountPoint.startsWith(u"/media/"_s));
}

}  // namespace

DriveType LocalDrives::type(const QString& root) const {
    const Mount mount = mountAt(root);
    return classifyMount(mount, attributesOf(blockDeviceOf(mount)));
}

qint64 LocalDrives::totalBytes(const QString& root) const {
    mountAt(root);
    struct statvfs statistics {};
    if (::statvfs(toNativePath(root).constData(), &statistics) != 0) {
        // What is left of a drive that went away without being unmounted.
        for (const int gone : {EIO, ENXIO, ENODEV, ENOTCONN, ESHUTDOWN})
            if (errno == gone)
                throw notReady(root);
        throw lastSystemError(root);
    }
    return qint64(statistics.f_blocks) * qint64(statistics.f_frsize);
}

// What stands on no device of this machine may hang whoever asks it, as a server that is gone does.
QList<Volume> LocalDrives::volumes() const {
    QList<Volume> found;
    for (const Mount& mount : currentMounts()) {
        if (!isForPeople(mount) || mount.root != u"/"_s)
            continue;
        const QString device = blockDeviceOf(mount);
        Volume volume{.root = withLastSeparator(mount.mountPoint),
                      .name = volumeLabel(
                          contentOf(u"/run/udev/data/b"_s +
                                    QString::fromUtf8(contentOf(device + u"/dev"_s).trimmed()))),
                      .type = classifyMount(mount, attributesOf(device))};
        if (volume.name.isEmpty())
            volume.name = QFileInfo(mount.source).fileName();
        if (volume.type == DriveType::RamDisk || !device.isEmpty()) {
            struct statvfs statistics {};
            if (!QFileInfo(mount.mountPoint).isDir())
                continue;
            volume.isReady =
                ::statvfs(toNativePath(mount.mountPoint).constData(), &statistics) == 0;
            volume.totalBytes = qint64(statistics.f_blocks) * qint64(statistics.f_frsize);
            volume.freeBytes = qint64(statistics.f_bavail) * qint64(statistics.f_frsize);
        }
        found.append(volume);
    }
    return found;
}

VolumeGeometry LocalDrives::geometry(const QString& path) const {
    const auto statistics = statisticsOf(path);
    VolumeGeometry geometry{.clusterBytes = std::max<qint64>(qint64(statistics.f_frsize), 512),
                            .totalBytes = qint64(statistics.f_blocks) * qint64(statistics.f_frsize),
                            .freeBytes = qint64(statistics.f_bavail) * qint64(statistics.f_frsize),
                            .isReadOnly = (statistics.f_flag & ST_RDONLY) != 0};
    // The volume of a folder is the mount nearest above it.
    const QList<Mount> mounts = currentMounts();
    QString folder = QFileInfo(path).canonicalFilePath();
    std::optional<Mount> mount = findMount(mounts, folder);
    while (!mount && folder.size() > 1) {
        folder = QFileInfo(folder).path();
        mount = findMount(mounts, folder);
    }
    if (!mount || !isFatMount(*mount))
        return geometry;
    describeFat(geometry, *mount,
                {.clusters = qint64(statistics.f_blocks),
                 .rootFolderBytes = folderBytes(mount->mountPoint),
                 .deviceRecord = contentOf(u"/run/udev/data/b"_s + mount->device)});
    if (mount->mountPoint != QFileInfo(path).canonicalFilePath())
        geometry.rootEntries.reset();
    geometry.folderBytes = folderBytes(path);
    geometry.entriesByName = entriesByName(path);
    return geometry;
}

// The kernel counts the media of all its drives, and the mounts; many file systems know when they
// were made. Old kernels do not have the first number, and the second is used again.
QString LocalDrives::medium(const QString& path) const {
    struct statx status {};
    if (::statx(AT_FDCWD, toNativePath(path).constData(), 0,
                STATX_BASIC_STATS | STATX_MNT_ID | STATX_BTIME, &status) != 0)
        return {};
    const QString device =
        u"/sys/dev/block/%1:%2/"_s.arg(status.stx_dev_major).arg(status.stx_dev_minor);
    QByteArray count = contentOf(device + u"diskseq"_s);
    if (count.isEmpty())  // a partition
        count = contentOf(device + u"../diskseq"_s);
    return u"%1 %2 %3.%4"_s.arg(QString::fromUtf8(count.trimmed()))
        .arg(status.stx_mnt_id)
        .arg(status.stx_btime.tv_sec)
        .arg(status.stx_btime.tv_nsec);
}

QStringList LocalDrives::mountsInside(const QString& folder) const {
    return tessaly::mountsInside(currentMounts(), QFileInfo(folder).canonicalFilePath());
}

}  // namespace tessaly
