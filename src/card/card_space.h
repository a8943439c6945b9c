#pragma once

#include <QList>
#include <QString>

#include "platform/drives.h"
#include "platform/file_system.h"

namespace tessaly {

/// `bytes` rounded up to whole clusters.
qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes);

/// What a run writes into a folder, and what it takes away first.
struct SpacePlan {
    QList<qint64> newFiles;    ///< sizes in bytes
    qint64 freedBytes = 0;     ///< of what is removed, in whole clusters
    int freedFiles = 0;        ///< entries of the folder that are removed or written over
    int remainingEntries = 0;  ///< entries of the folder that stay
};

/// The clusters that everything in `folder` and below it takes; links take none.
qint64 clustersOfContent(const FileSystem& files, const QString& folder, qint64 clusterBytes);

/// Throws error 534 when the files need more clusters than there will be.
void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry);

/// Throws error 535 when the root folder of a FAT12 or FAT16 volume has too few entries for them.
void requireRootEntries(const SpacePlan& plan, const VolumeGeometry& geometry);

}  // namespace tessaly
