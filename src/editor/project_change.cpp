// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/project_change.h"

#include <QMultiHash>
#include <QSet>
#include <algorithm>
#include <iterator>

#include "model/music_lists.h"
#include "model/numbers.h"
#include "model/project_snapshot.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

Project withoutTable(Project project) {
    project.TrackTable = {};  // clear() would keep its room
    return project;
}

constexpr Variant TrackRecord::*Texts[] = {&TrackRecord::kind, &TrackRecord::itemName,
                                           &TrackRecord::groupName, &TrackRecord::sourcePath};
constexpr Boolean16 TrackRecord::*Flags[] = {
    &TrackRecord::endlessLoop, &TrackRecord::cancelOnInterrupt, &TrackRecord::loudVolume};
constexpr int FirstFlag = int(std::size(Texts)), Tag = FirstFlag + int(std::size(Flags));

bool isSame(const TrackRecord& a, const TrackRecord& b, int field) {
    return field < FirstFlag ? a.*Texts[field] == b.*Texts[field]
           : field < Tag     ? a.*Flags[field - FirstFlag] == b.*Flags[field - FirstFlag]
                             : a.typeTag == b.typeTag;
}

Variant valueOf(const TrackRecord& record, int field) {
    return field < FirstFlag ? record.*Texts[field]
           : field < Tag     ? Variant(record.*Flags[field - FirstFlag])
                             : QString::fromLatin1(record.typeTag.data(), record.typeTag.size());
}

void setValue(TrackRecord& record, int field, const Variant& value) {
    if (field < FirstFlag)
        record.*Texts[field] = value;
    else if (field < Tag)
        record.*Flags[field - FirstFlag] = *value.asBoolean();
    else
        std::ranges::copy(value.asText()->toLatin1(), record.typeTag.begin());
}

}  // namespace

// ---- the change --------------------------------------------------------------------------------

ProjectChange::ProjectChange(const Project& before, const Project& after)
    : before_(withoutTable(before)),
      after_(withoutTable(after)),
      common_(std::min(before.TrackTable.size(), after.TrackTable.size())) {
    if (!before.TrackTable.isSharedWith(after.TrackTable) &&
        !takeMoves(before.TrackTable, after.TrackTable))
        for (qsizetype slot = 0; slot < common_; ++slot)
            if (before.TrackTable[slot] != after.TrackTable[slot])
                compare(slot, before.TrackTable[slot], after.TrackTable[slot]);
    endBefore_ = before.TrackTable.mid(common_);
    endAfter_ = after.TrackTable.mid(common_);
}

// Records that only changed places, as when rows are dragged. False when that is not all of it.
bool ProjectChange::takeMoves(const QList<TrackRecord>& before, const QList<TrackRecord>& after) {
    const auto weightOf = [](const TrackRecord& record) {  // tells most changes that are no moves
        qsizetype weight = record.loudVolume.raw + 3 * record.endlessLoop.raw;
        for (const auto text : Texts)
            weight = 7 * weight + (record.*text).text().size();
        return weight;
    };
    const auto keyOf = [](const TrackRecord& record) {
        return qHashMulti(0, record.itemName.text(), record.sourcePath.text());
    };
    QList<int> changed;
    qsizetype gained = 0;
    for (int slot = 0; slot < int(common_); ++slot)
        if (before[slot] != after[slot]) {
            changed.append(slot);
            gained += weightOf(after[slot]) - weightOf(before[slot]);
        }
    if (gained != 0)
        return false;
    QMultiHash<size_t, int> places;
    for (const int slot : std::as_const(changed))
        places.insert(keyOf(before[slot]), slot);
    for (const int slot : std::as_const(changed)) {
        const size_t key = keyOf(after[slot]);
        auto place = places.constFind(key);
        while (place != places.constEnd() && place.key() == key && before[*place] != after[slot])
            ++place;
        if (place == places.constEnd() || place.key() != key) {
            moves_.clear();
            return false;
        }
        moves_.append({*place, slot});
        places.erase(place);
    }
    return true;
}

// A list that was renamed changes all its records in the same way: that is one change.
void ProjectChange::compare(qsizetype slot, const TrackRecord& before, const TrackRecord& after) {
    for (int field = 0; field <= Tag; ++field) {
        if (isSame(before, after, field))
            continue;
        const Variant old = valueOf(before, field), now = valueOf(after, field);
        const auto same =
            std::find_if(fields_.rbegin(), fields_.rend(),
                         [&](const FieldChange& change) { return change.field == field; });
        if (same == fields_.rend() || same->before != old || same->after != now)
            fields_.append({field, old, now, {{slot, slot + 1}}});
        else if (same->ranges.last().second == slot)
            ++same->ranges.last().second;
        else
            same->ranges.append({slot, slot + 1});
    }
}

void ProjectChange::put(Project& project, bool isAfter) const {
    QList<TrackRecord> table = std::exchange(project.TrackTable, {});
    Q_ASSERT(table.size() == common_ + (isAfter ? endBefore_ : endAfter_).size());
    const QList<TrackRecord> old = moves_.isEmpty() ? QList<TrackRecord>() : table;
    for (const auto& [from, to] : moves_)
        table[isAfter ? to : from] = old[isAfter ? from : to];
    for (const FieldChange& change : fields_)
        for (const auto& [first, end] : change.ranges)
            for (qsizetype slot = first; slot < end; ++slot)
                setValue(table[slot], change.field, isAfter ? change.after : change.before);
    table.resize(common_);
    table.append(isAfter ? endAfter_ : endBefore_);
    project = isAfter ? after_ : before_;
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
          linesInWords(u"Language"_s, before.lstLangs, after.lstLangs),
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
