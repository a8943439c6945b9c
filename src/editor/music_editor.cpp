// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/music_editor.h"

#include <algorithm>

#include "model/music_lists.h"

namespace tessaly {

namespace {

// The lines of the selected list's tracks; nullptr when no list is selected.
QStringList* selectedTracks(Project& project, int row) {
    const auto list = lineAt(project.lstMuList, row);
    if (!list)
        return nullptr;
    selectMusicList(project, *list);
    return &project.lstMuTrack[project.currentMusicList];
}

}  // namespace

EditorControls musicControls(const Rows& lists, const Rows& tracks, const QString& newList,
                             bool trackEntered) {
    const bool hasList = lists.size() == 1;
    const bool hasTrack = hasList && tracks.size() == 1;
    return {
        .first = {.add = !newList.isEmpty(), .change = hasList, .remove = !lists.isEmpty()},
        .second = {.add = trackEntered, .change = hasTrack, .remove = hasList && !tracks.isEmpty()},
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
    const QStringList* tracks = selectedTracks(project, selected.list);
    if (!tracks)
        return {.row = selected.track};
    UniqueNames names(*tracks);
    return {.isDone = true, .row = selected.track, .name = addMusicTrack(project, name, names)};
}

EditResult chooseMusicFile(Project& project, const MusicSelection& selected, const QString& path) {
    project.unsavedChanges = true;
    const QStringList* tracks = selectedTracks(project, selected.list);
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
    QStringList* tracks = selectedTracks(project, selected.list);
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

EditResult deleteMusicLists(Project& project, const Rows& lists) {
    project.unsavedChanges = true;
    const QSet<QString> names = linesAt(project.lstMuList, lists);
    if (names.isEmpty())
        return {.row = lists.value(0, -1)};
    emptyItems(project, Among::Both, {.kind = kind::Music, .groups = names});
    for (QString& name : project.MusicListNames)
        if (names.contains(name))
            name.clear();
    if (names.contains(QString()))
        project.lstMuTrack.last().clear();
    const EditResult result = removeLines(project.lstMuList, lists);
    selectMusicList(project, lineAt(project.lstMuList, result.row).value_or(QString()));
    return result;
}

EditResult deleteMusicTracks(Project& project, int list, const Rows& tracks) {
    project.unsavedChanges = true;
    QStringList* lines = selectedTracks(project, list);
    const QSet<QString> names = lines ? linesAt(*lines, tracks) : QSet<QString>();
    if (names.isEmpty())
        return {.row = tracks.value(0, -1)};
    emptyItems(project, Among::Both, {kind::Music, names, QSet{project.lstMuList[list]}});
    return removeLines(*lines, tracks);
}

Rows moveMusicLists(Project& project, const QList<RowTravel>& travels) {
    const auto alone =
        travels.size() == 1 ? lineAt(project.lstMuList, travels.first().from) : std::nullopt;
    const Rows rows = moveLines(project.lstMuList, travels);
    if (alone)
        selectMusicList(project, *alone);
    return rows;
}

Rows moveMusicTracks(Project& project, int list, const QList<RowTravel>& travels) {
    QStringList* lines = selectedTracks(project, list);
    return lines ? moveTracks(project, project.lstMuList[list], *lines, travels) : Rows();
}

void sortMusicTracks(Project& project, int list, const QList<int>& order) {
    project.unsavedChanges = true;
    if (QStringList* lines = selectedTracks(project, list))
        reorderTracks(project, project.lstMuList[list], *lines, order);
}

}  // namespace tessaly
