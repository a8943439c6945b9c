#pragma once

#include <QList>
#include <QString>

#include "platform/drives.h"
#include "platform/file_system.h"

namespace tessaly {

/// `bytes` rounded up to whole clusters.
qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes);

/// Entries of its folder that a file of this name takes on a FAT volume, at least one.
int fatEntriesOf(const QString& name, FatNames names);

/// What a run writes into a folder, and what it takes away first.
struct SpacePlan {
    QList<qint64> newFiles;  ///< sizes in bytes
    qint64 freedBytes = 0;   ///< of what is removed or written over, in whole clusters
    int newEntries = 0;      ///< entries of a FAT folder that the names take that are made anew
    int stayingEntries = 0;  ///< those that are not removed before
    int presentEntries = 0;  ///< those of everything that is there now, at least
};

/// The bytes, in whole clusters, that an entry of `folder` takes with everything below it. Links
/// take none; folders do on a FAT volume. Throws when a folder cannot be listed.
qint64 bytesTaken(const FileSystem& files, const QString& folder, const FolderEntry& entry,
                  const VolumeGeometry& geometry);

/// Throws error 534 when the files need more clusters than there will be.
void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry);

/// Throws error 535 when the root folder of a FAT12 or FAT16 volume has too few entries for them.
void requireRootEntries(const SpacePlan& plan, const VolumeGeometry& geometry);

}  // namespace tessaly
