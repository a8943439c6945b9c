// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_guards.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <algorithm>

#include "model/card_file.h"
#include "model/numbers.h"
#include "model/text_codec.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr int VolumeLabelEntry = 1;  // of a FAT root folder

// Whether a folder is or holds other places, by identity, so that links and second mounts of the
// same folder are seen through.
class HoldingFolder {
 public:
    HoldingFolder(const FileSystem& files, const QString& folder)
        : files_(files), identity_(files.identity(folder)) {}

    bool isOrHolds(const QString& path) { return isAtOrAbove(files_.canonicalPath(path)); }

    // The same for a path that leads to a file, which itself is no folder: it is not asked about.
    bool holdsFile(const QString& path) {
        const QString place = files_.canonicalPath(path);
        return !place.isEmpty() && isAtOrAbove(QFileInfo(place).path());
    }

 private:
    bool isAtOrAbove(QString place) {
        QStringList passed;
        bool holds = false;
        while (!place.isEmpty() && !outside_.contains(place)) {
            if (identity_ && files_.identity(place) == identity_) {
                holds = true;
                break;
            }
            passed.append(place);
            const QString parent = QFileInfo(place).path();
            place = parent == place ? QString() : parent;
        }
        if (!holds)
            outside_.unite({passed.begin(), passed.end()});
        return holds;
    }

    const FileSystem& files_;
    std::optional<FileIdentity> identity_;
    QSet<QString> outside_;  // places known to be elsewhere, with all that is above them
};

// The file name at the end of a path of either platform, as a project file holds it.
QByteArray storedFileName(const QString& path) {
    return toCodePage(lastNameOf(path));
}

[[noreturn]] void cardDiffers(const QString& problem) {
    throw TessalyError(
        error_number::CardDiffers,
        problem + u" The settings would point at other music: create the card anew."_s);
}

// The name of something in `root` that no card has; empty when there is none.
QString otherThanCardFiles(const FileSystem& files, const QString& root) {
    for (const FolderEntry& entry : files.entries(root))
        if (entry.name != card_name::SystemFolder &&
            (entry.isFolder || !card_name::isCardName(entry.name)))
            return entry.name;
    return {};
}

// The type of the drive at `root`; nothing where that is a folder inside a drive.
std::optional<DriveType> typeOfDriveAt(const Drives& drives, const QString& root) {
    try {
        return drives.type(root);
    } catch (const TessalyError& error) {
        if (error.number == error_number::DriveNotReady)
            return std::nullopt;
        throw;
    }
}

// What the project on a card says of its numbered files.
struct CardTracks {
    QHash<QString, QByteArray> sourceNames;  // file names of the sources, by card name
    bool isComplete = false;                 // the project was read to its end
};

CardTracks tracksOnCard(FileSystem& files, const QString& root) {
    CardTracks tracks;
    Project onCard;
    try {
        tracks.isComplete = readProject(files, pathIn(root, card_name::Project), onCard).isComplete;
    } catch (const TessalyError&) {
        return tracks;
    }
    for (const TrackRecord& record : onCard.TrackTable)
        if (isTrackFile(record))
            tracks.sourceNames.insert(card_name::track(typeTagText(record)),
                                      storedFileName(record.sourcePath.text()));
    return tracks;
}

}  // namespace

CardIdentity cardAt(const FileSystem& files, const Drives& drives, const QString& root) {
    return {.folder = files.identity(root), .medium = drives.medium(root)};
}

void requireCardAt(const FileSystem& files, const Drives& drives, const QString& root,
                   const CardIdentity& card, const OpenFolder* handle) {
    if (!card.folder || cardAt(files, drives, root) != card ||
        (handle && handle->identity() != card.folder))
        throw TessalyError(error_number::DriveNotReady,
                           shownPath(root) + u": the card is no longer there or was changed."_s);
}

void requireRemovableRoot(const Drives& drives, const QString& root) {
    const DriveType type = drives.type(root);
    if (type != DriveType::Removable)
        throw TessalyError(
            error_number::NotRemovable,
            u"%1 is a %2 drive, not the removable drive of a card. Select the card's drive."_s.arg(
                shownPath(root), driveTypeName(type)));
}

void requireErasableFolder(const FileSystem& files, const Drives& drives, const QString& root,
                           bool mayEraseOthers) {
    const QString other = otherThanCardFiles(files, root);
    if (other.isEmpty())
        return;
    const auto type = typeOfDriveAt(drives, files.canonicalPath(root));
    if (type && *type != DriveType::Removable && *type != DriveType::RamDisk)
        throw TessalyError(
            error_number::NotRemovable,
            u"%1 is a whole %2 drive and holds \"%3\", which is no file of a card: it "_s
            u"will not be erased."_s.arg(shownPath(root), driveTypeName(*type), other));
    if (!mayEraseOthers)
        throw TessalyError(error_number::BadTarget,
                           u"%1 holds \"%2\", which is no file of a card: say --erase "_s
                           u"to erase everything in it"_s.arg(shownPath(root), other));
}

