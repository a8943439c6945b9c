// SPDX-License-Identifier: GPL-3.0-or-later
// What a packing will do: names, sizes, room.
#include <QDir>
#include <QHash>
#include <algorithm>
#include <map>
#include <optional>
#include <tuple>

#include "card/pack.h"
#include "card/portable_names.h"
#include "model/card_file.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

const QString ProjectEnding = u".crd2"_s;

// Of a root, "/" or "D:\", nothing is taken.
QString withoutLastSeparators(QString path) {
    const auto isRoot = [&] { return path.size() == 1 || (path.size() == 3 && path[1] == u':'); };
    while ((path.endsWith(u'/') || path.endsWith(QDir::separator())) && !isRoot())
        path.chop(1);
    return path;
}

QString stemOf(const QString& path) {
    const QString name = lastNameOf(path);
    return name.chopped(endingOf(name).size());
}

// The folder that `path` stands in; of a root the root.
QString above(const QString& path) {
    return withoutLastSeparators(path.chopped(lastNameOf(path).size()));
}

// The absolute path of a folder that need not be there, with the links in it resolved.
QString resolved(const FileSystem& files, const QString& folder) {
    const QString path = withoutLastSeparators(absolutePath(folder));
    const QString known = files.canonicalPath(path);
    if (!known.isEmpty())
        return QDir::toNativeSeparators(known);
    const QString name = lastNameOf(path);
    if (name.isEmpty() || name == u".." || name == u".")
        throw TessalyError(error_number::BadTarget,
                           shownPath(folder) + u": there is no such folder"_s);
    return pathIn(resolved(files, above(path)), name);
}

// Hands out the places in the target.
class Places {
 public:
    Places(PackPlan& plan, const FileSystem& files) : plan_(plan), files_(files) {}

    /// The absolute path of a source's copy, which goes to top/group, or to `top` without a group,
    /// under the first of `texts` that makes a name.
    QString copyOf(const SourceFile& source, const QString& top,
                   const std::optional<QString>& group, const QStringList& texts) {
        const auto known = byPath_.constFind(source.path);
        if (known != byPath_.constEnd())
            return *known;
        const auto identity = files_.identity(source.path);  // one file may have several paths
        QString copy =
            identity ? byIdentity_[{identity->volume, identity->high, identity->low}] : QString();
        if (copy.isEmpty()) {
            Folder& folder = folderOf(top, group);
            const QString name =
                folder.path + u'/' + folder.names.add(texts, endingOf(lastNameOf(source.path)));
            plan_.files.append({source.path, name, source.size.value_or(0)});
            plan_.bytes += source.size.value_or(0);
            copy = QDir::toNativeSeparators(pathIn(plan_.folder, name));
            if (identity)
                byIdentity_[{identity->volume, identity->high, identity->low}] = copy;
        }
        return *byPath_.insert(source.path, copy);
    }

 private:
    struct Folder {
        QString path;  // in the target
        PortableNames names;
    };

    Folder& folderOf(const QString& top, const std::optional<QString>& group) {
        Folder& folder = folders_[{top, group}];
        if (!folder.path.isEmpty())
            return folder;
        if (!groups_.contains(top))
            plan_.newFolders.append(pathIn(plan_.folder, top));
        PortableNames& groups = groups_[top];
        folder.path = top;
        if (group) {
            folder.path += u'/' + groups.add({*group});
            plan_.newFolders.append(QDir::toNativeSeparators(pathIn(plan_.folder, folder.path)));
        }
        return folder;
    }

    PackPlan& plan_;
    const FileSystem& files_;
    QHash<QString, QString> byPath_;
    std::map<std::tuple<quint64, quint64, quint64>, QString> byIdentity_;
    std::map<std::pair<QString, std::optional<QString>>, Folder> folders_;
    QHash<QString, PortableNames> groups_;
};

// All that goes along. A chime that is chosen but not played goes along if it is there.
SourceFiles sourcesOf(const Project& project, const FileSystem& files, const FileDone& fileDone) {
    SourceFiles sources = measureSources(project, files, fileDone);
    const QString& chime = project.txtChimeFileName;
    if (!sources.chime && !chime.isEmpty())
        if (const auto size = files.fileSize(chime))
            sources.chime = {chime, size, {}};
    return sources;
}

QStringList missingOf(const SourceFiles& sources) {
    QStringList missing;
    for (const SourceFile& source : sources.tracks)
        if (!source.size)
            missing.append(source.path);
    if (sources.chime && !sources.chime->size)
        missing.append(sources.chime->path);
    missing.removeDuplicates();
    return missing;
}

