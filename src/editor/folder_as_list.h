#pragma once

#include <QString>
#include <QStringList>

#include "editor/imported_list.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"

namespace tessaly {

/// The names of the MP3 files that stand in a folder itself, ".mp3" in any case, ordered without
/// regard to case. Throws when the folder cannot be listed.
QStringList mp3FilesIn(const FileSystem& files, const QString& folder);

/// Makes a music list of a folder's MP3 files. The list is named after the folder, a track by its
/// first tag block's title, else by its file. Tracks that are alike are numbered as lines of the
/// list, not in their records. The whole list is made, or nothing. Sets `unsavedChanges` in any
/// case.
///
/// `folder` is absolute; empty, as after Cancel, it changes nothing. Throws as mp3FilesIn() and
/// addImportedList() do.
ImportResult importMusicFolder(Project& project, const FileSystem& files, const Mp3Tags& tags,
                               const QString& folder, const KeepGoing& keepGoing = {});

}  // namespace tessaly
