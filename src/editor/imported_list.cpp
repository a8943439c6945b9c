#include "editor/imported_list.h"

#include <QSet>
#include <algorithm>
#include <utility>

#include "editor/entry_fields.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "platform/error.h"

namespace tessaly {

namespace {

TessalyError tooMuch(const QString& what) {
    return {error_number::BadImport, "Too much for one music list: " + what};
}

}  // namespace

QList<ImportMessage> boxesOf(const ImportResult& result) {
    constexpr qsizetype MostEntries = 10;
    QList<ImportMessage> boxes = result.leftOut.first(std::min(result.leftOut.size(), MostEntries));
    if (const qsizetype more = result.leftOut.size() - boxes.size(); more > 0)
        boxes.append({.title = "Tracks not added",
                      .text = (more == 1 ? QString("1 more entry was")
                                         : grouped(more) + " more entries were") +
                              " left out."});
    return boxes + result.messages;
}

ImportResult addImportedList(Project& project, const QString& name,
                             const QList<ImportedTrack>& tracks, RecordNames recordNames) {
    if (tracks.size() > MostImportedTracks)
        throw tooMuch(grouped(tracks.size()) + " tracks.");
    // On a copy, so that a failure on the way leaves the project whole.
    Project grown = project;
    const QString cut = firstCharacters(name, limits::DisplayText);
    ImportResult result{.outcome = ImportResult::Outcome::Imported,
                        .list = addMusicList(grown, cut.isEmpty() ? "Music" : cut),
                        .tracks = int(tracks.size())};
    grown.TrackTable.reserve(grown.TrackTable.size() + tracks.size());
    UniqueNames names(grown.lstMuTrack[grown.currentMusicList]);
    QSet<QString> lines;
    qsizetype characters = 0;
    for (const ImportedTrack& track : tracks) {
        const QString listed = addMusicTrack(grown, track.name, names);
        characters += listed.size();
        if (characters > MostNameCharacters)
            throw tooMuch("too many of its tracks have the same name.");
        TrackRecord record;
        record.kind = "music";
        // A name that is only saved as another is has a line of its own, with its file.
        record.itemName = recordNames == RecordNames::AsListed || !lines.contains(track.name)
                              ? listed
                              : track.name;
        lines.insert(listed);
        record.groupName = result.list;
        record.sourcePath = track.path;
        grown.TrackTable.append(record);
    }
    project = std::move(grown);
    selectLastRows(project, result);
    return result;
}

void selectLastRows(Project& project, ImportResult& result) {
    result.listRow = int(project.lstMuList.size()) - 1;
    selectMusicList(project, project.lstMuList.value(result.listRow));
    result.trackRow = int(project.lstMuTrack[project.currentMusicList].size()) - 1;
}

}  // namespace tessaly
