// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/window_text.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QStatusBar>
#include <QTabWidget>

#include "support/hands.h"

namespace tessaly::test {

namespace {

constexpr int RowsShown = 40;

QString quoted(QString text) {
    text.replace("\r\n", "\n").replace('\r', '\n').replace('\n', " / ").remove(QChar(0x200B));
    return '"' + text + '"';
}

QString withoutMnemonic(QString text) {
    return text.replace("&&", "\1").remove('&').replace('\1', '&');
}

QString rowsOf(const QAbstractItemView* view) {
    QStringList rows;
    const QAbstractItemModel* model = view->model();
    for (int row = 0; row < std::min(model->rowCount(), RowsShown); ++row) {
        QStringList cells;
        for (int column = 0; column < model->columnCount(); ++column) {
            const QModelIndex index = model->index(row, column);
            const bool isBold = index.data(Qt::FontRole).value<QFont>().bold();
            const bool isCell = view->selectionBehavior() == QAbstractItemView::SelectItems &&
                                model->columnCount() > 1 && index == view->currentIndex();
            const QVariant tick = index.data(Qt::CheckStateRole);
            cells.append(QString(isCell ? ">" : "") +
                         (tick.isNull()                 ? ""
                          : tick.toInt() == Qt::Checked ? "[x] "
                                                        : "[ ] ") +
                         index.data().toString() + (isBold ? " (bold)" : ""));
        }
        const bool isSelected = view->selectionModel()->isRowSelected(row, {});
        const bool isCurrent = view->currentIndex().row() == row;
        rows.append(QString(isSelected ? "*" : "") + (isCurrent && !isSelected ? "-" : "") +
                    quoted(cells.join(" ; ")));
    }
    if (model->rowCount() > RowsShown)
        rows.append(QString("... %1 rows").arg(model->rowCount()));
    return rows.isEmpty() ? QString("empty") : rows.join(' ');
}

// What a control says; nothing of one that only holds others.
QString contentOf(const QWidget* widget) {
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
        const auto* box = qobject_cast<const QCheckBox*>(button);
        const bool isPartly = box && box->checkState() == Qt::PartiallyChecked;
        return quoted(button->text()) + (isPartly              ? " partly checked"
                                         : button->isChecked() ? " checked"
                                                               : "");
    }
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget))
        return '[' + edit->text() + ']';
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return quoted(label->text());
    if (const auto* bar = qobject_cast<const QProgressBar*>(widget))
        return QString("%1 of %2").arg(bar->value()).arg(bar->maximum());
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget))
        return qobject_cast<const QHeaderView*>(widget) ? QString() : rowsOf(view);
    if (widget->accessibleName().isEmpty() && widget->accessibleDescription().isEmpty())
        return {};
    return (widget->accessibleName() + ' ' + widget->accessibleDescription()).trimmed();
}

QTabWidget* tabsOf(const QWidget* window) {
    return window->findChild<QTabWidget*>("Tabs");
}

// The page that a control is on, else its window.
const QWidget* roomOf(const QWidget* widget) {
    const QTabWidget* tabs = tabsOf(widget->window());
    for (int i = 0; tabs && i < tabs->count(); ++i)
        if (tabs->widget(i)->isAncestorOf(widget))
            return tabs->widget(i);
    return widget->window();
}

QString stateOf(const QWidget* widget) {
    const QWidget* room = roomOf(widget);
    if (!widget->isVisibleTo(room))
        return "hidden";
    const auto* button = qobject_cast<const QPushButton*>(widget);
    return contentOf(widget) + (widget->isEnabledTo(room) ? "" : " disabled") +
           (button && button->isDefault() ? " default" : "");
}

QString nameOfOne(const QWidget* widget) {
    const bool isOwn = !widget->objectName().isEmpty() && !widget->objectName().startsWith("qt_");
    return isOwn ? widget->objectName() : QString(widget->metaObject()->className());
}

