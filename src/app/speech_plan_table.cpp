// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/speech_plan_table.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSet>
#include <QStyledItemDelegate>
#include <algorithm>

#include "app/small_widgets.h"
#include "model/format_limits.h"
#include "model/numbers.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool isAdded(const SpeechPlanLine& line) {
    return line.taken && line.obstacle == SpeechPlanLine::Obstacle::None;
}

QString whatHappens(const SpeechPlanLine& line) {
    using enum SpeechPlanLine::Obstacle;
    if (!line.taken)
        return u"left out"_s;
    switch (line.obstacle) {
        case NoTitle:
            return u"left out: no title"_s;
        case NoLanguage:
            return u"left out: no language"_s;
        case SecondFile:
            return u"left out: second file for this title and language"_s;
        case NoRoom:
            return u"left out: there are 16 languages"_s;
        case Already:
            return u"left out: is there already"_s;
        case None:
            break;
    }
    QStringList words;
    if (line.isNewTitle)
        words.append(u"new title"_s);
    if (line.isNewLanguage)
        words.append(u"new language"_s);
    if (line.replaces)
        words.append(u"in the place of another file"_s);
    return words.isEmpty() ? u"added"_s : words.join(u", "_s);
}

class NameDelegate : public QStyledItemDelegate {
 public:
    NameDelegate(PlanModel* model, QTableView* table)
        : QStyledItemDelegate(table), model_(model), table_(table) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem&,
                          const QModelIndex& index) const override {
        auto* box = new QComboBox(parent);
        auto* field = new LimitedLineEdit(box);
        field->setLimit(index.column() == PlanModel::TitleColumn ? limits::DisplayText
                                                                 : limits::LanguageName);
        box->setLineEdit(field);
        box->setCompleter(nullptr);  // what is typed is meant
        box->addItems(model_->choices(index.column()));
        return box;
    }

    void setEditorData(QWidget* editor, const QModelIndex& index) const override {
        auto* box = static_cast<QComboBox*>(editor);
        const QString name = index.data(Qt::EditRole).toString();
        box->setCurrentIndex(box->findText(name));
        box->setEditText(name);
        box->lineEdit()->selectAll();
    }

    void setModelData(QWidget* editor, QAbstractItemModel*,
                      const QModelIndex& index) const override {
        QModelIndexList cells{index};
        if (table_->selectionModel()->isSelected(index))
            cells = table_->selectionModel()->selectedIndexes();
        cells.removeIf([&](const QModelIndex& cell) { return cell.column() != index.column(); });
        model_->correct(cells, index.column(),
                        static_cast<QComboBox*>(editor)->currentText().trimmed());
    }

 private:
    PlanModel* model_;
    QTableView* table_;
};

}  // namespace

// ---- what is shown -----------------------------------------------------------------------------

PlanModel::PlanModel(const Project& project, const SpeechPlan& plan, QObject* parent)
    : QAbstractTableModel(parent), project_(project), plan_(plan) {}

qsizetype PlanModel::added() const {
    return std::ranges::count_if(plan_.lines, isAdded);
}

QString PlanModel::inWords() const {
    QSet<QString> titles, languages;
    qsizetype replaced = 0;
    for (const SpeechPlanLine& line : plan_.lines) {
        if (!isAdded(line))
            continue;
        if (line.isNewTitle)
            titles.insert(line.title);
        if (line.isNewLanguage)
            languages.insert(line.language);
        replaced += line.replaces;
    }
    const qsizetype leftOut = plan_.lines.size() - added() + plan_.leftOut.leftOutInAll();
    QStringList words{counted(added(), u"file"_s) + u" to add"_s};
    for (const auto& [number, text] :
         {std::pair(titles.size(), counted(titles.size(), u"new title"_s)),
          std::pair(languages.size(), counted(languages.size(), u"new language"_s)),
          std::pair(replaced, counted(replaced, u"in the place of another file"_s,
                                      u"in the place of other files"_s)),
          std::pair(leftOut, u"%1 left out"_s.arg(leftOut))})
        if (number > 0)
            words.append(text);
    return words.join(u", "_s);
}

QStringList PlanModel::choices(int column) const {
    const bool isTitle = column == TitleColumn;
    QStringList names = isTitle ? project_.lstSpTitles : project_.lstLangs;
    for (const SpeechPlanLine& line : plan_.lines)
        if (isTitle ? line.isNewTitle : line.isNewLanguage)
            names.append(isTitle ? line.title : line.language);
    names.removeDuplicates();
    return names;
}

void PlanModel::correct(const QModelIndexList& cells, int column, const QVariant& value) {
    for (const QModelIndex& cell : cells) {
        SpeechPlanLine& line = plan_.lines[cell.row()];
        if (column == FileColumn)
            line.taken = value.toInt() == Qt::Checked;
        else
            (column == TitleColumn ? line.title : line.language) = value.toString();
    }
    judgeSpeechPlan(project_, plan_);
    emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

int PlanModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(plan_.lines.size());
}

int PlanModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(ColumnCount);
}

Qt::ItemFlags PlanModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    return index.column() == FileColumn    ? flags | Qt::ItemIsUserCheckable
           : index.column() == WordsColumn ? flags
                                           : flags | Qt::ItemIsEditable;
}

QVariant PlanModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    const SpeechPlanLine& line = plan_.lines[index.row()];
    if (role == Qt::CheckStateRole && index.column() == FileColumn)
        return line.taken ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::ToolTipRole)
        return index.column() == FileColumn ? line.path : data(index, Qt::DisplayRole);
    if (role != Qt::DisplayRole && role != Qt::EditRole)
        return {};
    switch (index.column()) {
        case FileColumn: {
            const QFileInfo file(QDir::fromNativeSeparators(line.path));
            return QDir::toNativeSeparators(file.dir().dirName() + u'/' + file.fileName());
        }
        case LanguageColumn:
            return line.language;
        case TitleColumn:
            return line.title;
        default:
            return whatHappens(line);
    }
}

bool PlanModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::CheckStateRole && role != Qt::EditRole)
        return false;
    correct({index}, index.column(), value);
    return true;
}

QVariant PlanModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QStringList Names{u"File"_s, u"Language"_s, u"Title"_s, u"What happens"_s};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole
               ? Names.value(section)
               : QAbstractTableModel::headerData(section, orientation, role);
}

// ---- the table ---------------------------------------------------------------------------------

PlanTable::PlanTable(PlanModel* model, QWidget* parent) : QTableView(parent), model_(model) {
    setModel(model);
    setItemDelegate(new NameDelegate(model, this));
    setEditTriggers(DoubleClicked | EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
    // Names of files get what the others leave.
    const int character = fontMetrics().averageCharWidth();
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setMinimumSectionSize(12 * character);
    horizontalHeader()->setSectionResizeMode(PlanModel::FileColumn, QHeaderView::Stretch);
    setColumnWidth(PlanModel::LanguageColumn, 16 * character);
    setColumnWidth(PlanModel::TitleColumn, 26 * character);
    setColumnWidth(PlanModel::WordsColumn, 34 * character);
}

void PlanTable::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Space || !currentIndex().isValid())
        return QTableView::keyPressEvent(event);
    const bool isTicked = model_->plan().lines[currentIndex().row()].taken;
    model_->correct(selectionModel()->selectedIndexes() + QModelIndexList{currentIndex()},
                    PlanModel::FileColumn, isTicked ? Qt::Unchecked : Qt::Checked);
}

}  // namespace tessaly
