// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/imported_list.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <utility>

#include "editor/item_lists.h"
#include "model/display_text.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "platform/error.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

TessalyError tooMuch(const QString& what) {
    return {error_number::BadImport, u"Too much for one music list: "_s + what};
}

struct Renaming {
    qsizetype record;  // slot of TrackTable
    QString list;
    QString oldName;
    QString newName;
    bool isPlayed;  // it is the one that plays when its old line does
};

// What stands in the table of one list.
struct ListRecords {
    QList<qsizetype> inTable;           // in table order
    QHash<QString, qsizetype> firstOf;  // name: the index in `inTable` of the record that plays
};

// Plans which records take the numbered names that their lines have. The import numbered the lines
// in the order of the records, so numbering the records once more tells which line is whose.
//
// A record can only take a name that no other record has by then. Who has it stands further back in
// the table and may move away itself. That is why the last record is planned, and renamed, first.
void planList(const Project& project, const QString& list, const QStringList& lines,
              const ListRecords& records, QList<Renaming>& plan) {
    UniqueNames names;
    QStringList numbered;
    for (const qsizetype slot : records.inTable)
        numbered.append(names.add(project.TrackTable[slot].itemName.text()));
    const QSet<QString> shown(lines.begin(), lines.end());
    QList<bool> moves(records.inTable.size(), false);
    for (qsizetype i = records.inTable.size() - 1; i >= 0; --i) {
        const QString name = project.TrackTable[records.inTable[i]].itemName.text();
        const qsizetype server = records.firstOf.value(numbered[i], -1);
        moves[i] =
            numbered[i] != name && shown.contains(numbered[i]) && (server < 0 || moves[server]);
        if (moves[i])
            plan.append({records.inTable[i], list, name, numbered[i],
                         records.firstOf[name] == i && shown.contains(name)});
    }
}

QList<Renaming> planOf(const Project& project, const QStringList& lists) {
    QHash<QString, ListRecords> byList;
    for (qsizetype slot = 1; slot < project.TrackTable.size(); ++slot) {
        const TrackRecord& record = project.TrackTable[slot];
        if (!isMusic(record))
            continue;
        ListRecords& records = byList[record.groupName.text()];
        const QString name = record.itemName.text();
        if (!records.firstOf.contains(name))
            records.firstOf.insert(name, records.inTable.size());
        records.inTable.append(slot);
    }
    QList<Renaming> plan;
    const MusicListIndex index(project);
    for (const QString& list : lists)
        if (const auto records = byList.constFind(list);
            records != byList.constEnd() && records->firstOf.size() < records->inTable.size())
            planList(project, list, index.tracks(list), *records, plan);
    return plan;
}

}  // namespace

QList<ImportMessage> boxesOf(const ImportResult& result) {
    constexpr qsizetype MostEntries = 10;
    QList<ImportMessage> boxes = result.leftOut.first(std::min(result.leftOut.size(), MostEntries));
    if (const qsizetype more = result.leftOut.size() - boxes.size(); more > 0)
        boxes.append(
            {.title = u"Tracks not added"_s,
             .text = (more == 1 ? u"1 more entry was"_s : grouped(more) + u" more entries were"_s) +
                     u" left out."_s});
    return boxes + result.messages;
}

TessalyError tooManyAtOnce(const QString& path) {
    return {error_number::BadImport, u"%1: there are more than %2 MP3 files to add at once"_s.arg(
                                         shownPath(path), grouped(MostImportedTracks))};
}

QStringList appendTracks(Project& project, const QString& list, const QList<ImportedTrack>& tracks,
                         RecordNames recordNames, UniqueNames& names, qsizetype& characters) {
    QStringList appended;
    QSet<QString> lines;
    const Variant music = kind::Music, group = list;  // one text for all
    for (const ImportedTrack& track : tracks) {
        const QString listed = addMusicTrack(project, track.name, names);
        characters += listed.size();
        if (characters > MostNameCharacters)
            throw tooMuch(u"too many of its tracks have the same name."_s);
        TrackRecord record;
        record.kind = music;
        // Two Cyrillic names become the same question marks in a project file, so the second is
        // numbered although no line has that name yet. Its record follows the line.
        record.itemName = recordNames == RecordNames::AsListed || !lines.contains(track.name)
                              ? listed
                              : track.name;
        lines.insert(listed);
        record.groupName = group;
        record.sourcePath = track.path;
        project.TrackTable.append(record);
        appended.append(listed);
    }
    return appended;
}

ImportResult addImportedList(Project& project, const QString& name,
                             const QList<ImportedTrack>& tracks, RecordNames recordNames) {
    if (tracks.size() > MostImportedTracks)
        throw tooMuch(grouped(tracks.size()) + u" tracks."_s);
    // On a copy, so that a failure on the way leaves the project whole.
    Project grown = project;
    const QString cut = firstCharacters(name, limits::DisplayText);
    ImportResult result{.outcome = ImportResult::Outcome::Imported,
                        .list = addMusicList(grown, cut.isEmpty() ? u"Music"_s : cut),
                        .tracks = int(tracks.size())};
    grown.TrackTable.reserve(grown.TrackTable.size() + tracks.size());
    UniqueNames names(grown.lstMuTrack[grown.currentMusicList]);
    qsizetype characters = 0;
    appendTracks(grown, result.list, tracks, recordNames, names, characters);
    project = std::move(grown);
    selectLastRows(project, result);
    return result;
}

void selectLastRows(Project& project, ImportResult& result) {
    result.listRow = int(project.lstMuList.size()) - 1;
    selectMusicList(project, project.lstMuList.value(result.listRow));
    result.trackRow = int(project.lstMuTrack[project.currentMusicList].size()) - 1;
}

bool canGiveEachItsFile(const Project& project, const QStringList& lists) {
    return !planOf(project, lists).isEmpty();
}

void giveEachItsFile(Project& project, const QStringList& lists) {
    project.unsavedChanges = true;
    for (const Renaming& renaming : planOf(project, lists)) {
        project.TrackTable[renaming.record].itemName = renaming.newName;
        // Whatever plays the new name has been renamed already: the last record comes first.
        if (renaming.isPlayed)
            renameItems(project, Among::Players, {kind::Music, renaming.oldName, renaming.list},
                        &TrackRecord::itemName, renaming.newName);
    }
}

QString namesakesText(const Project& project, const QString& list) {
    constexpr qsizetype NamedAtMost = 10;
    QStringList tracks;
    for (const MusicLine& line : silentTracks(project, TrackIndex(project)))
        if (line.list == list)
            tracks.append(u"\"%1\""_s.arg(shortName(line.track)));
    if (tracks.isEmpty())
        return {};
    const qsizetype count = tracks.size();
    QString text = count == 1
                       ? u"1 track of the music list \"%1\" has the name of another: "_s.arg(list)
                       : u"%1 tracks of the music list \"%2\" have the name of "_s
                         u"another: "_s.arg(QString::number(count), list);
    text += tracks.mid(0, NamedAtMost).join(u", "_s);
    return text + (count > NamedAtMost ? u" ... and %1 more."_s.arg(count - NamedAtMost) : u"."_s);
}

}  // namespace tessaly
