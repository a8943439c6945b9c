// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace tessaly {

/// `folder` with its last separator, the platform's own, added when it lacks one. Empty stays
/// empty.
QString withLastSeparator(const QString& folder);

/// `folder` and `name` as one path with the platform's separator.
QString pathIn(const QString& folder, const QString& name);

/// The text behind the last separator of `path`, whichever of the two kinds it is: a path that
/// a file brings may come from another platform. Empty for a drive's root.
QString lastNameOf(const QString& path);

/// A name or a path as a message shows it: of more than 300 characters the two ends, with "…"
/// between them, 300 in all; never half a surrogate pair.
QString elided(const QString& text);

/// `path` as a message shows it: with the platform's own separators, and elided.
QString shownPath(const QString& path);

/// `path` as it is found from any folder, seen from the current one. An absolute path stays as it
/// is; the file need not exist.
QString absolutePath(const QString& path);

/// The bytes by which Linux knows `path`: UTF-8, and for names that came from fromNativePath()
/// their very own bytes.
QByteArray toNativePath(const QString& path);

/// The text of a name that Linux reports. A name that is no UTF-8 keeps each of its bytes above
/// 0x7F as the lone low surrogate U+DC00 + byte, so that toNativePath() finds the file again.
QString fromNativePath(const QByteArray& name);

/// Folders of the operating system, such as /usr. None of them, no folder inside one and no folder
/// that contains one may be erased as a card.
QStringList systemFolders();

/// Folders that hold people's files, such as /home and the desktop. None of them and no folder that
/// contains one may be erased as a card; a folder inside one may.
QStringList personalFolders();

/// The folder for what the program keeps for its user: recovery copies, the user's own support
/// files. It need not exist.
QString userFolder();

/// The folder for what the program finds out again when it is gone. It need not exist.
QString userCacheFolder();

}  // namespace tessaly
