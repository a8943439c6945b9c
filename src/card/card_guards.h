// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "card/card_files.h"
#include "support/support_folders.h"

// What must be true of a card before the first file on it is deleted. Each function throws a
// TessalyError with a number of its own when it is not. `root` is the card's root folder.

namespace tessaly {

/// Tells a card from every other one: its root folder and its medium. Another FAT card in the same
/// reader differs in the second alone.
struct CardIdentity {
    std::optional<FileIdentity> folder;  ///< nothing: there is no such folder
    QString medium;
    bool operator==(const CardIdentity&) const = default;
};

CardIdentity cardAt(const FileSystem& files, const Drives& drives, const QString& root);

/// Throws 71 unless path, medium and open handle are still `card`. On Linux a card that was pulled
/// out leaves an ordinary folder behind. Without a handle the path and the medium decide.
void requireCardAt(const FileSystem& files, const Drives& drives, const QString& root,
                   const CardIdentity& card, const OpenFolder* handle = nullptr);

/// Error 530 unless `root` is the root of a removable drive. Asked anew before each use: the
/// project may name a path that belongs to a fixed disk by now.
void requireRemovableRoot(const Drives& drives, const QString& root);

/// For a card that is a folder named on purpose, and passed at once when that holds nothing but a
/// card's files. Else error 530 when it is the root of a fixed disk, a network share or an optical
/// drive, even with `mayEraseOthers`, and error 556 without `mayEraseOthers`.
void requireErasableFolder(const FileSystem& files, const Drives& drives, const QString& root,
                           bool mayEraseOthers);

/// Error 531 when `root` is, holds or stands in a folder of the operating system, or is or holds a
/// folder that people's files stand in, the program or one of `protectedPaths`, or is the work tree
/// of a version control.
void refuseSystemFolder(const FileSystem& files, const QString& root, const SupportFolders& folders,
                        const QStringList& protectedPaths);

/// Error 531 when the project's own file is in `root` or below it: it would be deleted or written
/// over. An empty path is that of a project without a file.
void refuseHoldingProject(const FileSystem& files, const QString& root, const QString& projectFile);

/// Error 531 when other drives are mounted in `root`, or a part of it is mounted elsewhere.
void refuseHoldingMounts(const Drives& drives, const QString& root);

/// Error 532 when one of `sources` is a file in `root` or below it. A path that leads nowhere is
/// none.
void refuseHoldingSources(
    const FileSystem& files, const QString& root, const SourceFiles& sources,
    const FileDone& fileDone = [] {});

/// Error 533 when `root` cannot be written.
void requireWritable(const FileSystem& files, const Drives& drives, const QString& root);

/// What a run writes into a folder, and what it takes away first.
struct SpacePlan {
    QList<SourceFile> newFiles;
    qint64 freedBytes = 0;   ///< in whole clusters, of files removed or written over
    int newEntries = 0;      ///< FAT entries of names that are made anew
    int stayingEntries = 0;  ///< FAT entries of names that stay
    int presentEntries = 0;  ///< FAT entries of everything that is there now, at least
};

/// Error 534 when the files need more clusters than there will be.
void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry);

/// Error 535 when the root folder of a FAT12 or FAT16 volume has too few entries for them.
void requireRootEntries(const SpacePlan& plan, const VolumeGeometry& geometry);

/// Error 536 unless every numbered file of `tracks` is on the card with the size of its source,
/// under the number that the card's own project gives it.
void requireSameTracks(
    FileSystem& files, const QString& root, const QList<SourceFile>& tracks,
    const FileDone& fileDone = [] {});

}  // namespace tessaly
