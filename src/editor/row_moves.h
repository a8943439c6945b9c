// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QStringList>

#include "editor/item_lists.h"
#include "model/project.h"

// How the rows of a list box are moved: by the arrows beside it, several at once, or dragged. All
// of it is made of the one move there is, of a row past its neighbour.

namespace tessaly {

enum class Direction { Up = -1, Down = 1 };

/// A row that goes from one place to another, past one neighbour after the other.
struct RowTravel {
    int from = -1;
    int to = -1;
};

/// Moves rows of a list of `count` lines by one place. A row at the end stays there, and the rows
/// that are packed against it stay with it.
QList<RowTravel> travelsByOne(const Rows& rows, qsizetype count, Direction direction);

/// Brings rows together, in their order, before the row that is `before` now; `count` is behind the
/// last one.
QList<RowTravel> travelsBefore(const Rows& rows, int before);

/// Moves lines, and nothing else. Travels that do not stay within the list do nothing. Returns the
/// rows in which those that travelled are then.
Rows moveLines(QStringList& lines, const QList<RowTravel>& travels);

/// Moves tracks within their list's lines, and each record past its neighbour in `TrackTable` at
/// every step, whatever that belongs to: the two orders may part. A record that has no neighbour on
/// that side stays, and its line with it. `list` is the name of the list and `lines` are its
/// tracks. Returns the rows in which those that travelled are then.
Rows moveTracks(Project& project, const QString& list, QStringList& lines,
                const QList<RowTravel>& travels);

/// Puts the tracks of a list into another order: `order` has every row once. Their records take the
/// places in `TrackTable` that they have together, in the order of the lines.
void reorderTracks(Project& project, const QString& list, QStringList& lines,
                   const QList<int>& order);

}  // namespace tessaly
