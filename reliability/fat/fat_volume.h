#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>

#include "platform/drives.h"

// A FAT volume in an image file or on a block device: made by mkfs.fat, read here from its boot
// sector and its FAT, and looked at by fsck.fat and mtools.

namespace tessaly::fat {

/// How a volume is to be made.
struct VolumeKind {
    int bits = 16;  ///< 12, 16 or 32
    int mebibytes = 8;
    int sectorsPerCluster = 1;  ///< of 512 bytes
    int rootEntries = 512;      ///< FAT12 and FAT16
    bool hasLabel = false;
};

/// "FAT16 8 MB, 2 KB clusters, 512 entries, label".
QString nameOf(const VolumeKind& kind);

/// What a volume says of itself.
struct VolumeFacts {
    int bits = 0;  ///< 12, 16 or 32: the latter where the boot sector has no length of a short FAT
    qint64 sectorBytes = 0;
    qint64 clusterBytes = 0;
    qint64 clusters = 0;
    qint64 freeClusters = 0;
    int rootEntries = 0;         ///< 0 on FAT32
    qint64 rootFolderBytes = 0;  ///< on FAT32, by the chain of its clusters
    qint64 fatStart = 0;         ///< bytes from the start of the volume
    qint64 fatBytes = 0;
    int fats = 0;
};

/// Runs a tool and returns what it wrote; throws TessalyError when it fails.
QByteArray runTool(const QString& program, const QStringList& arguments);

/// Makes the volume anew. `path` is a file or a device that is large enough.
void format(const QString& path, const VolumeKind& kind);

/// Throws when the boot sector is none of FAT.
VolumeFacts readFacts(const QString& path);

/// What the guards need to know, read from the volume. `names` is the habit of whoever writes.
VolumeGeometry geometryOf(const QString& path, FatNames names);

/// Marks free clusters as bad, from the end, until `keep` are left. FAT16 and FAT32 only.
void keepFreeClusters(const QString& path, qint64 keep);

/// Puts right what fusefat leaves in the second entry of a FAT16: it clears all but the mark of a
/// clean volume, and mtools takes the volume for damaged.
void restoreFatMark(const QString& path);

/// What fsck.fat has to say against a volume, line by line; empty for a clean one.
QStringList complaintsAbout(const QString& path);

/// Throws unless fsck.fat finds nothing to say.
void requireClean(const QString& path);

/// Everything on the volume as mtools reads it: path -> content, "folder" for folders.
QMap<QString, QByteArray> contentOf(const QString& path);

/// Whether all `files` go into the root folder of the volume by mcopy, which uses entries as
/// Windows does. Throws when it fails for another reason than a lack of room.
bool takesFiles(const QString& path, const QStringList& files);

}  // namespace tessaly::fat
