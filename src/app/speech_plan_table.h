// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractTableModel>
#include <QTableView>

#include "editor/speech_matching.h"

namespace tessaly {

/// A plan for speech files, a line a file: the file with its tick, language, title, and what
/// happens.
class PlanModel : public QAbstractTableModel {
    Q_OBJECT

 public:
    enum Column { FileColumn, LanguageColumn, TitleColumn, WordsColumn, ColumnCount };

    PlanModel(const Project& project, const SpeechPlan& plan, QObject* parent);

    const SpeechPlan& plan() const { return plan_; }

    /// How many files would be added, and everything else that would happen: "14 files to add, 2
    /// new titles, 1 left out".
    qsizetype added() const;
    QString inWords() const;

    /// The names that a cell of this column may have: those of the project, then those that lines
    /// brought.
    QStringList choices(int column) const;

    /// Gives the lines of some cells the same language, title or tick, as `column` says.
    void correct(const QModelIndexList& cells, int column, const QVariant& value);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 private:
    const Project& project_;
    SpeechPlan plan_;
};

/// The table of a plan. Titles and languages are chosen or typed, for all cells of the column that
/// are selected; Space ticks all lines that are, whichever cell of them.
class PlanTable : public QTableView {
    Q_OBJECT

 public:
    PlanTable(PlanModel* model, QWidget* parent);

 protected:
    void keyPressEvent(QKeyEvent* event) override;

 private:
    PlanModel* model_;
};

}  // namespace tessaly
