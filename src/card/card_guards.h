#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "card/card_space.h"
#include "card/source_files.h"
#include "model/project.h"
#include "platform/drives.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

// What must be true of a target before the first file on it is deleted. Each function throws a
// TessalyError with a number of its own when it is not. `root` is the card's root folder.

namespace tessaly {

/// What a card is known by while an operator is asked and the card is written: its root folder and
/// its medium. Another FAT card in the same reader differs in the second alone.
struct CardIdentity {
    std::optional<FileIdentity> folder;  ///< nothing: there is none
    QString medium;
    bool operator==(const CardIdentity&) const = default;
};

CardIdentity cardAt(const FileSystem& files, const Drives& drives, const QString& root);

/// Error 71 unless `card` is at `root` now. A card that was pulled out leaves a folder behind on
/// Linux, and another card may have taken its place.
void requireCardAt(const FileSystem& files, const Drives& drives, const QString& root,
                   const CardIdentity& card);

/// Error 530 unless `root` is the root of a removable drive now, whatever it was when it was
/// chosen.
void requireRemovableRoot(const Drives& drives, const QString& root);

/// For a card that is a folder named on purpose. Error 556 when it holds anything but a card's
/// files, unless `mayEraseOthers`. Error 530 when it does and is a whole fixed disk, network share
/// or disc, whatever was said: only what a RAM disk holds is gone soon anyway.
void requireErasableFolder(const FileSystem& files, const Drives& drives, const QString& root,
                           bool mayEraseOthers);

/// Error 531 when `root` is, holds or stands in a folder of the operating system, or is or holds a
/// folder that people's files stand in, the program or one of `kept`, or is the work tree of a
/// version control.
void refuseSystemFolder(const FileSystem& files, const QString& root, const SupportFolders& folders,
                        const QStringList& kept);

/// Error 531 when the project's own file is in `root` or below it: it would be deleted or written
/// over. An empty path is that of a project without a file.
void refuseHoldingProject(const FileSystem& files, const QString& root, const QString& projectFile);

/// Error 531 when other drives are mounted in `root`, or a part of it is mounted elsewhere.
void refuseHoldingMounts(const Drives& drives, const QString& root);

/// Error 532 when one of `sources` is a file in `root` or below it. Paths that do not exist are
/// passed over.
void refuseHoldingSources(
    const FileSystem& files, const QString& root, const SourceFiles& sources,
    const FileDone& fileDone = [] {});

/// Error 533 when `root` cannot be written.
void requireWritable(const FileSystem& files, const Drives& drives, const QString& root);

/// Error 536 unless every numbered file of `tracks` is on the card with the size of its source,
/// under the number that the card's own project gives it.
void requireSameTracks(
    FileSystem& files, const QString& root, const QList<SourceFile>& tracks,
    const FileDone& fileDone = [] {});

}  // namespace tessaly