QList<QWidget*> speaking(const QWidget* window, bool alsoUnnamed) {
    QList<QWidget*> found;
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        const bool isOwn = nameOfOne(widget) == widget->objectName();
        const bool isPart = qobject_cast<QAbstractItemView*>(widget->parentWidget()) ||
                            qobject_cast<QLineEdit*>(widget->parentWidget()) ||
                            qobject_cast<QLabel*>(widget->parentWidget());
        if (widget->window() == window && (isOwn || (alsoUnnamed && !isPart)) &&
            !contentOf(widget).isEmpty())
            found.append(widget);
    }
    return found;
}

QString fontOf(const QWidget* widget) {
    const QFont& font = widget->font();
    return QString(font.styleHint() == QFont::TypeWriter ? " typewriter" : "") +
           (font.bold() ? " bold" : "");
}

QString propertiesOf(const QWidget* widget) {
    QString text;
    const auto add = [&](const char* what, const QString& value) {
        if (!value.isEmpty())
            text += QString("; ") + what + ' ' + quoted(value);
    };
    add("tip", widget->toolTip());
    add("spoken", widget->accessibleName());
    add("described", widget->accessibleDescription());
    if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
        add("hint", edit->placeholderText());
        text += edit->isReadOnly() ? "; read-only" : "";
        text += edit->maxLength() < 32767 ? QString("; at most %1").arg(edit->maxLength()) : "";
    }
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        add("for", label->buddy() ? nameOfOne(label->buddy()) : QString());
        text += label->textFormat() == Qt::PlainText ? "; plain" : "";
    }
    if (const auto* button = qobject_cast<const QPushButton*>(widget))
        text += button->autoDefault() ? "; Enter presses it" : "";
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        text += button->icon().isNull() ? "" : "; icon";
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget))
        if (view->selectionMode() == QAbstractItemView::MultiSelection)
            text += "; several at once";
    if (const auto* header = widget->findChild<QHeaderView*>(); header && header->isVisible()) {
        QStringList columns;
        for (int i = 0; i < header->count(); ++i)
            columns.append(header->model()->headerData(i, Qt::Horizontal).toString());
        add("columns", columns.join(" ; "));
    }
    return text + (fontOf(widget).isEmpty() ? "" : ";" + fontOf(widget));
}

QStringList menusOf(const QWidget* window) {
    QStringList lines;
    for (const QMenu* menu : window->findChildren<QMenu*>())
        for (const QAction* action : menu->actions())
            if (!action->text().isEmpty() && !menu->title().isEmpty())  // the bar's own has none
                lines.append(QString("%1 %2 %3 %4%5")
                                 .arg(quoted(menu->title()), action->objectName(),
                                      quoted(action->text()), action->shortcut().toString(),
                                      action->isEnabled() ? "" : " disabled")
                                 .trimmed());
    return lines;
}

QString titleOf(const QWidget* window) {
    return window->windowTitle().replace("[*]", window->isWindowModified() ? "*" : "");
}

}  // namespace

WindowText::WindowText(QWidget* window)
    : window_(window),
      known_({{"the main window", "open"}, {"the cursor", "points"}, {"frmSystemText", "closed"}}) {
    for (const QWidget* widget : window->findChildren<QWidget*>())
        if (!contentOf(widget).isEmpty())
            known_[nameOfOne(widget)] = stateOf(widget);
    newsOf(window, true);
}

QStringList WindowText::newsOf(QWidget* window, bool isSilent) {
    QStringList news;
    const auto note = [&](const QString& name, const QString& state) {
        if (std::exchange(known_[name], state) != state && !isSilent)
            news.append(name + ' ' + state);
    };
    note("the title of " + window->objectName(), quoted(titleOf(window)));
    const QTabWidget* tabs = tabsOf(window);
    if (tabs)
        note("the page", quoted(withoutMnemonic(tabs->tabText(tabs->currentIndex()))));
    for (const QWidget* widget : speaking(window, false)) {
        const QWidget* room = roomOf(widget);
        if (room == window || room == tabs->currentWidget())
            note(nameOfOne(widget), stateOf(widget));
    }
    if (const auto* bar = window->findChild<QStatusBar*>())
        note("the message", quoted(bar->currentMessage()));
    return news;
}

