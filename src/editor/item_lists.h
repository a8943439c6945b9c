#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "model/lines.h"

// What the lists of the music and the speech page have in common. A row counts from 0; -1 is none.

namespace tessaly {

/// What a page shows after an operation.
struct EditResult {
    bool isDone = false;  ///< false: nothing but `unsavedChanges` may have changed
    int row = -1;         ///< row to select, -1 for none; the row that was selected when not done
    QString name = {};    ///< final name of the list, track, title or language; empty when not done
};

enum class Direction { Up = -1, Down = 1 };

/// Puts `answer`, made unique among all lines, in place of a row and returns it. Nothing happens
/// without that row or when the answer is empty, as it is after Cancel.
std::optional<QString> renameLine(QStringList& lines, int row, const QString& answer);

/// Removes a row that exists and returns the row to select: the one now in its place, else the
/// last.
int removeLine(QStringList& lines, int row);

/// The row beside `row`; -1 when it has no neighbour on that side or does not exist.
int neighbourOf(const QStringList& lines, int row, Direction direction);

/// Swaps a row with its neighbour, which is the row to select then.
EditResult moveLine(QStringList& lines, int row, Direction direction);

}  // namespace tessaly
