#pragma once

#include <QString>
#include <functional>

#include "model/project.h"

// Everything in a project that names a music or speech item: the records of TrackTable, and beside
// them what plays it, the triggers and the power-up item. `kind` is "music" or "speech".

namespace tessaly {

using RecordMatch = std::function<bool(const TrackRecord&)>;

/// Records with that name, or every name when `item` is null, in that group likewise.
RecordMatch naming(const QString* item, const QString* group);

/// Renames `field` in all matching records of TrackTable.
void renameRecords(Project& project, QStringView kind, const RecordMatch& matches,
                   Variant TrackRecord::*field, const QString& name);

/// Renames `field` in all matching triggers, by what they play, and in the power-up item.
void renamePlayers(Project& project, QStringView kind, const RecordMatch& matches,
                   Variant TrackRecord::*field, const QString& name);

/// Makes all matching records of TrackTable "empty".
void emptyRecords(Project& project, QStringView kind, const RecordMatch& matches);

/// Frees all matching triggers and the power-up item.
void emptyPlayers(Project& project, QStringView kind, const RecordMatch& matches);

/// The first record of that item in table order, whose file the page shows; nullptr when none.
const TrackRecord* shownRecord(const Project& project, QStringView kind, const QString& item,
                               const QString& group);

/// Gives an item its file: sets `path` in all its records, or appends one when it has none yet.
void chooseFile(Project& project, const char* kind, const QString& item, const QString& group,
                const QString& path);

}  // namespace tessaly
