// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

// The formats of exported playlists, told by their first line:
//
//   tabbed   tab behind a first column with "Album"; track name in column 6, path behind the eighth
//   itunes   tab behind a first column with "Name"; columns found by "Name" and "Location"
//   extm3u   tab behind a first column with "#EXT"; an information line (name behind its first
//            comma) and a path line for each track
//   m3u      no tab, but ".mp3": every line is a path, the first one, too; the last is not handled
//
// Letters count as they are written. Anything else is no playlist.

namespace tessaly {

/// The text of a playlist file. A byte-order mark says UTF-8 or UTF-16 of either order; without one
/// it is UTF-8 where it is valid, else Windows-1252. Any bytes give a text.
QString decodePlaylist(QByteArrayView bytes);

/// Takes the first line off a text and returns it without its end: CR LF, LF, or CR alone.
QStringView takeLine(QStringView& text);

/// The lines of a text, without their ends. An end behind the last line
/// begins no further one. At most `most` lines are looked for.
QList<QStringView> linesOf(QStringView text, qsizetype most);

enum class PlaylistFormat { invalid, tabbed, itunes, extm3u, m3u };

/// What the first line of a playlist says.
struct PlaylistHeader {
    PlaylistFormat playlistFormat = PlaylistFormat::invalid;
    int nameColumn = 0;           ///< itunes: column of the track name, counted from 1
    int locationColumnSkip = -1;  ///< itunes: columns before the path; -1 when there is none
    bool locationIsLast = true;   ///< itunes: the path is all that remains, else one column
};

/// One track of a playlist as it stands there; either text is empty where it is missing.
struct PlaylistEntry {
    QString name;      ///< at most 16 characters; always empty for m3u
    QString location;  ///< whole path
};

PlaylistHeader parsePlaylistHeader(QStringView line);

/// How many entries a playlist of `lines` lines has.
qsizetype playlistEntries(PlaylistFormat format, qsizetype lines);

/// Entry `index` of a playlist, from 0 to playlistEntries() - 1. `folder` stands before relative
/// paths of extm3u. A line that is too short for its format has empty values.
PlaylistEntry parsePlaylistEntry(const PlaylistHeader& header, const QList<QStringView>& lines,
                                 qsizetype index, const QString& folder);

}  // namespace tessaly