// The same project, with the paths of the copies.
Project withCopies(const Project& project, const SourceFiles& sources, Places& places,
                   const FileDone& fileDone) {
    Project packed = project;
    qsizetype next = 0;
    for (TrackRecord& record : packed.TrackTable) {
        if (!isTrackFile(record))
            continue;
        const SourceFile& source = sources.tracks[next++];
        const QString group = record.groupName.text();
        const QString item = record.itemName.text();
        record.sourcePath =
            isMusic(record)
                ? places.copyOf(source, u"Music"_s, group, {stemOf(source.path), item})
                : places.copyOf(source, u"Speech"_s, group, {item, stemOf(source.path)});
        fileDone();
    }
    if (sources.chime)
        packed.txtChimeFileName =
            places.copyOf(*sources.chime, u"Chime"_s, std::nullopt, {stemOf(sources.chime->path)});
    return packed;
}

void requireRoom(const PackPlan& plan, const FileSystem& files, const Drives& drives) {
    QString folder = plan.folder;
    while (!files.isFolder(folder))
        folder = above(folder);
    const VolumeGeometry geometry = drives.geometry(folder);
    if (geometry.isReadOnly || !files.isWritableFolder(folder))
        throw TessalyError(error_number::WriteProtected,
                           shownPath(folder) + u": nothing can be written into this folder."_s);
    const auto inClusters = [&](qint64 bytes) {
        return inWholeClusters(bytes, geometry.clusterBytes);
    };
    constexpr qint64 EntryBytes = 256;  // of a long name in its folder
    qint64 needed = inClusters(plan.project.size()) + inClusters(EntryBytes * plan.files.size()) +
                    geometry.clusterBytes * plan.newFolders.size();
    for (const PackedFile& file : plan.files) {
        const QString problem =
            geometry.isFat ? tooLargeForCard(file.source, file.size) : QString();
        if (!problem.isEmpty())
            throw TessalyError(error_number::SourceTooLarge, problem);
        needed += inClusters(file.size);
    }
    if (needed > geometry.freeBytes)
        throw TessalyError(error_number::DoesNotFit,
                           u"The files need %1 bytes, %2 has room for %3."_s.arg(
                               grouped(needed), shownPath(folder), grouped(geometry.freeBytes)));
}

}  // namespace

QString thingIn(const FileSystem& files, const QString& folder) {
    static const QStringList OfSystems = {
        card_name::SystemFolder, u"$RECYCLE.BIN"_s,    u"desktop.ini"_s, u"lost+found"_s,
        u".Trashes"_s,           u".Spotlight-V100"_s, u".fseventsd"_s,  u".DS_Store"_s};
    if (!files.isFolder(folder))
        return {};
    QStringList names;
    for (const FolderEntry& entry : files.entries(folder))
        if (!OfSystems.contains(entry.name, Qt::CaseInsensitive) &&
            !entry.name.startsWith(u".Trash-"))
            names.append(entry.name);
    return names.isEmpty() ? QString() : *std::min_element(names.begin(), names.end());
}

QString newFolderIn(const FileSystem& files, const PackTarget& inUse) {
    PortableNames names;
    for (const FolderEntry& entry : files.entries(inUse.folder))
        names.add({entry.name});
    return pathIn(inUse.folder, names.add({stemOf(inUse.projectFile), u"Project"_s}));
}

PackPlan planPack(const Project& project, const PackTarget& target, const FileSystem& files,
                  const Drives& drives, const FileDone& fileDone) {
    PackPlan plan;
    plan.folder = resolved(files, target.folder);
    for (QString folder = plan.folder; !files.isFolder(folder); folder = above(folder)) {
        if (files.identity(folder))
            throw TessalyError(error_number::BadTarget,
                               shownPath(folder) + u": this is a file and no folder."_s);
        plan.newFolders.prepend(folder);
    }
    if (const QString thing = thingIn(files, plan.folder); !thing.isEmpty())
        throw TessalyError(
            error_number::BadTarget,
            u"%1 holds \"%2\". The project needs an empty folder or a new one, so "_s
            u"that nothing is written over."_s.arg(shownPath(plan.folder), elided(thing)));
    const SourceFiles sources = sourcesOf(project, files, fileDone);
    plan.missing = missingOf(sources);
    if (!plan.missing.isEmpty())
        return plan;
    const QString name = PortableNames().add(
        {stemOf(target.projectFile), lastNameOf(plan.folder), u"Project"_s}, ProjectEnding);
    plan.projectFile = pathIn(plan.folder, name);
    Places places(plan, files);
    plan.project = encodeProject(withCopies(project, sources, places, fileDone));
    requireRoom(plan, files, drives);
    return plan;
}

}  // namespace tessaly
