// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/edit_words.h"

#include <QSet>
#include <algorithm>
#include <iterator>

#include "editor/path_tails.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "model/project_snapshot.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct Difference {
    QStringList added, removed;
    bool isMoved = false;  // the same lines in another order
    QString moved;         // one of them
};

Difference differenceOf(const QStringList& before, const QStringList& after) {
    Difference found;
    // What is alike at both ends of a long list needs no second look.
    const auto [from, to] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto [fromEnd, toEnd] = std::mismatch(before.rbegin(), std::make_reverse_iterator(from),
                                                after.rbegin(), std::make_reverse_iterator(to));
    const QSet<QString> old(from, fromEnd.base()), now(to, toEnd.base());
    for (auto line = to; line != toEnd.base(); ++line)
        if (!old.contains(*line))
            found.added.append(*line);
    for (auto line = from; line != fromEnd.base(); ++line)
        if (!now.contains(*line))
            found.removed.append(*line);
    found.isMoved = found.added.isEmpty() && found.removed.isEmpty() && to != after.end();
    found.moved = found.isMoved ? *to : QString();
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

// Several files that kept their names, most of them at least, in other folders were found again.
QString foundInWords(const Project& before, const Project& after) {
    QSet<QString> found;
    qsizetype renamed = 0;
    const auto look = [&](const QString& old, const QString& now) {
        if (now == old || now.isEmpty() || old.isEmpty())
            return;
        found.insert(now);
        renamed += mayBe(comparedPath(lastNameOf(old)), comparedPath(lastNameOf(now))) ? 0 : 1;
    };
    for (qsizetype slot = 1; slot < after.TrackTable.size(); ++slot) {
        const TrackRecord& now = after.TrackTable[slot];
        const TrackRecord old = before.TrackTable.value(slot);
        if (now.sourcePath != old.sourcePath && isTrackFile(now) && isTrackFile(old))
            look(old.sourcePath.text(), now.sourcePath.text());
    }
    look(before.txtChimeFileName, after.txtChimeFileName);
    return found.size() > 1 && 2 * renamed < found.size()
               ? u"Find "_s + counted(found.size(), u"File"_s)
               : QString();
}

// What happened to the files of lines that stayed: their paths, or how they are played.
QString filesInWords(const Project& before, const Project& after) {
    QStringList chosen, cleared, changed;
    for (qsizetype slot = 1; slot < after.TrackTable.size(); ++slot) {
        const TrackRecord& now = after.TrackTable[slot];
        const TrackRecord old = before.TrackTable.value(slot);
        if (now.sourcePath != old.sourcePath && isTrackFile(now))
            chosen.append(now.itemName.text());
        else if (isTrackFile(old) && !isTrackFile(now))
            cleared.append(old.itemName.text());
        else if (now.loudVolume != old.loudVolume || now.endlessLoop != old.endlessLoop ||
                 now.cancelOnInterrupt != old.cancelOnInterrupt)
            changed.append(now.itemName.text());
    }
    chosen.removeDuplicates();
    cleared.removeDuplicates();
    changed.removeDuplicates();
    const auto ofItems = [](const QString& action, const QStringList& items) {
        return items.size() == 1 ? u"%1 of '%2'"_s.arg(action, shortName(items.first()))
                                 : u"%1 of %2"_s.arg(action, counted(items.size(), u"Item"_s));
    };
    if (!chosen.isEmpty())
        return ofItems(u"Choose File"_s, chosen);
    if (!cleared.isEmpty())
        return ofItems(u"Remove File"_s, cleared);
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
          linesInWords(u"Language"_s, before.lstLangs, after.lstLangs), foundInWords(before, after),
          filesInWords(before, after)})
        if (!words.isEmpty())
            return words;
    return setupInWords(before, after);
}

bool isTypedText(const Project& before, Project after) {
    if (before.txtCardTitle1 == after.txtCardTitle1 &&
        before.txtCardTitle2 == after.txtCardTitle2 &&
        before.txtChimeFileName == after.txtChimeFileName)
        return false;
    after.txtCardTitle1 = before.txtCardTitle1;
    after.txtCardTitle2 = before.txtCardTitle2;
    after.txtChimeFileName = before.txtChimeFileName;
    return sameContent(before, after);
}

QString removalInWords(const Project& before, const Project& after) {
    QStringList gone;
    QString kind;
    const auto look = [&](const QString& one, const QStringList& old, const QStringList& now) {
        if (now.size() >= old.size())
            return;
        const Difference found = differenceOf(old, now);
        if (found.removed.isEmpty() || !found.added.isEmpty())
            return;
        gone += found.removed;
        kind = one;
    };
    look(u"list"_s, before.lstMuList, after.lstMuList);
    look(u"title"_s, before.lstSpTitles, after.lstSpTitles);
    look(u"language"_s, before.lstLangs, after.lstLangs);
    for (const QString& list : after.lstMuList)
        look(u"track"_s, tracksOfMusicList(before, list), tracksOfMusicList(after, list));
    const auto countFiles = [](const Project& project) {
        return std::count_if(project.TrackTable.begin(), project.TrackTable.end(), isTrackFile);
    };
    const qsizetype files = countFiles(before) - countFiles(after);
    if (gone.isEmpty())
        return files > 0 ? counted(files, u"file"_s) + u" removed"_s : QString();
    const bool isOne = gone.size() == 1;
    const QString what = isOne ? shortName(gone.first()) : counted(gone.size(), kind);
    if (files == 0)
        return what + u" removed"_s;
    const QString whose = isOne ? u"its "_s : u"their "_s;
    return u"%1 and %2 removed"_s.arg(what,
                                      whose + (files == 1 ? u"file"_s : counted(files, u"file"_s)));
}

}  // namespace tessaly
