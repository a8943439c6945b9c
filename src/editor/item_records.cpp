#include "editor/item_records.h"

#include <QDir>

namespace tessaly {

RecordMatch naming(const QString* item, const QString* group) {
    return [item, group](const TrackRecord& record) {
        return (!item || record.itemName.is(*item)) && (!group || record.groupName.is(*group));
    };
}

void renameRecords(Project& project, QStringView kind, const RecordMatch& matches,
                   Variant TrackRecord::*field, const QString& name) {
    for (TrackRecord& record : project.TrackTable)
        if (record.kind.is(kind) && matches(record))
            record.*field = name;
}

void renamePlayers(Project& project, QStringView kind, const RecordMatch& matches,
                   Variant TrackRecord::*field, const QString& name) {
    for (TrackRecord& trigger : project.TriggerTable)
        if (trigger.sourcePath.is(kind) && matches(trigger))
            trigger.*field = name;
    if (project.PowerUpRecord.kind.is(kind) && matches(project.PowerUpRecord))
        project.PowerUpRecord.*field = name;
}

void emptyRecords(Project& project, QStringView kind, const RecordMatch& matches) {
    for (TrackRecord& record : project.TrackTable)
        if (record.kind.is(kind) && matches(record))
            record.kind = "empty";
}

void emptyPlayers(Project& project, QStringView kind, const RecordMatch& matches) {
    for (TrackRecord& trigger : project.TriggerTable)
        if (trigger.sourcePath.is(kind) && matches(trigger))
            trigger.sourcePath = "empty";
    if (project.PowerUpRecord.kind.is(kind) && matches(project.PowerUpRecord))
        project.PowerUpRecord.kind = "empty";
}

const TrackRecord* shownRecord(const Project& project, QStringView kind, const QString& item,
                               const QString& group) {
    for (const TrackRecord& record : project.TrackTable)
        if (record.kind.is(kind) && record.itemName.is(item) && record.groupName.is(group))
            return &record;
    return nullptr;
}

void chooseFile(Project& project, const char* kind, const QString& item, const QString& group,
                const QString& path) {
    const QString native = QDir::toNativeSeparators(path);
    const QString kindText = QString::fromLatin1(kind);
    if (shownRecord(project, kindText, item, group)) {
        renameRecords(project, kindText, naming(&item, &group), &TrackRecord::sourcePath, native);
        return;
    }
    TrackRecord record;
    record.kind = kind;
    record.itemName = item;
    record.groupName = group;
    record.sourcePath = native;
    project.TrackTable.append(record);
}

}  // namespace tessaly
