// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/missing_files.h"

#include <QSet>
#include <algorithm>
#include <optional>

#include "editor/folder_tree.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// ".mp3"; empty without one.
QString endingOf(const QString& path) {
    const QString name = lastNameOf(path);
    return name.mid(std::max<qsizetype>(name.lastIndexOf(u'.'), 0)).toCaseFolded();
}

}  // namespace

QStringList sourcePaths(const Project& project) {
    QStringList paths;
    paths.reserve(project.TrackTable.size());
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            paths.append(record.sourcePath.text());
    if (usesChimeFile(project))
        paths.append(project.txtChimeFileName);
    return paths;
}

QStringList missingFiles(const Project& project, const FileSystem& files,
                         const KeepGoing& keepGoing) {
    QStringList missing = sourcePaths(project);
    missing.removeAll(QString());
    missing.removeDuplicates();
    qsizetype done = 0, total = missing.size();
    bool goes = true;
    missing.removeIf([&](const QString& path) {
        goes = goes && goesOn(keepGoing, done++, total);
        return !goes || files.fileSize(path);
    });
    return missing;
}

SearchedFolder searchFolder(const FileSystem& files, const QString& folder,
                            const QStringList& missing, const KeepGoing& keepGoing) {
    QSet<QString> endings;
    for (const QString& path : missing)
        endings.insert(endingOf(path));
    SearchedFolder found;
    const auto goes = [&] {
        if (keepGoing && !keepGoing(int(found.paths.size()), 0))
            found.leftOut.isCancelled = true;
        return !found.leftOut.isCancelled;
    };
    const auto visit = [&](const QString& inside, const QList<FolderEntry>& entries) {
        for (const FolderEntry& entry : entries) {
            if (entry.isFolder || !endings.contains(endingOf(entry.name)))
                continue;
            const QString path = pathIn(inside, entry.name);
            const std::optional<qint64> size =
                entry.isLink ? files.fileSize(path) : std::optional(entry.size);
            if (!size)
                continue;
            found.paths.append(path);
            found.sizes.append(*size);
        }
        if (found.paths.size() > MostSearchedFiles)
            throw TessalyError(
                error_number::BadImport,
                u"%1: there are more than %2 files to look at, choose a folder inside it"_s.arg(
                    shownPath(folder), grouped(MostSearchedFiles)));
    };
    const auto leaveOut = [&](LeftOut why, const QString& inside, const QString& detail) {
        if (why == LeftOut::Unreadable)
            found.leftOut.leaveOut(why, inside, detail);
    };
    walkFolders(files, folder, {.goesOn = goes, .visit = visit, .leaveOut = leaveOut});
    return found;
}

}  // namespace tessaly
