// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListView>
#include <QStringList>
#include <functional>

#include "editor/item_lists.h"
#include "editor/line_notes.h"

namespace tessaly {

/// A list box of names. Thousands of them cost no more than ten: all lines are as high as the
/// first. A name that is longer than the player's display is in the tool tip, too. Behind the names
/// there may be notes, in a quieter colour, as far as there is room.
class LineList : public QListView {
    Q_OBJECT

 public:
    explicit LineList(QWidget* parent = nullptr);

    /// Several rows can be selected: with Shift, Ctrl, Ctrl+A.
    void allowSeveral(bool isAllowed = true);

    /// Rows can be dragged to another place, and files dropped from the desktop.
    void allowDrops();

    /// What is said behind each line; asked for those that are seen.
    void setNotes(std::function<LineNote(int row)> notes);

    /// What stands in the list, in grey, while it is empty.
    void setHint(const QString& hint) { hint_ = hint; }

    /// Shows `lines` and selects rows (or one; -1: none), without a signal.
    void showLines(const QStringList& lines, const Rows& rows);
    void showLines(const QStringList& lines, int row) { showLines(lines, rowsOf(row)); }

    /// Selects rows without a signal; -1 selects none.
    void selectRows(const Rows& rows);
    void selectRow(int row) { selectRows(rowsOf(row)); }

    /// The selected rows.
    Rows rows() const;

    /// The only selected row; -1 when none is, or more than one.
    int row() const;

    /// The text of the only selected row; empty when there is none.
    QString line() const;

    /// No row for -1, else that one.
    static Rows rowsOf(int row) { return row < 0 ? Rows() : Rows{row}; }

 signals:
    /// Another row is selected, or none is any more.
    void rowChanged();

    /// The selected rows were dragged to before that row, or behind the last.
    void rowsDropped(int before);

    /// Files or folders from the desktop; onto that row, -1 for none.
    void filesDropped(const QStringList& paths, int row);

 protected:
    void startDrag(Qt::DropActions actions) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    QString hint_;
    int rowBelow(const QDropEvent& event) const;
};

}  // namespace tessaly
