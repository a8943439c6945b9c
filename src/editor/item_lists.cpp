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

bool isNamed(const TrackRecord& record, Variant TrackRecord::*plays, const ManyNames& names) {
    return (record.*plays).is(names.kind) &&
           (!names.groups || names.groups->contains(record.groupName.text())) &&
           (!names.items || names.items->contains(record.itemName.text()));
}

// Calls `change` with each record and the field that says what it is or plays.
template <typename Names, typename Change>
void changeItems(Project& project, Among among, const Names& names, const Change& change) {
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

QSet<QString> linesAt(const QStringList& lines, const Rows& rows) {
    QSet<QString> texts;
    for (const int row : rows)
        if (const auto text = lineAt(lines, row))
            texts.insert(*text);
    return texts;
}

EditResult removeLines(QStringList& lines, const Rows& rows) {
    const qsizetype before = lines.size();
    QStringList left;
    left.reserve(before);
    for (qsizetype row = 0, next = 0; row < before; ++row) {
        while (next < rows.size() && rows[next] < row)
            ++next;
        if (next == rows.size() || rows[next] != row)
            left.append(lines[row]);
    }
    lines = left;
    return {.isDone = lines.size() < before,
            .row = std::min(rows.value(0, -1), int(lines.size()) - 1)};
}

void renameItems(Project& project, Among among, const ItemNames& names, Variant TrackRecord::*field,
                 const QString& name) {
    changeItems(project, among, names, [&](TrackRecord& record, auto) { record.*field = name; });
}

void emptyItems(Project& project, Among among, const ManyNames& names) {
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
