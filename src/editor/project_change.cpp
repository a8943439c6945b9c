// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/project_change.h"

#include <QSet>
#include <algorithm>

#include "model/music_lists.h"
#include "model/numbers.h"
#include "model/project_snapshot.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

Project withoutTable(Project project) {
    project.TrackTable.clear();
    return project;
}

}  // namespace

// ---- the change --------------------------------------------------------------------------------

ProjectChange::ProjectChange(const Project& before, const Project& after)
    : before_(withoutTable(before)),
      after_(withoutTable(after)),
      common_(std::min(before.TrackTable.size(), after.TrackTable.size())) {
    if (!before.TrackTable.isSharedWith(after.TrackTable))
        for (qsizetype slot = 0; slot < common_; ++slot)
            if (before.TrackTable[slot] != after.TrackTable[slot])
                records_.append({slot, before.TrackTable[slot], after.TrackTable[slot]});
    endBefore_ = before.TrackTable.mid(common_);
    endAfter_ = after.TrackTable.mid(common_);
}

// Without making the records' list anew where none of them changed: it stays shared.
void ProjectChange::undo(Project& project) const {
    QList<TrackRecord> table = std::exchange(project.TrackTable, {});
    Q_ASSERT(table.size() == common_ + endAfter_.size());
    for (const Record& record : records_)
        table[record.slot] = record.before;
    table.resize(common_);
    table.append(endBefore_);
    project = before_;
    project.TrackTable = std::move(table);
}

void ProjectChange::redo(Project& project) const {
    QList<TrackRecord> table = std::exchange(project.TrackTable, {});
    Q_ASSERT(table.size() == common_ + endBefore_.size());
    for (const Record& record : records_)
        table[record.slot] = record.after;
    table.resize(common_);
    table.append(endAfter_);
    project = after_;
    project.TrackTable = std::move(table);
}

// ---- in words ----------------------------------------------------------------------------------

namespace {

struct Difference {
    QStringList added, removed;
    bool isMoved = false;  // the same lines in another order
    QString moved;         // one of them
};

Difference differenceOf(const QStringList& before, const QStringList& after) {
    Difference found;
    const QSet<QString> old(before.begin(), before.end()), now(after.begin(), after.end());
    for (const QString& line : after)
        if (!old.contains(line))
            found.added.append(line);
    for (const QString& line : before)
        if (!now.contains(line))
            found.removed.append(line);
    const auto [from, to] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    found.isMoved = found.added.isEmpty() && found.removed.isEmpty() && to != after.end();
    if (found.isMoved)
        found.moved = *to;
    return found;
}

// "Title 'Harbour'", "3 Titles".
QString things(const QString& what, const QStringList& names) {
    return names.size() == 1 ? u"%1 '%2'"_s.arg(what, shortName(names.first()))
                             : counted(names.size(), what);
}

// What happened to the lines of one list box; empty when nothing did.
QString linesInWords(const QString& what, const QStringList& before, const QStringList& after) {
    const Difference found = differenceOf(before, after);
    if (found.isMoved)
        return u"Move "_s + things(what, {found.moved});
    if (!found.removed.isEmpty() && found.added.size() == found.removed.size())
        return u"Rename "_s + things(what, found.removed);
    if (!found.added.isEmpty())
        return u"Add "_s + things(what, found.added);
    return found.removed.isEmpty() ? QString() : u"Remove "_s + things(what, found.removed);
}

QString tracksInWords(const Project& before, const Project& after) {
    for (const QString& list : after.lstMuList) {
        const QString words = linesInWords(u"Track"_s, tracksOfMusicList(before, list),
                                           tracksOfMusicList(after, list));
        if (!words.isEmpty())
            return words;
    }
    return {};
}

// What happened to the files: their paths, or how they are played.
QString filesInWords(const Project& before, const Project& after) {
    QStringList chosen, changed;
    for (qsizetype slot = 1; slot < after.TrackTable.size(); ++slot) {
        const TrackRecord& now = after.TrackTable[slot];
        const TrackRecord old = before.TrackTable.value(slot);
        if (now.sourcePath != old.sourcePath && isTrackFile(now))
            chosen.append(now.itemName.text());
        else if (now.loudVolume != old.loudVolume || now.endlessLoop != old.endlessLoop ||
                 now.cancelOnInterrupt != old.cancelOnInterrupt)
            changed.append(now.itemName.text());
    }
    chosen.removeDuplicates();
    changed.removeDuplicates();
    const auto ofItems = [](const QString& action, const QStringList& items) {
        return items.size() == 1 ? u"%1 of '%2'"_s.arg(action, shortName(items.first()))
                                 : u"%1 of %2"_s.arg(action, counted(items.size(), u"Item"_s));
    };
    if (!chosen.isEmpty())
        return ofItems(u"Choose File"_s, chosen);
    return changed.isEmpty() ? QString() : ofItems(u"Change Attributes"_s, changed);
}

// Everything that is there once in a project.
QString setupInWords(const Project& before, const Project& after) {
    const auto differ = [&](auto... members) {
        return ((before.*members != after.*members) || ...);
    };
    for (size_t slot = 0; slot < after.TriggerTable.size(); ++slot)
        if (before.TriggerTable[slot] != after.TriggerTable[slot])
            return u"Change Trigger %1"_s.arg(slot + 1);
    if (differ(&Project::PowerUpRecord))
        return u"Change Power-up Item"_s;
    if (differ(&Project::txtCardTitle1, &Project::txtCardTitle2))
        return u"Change Card Title"_s;
    if (differ(&Project::txtChimeFileName))
        return u"Change Chime File"_s;
    if (differ(&Project::buttChimeAlways, &Project::buttChimeOnce, &Project::buttPlayExtChime,
               &Project::buttPlayIntChime, &Project::buttDisableChime))
        return u"Change Chime"_s;
    if (differ(&Project::SystemTextTable))
        return u"Change System Texts"_s;
    if (differ(&Project::cfDrive))
        return u"Choose Card Drive"_s;
    return u"Choose Default Languages"_s;
}

}  // namespace