QStringList WindowText::changes() {
    QStringList news;
    const auto note = [&](const QString& name, const QString& state) {
        if (std::exchange(known_[name], state) != state)
            news.append(name + ' ' + state);
    };
    note("the main window", window_->isVisible() ? "open" : "closed");
    for (QWidget* window : QList<QWidget*>{window_} + window_->findChildren<QWidget*>()) {
        const bool isOther = window != window_ && window->objectName().startsWith("frm") &&
                             window->isWindow() && !window->isModal();
        if (isOther)
            note(window->objectName(), window->isVisible() ? "open" : "closed");
        if (window->isVisible() && (isOther || window == window_))
            news += newsOf(window, false);
    }
    note("the cursor", QGuiApplication::overrideCursor() ? "waits" : "points");
    return news;
}

QStringList WindowText::everything(QWidget* window) {
    QStringList lines{QString("window ") + quoted(titleOf(window)) +
                      (window->isModal() ? " modal" : "")};
    lines += menusOf(window);
    QStringList tabOrder;
    if (const QTabWidget* tabs = tabsOf(window))
        for (int i = 0; i < tabs->count(); ++i)
            lines.append("page " + quoted(tabs->tabText(i)));
    for (const QWidget* widget : speaking(window, true)) {
        const QWidget* room = roomOf(widget);
        if (room == window || room == tabsOf(window)->currentWidget())
            lines.append(nameOfOne(widget) + ' ' + stateOf(widget) + propertiesOf(widget));
    }
    const QWidget* next = window;
    do {
        if (next->isVisible() && next->window() == window && next->focusPolicy() & Qt::TabFocus)
            tabOrder.append(nameOfOne(next));
        next = next->nextInFocusChain();
    } while (next != window);
    lines.append("Tab goes to " + tabOrder.join(' '));
    const QWidget* focus = window->focusWidget();
    lines.append("focus " + (focus ? nameOfOne(focus) : QString("nowhere")));
    return lines;
}

QStringList WindowText::ofBox(QWidget* box) {
    if (const auto* menu = qobject_cast<QMenu*>(box)) {
        QStringList texts;
        for (const QAction* action : menu->actions())
            if (!action->text().isEmpty())
                texts.append(quoted(withoutMnemonic(action->text().section("\t", 0, 0))) +
                             (action->isEnabled() ? "" : " disabled"));
        return {"menu " + texts.join(' ')};
    }
    if (const auto* files = qobject_cast<QFileDialog*>(box))
        return {QString(files->acceptMode() == QFileDialog::AcceptSave ? "save" : "open") +
                    (files->fileMode() == QFileDialog::Directory ? " a folder " : " a file ") +
                    quoted(box->windowTitle()) + " in " + quoted(files->directory().path()) + ": " +
                    quoted(files->nameFilters().join(" ; ")) + " ." + files->defaultSuffix(),
                box->parentWidget() ? "  before " + nameOf(box->parentWidget()) : "  of nobody"};
    auto* message = qobject_cast<QMessageBox*>(box);
    if (!message)
        return everything(box);
    QStringList buttons;
    for (QAbstractButton* button : message->buttons())
        buttons.append(quoted(withoutMnemonic(button->text())) +
                       (message->defaultButton() == button ? "*" : ""));
    const QMap<int, const char*> icons = {{QMessageBox::Information, "information"},
                                          {QMessageBox::Question, "question"},
                                          {QMessageBox::Warning, "exclamation"},
                                          {QMessageBox::Critical, "critical"}};
    QStringList lines{
        QString("box ") + quoted(box->windowTitle()) + ' ' + icons.value(message->icon()) +
            (message->textFormat() == Qt::PlainText ? "" : " with markup") +
            (box->parentWidget() ? " before " + nameOf(box->parentWidget()) : " of nobody"),
        "  " + quoted(message->text())};
    for (const auto& [what, text] : {std::pair("more ", message->informativeText()),
                                     std::pair("behind Details ", message->detailedText())})
        if (!text.isEmpty())
            lines.append(QString("  ") + what + quoted(text));
    return lines + QStringList("  " + buttons.join(' '));
}

}  // namespace tessaly::test
