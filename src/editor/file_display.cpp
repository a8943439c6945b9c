// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/file_display.h"

#include "model/music_lists.h"
#include "model/numbers.h"

namespace tessaly {

namespace {

FileDisplay displayOf(const TrackRecord* record, const FileSystem& files) {
    FileDisplay display;
    if (!record)
        return display;
    display.path = record->sourcePath.text();
    display.record = record;
    display.stamp = files.stamp(display.path);
    if (display.stamp)
        display.size = megabytes(display.stamp->bytes);
    return display;
}

}  // namespace

FileDisplay speechDisplay(const Project& project, const SpeechSelection& selected,
                          const FileSystem& files) {
    const auto title = lineAt(project.lstSpTitles, selected.title);
    const auto language = lineAt(project.lstLangs, selected.language);
    if (!title || !language)
        return {};
    return displayOf(shownRecord(project, {kind::Speech, title, language}), files);
}

FileDisplay musicDisplay(const Project& project, const MusicSelection& selected,
                         const FileSystem& files, const Mp3Tags& tags) {
    const auto list = lineAt(project.lstMuList, selected.list);
    const auto track =
        list ? lineAt(tracksOfMusicList(project, *list), selected.track) : std::nullopt;
    if (!track)
        return {};
    FileDisplay display = displayOf(shownRecord(project, {kind::Music, track, list}), files);
    if (display.path.isEmpty())
        return display;
    display.tags = tags.read(display.path).merged();
    return display;
}

}  // namespace tessaly
