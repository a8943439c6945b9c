#pragma once

#include <QFont>
#include <QStringList>

class QListWidget;
class QToolButton;

namespace tessaly {

/// Shows `lines` in a list and selects `row` (-1: none) without a signal.
void showLines(QListWidget* list, const QStringList& lines, int row);

/// For a list that may have thousands of lines: takes the height of a line from its font instead of
/// laying out each text.
void measureLinesFast(QListWidget* list);

/// The selected row; -1 when none is.
int selectedRow(const QListWidget* list);

/// Selects a row without a signal; -1 selects none.
void selectRowSilently(QListWidget* list, int row);

/// A font of fixed pitch (Courier where there is one) in the size of `font`.
QFont fixedFont(const QFont& font);

/// Gives a pair of buttons their arrows, tool tips and the keys Alt+Up and Alt+Down, which work
/// while `list` has the focus. `what` is moved ("list", "track", ...).
void makeMoveButtons(QToolButton* up, QToolButton* down, QListWidget* list, const QString& what);

}  // namespace tessaly
