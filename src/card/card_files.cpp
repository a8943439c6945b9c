// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_files.h"

#include <QRegularExpression>
#include <algorithm>

#include "model/card_file.h"
#include "model/format_limits.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool isUpperCase(const QString& text) {
    return text == text.toUpper();
}

// Whether `name` is 8.3, in whatever case. Letters beyond ASCII depend on the volume's code page
// and count as none.
bool isShortName(const QString& name) {
    static const QRegularExpression names(
        u"\\A[A-Za-z0-9!#$%&'()@^_`{}~-]{1,8}(\\.[A-Za-z0-9!#$%&'()@^_`{}~-]{1,3})?\\z"_s);
    return names.match(name).hasMatch();
}

}  // namespace

QString card_name::track(const QString& number) {
    return number + u".mp3"_s;
}

bool card_name::isCardName(const QString& name) {
    static const QRegularExpression names(
        u"\\A(?:[0-9]{4}\\.mp3|0000\\.xd3|0000\\.hex|0007\\.cfg|0000\\.crd2)\\z"_s,
        QRegularExpression::CaseInsensitiveOption);
    return names.match(name).hasMatch();
}

SourceFiles measureSources(const Project& project, const FileSystem& files,
                           const FileDone& fileDone) {
    SourceFiles sources;
    const auto measured = [&files](const QString& path, const QString& cardName) {
        const auto stamp = files.stamp(path);
        return stamp ? SourceFile{path, stamp->bytes, cardName, stamp->modified}
                     : SourceFile{path, std::nullopt, cardName};
    };
    sources.tracks.reserve(project.TrackTable.size());
    for (const TrackRecord& record : project.TrackTable) {
        if (!isTrackFile(record))
            continue;
        sources.tracks.append(
            measured(record.sourcePath.text(), card_name::track(typeTagText(record))));
        fileDone();
    }
    if (usesChimeFile(project))
        sources.chime = measured(project.txtChimeFileName, card_name::Chime);
    return sources;
}

QList<SourceFile> SourceFiles::all() const {
    QList<SourceFile> files = tracks;
    if (chime)
        files.append(*chime);
    return files;
}

QHash<QString, QString> copiesOnCard(FileSystem& files, const QString& root) {
    QHash<QString, QString> copies;
    if (root.isEmpty())
        return copies;
    Project project;
    try {
        readProject(files, pathIn(root, card_name::Project), project);
    } catch (const TessalyError&) {
        return copies;  // no card, or not one with a project
    }
    for (const TrackRecord& record : project.TrackTable)
        if (const QString name = card_name::track(typeTagText(record));
            isTrackFile(record) && card_name::isCardName(name))
            copies.insert(record.sourcePath.text(), pathIn(root, name));
    if (usesChimeFile(project))
        copies.insert(project.txtChimeFileName, pathIn(root, card_name::Chime));
    return copies;
}

QString tooLargeForCard(const QString& path, qint64 bytes) {
    if (bytes <= limits::CardFileBytes)
        return {};
    return u"%1 has %2 bytes, a file on a card can have %3: cut the recording into shorter "_s
           u"ones."_s.arg(shownPath(path), grouped(bytes), grouped(limits::CardFileBytes));
}

CardTotals updateSummary(const SourceFiles& sources) {
    CardTotals totals;
    const auto noteIfTooLarge = [&](const SourceFile& source) {
        if (const QString problem = tooLargeForCard(source.path, source.size.value_or(0));
            !problem.isEmpty())
            totals.tooLargeFiles.append(problem);
    };
    for (const SourceFile& source : sources.tracks) {
        totals.totalCardBytes += source.size.value_or(0);
        totals.missingFileFlag = totals.missingFileFlag || !source.size;
        noteIfTooLarge(source);
    }
    totals.trackCount = int(sources.tracks.size());
    if (sources.chime)
        noteIfTooLarge(*sources.chime);
    return totals;
}

CardTotals updateSummary(const Project& project, const FileSystem& files) {
    return updateSummary(measureSources(project, files));
}

QString summaryLine(const CardTotals& totals, const QString& firmwareVersion) {
    return u"Total card size: "_s + megabytes(totals.totalCardBytes) +
           u"        Total number of Tracks: "_s + QString::number(totals.trackCount) +
           QString(40, u' ') + u"TRL740 firmware version: "_s + firmwareVersion;
}

qint64 inWholeClusters(qint64 bytes, qint64 clusterBytes) {
    Q_ASSERT(bytes >= 0 && clusterBytes > 0);
    return (bytes + clusterBytes - 1) / clusterBytes * clusterBytes;
}

qint64 fatFolderBytes(qint64 entries, const VolumeGeometry& geometry) {
    constexpr qint64 EntryBytes = 32;
    return inWholeClusters(std::max<qint64>(entries, 1) * EntryBytes, geometry.clusterBytes);
}

int fatEntriesOf(const QString& name, FatNames names) {
    constexpr qsizetype CharactersPerEntry = 13;
    if (names == FatNames::All)
        return 1;
    if (isShortName(name)) {
        const QStringList parts = name.split(u'.');
        const auto isOneCase = [](const QString& part) {
            return isUpperCase(part) || part == part.toLower();
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
    qint64 sum = geometry.isFat ? fatFolderBytes(DotEntries + content.size(), geometry) : 0;
    for (const FolderEntry& inside : content)
        sum += bytesTaken(files, path, inside, geometry);
    return sum;
}

}  // namespace tessaly
