// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/relink_table.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <algorithm>

#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// What tells paths apart is near their ends.
class PathDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

 protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->textElideMode = Qt::ElideLeft;
    }
};

}  // namespace

void RelinkModel::tick(const QModelIndexList& cells, bool isTaken) {
    for (const QModelIndex& cell : cells)
        if (RelinkLine& line = plan_.lines[cell.row()]; !line.newPath.isEmpty())
            line.taken = isTaken;
    allChanged();
}

void RelinkModel::choose(int row, const QString& path, const FileSystem& files) {
    chooseByHand(plan_, row, path, files);
    allChanged();
}

void RelinkModel::allChanged() {
    emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

int RelinkModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(plan_.lines.size());
}

int RelinkModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(ColumnCount);
}

Qt::ItemFlags RelinkModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.isValid() && index.column() == OldColumn &&
                   !plan_.lines[index.row()].newPath.isEmpty()
               ? flags | Qt::ItemIsUserCheckable
               : flags;
}

QVariant RelinkModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const RelinkLine& line = plan_.lines[index.row()];
    if (role == Qt::CheckStateRole && index.column() == OldColumn)
        return line.taken ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::ToolTipRole && index.column() != OldColumn && line.newPath.isEmpty() &&
        !line.several.isEmpty()) {
        const qsizetype more = line.fitting - line.several.size();
        return QStringList(line.several).join(u'\n') +
               (more > 0 ? u"\n... and %1 more"_s.arg(more) : QString());
    }
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
        case OldColumn:
            return role == Qt::ToolTipRole ? line.oldPath : elided(line.oldPath);
        case NewColumn:
            return role == Qt::ToolTipRole ? line.newPath : elided(line.newPath);
        default:
            return line.inWords();
    }
}

bool RelinkModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole)
        return false;
    tick({index}, value.toInt() == Qt::Checked);
    return true;
}

QVariant RelinkModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList Names{u"Missing file"_s, u"Found"_s, u"How it was found"_s};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? Names.value(section)
               : QAbstractTableModel::headerData(section, orientation, role);
}

RelinkTable::RelinkTable(RelinkModel* model, QWidget* parent) : QTableView(parent), model_(model) {
    setModel(model);
    setEditTriggers(NoEditTriggers);
    setSelectionBehavior(SelectRows);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setMinimumSectionSize(6 * fontMetrics().averageCharWidth());
    auto* ofPaths = new PathDelegate(this);
    for (const int column : {RelinkModel::OldColumn, RelinkModel::NewColumn}) {
        horizontalHeader()->setSectionResizeMode(column, QHeaderView::Stretch);
        setItemDelegateForColumn(column, ofPaths);
    }
    connect(this, &QTableView::doubleClicked, this, &RelinkTable::choiceWanted);
}

// With a large font on a small screen the paths have the room that they need.
void RelinkTable::resizeEvent(QResizeEvent* event) {
    setColumnWidth(RelinkModel::WordsColumn,
                   std::min(36 * fontMetrics().averageCharWidth(), viewport()->width() / 3));
    QTableView::resizeEvent(event);
}

void RelinkTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_F2)
        return choiceWanted();
    if (event->key() != Qt::Key_Space || !currentIndex().isValid())
        return QTableView::keyPressEvent(event);
    const bool isTicked = model_->plan().lines[currentIndex().row()].taken;
    model_->tick(selectionModel()->selectedRows() + QModelIndexList{currentIndex()}, !isTicked);
}

}  // namespace tessaly
