// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "editor/item_lists.h"
#include "editor/row_moves.h"
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
/// `lists` and `tracks` are the selected rows: what concerns tracks needs one list, and all but
/// Remove one track. `newList` is the text for a new list; `trackEntered` says that one for a track
/// was entered, even if it is empty by now, as a track's name may be.
EditorControls musicControls(const Rows& lists, const Rows& tracks, const QString& newList,
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

/// Removes lists with their tracks; triggers and power-up item that play from them are freed. The
/// list in the row to select is the current one then.
EditResult deleteMusicLists(Project& project, const Rows& lists);

/// Removes tracks of one list; triggers and power-up item that play them are freed.
EditResult deleteMusicTracks(Project& project, int list, const Rows& tracks);

/// Moves lists within the display order. One that is moved alone becomes the current one.
Rows moveMusicLists(Project& project, const QList<RowTravel>& travels);

/// Moves tracks of a list; see moveTracks().
Rows moveMusicTracks(Project& project, int list, const QList<RowTravel>& travels);

/// Puts the tracks of a list into another order; see reorderTracks(). Sets `unsavedChanges`.
void sortMusicTracks(Project& project, int list, const QList<int>& order);

}  // namespace tessaly
