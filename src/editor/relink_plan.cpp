// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/relink_plan.h"

#include <QDir>
#include <QHash>
#include <QSet>
#include <algorithm>
#include <map>
#include <utility>

#include "editor/path_tails.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

using Outcome = RelinkLine::Outcome;

// Looks paths up folder by folder, as another system may write them.
class FolderLook {
 public:
    explicit FolderLook(const FileSystem& files) : files_(files) {}

    // The file that `parts` lead to from `folder`; empty when there is none, or more than one.
    QString fileBelow(QString folder, const QStringList& parts) {
        const QString exact = folder + parts.join(QDir::separator());
        if (files_.fileSize(exact))
            return exact;
        for (const QString& part : parts) {
            const QString name = nameIn(folder, part);
            if (name.isEmpty())
                return {};
            folder = pathIn(folder, name);
        }
        return files_.fileSize(folder) ? folder : QString();
    }

 private:
    struct Names {
        QStringList names;
        PathTails tails;
    };

    QString nameIn(const QString& folder, const QString& part) {
        auto known = known_.find(folder);
        if (known == known_.end()) {
            QStringList names;
            try {
                for (const FolderEntry& entry : files_.entries(folder))
                    names.append(entry.name);
            } catch (const TessalyError&) {
                names.clear();  // what cannot be read holds nothing that can be found
            }
            known = known_.emplace(folder, Names{names, PathTails(names)}).first;
        }
        const QList<int> fitting = known->second.tails.longest(part).paths;
        return fitting.size() == 1 ? known->second.names[fitting[0]] : QString();
    }

    const FileSystem& files_;
    std::map<QString, Names> known_;
};

// From which folder to which one a file went: what its two paths begin with, without the end that
// they have in common, or at least without its name.
struct FolderChange {
    QStringList from;  // compared
    QString to;        // native, with a separator behind it
};

FolderChange changeOfFolder(const QString& oldPath, const QString& newPath) {
    const QStringList from = pathParts(comparedPath(oldPath)),
                      to = pathParts(comparedPath(newPath));
    qsizetype common = 0;
    while (common < std::min(from.size(), to.size()) &&
           mayBe(from[from.size() - 1 - common], to[to.size() - 1 - common]))
        ++common;
    common = std::max<qsizetype>(common, 1);
    QString folder = newPath;
    for (qsizetype i = 0; i < common && !folder.isEmpty(); ++i) {
        while (folder.endsWith(QDir::separator()))
            folder.chop(1);
        folder.truncate(folder.lastIndexOf(QDir::separator()) + 1);
    }
    return {from.mid(0, from.size() - std::min(common, from.size())), folder};
}

}  // namespace

QString RelinkLine::inWords() const {
    if (taken && !isFound())
        return u"ticked by hand"_s;
    if (!taken && isFound())
        return u"left out"_s;
    switch (outcome) {
        case Outcome::NotFound:
            return u"not found"_s;
        case Outcome::Several:
            return u"%1 files fit equally well"_s.arg(fitting);
        case Outcome::Shared:
            return fitting == 1 ? u"fits another missing file, too"_s
                                : u"fits other missing files, too"_s;
        case Outcome::InUse:
            return u"only the name fits: another item's file"_s;
        case Outcome::OtherFile:
            return u"only the name fits: another size and length"_s;
        case Outcome::ByPath:
            return u"found"_s;
        case Outcome::ByName:
            return u"found by its name"_s;
        case Outcome::BySize:
            return u"found by name and size"_s;
        case Outcome::ByLength:
            return u"found by name and length"_s;
        case Outcome::ByHand:
            return u"chosen"_s;
        case Outcome::ByFolder:
            return u"moved with the one chosen"_s;
    }
    Q_UNREACHABLE();
}

QString RelinkPlan::inWords() const {
    const qsizetype found = std::ranges::count_if(lines, &RelinkLine::isFound);
    QString words = u"%1 of %2 found"_s.arg(found).arg(lines.size());
    if (taken() != found)
        words += u", %1 with a tick"_s.arg(taken());
    if (const int unread = leftOut.leftOutInAll(); unread > 0)
        words += u", "_s + counted(unread, u"folder"_s) + u" cannot be read"_s;
    return words;
}

qsizetype RelinkPlan::taken() const {
    return std::ranges::count_if(lines, &RelinkLine::taken);
}

qsizetype chooseByHand(RelinkPlan& plan, qsizetype row, const QString& path,
                       const FileSystem& files) {
    const auto take = [](RelinkLine& line, const QString& newPath, Outcome outcome) {
        line.newPath = newPath;
        line.outcome = outcome;
        line.taken = true;
    };
    const QString chosen = QDir::toNativeSeparators(path);
    take(plan.lines[row], chosen, Outcome::ByHand);
    const FolderChange change = changeOfFolder(plan.lines[row].oldPath, chosen);
    QSet<QString> given;
    for (const RelinkLine& line : std::as_const(plan.lines))
        if (line.taken)
            given.insert(line.newPath);
    FolderLook look(files);
    qsizetype others = 0;
    for (RelinkLine& line : plan.lines) {
        if (line.isFound() || line.taken)
            continue;
        const QStringList compared = pathParts(comparedPath(line.oldPath));
        if (compared.size() <= change.from.size() ||
            !std::equal(change.from.begin(), change.from.end(), compared.begin()))
            continue;
        const QString there =
            look.fileBelow(change.to, pathParts(line.oldPath).mid(change.from.size()));
        if (there.isEmpty() || given.contains(there))
            continue;
        given.insert(there);
        take(line, there, Outcome::ByFolder);
        ++others;
    }
    return others;
}

qsizetype applyRelink(Project& project, const RelinkPlan& plan) {
    QHash<QString, QString> moved;
    for (const RelinkLine& line : plan.lines)
        if (line.taken && !line.newPath.isEmpty())
            moved.insert(line.oldPath, line.newPath);
    if (moved.isEmpty())
        return 0;
    for (TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            if (const QString path = moved.value(record.sourcePath.text()); !path.isEmpty())
                record.sourcePath = path;
    if (const QString path = moved.value(project.txtChimeFileName); !path.isEmpty())
        project.txtChimeFileName = path;
    project.unsavedChanges = true;
    return moved.size();
}

}  // namespace tessaly
