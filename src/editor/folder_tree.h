// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "editor/add_summary.h"
#include "editor/imported_list.h"
#include "platform/file_system.h"

// Folders as the operator sees them: MP3 files and other folders, in the order of their names.

namespace tessaly {

/// Orders file names as people do: without regard to case, numbers in them by their value. Names
/// that are alike by that rule keep a fixed order.
bool comesBefore(const QString& a, const QString& b);

/// Orders paths by comesBefore() of their last names, then of themselves.
void sortByName(QStringList& paths);

/// Whether a name is that of an MP3 file: it ends in ".mp3", in any case, with something before it.
bool isMp3Name(const QString& name);

/// The name of an MP3 file without ".mp3", composed: other systems write e and accent apart.
QString nameOfMp3(const QString& file);

/// What stands in a folder, in the order of comesBefore(). A link to a folder counts as a folder.
/// Throws when the folder cannot be listed.
QList<FolderEntry> orderedEntries(const FileSystem& files, const QString& folder);

/// What a walk through folders asks and tells.
struct FolderWalk {
    /// Asked before each folder; false ends the walk.
    std::function<bool()> goesOn;
    /// A folder (native) with what stands in it, as orderedEntries() gives it.
    std::function<void(const QString& folder, const QList<FolderEntry>& entries)> visit;
    /// A folder that is not entered: it cannot be read or lies more than 64 deep (Unreadable), or a
    /// link leads to it once more (Already).
    std::function<void(LeftOut why, const QString& folder, const QString& detail)> leaveOut;
};

/// Walks through the folder `path` and those at any depth below it: each once, and before those
/// inside it.
void walkFolders(const FileSystem& files, const QString& path, const FolderWalk& walk);

/// A folder that holds MP3 files itself.
struct Mp3Folder {
    QString path;       ///< native
    QStringList files;  ///< paths, ordered
};

/// The folder `path` and those at any depth below it that hold MP3 files themselves: each before
/// those inside it. What else stands there, folders that cannot be read or lie more than 64 deep,
/// and those that a link leads to once more go into `summary`, each as left out. `keepGoing` is
/// asked for each folder, with a total of 0; when it says no, what was found so far is returned and
/// `summary.isCancelled` set. Throws error 555 beyond MostImportedTracks files.
QList<Mp3Folder> mp3FoldersIn(const FileSystem& files, const QString& path, AddSummary& summary,
                              const KeepGoing& keepGoing = {});

}  // namespace tessaly
