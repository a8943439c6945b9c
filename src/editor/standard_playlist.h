// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>
#include <QStringView>

// Playlists as media players write them for each other. editor/playlist_parser.h has the prescribed
// formats of exported ones, which read the same endings by other rules.
//
//   .m3u, .m3u8   a path in each line; lines that begin with "#" are comments, but "#EXTINF:" gives
//                 the next path its title, behind the first comma
//   .pls          FileN= has a path, TitleN= its title; by their number, whatever the line
//
// Lines end in CR LF, LF or CR, and all count, also the last. Blanks around them do not.

namespace tessaly {

inline constexpr QStringView PlaylistEndings[] = {u".m3u", u".m3u8", u".pls"};

/// Whether a file's name ends as a standard playlist's: .m3u, .m3u8, .pls, in any case.
bool isStandardPlaylist(const QString& path);

/// The name of the list that a standard playlist makes, not yet cut: that of its file.
QString nameOfPlaylist(const QString& path);

/// A text without its %-escapes, as file:// has them. What is no escape stays.
QString withoutEscapes(const QString& text);

/// One file that a playlist names.
struct StandardEntry {
    QString title;          ///< its first 1,000 characters; empty where there is none
    QString location;       ///< whole path, native; of a stream its address
    bool isStream = false;  ///< an address of the network, http:// and the like
};

/// The entries of a playlist at `path`, which says its format and its folder. Any bytes will do;
/// their encoding is found as decodePlaylist() does. At most `most` entries are read.
///
/// Relative paths are looked for in the playlist's own folder, with either separator. A path with a
/// drive, a share (\\...) and a root stay as they are. file:// is resolved, with its %-escapes.
QList<StandardEntry> parseStandardPlaylist(QByteArrayView bytes, const QString& path,
                                           qsizetype most);

}  // namespace tessaly
