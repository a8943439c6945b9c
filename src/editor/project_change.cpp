// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/project_change.h"

#include <QMultiHash>
#include <algorithm>
#include <iterator>

namespace tessaly {

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

}  // namespace tessaly
