// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "platform/drives.h"

// What Linux says of its mounts and block devices, read from its text alone. Nothing here looks at
// the machine; drives.cpp fetches the text.

namespace tessaly {

/// One line of /proc/self/mountinfo.
struct Mount {
    QString device;  ///< "major:minor"
    QString root;    ///< the folder of the file system that is mounted, "/" unless bind-mounted
    QString mountPoint;
    QString fileSystem;
    QString source;   ///< e.g. "/dev/sdb1", "server:/export", "tmpfs"
    QString options;  ///< those of the mount and of the file system, comma-separated
    bool operator==(const Mount&) const = default;
};

/// The lines of a mount table, in their order; lines that are no mount are left out.
QList<Mount> parseMountTable(QByteArrayView text);

/// The mount whose mount point is exactly `path` (with or without a last "/"); of several stacked
/// on one point the last, which is the one in sight.
std::optional<Mount> findMount(const QList<Mount>& mounts, const QString& path);

/// Mount points of other mounts inside `folder`, a canonical path, and of those that show a part of
/// it elsewhere, as a bind mount does.
QStringList mountsInside(const QList<Mount>& mounts, const QString& folder);

/// The text of a block device's attribute files, trailing newlines and all; empty where the device
/// has no such attribute. They belong to the whole disk, not to its partition.
struct DeviceAttributes {
    QString name;          ///< e.g. "sdb", "mmcblk0", "sr0"; empty without a block device
    QByteArray removable;  ///< "1" or "0"
    QByteArray mmcType;    ///< "SD", "MMC", ...
};

/// Network, RAM disk and CD-ROM by file system and device name; removable when the kernel says so
/// of the disk or the disk is an SD card; fixed otherwise. A USB backup disk is fixed.
DriveType classifyMount(const Mount& mount, const DeviceAttributes& device);

/// The label of a volume in what udev keeps of its device; empty where there is none.
QString volumeLabel(QByteArrayView deviceRecord);

/// What Linux tells of a mounted FAT volume.
struct FatFacts {
    qint64 clusters = 0;
    qint64 rootFolderBytes = 0;  ///< its size as a folder; on FAT12 and FAT16 that of all entries
    QByteArray deviceRecord;     ///< what udev keeps of the device, empty where there is none
};

/// Whether a mount is a FAT volume.
bool isFatMount(const Mount& mount);

/// The size of the root folder of a FAT volume and the names that take one entry on it.
void describeFat(VolumeGeometry& geometry, const Mount& mount, const FatFacts& facts);

}  // namespace tessaly
