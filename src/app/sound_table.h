// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QTableView>

#include "card/sound_checks.h"

namespace tessaly {

/// The sounds of a project's files, a row each. It sorts by any column; at the start, and sorted by
/// none, those that need a look come first.
class SoundModel : public QAbstractTableModel {
    Q_OBJECT

 public:
    enum Column {
        ItemColumn,
        GroupColumn,
        WordsColumn,
        LengthColumn,
        LoudnessColumn,
        DifferenceColumn,
        PeakColumn,
        StartColumn,
        EndColumn,
        FormatColumn,
        ColumnCount
    };

    SoundModel(const QList<ItemSound>& sounds, const QFontMetrics& metrics, QObject* parent);

    /// Leaves out the files that need no look.
    void setOnlyFindings(bool isOnly);

    /// Of the sounds that it was made of, by their index; -1 for none.
    int soundAt(int row) const { return rows_.value(row, -1); }
    int rowOf(int sound) const { return int(rows_.indexOf(sound)); }
    bool hasFinding(int sound) const { return !findings_[sound].isEmpty(); }

    /// What is shown of a sound in a column.
    QString text(int sound, int column) const;

    /// Rows as lines of columns that are parted by tabs, below the names of the columns.
    QString asText(const QList<int>& rows) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    void sort(int column, Qt::SortOrder order) override;

 private:
    QList<int> sorted() const;

    const QList<ItemSound> sounds_;
    QStringList findings_;  // of each sound, which take a while to word
    QList<int> rows_;       // the sound of each row
    QIcon sign_, noSign_;
    int column_ = -1;
    Qt::SortOrder order_ = Qt::AscendingOrder;
    bool isOnlyFindings_ = false;
};

/// The table of them.
class SoundTable : public QTableView {
    Q_OBJECT

 public:
    SoundTable(SoundModel* model, QWidget* parent);

    QSize minimumSizeHint() const override;

    /// The rows that are selected, from top to bottom; all when none is.
    QList<int> selectedRows() const;
};

}  // namespace tessaly
