// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

#include "platform/drives.h"

namespace tessaly::fat {

/// Throws a TessalyError with `what` unless `holds`.
void require(bool holds, const QString& what);

/// How a volume is to be made.
struct VolumeKind {
    int bits = 16;  ///< 12, 16 or 32
    int mebibytes = 8;
    int sectorsPerCluster = 1;  ///< of 512 bytes
    int rootEntries = 512;      ///< FAT12 and FAT16
    bool hasLabel = false;

    qint64 clusterBytes() const { return sectorsPerCluster * 512; }
    bool hasFixedRoot() const { return bits != 32; }
    /// "FAT16 8 MB, clusters of 512, 512 entries, label".
    QString name() const;
};

/// A FAT volume in an image file or on a block device: made by mkfs.fat, looked at by fsck.fat and
/// mtools, mounted by the kernel. Everything throws TessalyError.
class FatVolume {
 public:
    /// To be mounted at `folder` with `options`; both empty for one that is not.
    FatVolume(QString image, VolumeKind kind, QString folder = {}, QString options = {});
    ~FatVolume();

    const VolumeKind& kind() const { return kind_; }
    const QString& folder() const { return folder_; }

    /// Makes it anew, with about `freeClusters` that are not bad; 0 for all. Ends unmounted.
    void format(qint64 freeClusters = 0);

    /// What the guards need to know, from the outside, while it is unmounted and its root folder
    /// has no more than one cluster. `names` is the habit of whoever writes.
    VolumeGeometry geometry(FatNames names) const;

    /// Mounts it and returns what the program itself finds out, which must agree with geometry()
    /// when the volume `isFresh`. It takes root on a machine that is there for nothing else: what
    /// udev would write, which does not run there, is written into /run/udev.
    VolumeGeometry mount(bool isFresh = true);
    void unmount();  ///< everything is in the image afterwards; no error if it was not mounted

    /// Everything on the volume as mtools reads it: path -> content, "folder" for folders. Unmounts
    /// it and throws unless fsck.fat finds nothing to say.
    QMap<QString, QByteArray> content();

    /// Whether all `files` go into the root folder by mcopy, which uses entries as Windows does.
    bool takesFiles(const QStringList& files) const;

 private:
    bool isMounted() const;

    const QString image_;
    const VolumeKind kind_;
    const QString folder_, options_;
};

}  // namespace tessaly::fat
