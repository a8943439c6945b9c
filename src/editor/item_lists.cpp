// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/item_lists.h"

#include <QDir>
#include <algorithm>

#include "model/music_lists.h"

namespace tessaly {

namespace {

// `plays` is the field that says music or speech.
bool isNamed(const TrackRecord& record, Variant TrackRecord::*plays, const ItemNames& names) {
    return (record.*plays).is(names.kind) && (!names.item || record.itemName.is(*names.item)) &&
           (!names.group || record.groupName.is(*names.group));
}

// Calls `change` with each record and the field that says what it is or plays.
template <typename Change>
void changeItems(Project& project, Among among, const ItemNames& names, const Change& change) {
    const auto visit = [&](TrackRecord& record, Variant TrackRecord::*plays) {
        if (isNamed(record, plays, names))
            change(record, plays);
    };
    if (among != Among::Players)
        for (TrackRecord& record : project.TrackTable)
            visit(record, &TrackRecord::kind);
    if (among == Among::Records)
        return;
    for (TrackRecord& trigger : project.TriggerTable)
        visit(trigger, &TrackRecord::sourcePath);
    visit(project.PowerUpRecord, &TrackRecord::kind);
}

}  // namespace

std::optional<QString> renameLine(QStringList& lines, int row, const QString& answer) {
    // Refused here, as uniqueName() numbers also an empty name where another line is empty.
    if (answer.isEmpty() || !lineAt(lines, row))
        return std::nullopt;
    return lines[row] = uniqueName(answer, lines);
}

int removeLine(QStringList& lines, int row) {
    lines.removeAt(row);
    return std::min(row, int(lines.size()) - 1);
}

int neighbourOf(const QStringList& lines, int row, Direction direction) {
    const int neighbour = row + int(direction);
    return lineAt(lines, row) && lineAt(lines, neighbour) ? neighbour : -1;
}

EditResult moveLine(QStringList& lines, int row, Direction direction) {
    const int neighbour = neighbourOf(lines, row, direction);
    if (neighbour < 0)
        return {.row = row};
    lines.swapItemsAt(row, neighbour);
    return {.isDone = true, .row = neighbour, .name = lines[neighbour]};
}

void renameItems(Project& project, Among among, const ItemNames& names, Variant TrackRecord::*field,
                 const QString& name) {
    changeItems(project, among, names, [&](TrackRecord& record, auto) { record.*field = name; });
}

void emptyItems(Project& project, Among among, const ItemNames& names) {
    changeItems(project, among, names, [](TrackRecord& record, Variant TrackRecord::*plays) {
        record.*plays = kind::Empty;
    });
}

const TrackRecord* shownRecord(const Project& project, const ItemNames& names) {
    for (const TrackRecord& record : project.TrackTable)
        if (isNamed(record, &TrackRecord::kind, names))
            return &record;
    return nullptr;
}

void chooseFile(Project& project, const ItemNames& names, const QString& path) {
    const QString native = QDir::toNativeSeparators(path);
    if (shownRecord(project, names)) {
        renameItems(project, Among::Records, names, &TrackRecord::sourcePath, native);
        return;
    }
    Q_ASSERT(names.item && names.group);
    TrackRecord record;
    record.kind = names.kind;
    record.itemName = *names.item;
    record.groupName = *names.group;
    record.sourcePath = native;
    project.TrackTable.append(record);
}

}  // namespace tessaly
