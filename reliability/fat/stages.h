#pragma once

#include <QString>

#include "fat_volume.h"
#include "mounted_volume.h"
#include "support/card_bench.h"

namespace tessaly::fat {

/// Prints a line at once.
void say(const QString& line);

/// Throws a TessalyError with `what` unless `holds`.
void require(bool holds, const QString& what);

/// A card run's surrounding with as many tracks as a test wants, each with a content of its own.
class TrackBench : public test::CardBench {
 public:
    /// Makes the project one of `count` tracks of one byte and more; the last has `lastBytes`.
    void useTracks(int count, qint64 lastBytes = 1);

    /// Whether the guards let the project onto the card; nothing is written. Throws when they stop
    /// it for another reason than room.
    bool guardsPass();

    /// What must be on the card after a run, from the sources alone.
    QMap<QString, QByteArray> expectedCard() const;

    /// Writes the card into an ordinary folder and returns its files.
    QStringList writeElsewhere();
};

/// The largest number from 0 to below `end` that `passes`, which holds for all smaller ones.
qint64 largest(qint64 end, const std::function<bool(qint64)>& passes);

/// What the guards let onto a volume fits and what they stop does not, by mcopy into the image,
/// which makes entries as Windows does.
void tryLimits(const QString& image, const VolumeKind& kind);

/// Creation on a used card, update of the settings, update of the firmware.
void tryFlow(MountedVolume& volume, const VolumeKind& kind);

/// The same on a card whose root folder or whose clusters are full to the last.
void tryFullCard(MountedVolume& volume, const VolumeKind& kind);

/// Updates of the settings on a card that Windows wrote, its root folder full or almost so.
void tryCardOfWindows(MountedVolume& volume, const VolumeKind& kind);

/// A volume that shows its label as a file: the run takes it for one and erases it.
void tryShownLabel(MountedVolume& volume, const VolumeKind& kind);

/// FAT32 with fewer clusters than it should have, which looks like FAT16 but for its boot sector.
/// mtools does not read such a volume.
void trySmallFat32(MountedVolume& volume, const VolumeKind& kind);

}  // namespace tessaly::fat