QString editInWords(const Project& before, const Project& after) {
    if (sameContent(before, after))
        return {};
    for (const QString& words :
         {linesInWords(u"List"_s, before.lstMuList, after.lstMuList), tracksInWords(before, after),
          linesInWords(u"Title"_s, before.lstSpTitles, after.lstSpTitles),
          linesInWords(u"Language"_s, before.lstLangs, after.lstLangs),
          filesInWords(before, after)})
        if (!words.isEmpty())
            return words;
    return setupInWords(before, after);
}

bool isTypedText(const Project& before, Project after) {
    after.txtCardTitle1 = before.txtCardTitle1;
    after.txtCardTitle2 = before.txtCardTitle2;
    after.txtChimeFileName = before.txtChimeFileName;
    return sameContent(before, after);
}

QString removalInWords(const Project& before, const Project& after) {
    QStringList gone;
    for (const auto& [old, now] : {std::pair(before.lstMuList, after.lstMuList),
                                   std::pair(before.lstSpTitles, after.lstSpTitles),
                                   std::pair(before.lstLangs, after.lstLangs)}) {
        const Difference found = differenceOf(old, now);
        if (found.added.isEmpty())
            gone += found.removed;
    }
    for (const QString& list : after.lstMuList) {
        const Difference found =
            differenceOf(tracksOfMusicList(before, list), tracksOfMusicList(after, list));
        if (found.added.isEmpty())
            gone += found.removed;
    }
    if (gone.isEmpty())
        return {};
    const auto countFiles = [](const Project& project) {
        return std::count_if(project.TrackTable.begin(), project.TrackTable.end(), isTrackFile);
    };
    const qsizetype files = countFiles(before) - countFiles(after);
    const QString what =
        gone.size() == 1 ? shortName(gone.first()) : u"%1 lines"_s.arg(gone.size());
    if (files == 0)
        return what + u" removed"_s;
    return u"%1 and %2 removed"_s.arg(what,
                                      files == 1 ? u"its file"_s : u"its %1 files"_s.arg(files));
}

}  // namespace tessaly