void refuseSystemFolder(const FileSystem& files, const QString& root, const SupportFolders& folders,
                        const QStringList& protectedPaths) {
    const auto refuse = [&](const QString& why) {
        throw TessalyError(error_number::SystemFolder,
                           u"%1 %2 and will not be erased."_s.arg(shownPath(root), why));
    };
    HoldingFolder target(files, root);
    for (const QString& folder : systemFolders()) {
        if (target.isOrHolds(folder))
            refuse(u"holds the operating system"_s);
        if (files.identity(folder) && HoldingFolder(files, folder).isOrHolds(root))
            refuse(u"belongs to the operating system"_s);
    }
    for (const QString& folder : personalFolders())
        if (target.isOrHolds(folder))
            refuse(u"is no card (it is or holds "_s + shownPath(folder) + u")"_s);
    for (const QString& folder : folders.protectedFolders())
        if (target.isOrHolds(folder))
            refuse(u"holds the program"_s);
    for (const QString& path : protectedPaths)
        if (target.isOrHolds(path))
            refuse(u"holds "_s + shownPath(path));
    for (const QString& name : {u".git"_s, u".hg"_s, u".svn"_s})
        if (files.identity(pathIn(root, name)))
            refuse(u"is under version control (it holds %1)"_s.arg(name));
}

void refuseHoldingProject(const FileSystem& files, const QString& root,
                          const QString& projectFile) {
    if (!projectFile.isEmpty() && HoldingFolder(files, root).isOrHolds(projectFile))
        throw TessalyError(
            error_number::SystemFolder,
            u"%1 holds the project file %2, which must stay: save the "_s
            u"project to another folder first."_s.arg(shownPath(root), shownPath(projectFile)));
}

void refuseHoldingMounts(const Drives& drives, const QString& root) {
    const QStringList mounts = drives.mountsInside(root);
    if (!mounts.isEmpty())
        throw TessalyError(error_number::SystemFolder,
                           u"%1 holds what is mounted at %2 and will not be erased."_s.arg(
                               shownPath(root), shownPath(mounts.first())));
}

void refuseHoldingSources(const FileSystem& files, const QString& root, const SourceFiles& sources,
                          const FileDone& fileDone) {
    HoldingFolder target(files, root);
    const auto refuseIfHeld = [&](const SourceFile& source) {
        if (source.size ? target.holdsFile(source.path) : target.isOrHolds(source.path))
            throw TessalyError(error_number::HoldsSource,
                               u"%1 holds the source file %2: erasing it would lose that."_s.arg(
                                   shownPath(root), shownPath(source.path)));
        fileDone();
    };
    for (const SourceFile& source : sources.tracks)
        refuseIfHeld(source);
    if (sources.chime)
        refuseIfHeld(*sources.chime);
}

void requireWritable(const FileSystem& files, const Drives& drives, const QString& root) {
    if (drives.geometry(root).isReadOnly || !files.isWritableFolder(root))
        throw TessalyError(error_number::WriteProtected,
                           shownPath(root) + u": the card is write-protected."_s);
}

void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry) {
    qint64 needed = 0;
    for (const SourceFile& file : plan.newFiles)
        needed += inWholeClusters(file.size.value_or(0), geometry.clusterBytes);
    if (geometry.isFat && !geometry.rootEntries) {
        // The folder itself grows in clusters; what it has already it keeps.
        const qint64 before =
            std::max(geometry.folderBytes, fatFolderBytes(plan.presentEntries, geometry));
        const qint64 after =
            fatFolderBytes(VolumeLabelEntry + plan.stayingEntries + plan.newEntries, geometry);
        needed += std::max<qint64>(0, after - before);
    }
    const qint64 available = geometry.freeBytes + plan.freedBytes;
    if (needed > available)
        throw TessalyError(error_number::DoesNotFit,
                           u"The card's files need %1 bytes, the card has room for %2."_s.arg(
                               grouped(needed), grouped(available)));
}

void requireRootEntries(const SpacePlan& plan, const VolumeGeometry& geometry) {
    if (!geometry.rootEntries)
        return;
    const int room = *geometry.rootEntries - VolumeLabelEntry - plan.stayingEntries;
    if (plan.newEntries > room)
        throw TessalyError(
            error_number::TooManyRootEntries,
            u"The card's root folder has room for %1, the project's "_s
            u"files need %2. Format the card as FAT32."_s.arg(
                counted(std::max(room, 0), u"entry"_s, u"entries"_s), grouped(plan.newEntries)));
}

void requireSameTracks(FileSystem& files, const QString& root, const QList<SourceFile>& tracks,
                       const FileDone& fileDone) {
    const CardTracks onCard = tracksOnCard(files, root);
    for (const SourceFile& track : tracks) {
        const QString& name = track.cardName;
        const auto size = files.fileSize(pathIn(root, name));
        if (!size)
            cardDiffers(u"The card has no file %1."_s.arg(name));
        if (size != track.size)
            cardDiffers(
                u"%1 on the card has another size than %2."_s.arg(name, shownPath(track.path)));
        const auto known = onCard.sourceNames.constFind(name);
        const bool isOther = known != onCard.sourceNames.constEnd()
                                 ? *known != storedFileName(track.path)
                                 : onCard.isComplete;
        if (isOther)
            cardDiffers(u"%1 on the card is not %2."_s.arg(name, shownPath(track.path)));
        fileDone();
    }
}

}  // namespace tessaly
