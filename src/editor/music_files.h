// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "editor/add_summary.h"
#include "editor/imported_list.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"

namespace tessaly {

/// Where music goes that comes in from outside.
struct MusicTarget {
    int listRow = -1;  ///< row of `lstMuList` whose tracks are appended to; -1: lists of its own
};

/// Adds what was dropped or chosen together, by absolute paths: MP3 files, folders at any depth,
/// and standard playlists (editor/standard_playlist.h), in any mixture.
///
/// Without a list as the target, loose MP3 files together make one list named after their folder,
/// each folder that holds MP3 files itself makes one named after it, and each playlist one named
/// after its file, in this order of kinds for what was given and by comesBefore() otherwise. With a
/// list, all of them are appended to it in the same order. Playlists keep their own order.
///
/// A track is named by its playlist, else by its title tag, else by its file, cut to 16 characters.
/// Equal names are numbered in the list and in the records alike, so that no track is silent. What
/// cannot be taken is left out and named in the summary; a file that a playlist names is taken
/// although it is not there.
///
/// All or nothing: cancelled, or with an exception, it changes nothing. `unsavedChanges` is set
/// only when something was added. Throws error 555 beyond the limits of addImportedList(), which
/// hold for all files together.
AddSummary addMusicFiles(Project& project, FileSystem& files, const Mp3Tags& tags,
                         const QStringList& paths, const MusicTarget& target = {},
                         const KeepGoing& keepGoing = {});

}  // namespace tessaly
