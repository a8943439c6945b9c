// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include "model/project.h"
#include "model/record_codec.h"
#include "platform/file_system.h"

// The project file (.crd2): which records a project is written as, and what each of them does to a
// project that is read. The bytes of a record are in model/record_codec.h.

namespace tessaly {

/// The records of a project in the order of its file:
///   blank, one "lstSpTitles" a title, one "lstLangs" a language; the default languages, blank slot
///   first; 18 "stext"; 9 "setup"; "powerup" if there is one; all "speech" in table order; all
///   "music" list by list, in the order of the list box, those that no line names at the end of
///   their list; the 7 triggers.
/// The same project always gives the same records.
QList<TrackRecord> projectRecords(const Project& project);

/// The bytes of a project's file. Throws as encodeRecord() does, and error 551 when no reader would
/// take the file for its size.
QByteArray encodeProject(const Project& project);

/// What became of records that were applied to a project.
struct AppliedRecords {
    qsizetype applied = 0;  ///< records up to the one that stopped it
    QString stopReason;     ///< empty when all were applied
};

/// Carries out records one after the other on a project that was reset. Stops at a system text or
/// trigger whose slot does not exist, at a setting whose value does not fit, and when so many
/// tracks have the same name that the numbers in front of them fill the memory.
AppliedRecords applyRecords(const QList<TrackRecord>& records, Project& project);

/// The records in the bytes of a project file. They are complete when the bytes end with a record
/// and that of the last trigger is among them: every save ends with it, and a file that is empty or
/// was cut between two records lacks it.
ParsedRecords parseProject(QByteArrayView bytes);

/// How far the reading of a project file got.
struct ReadReport {
    bool isComplete = true;  ///< as parseProject() says, and every record could be carried out
    qint64 stoppedAt = 0;    ///< byte of the file
    qsizetype records = 0;   ///< records read and applied
    QString stopReason;      ///< why it is not complete, in words; else empty
};

/// Resets `project` and reads the file at `path` into it. What was read before the file stops
/// making sense stays. Throws, with `project` reset, when the file cannot be read at all.
ReadReport readProject(FileSystem& files, const QString& path, Project& project);

/// Writes the project in one atomic step and clears `unsavedChanges`. Throws and leaves both the
/// old file and the flag as they were when that fails.
void saveProject(FileSystem& files, const QString& path, Project& project);

/// Silent tracks that reading the saved file would not show, as shortName() has them: no save keeps
/// them.
QStringList tracksWithoutFile(const Project& project);

/// Music lists that have no track with a file: no save keeps them.
QStringList listsWithoutFile(const Project& project);

}  // namespace tessaly
