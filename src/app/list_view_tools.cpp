#include "app/list_view_tools.h"

#include <QListWidget>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QToolButton>
#include <algorithm>

namespace tessaly {

namespace {

// One line of text without an icon: as high as every other, as wide as its text.
class LineDelegate : public QStyledItemDelegate {
 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const QString text = index.data().toString();
        const QFontMetrics& metrics = option.fontMetrics;
        const bool isKnown = height_ > 0 && metrics == measured_;
        if (!isKnown || text.contains('\n')) {
            const QSize size = QStyledItemDelegate::sizeHint(option, index);
            if (text.contains('\n'))
                return size;
            measured_ = metrics;
            height_ = size.height();
            margin_ = size.width() - metrics.horizontalAdvance(text) + 1;
            return size;
        }
        return {metrics.horizontalAdvance(text) + margin_, height_};
    }

 private:
    mutable QFontMetrics measured_{QFont()};
    mutable int height_ = 0;
    mutable int margin_ = 0;
};

}  // namespace

void measureLinesFast(QListWidget* list) {
    list->setItemDelegate(new LineDelegate(list));
}

void showLines(QListWidget* list, const QStringList& lines, int row) {
    const QSignalBlocker blocker(list);
    // Line by line, so that one more or less among thousands costs no new list.
    const int common = int(std::min<qsizetype>(list->count(), lines.size()));
    for (int i = 0; i < common; ++i)
        if (list->item(i)->text() != lines[i])
            list->item(i)->setText(lines[i]);
    while (list->count() > lines.size())
        delete list->takeItem(list->count() - 1);
    list->addItems(lines.mid(common));
    selectRowSilently(list, row);
}

int selectedRow(const QListWidget* list) {
    const auto selected = list->selectionModel()->selectedRows();
    return selected.isEmpty() ? -1 : selected.first().row();
}

void selectRowSilently(QListWidget* list, int row) {
    const QSignalBlocker blocker(list);
    if (row < 0) {
        list->clearSelection();
        list->setCurrentRow(-1);
    } else {
        list->setCurrentRow(row);
        list->scrollToItem(list->item(row));
    }
}

QFont fixedFont(const QFont& font) {
    QFont fixed("Courier New", font.pointSize());
    fixed.setStyleHint(QFont::TypeWriter);
    return fixed;
}

void makeMoveButtons(QToolButton* up, QToolButton* down, QListWidget* list, const QString& what) {
    const auto make = [&](QToolButton* button, QStyle::StandardPixmap icon, const QString& where,
                          const QKeySequence& key) {
        button->setIcon(button->style()->standardIcon(icon));
        const QString action = QString("Move the %1 %2").arg(what, where);
        button->setToolTip(action + " (" + key.toString(QKeySequence::NativeText) + ')');
        button->setAccessibleName(action);
        auto* shortcut = new QShortcut(key, list);
        shortcut->setContext(Qt::WidgetShortcut);
        QObject::connect(shortcut, &QShortcut::activated, button, &QToolButton::click);
    };
    make(up, QStyle::SP_ArrowUp, "up", Qt::ALT | Qt::Key_Up);
    make(down, QStyle::SP_ArrowDown, "down", Qt::ALT | Qt::Key_Down);
}

}  // namespace tessaly
