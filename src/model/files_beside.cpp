// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/files_beside.h"

#include <QDir>
#include <QHash>
#include <QStringList>
#include <algorithm>
#include <optional>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// More folders than this are no tail that anybody moves; a damaged file may name thousands.
constexpr qsizetype MostFolders = 16;

// The names in a path, without a drive's letter. What ".." leads to is not known.
QStringList namesIn(QString path) {
    if (!path.startsWith(u'/'))
        path.replace(u'\\', u'/');
    QStringList names;
    for (const QString& name : path.split(u'/', Qt::SkipEmptyParts))
        if (name == u"..")
            names.clear();
        else if (name != u"." && !name.endsWith(u':'))
            names.append(name);
    return names;
}

// Where the name of the file begins. A path from Linux may have a backslash in it.
qsizetype nameStart(const QString& path) {
    const qsizetype slash = path.lastIndexOf(u'/');
    return 1 + (path.startsWith(u'/') ? slash : std::max(slash, path.lastIndexOf(u'\\')));
}

class FilesBeside {
 public:
    FilesBeside(const FileSystem& files, QString folder)
        : files_(files), folder_(std::move(folder)) {}

    /// Where the file is that `path` meant; nothing when it is there, or nowhere.
    std::optional<QString> find(const QString& path) {
        const qsizetype start = nameStart(path);
        const QString name = path.sliced(start);
        if (name.isEmpty() || name == u"." || name == u"..")
            return std::nullopt;
        const Candidates& candidates = candidatesFor(path.first(start));
        if (candidates.isThere && files_.fileSize(path))
            return std::nullopt;
        for (const QString& folder : candidates.folders)
            if (const QString file = pathIn(folder, name); files_.fileSize(file))
                return QDir::toNativeSeparators(file);
        return std::nullopt;
    }

 private:
    struct Candidates {
        bool isThere = true;  // the folder itself
        QStringList folders;  // below the project's, from the longest tail to none
    };

    // A folder that is gone is asked for once, and not once for each of its files: on a network
    // that does not answer each question takes seconds.
    const Candidates& candidatesFor(const QString& path) {
        const auto known = known_.constFind(path);
        if (known != known_.constEnd())
            return *known;
        Candidates found;
        found.isThere = path.isEmpty() || files_.isFolder(path);
        const QStringList names = namesIn(path);
        for (qsizetype count = std::min(names.size(), MostFolders); count > 0; --count) {
            if (!isBeside(names[names.size() - count]))
                continue;
            const QString folder = pathIn(folder_, names.last(count).join(u'/'));
            if (files_.isFolder(folder))
                found.folders.append(folder);
        }
        found.folders.append(folder_);
        return *known_.insert(path, found);
    }

    // Few tails begin with the name of a folder that is there: the others need no question each.
    bool isBeside(const QString& name) {
        const auto known = beside_.constFind(name);
        return known != beside_.constEnd()
                   ? *known
                   : *beside_.insert(name, files_.isFolder(pathIn(folder_, name)));
    }

    const FileSystem& files_;
    const QString folder_;
    QHash<QString, bool> beside_;
    QHash<QString, Candidates> known_;
};

}  // namespace

ReadReport openProjectFile(FileSystem& files, const QString& path, Project& project) {
    const ReadReport report = readProject(files, path, project);
    takeFilesBeside(files, path, project);
    return report;
}

int takeFilesBeside(const FileSystem& files, const QString& projectFile, Project& project) {
    const QString path = files.canonicalPath(absolutePath(projectFile));
    if (path.isEmpty())
        return 0;
    FilesBeside beside(files, path.left(path.lastIndexOf(u'/') + 1));
    int taken = 0;
    // As constant as long as nothing changes: the table may be shared with other states.
    for (qsizetype i = 0; i < std::as_const(project).TrackTable.size(); ++i) {
        const TrackRecord& record = std::as_const(project).TrackTable[i];
        if (!isTrackFile(record))
            continue;
        if (const auto found = beside.find(record.sourcePath.text())) {
            project.TrackTable[i].sourcePath = *found;
            ++taken;
        }
    }
    if (const auto found = beside.find(project.txtChimeFileName)) {
        project.txtChimeFileName = *found;
        ++taken;
    }
    return taken;
}

}  // namespace tessaly
