// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "editor/relink_plan.h"

namespace tessaly {

/// A plan for missing files, a line a file: its old path with the tick, the new one, and what that
/// is. A line without a new path cannot be ticked.
class RelinkModel : public QAbstractTableModel {
    Q_OBJECT

 public:
    enum Column { OldColumn, NewColumn, WordsColumn, ColumnCount };

    RelinkModel(const RelinkPlan& plan, QObject* parent)
        : QAbstractTableModel(parent), plan_(plan) {}

    const RelinkPlan& plan() const { return plan_; }

    /// Ticks the rows of some cells, or takes their ticks away.
    void tick(const QModelIndexList& cells, bool isTaken);

    /// The operator chose the file of a row; see chooseByHand().
    void choose(int row, const QString& path, const FileSystem& files);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
    void allChanged();

    RelinkPlan plan_;
};

/// The table of such a plan, whose rows are selected as a whole. Space ticks all that are.
class RelinkTable : public QTableView {
    Q_OBJECT

 public:
    RelinkTable(RelinkModel* model, QWidget* parent);

 signals:
    /// F2 or a double click: the operator wants to choose a file for the current row.
    void choiceWanted();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    RelinkModel* model_;
};

}  // namespace tessaly
