#include "card/card_space.h"

#include <QRegularExpression>
#include <algorithm>

#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

namespace {

constexpr qint64 EntryBytes = 32;    // of a FAT folder
constexpr int VolumeLabelEntry = 1;  // stands in the root folder too

bool isUpperCase(QStringView text) {
    return text.compare(text.toString().toUpper()) == 0;
}

bool isLowerCase(QStringView text) {
    return text.compare(text.toString().toLower()) == 0;
}

// Whether `name` is 8.3, in whatever case. Letters beyond ASCII depend on the volume's code page
// and count as none.
bool isShortName(const QString& name) {
    static const QRegularExpression names(QStringLiteral(
        "\\A[A-Za-z0-9!#$%&'()@^_`{}~-]{1,8}(\\.[A-Za-z0-9!#$%&'()@^_`{}~-]{1,3})?\\z"));
    return names.match(name).hasMatch();
}

// What a folder has at least: it never has less than one cluster.
qint64 folderBytesFor(qint64 entries, const VolumeGeometry& geometry) {
    return inWholeClusters(std::max<qint64>(entries, 1) * EntryBytes, geometry.clusterBytes);
}

}  // namespace

qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes) {
    return (bytes + clusterBytes - 1) / clusterBytes * clusterBytes;
}

int fatEntriesOf(const QString& name, FatNames names) {
    constexpr qsizetype CharactersPerEntry = 13;
    if (names == FatNames::All)
        return 1;
    if (isShortName(name)) {
        const QStringList parts = name.split('.');
        const auto isOneCase = [](const QString& part) {
            return isUpperCase(part) || isLowerCase(part);
        };
        if (isUpperCase(name) ||
            (names == FatNames::OneCase && isOneCase(parts.value(0)) && isOneCase(parts.value(1))))
            return 1;
    }
    return int(1 + (name.size() + CharactersPerEntry - 1) / CharactersPerEntry);
}

qint64 bytesTaken(const FileSystem& files, const QString& folder, const FolderEntry& entry,
                  const VolumeGeometry& geometry) {
    constexpr int DotEntries = 2;  // "." and ".."
    if (!entry.isFolder)
        return inWholeClusters(entry.size, geometry.clusterBytes);
    const QString path = pathIn(folder, entry.name);
    const QList<FolderEntry> content = files.entries(path);
    qint64 sum = geometry.isFat ? folderBytesFor(DotEntries + content.size(), geometry) : 0;
    for (const FolderEntry& inside : content)
        sum += bytesTaken(files, path, inside, geometry);
    return sum;
}

void requireSpace(const SpacePlan& plan, const VolumeGeometry& geometry) {
    qint64 needed = 0;
    for (const qint64 size : plan.newFiles)
        needed += inWholeClusters(size, geometry.clusterBytes);
    if (geometry.isFat && !geometry.rootEntries) {
        // The folder itself grows in clusters; what it has already it keeps.
        const qint64 before =
            std::max(geometry.folderBytes, folderBytesFor(plan.presentEntries, geometry));
        const qint64 after =
            folderBytesFor(VolumeLabelEntry + plan.stayingEntries + plan.newEntries, geometry);
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
    const int room = *geometry.rootEntries - VolumeLabelEntry - plan.stayingEntries;
    if (plan.newEntries > room)
        throw TessalyError(
            error_number::TooManyRootEntries,
            QString("The card's root folder has room for %1, the project's "
                    "files need %2. Format the card as FAT32.")
                .arg(counted(std::max(room, 0), "entry", "entries"), grouped(plan.newEntries)));
}

}  // namespace tessaly
