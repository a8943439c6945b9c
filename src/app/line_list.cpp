// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/line_list.h"

#include <QCoreApplication>
#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPainter>
#include <QSignalBlocker>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <algorithm>
#include <utility>

#include "app/small_widgets.h"
#include "model/format_limits.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1String RowsDragged("application/x-tessaly-rows");

class LineModel : public QStringListModel {
 public:
    using QStringListModel::QStringListModel;

    bool takesOnto = false;  // a row can be what something is dropped on, not only a place between
    std::function<LineNote(int)> notes = [](int) { return LineNote(); };

    QVariant data(const QModelIndex& index, int role) const override {
        const QString text = QStringListModel::data(index, Qt::DisplayRole).toString();
        if (role == Qt::AccessibleTextRole)
            return joined(text, u", "_s, notes(index.row()).text);
        if (role != Qt::ToolTipRole)
            return QStringListModel::data(index, role);
        return joined(text.size() > limits::DisplayText ? text : QString(), u"\n"_s,
                      notes(index.row()).path);
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        const Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemIsDragEnabled;
        return !index.isValid() || takesOnto ? base | Qt::ItemIsDropEnabled : base;
    }
    QStringList mimeTypes() const override { return {RowsDragged, u"text/uri-list"_s}; }
    Qt::DropActions supportedDropActions() const override {
        return Qt::CopyAction | Qt::MoveAction;
    }
    // The rows themselves are no texts for other programs: only their own list takes them.
    QMimeData* mimeData(const QModelIndexList&) const override {
        auto* rows = new QMimeData;
        rows->setData(RowsDragged, id());
        return rows;
    }
    bool isOwn(const QMimeData& data) const { return data.data(RowsDragged) == id(); }
    bool canDropMimeData(const QMimeData*, Qt::DropAction, int, int,
                         const QModelIndex&) const override {
        return true;  // the list has judged it
    }

 private:
    static QString joined(const QString& a, const QString& between, const QString& b) {
        return a.isEmpty() || b.isEmpty() ? a + b : a + between + b;
    }
    QByteArray id() const {
        return QByteArray::number(QCoreApplication::applicationPid()) + '/' +
               QByteArray::number(quintptr(this));
    }
};

LineModel* modelOf(const QListView* list) {
    return static_cast<LineModel*>(list->model());
}

// A name, and behind it the note as far as there is room: the name is never cut for it.
class LineDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyledItemDelegate::paint(painter, option, index);
        const auto* model = static_cast<const LineModel*>(index.model());
        const LineNote note = model->notes(index.row());
        const QFontMetrics& metrics = option.fontMetrics;
        const int gap = metrics.averageCharWidth();
        const int room =
            option.rect.width() - 3 * gap - metrics.horizontalAdvance(index.data().toString());
        const QString shown = metrics.elidedText(note.text, Qt::ElideRight, room);
        if (shown.size() < 3 && shown != note.text)
            return;
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        QColor ink = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
        ink.setAlphaF(note.isBad || isSelected ? 0.9F : 0.55F);
        painter->save();
        painter->setPen(ink);
        if (note.isBad) {
            QFont font = option.font;
            font.setItalic(true);
            painter->setFont(font);
        }
        painter->drawText(option.rect.adjusted(0, 0, -gap, 0), Qt::AlignRight | Qt::AlignVCenter,
                          shown);
        painter->restore();
    }
};

}  // namespace

LineList::LineList(QWidget* parent) : QListView(parent) {
    setModel(new LineModel(this));
    setItemDelegate(new LineDelegate(this));
    setEditTriggers(NoEditTriggers);
    setUniformItemSizes(true);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &LineList::rowChanged);
}

void LineList::allowSeveral(bool isAllowed) {
    setSelectionMode(isAllowed ? ExtendedSelection : SingleSelection);
}

void LineList::allowDrops() {
    setDragDropMode(DragDrop);
    setDropIndicatorShown(true);
}

void LineList::setNotes(std::function<LineNote(int)> notes) {
    modelOf(this)->notes = std::move(notes);
}

void LineList::paintEvent(QPaintEvent* event) {
    QListView::paintEvent(event);
    if (model()->rowCount() == 0)
        paintHint(*this, hint_);
}

void LineList::showLines(const QStringList& lines, const Rows& rows) {
    LineModel* shown = modelOf(this);
    if (shown->stringList() != lines)
        shown->setStringList(lines);
    selectRows(rows);
}

void LineList::selectRows(const Rows& rows) {
    const QSignalBlocker blocker(this);
    if (rows.isEmpty())
        selectionModel()->clear();
    if (rows.isEmpty() || rows == this->rows())
        return;
    const auto index = [this](int row) { return model()->index(row, 0); };
    QItemSelection selection;
    for (qsizetype first = 0, next = 0; first < rows.size(); first = next) {
        for (next = first + 1; next < rows.size() && rows[next] == rows[next - 1] + 1;)
            ++next;
        selection.select(index(rows[first]), index(rows[next - 1]));
    }
    selectionModel()->setCurrentIndex(index(rows.first()), QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    scrollTo(index(rows.last()));
    scrollTo(index(rows.first()));
}

Rows LineList::rows() const {
    Rows rows;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    std::sort(rows.begin(), rows.end());
    return rows;
}

int LineList::row() const {
    const Rows selected = rows();
    return selected.size() == 1 ? selected.first() : -1;
}

QString LineList::line() const {
    return model()->index(row(), 0).data().toString();
}

// ---- dragging ----------------------------------------------------------------------------------

// Qt's own way would remove the rows here once they were taken.
void LineList::startDrag(Qt::DropActions) {
    if (rows().isEmpty())
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(model()->mimeData({}));
    drag->exec(Qt::MoveAction);
}

void LineList::dragEnterEvent(QDragEnterEvent* event) {
    const bool isOwn = modelOf(this)->isOwn(*event->mimeData());
    const bool hasFiles = !filesIn(*event->mimeData()).isEmpty();
    if (!isOwn && !hasFiles)
        return event->ignore();
    modelOf(this)->takesOnto = !isOwn;
    QListView::dragEnterEvent(event);
    event->setDropAction(isOwn ? Qt::MoveAction : Qt::CopyAction);
    event->accept();
}

void LineList::dragMoveEvent(QDragMoveEvent* event) {
    QListView::dragMoveEvent(event);  // scrolls at the edges and draws where it would go
    event->setDropAction(modelOf(this)->isOwn(*event->mimeData()) ? Qt::MoveAction
                                                                  : Qt::CopyAction);
    event->accept();
}

// The row that what is dragged would go before.
int LineList::rowBelow(const QDropEvent& event) const {
    const QPoint at = event.position().toPoint();
    const QModelIndex index = indexAt(at);
    if (!index.isValid())
        return model()->rowCount();
    return index.row() + (at.y() > visualRect(index).center().y() ? 1 : 0);
}

void LineList::dropEvent(QDropEvent* event) {
    stopAutoScroll();
    setState(NoState);
    viewport()->update();
    const bool isOwn = modelOf(this)->isOwn(*event->mimeData());
    event->setDropAction(isOwn ? Qt::MoveAction : Qt::CopyAction);  // a source never removes files
    event->accept();
    setFocus(Qt::MouseFocusReason);
    if (isOwn)
        emit rowsDropped(rowBelow(*event));
    else
        emit filesDropped(filesIn(*event->mimeData()), indexAt(event->position().toPoint()).row());
}

}  // namespace tessaly
