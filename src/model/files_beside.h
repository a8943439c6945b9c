// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include "model/card_file.h"
#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// Opens a project for work: readProject(), then takeFilesBeside(). All that the window and the
/// command line open goes through here, so that they find the same files.
ReadReport openProjectFile(FileSystem& files, const QString& path, Project& project);

/// Finds the MP3 files, and the chime, of a project that was moved together with them. A file that
/// is not where the project says is looked for below the folder of `projectFile`, under the longest
/// tail of its path that leads to a file there: of "D:\Tour\Music\Rock\a.mp3" these are
/// "Tour/Music/Rock/a.mp3", "Music/Rock/a.mp3", "Rock/a.mp3" and "a.mp3". Paths of Windows and
/// Linux are understood on both. `project` gets the paths of what was found; other paths, and
/// `unsavedChanges`, stay. Returns how many paths it changed.
///
/// The system is asked once for each folder that paths name, for each name in it and for each tail
/// that begins with a folder that is there; and for each file once in every folder that this
/// leaves.
int takeFilesBeside(const FileSystem& files, const QString& projectFile, Project& project);

}  // namespace tessaly
