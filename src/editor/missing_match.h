// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

#include "editor/imported_list.h"
#include "editor/missing_files.h"
#include "editor/relink_plan.h"
#include "model/project.h"
#include "platform/file_system.h"
#include "sound/sound_book.h"

// Which of the files that were found in a folder are the missing ones. What is done with them is in
// editor/relink_plan.h.

namespace tessaly {

/// Tells how many seconds the file at a path plays; 0 when that cannot be told.
using AskSeconds = std::function<int(const QString& path)>;

/// By a quick look at the file.
int playingSeconds(const QString& path);

/// What is still known of a file that is gone. A project holds neither; a card that was written
/// from it has a copy of each file, and who once looked at it may remember it.
struct KnownFile {
    std::optional<qint64> size = {};  ///< bytes
    int seconds = 0;                  ///< how long it plays, as of AskSeconds; 0: not known
};
using AskKnown = std::function<KnownFile(const QString& path)>;

/// What copies of the files tell, which stand at `copies` by the paths of the project, else what
/// `book` remembers. The other arguments must live as long as the answer is used.
AskKnown knownFrom(const QHash<QString, QString>& copies, const FileSystem& files,
                   const SoundBook& book);

/// Finds the missing files among those of a folder.
///
/// The file whose path has the longest end in common is the one, without regard to case and to the
/// kind of separator: projects are carried between Windows and Linux. "?" in a path of the project
/// may be any one character. Of several with equally long ends those do not count that another
/// missing file fits better; then the only one of the known size is taken, else the only one of the
/// known playing time. Nothing is guessed: when that leaves several, or when one file fits two
/// missing ones equally, none is ticked.
///
/// `secondsOf` and `known` are asked only where names do not decide. Cancelled by `keepGoing`, the
/// plan has no lines and its `leftOut` says so.
RelinkPlan planRelink(const Project& project, const QStringList& missing,
                      const SearchedFolder& found, const AskSeconds& secondsOf,
                      const AskKnown& known = {}, const KeepGoing& keepGoing = {});

}  // namespace tessaly
