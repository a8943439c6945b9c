// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "card/card_files.h"
#include "card/card_writer.h"
#include "model/project.h"
#include "platform/drives.h"
#include "platform/file_system.h"

// A project that travels: copies of its MP3 files, of its chime and the project itself in one
// folder, which can be moved to another machine as a whole:
//   tour.crd2, Music/<list>/<file name>, Speech/<language>/<title>.mp3, Chime/<file name>
// Nothing is ever written over, and the sources are only read.

namespace tessaly {

/// Where a project is packed.
struct PackTarget {
    QString folder;       ///< empty, or not there yet
    QString projectFile;  ///< the project's own, for its name; empty: named after the folder
};

/// A file that goes along.
struct PackedFile {
    QString source;
    QString name;  ///< in the target, with '/' between
    qint64 size = 0;
};

/// What a packing will do.
struct PackPlan {
    QString folder;           ///< the target, absolute
    QStringList newFolders;   ///< absolute, each behind the one that it stands in
    QList<PackedFile> files;  ///< each source once, however many records use it
    qint64 bytes = 0;         ///< of those
    QString projectFile;      ///< absolute
    QByteArray project;       ///< its bytes; the paths in it are those of the copies
    /// Sources that cannot be found, each once. Then nothing else is planned: a folder that lacks a
    /// file would be found out where nobody has that file.
    QStringList missing;
};

/// What stands in `folder` and keeps it from being a target, one name of it; empty when it is
/// empty, or not there. What systems themselves put into the root of a drive does not count.
QString thingIn(const FileSystem& files, const QString& folder);

/// A new folder inside one that is in use, named after the project, as a target.
QString newFolderIn(const FileSystem& files, const PackTarget& inUse);

/// Plans without writing anything. Throws error 556 when the folder is in use or can be none, 533
/// when it cannot be written, 522 and 534 when the files are too large for its volume, and as
/// encodeProject() does.
PackPlan planPack(
    const Project& project, const PackTarget& target, const FileSystem& files, const Drives& drives,
    const FileDone& fileDone = [] {});

/// Called at every file and block of at most 1 MiB, of phase Copy or Flush: false ends the work.
/// Also of phase Erase, while what was made is removed again, which always goes to its end.
using PackProgress = std::function<bool(const RunProgress& progress)>;

/// Carries a plan out that misses nothing; the project is written last, in one step. Throws, with
/// error 538 when `keepGoing` said so, else as the file system does; then all that was made is
/// removed again, and nothing else, and the sentence says so.
void packProject(FileSystem& files, const PackPlan& plan, const PackProgress& keepGoing);

}  // namespace tessaly
