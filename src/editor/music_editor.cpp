// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/music_editor.h"

#include <algorithm>

#include "model/music_lists.h"

namespace tessaly {

namespace {

// The lines of the selected list's tracks; nullptr when no list is selected.
QStringList* selectedTracks(Project& project, const MusicSelection& selected) {
    const auto list = lineAt(project.lstMuList, selected.list);
    if (!list)
        return nullptr;
    selectMusicList(project, *list);
    return &project.lstMuTrack[project.currentMusicList];
}

}  // namespace

EditorControls musicControls(const MusicSelection& selected, const QString& newList,
                             bool trackEntered) {
    const bool hasList = selected.list >= 0;
    const bool hasTrack = hasList && selected.track >= 0;  // without its list it is none
    return {.first = {.add = !newList.isEmpty(), .change = hasList},
            .second = {.add = trackEntered, .change = hasTrack},
            .chooseFile = hasTrack};
}

EditResult addNewMusicList(Project& project, const QString& name) {
    project.unsavedChanges = true;
    if (name.isEmpty())
        return {};
    const QString list = addMusicList(project, name);
    return {.isDone = true, .row = int(project.lstMuList.size()) - 1, .name = list};
}

EditResult addNewMusicTrack(Project& project, const MusicSelection& selected, const QString& name) {
    project.unsavedChanges = true;
    const QStringList* tracks = selectedTracks(project, selected);
    if (!tracks)
        return {.row = selected.track};
    UniqueNames names(*tracks);
    return {.isDone = true, .row = selected.track, .name = addMusicTrack(project, name, names)};
}

EditResult chooseMusicFile(Project& project, const MusicSelection& selected, const QString& path) {
    project.unsavedChanges = true;
    const QStringList* tracks = selectedTracks(project, selected);
    const auto track = tracks ? lineAt(*tracks, selected.track) : std::nullopt;
    if (!track || path.isEmpty())
        return {.row = selected.track};
    chooseFile(project, {kind::Music, track, project.lstMuList[selected.list]}, path);
    return {.isDone = true, .row = selected.track, .name = *track};
}

EditResult renameMusicList(Project& project, int list, const QString& answer) {
    project.unsavedChanges = true;
    const QString old = lineAt(project.lstMuList, list).value_or(QString());
    const auto name = renameLine(project.lstMuList, list, answer);
    if (!name)
        return {.row = list};
    renameItems(project, Among::Both, {.kind = kind::Music, .group = old}, &TrackRecord::groupName,
                *name);
    if (old.isEmpty()) {
        // Only a file brings such a list. It shares the spare slot, for both have no name.
        project.MusicListNames.last() = *name;
        project.MusicListNames.append(QString());
        project.lstMuTrack.append(QStringList());
    } else {
        std::replace(project.MusicListNames.begin(), project.MusicListNames.end(), old, *name);
    }
    return {.isDone = true, .row = -1, .name = *name};
}

EditResult renameMusicTrack(Project& project, const MusicSelection& selected,
                            const QString& answer) {
    project.unsavedChanges = true;
    QStringList* tracks = selectedTracks(project, selected);
    if (!tracks)
        return {.row = selected.track};
    const QString old = lineAt(*tracks, selected.track).value_or(QString());
    const auto name = renameLine(*tracks, selected.track, answer);
    if (!name)
        return {.row = selected.track};
    renameItems(project, Among::Both, {kind::Music, old, project.lstMuList[selected.list]},
                &TrackRecord::itemName, *name);
    return {.isDone = true, .row = selected.track, .name = *name};
}

EditResult deleteMusicList(Project& project, int list) {
    project.unsavedChanges = true;
    const auto name = lineAt(project.lstMuList, list);
    if (!name)
        return {.row = list};
    emptyItems(project, Among::Both, {.kind = kind::Music, .group = name});
    std::replace(project.MusicListNames.begin(), project.MusicListNames.end(), *name, QString());
    if (name->isEmpty())
        project.lstMuTrack.last().clear();
    const int row = removeLine(project.lstMuList, list);
    selectMusicList(project, lineAt(project.lstMuList, row).value_or(QString()));
    return {.isDone = true, .row = row, .name = *name};
}

EditResult deleteMusicTrack(Project& project, const MusicSelection& selected) {
    project.unsavedChanges = true;
    QStringList* tracks = selectedTracks(project, selected);
    const auto track = tracks ? lineAt(*tracks, selected.track) : std::nullopt;
    if (!track)
        return {.row = selected.track};
    emptyItems(project, Among::Both, {kind::Music, track, project.lstMuList[selected.list]});
    return {.isDone = true, .row = removeLine(*tracks, selected.track), .name = *track};
}

EditResult moveMusicList(Project& project, int list, Direction direction) {
    const EditResult result = moveLine(project.lstMuList, list, direction);
    if (result.isDone)
        selectMusicList(project, result.name);
    return result;
}

EditResult moveMusicTrack(Project& project, const MusicSelection& selected, Direction direction) {
    QStringList* tracks = selectedTracks(project, selected);
    if (!tracks || neighbourOf(*tracks, selected.track, direction) < 0)
        return {.row = selected.track};
    const QString& list = project.lstMuList[selected.list];
    const QString& track = (*tracks)[selected.track];
    const TrackRecord* shown = shownRecord(project, {kind::Music, track, list});
    const QString path = shown ? shown->sourcePath.text() : QString();
    // Slot 0 is no record: it is neither moved nor a partner.
    for (qsizetype i = 1; i < project.TrackTable.size(); ++i) {
        const TrackRecord& record = project.TrackTable[i];
        if (!record.itemName.is(track) || !record.groupName.is(list) || !record.sourcePath.is(path))
            continue;
        const qsizetype partner = i + int(direction);
        if (partner < 1 || partner >= project.TrackTable.size())
            return {.row = selected.track};
        project.TrackTable.swapItemsAt(i, partner);
        break;
    }
    return moveLine(*tracks, selected.track, direction);
}

}  // namespace tessaly
