// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "editor/add_summary.h"
#include "editor/imported_list.h"
#include "model/project.h"
#include "platform/file_system.h"

// MP3 files that are no longer where the project says, and the folder in which they are looked for.

namespace tessaly {

/// The paths of all MP3 files that go onto the card, as the project has them.
QStringList sourcePaths(const Project& project);

/// The paths of the project's MP3 files that lead to none: each once, in table order, that of the
/// chime last if the card gets it. Records without a path are not among them. When `keepGoing` says
/// no, those found until then.
QStringList missingFiles(const Project& project, const FileSystem& files,
                         const KeepGoing& keepGoing = {});

/// The files of a folder and everything below it that may be missing ones: their names end as that
/// of a missing one does, as in ".mp3".
struct SearchedFolder {
    QStringList paths;    ///< native, folder by folder in the order of their names
    QList<qint64> sizes;  ///< of each, in bytes
    AddSummary leftOut;   ///< folders that could not be read; `isCancelled` by `keepGoing`
};

/// Throws error 555 beyond MostSearchedFiles such files. `keepGoing` is asked for each folder, with
/// a total of 0.
SearchedFolder searchFolder(const FileSystem& files, const QString& folder,
                            const QStringList& missing, const KeepGoing& keepGoing = {});
constexpr int MostSearchedFiles = 1'000'000;

}  // namespace tessaly
