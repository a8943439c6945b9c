#include "card/card_space.h"

#include <algorithm>

#include "platform/error.h"
#include "platform/error_numbers.h"
#include "platform/numbers.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

constexpr qint64 EntryBytes = 32;    // of a FAT folder
constexpr int VolumeLabelEntry = 1;  // stands in the root folder too

}  // namespace

qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes) {
    return (bytes + clusterBytes - 1) / clusterBytes * clusterBytes;
}

qint64 clustersOfContent(const FileSystem& files, const QString& folder, qint64 clusterBytes) {
    qint64 sum = 0;
    for (const FolderEntry& entry : files.entries(folder))
        sum += entry.isFolder ? clustersOfContent(files, pathIn(folder, entry.name), clusterBytes)
                              : inWholeClusters(entry.size, clusterBytes);
    return sum;
}

void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry) {
    qint64 needed = 0;
    for (const qint64 size : plan.newFiles)
        needed += inWholeClusters(size, geometry.clusterBytes);
    if (geometry.isFat && !geometry.rootEntries) {
        // The folder itself grows in clusters; what it has already it keeps.
        const auto folderBytes = [&](qint64 files) {
            return inWholeClusters(files * geometry.entriesPerFile * EntryBytes,
                                   geometry.clusterBytes);
        };
        const qint64 before = folderBytes(plan.freedFiles + plan.remainingEntries);
        const qint64 after = folderBytes(plan.newFiles.size() + plan.remainingEntries);
        needed += std::max<qint64>(0, after - before);
    }
    const qint64 available = geometry.freeBytes + plan.freedBytes;
    if (needed > available)
        throw TessalyError(error_number::DoesNotFit,
                           QString("The card's files need %1 bytes, the card has room for %2.")
                               .arg(grouped(needed), grouped(available)));
}

void requireRootEntries(const SpacePlan& plan, const VolumeGeometry& geometry) {
    if (!geometry.rootEntries)
        return;
    const qint64 room = (*geometry.rootEntries - VolumeLabelEntry) / geometry.entriesPerFile -
                        plan.remainingEntries;
    if (plan.newFiles.size() > room)
        throw TessalyError(
            error_number::TooManyRootEntries,
            QString("The card's root folder has room for %1 files, the project "
                    "needs %2. Format the card as FAT32.")
                .arg(grouped(std::max<qint64>(room, 0)), grouped(plan.newFiles.size())));
}

}  // namespace tessaly
