// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringList>

#include "editor/imported_list.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"

namespace tessaly {

/// A larger file is no playlist.
constexpr qint64 MostPlaylistBytes = qint64(32) * 1024 * 1024;

/// The list that a playlist file of that name makes, not yet cut: what stands before ".txt" in it,
/// else before ".m3u", in any case; else nothing.
QString playlistListName(const QString& path);

/// Makes a music list of a playlist that a media player exported (editor/playlist_parser.h has the
/// formats). Tracks are taken in their order, whether their files exist or not; entries without a
/// name, without a path or with another ending than "mp3" are left out, each with a message. The
/// whole list is made, or nothing. Sets `unsavedChanges` in any case.
///
/// `path` is the playlist's own, absolute; empty, as after Cancel, it changes nothing. Throws when
/// the file cannot be read, and error 555 beyond the limits of addImportedList().
ImportResult importPlaylist(Project& project, FileSystem& files, const Mp3Tags& tags,
                            const QString& path, const KeepGoing& keepGoing = {});

/// The same for the bytes of the file at `path`. Any bytes will do.
ImportResult importPlaylist(Project& project, QByteArrayView bytes, const Mp3Tags& tags,
                            const QString& path, const KeepGoing& keepGoing = {});

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
