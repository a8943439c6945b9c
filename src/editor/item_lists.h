// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

#include "model/project.h"

// What the lists of the music and the speech page have in common: their lines, and everything in a
// project that names them. A row counts from 0; -1 is none.

namespace tessaly {

/// What a page shows after an operation.
struct EditResult {
    bool isDone = false;  ///< false: nothing but `unsavedChanges` may have changed
    int row = -1;         ///< row to select, -1 for none; the row that was selected when not done
    QString name = {};    ///< final name of the list, track, title or language; empty when not done
};

/// Rows of a list box, ascending, none twice. Those that do not exist count for nothing.
using Rows = QList<int>;

/// Which buttons beside a list can be used.
struct ListControls {
    bool add = false;
    bool change = false;  ///< Edit: one row is selected
    bool remove = false;  ///< Remove: one row or more

    bool operator==(const ListControls&) const = default;
};

/// The same for a page of two lists that together choose a file: music lists and tracks, titles
/// and languages.
struct EditorControls {
    ListControls first, second;
    bool chooseFile = false;
    bool clearFile = false;  ///< speech only

    bool operator==(const EditorControls&) const = default;
};

/// Puts `answer`, made unique among all lines, in place of a row and returns it. Nothing happens
/// without that row or when the answer is empty, as it is after Cancel.
std::optional<QString> renameLine(QStringList& lines, int row, const QString& answer);

/// The texts of rows.
QSet<QString> linesAt(const QStringList& lines, const Rows& rows);

/// Removes rows. The row to select is the one now in the place of the first, else the last.
EditResult removeLines(QStringList& lines, const Rows& rows);

/// The records of a kind, music or speech, that name an item, a group or both. What is not given
/// may be anything.
struct ItemNames {
    QStringView kind;
    std::optional<QString> item = {};
    std::optional<QString> group = {};
};

/// Where records are looked for.
enum class Among {
    Records,  ///< TrackTable
    Players,  ///< triggers and power-up item, by what they play
    Both,
};

/// Sets `field` of all those records to `name`.
void renameItems(Project& project, Among among, const ItemNames& names, Variant TrackRecord::*field,
                 const QString& name);

/// The same for any of several items or groups.
struct ManyNames {
    QStringView kind;
    std::optional<QSet<QString>> items = {};
    std::optional<QSet<QString>> groups = {};
};

/// Makes those records of TrackTable "empty", and triggers and power-up item free.
void emptyItems(Project& project, Among among, const ManyNames& names);

/// The first record in table order, whose file the page shows; nullptr when there is none.
const TrackRecord* shownRecord(const Project& project, const ItemNames& names);

/// Gives an item its file: sets `path` in all its records, or appends one when it has none yet.
/// Item and group are given.
void chooseFile(Project& project, const ItemNames& names, const QString& path);

}  // namespace tessaly
