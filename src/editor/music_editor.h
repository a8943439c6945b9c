// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "editor/item_lists.h"
#include "model/project.h"

// What the operator does on the page of music lists and tracks. Every operation but the moves sets
// `unsavedChanges`, even when it turns out to do nothing; each needs its whole selection. A list
// whose row is selected here becomes the current one, as selectMusicList() does.

namespace tessaly {

/// What is selected: a row of `lstMuList`, and a row of that list's tracks.
struct MusicSelection {
    int list = -1;
    int track = -1;
};

/// The one rule for the buttons: what is selected and entered decides, however it came about.
/// `newList` is the text for a new list; `trackEntered` says that one for a track was entered, even
/// if it is empty by now, as a track's name may be.
EditorControls musicControls(const MusicSelection& selected, const QString& newList,
                             bool trackEntered);

/// Appends a list under the unique form of `name` and makes it the current one. An empty name
/// makes none. The row is the new list's.
EditResult addNewMusicList(Project& project, const QString& name);

/// Appends a track, which may have an empty name, to the selected list. The row stays selected.
EditResult addNewMusicTrack(Project& project, const MusicSelection& selected, const QString& name);

/// Gives the selected track its MP3 file. An empty path, as after Cancel, changes nothing.
EditResult chooseMusicFile(Project& project, const MusicSelection& selected, const QString& path);

/// Renames a list wherever it is named. The row to select is none. An empty answer changes nothing.
EditResult renameMusicList(Project& project, int list, const QString& answer);

/// Renames a track wherever it is named. The row stays selected.
EditResult renameMusicTrack(Project& project, const MusicSelection& selected,
                            const QString& answer);

/// Removes a list with its tracks; triggers and power-up item that play from it are freed. The list
/// in the row to select is the current one then.
EditResult deleteMusicList(Project& project, int list);

/// Removes a track; triggers and power-up item that play it are freed.
EditResult deleteMusicTrack(Project& project, const MusicSelection& selected);

/// Moves a list within the display order.
EditResult moveMusicList(Project& project, int list, Direction direction);

/// Moves a track within its list's lines, and its record past its neighbour in `TrackTable`,
/// whatever that belongs to: the two orders may part. A record that has no neighbour on that side
/// stays, and its line with it.
EditResult moveMusicTrack(Project& project, const MusicSelection& selected, Direction direction);

}  // namespace tessaly
