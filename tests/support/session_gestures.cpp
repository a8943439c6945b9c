// SPDX-License-Identifier: GPL-3.0-or-later
// The gestures of sessions: what people do at the window.
#include <QClipboard>
#include <QFileDialog>
#include <QHeaderView>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QScrollArea>
#include <QTableView>
#include <QToolTip>

#include "support/session.h"

namespace tessaly::test {

namespace {

// How a control is painted in a square of so many pixels: a letter for the nearest of some colours.
QStringList picture(QWidget* widget, int side) {
    const QSize before = widget->size();
    widget->resize(side, side);
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::gray);
    widget->render(&image, {}, {}, QWidget::DrawChildren);
    widget->resize(before);
    const QList<std::pair<QRgb, char>> inks = {
        {0xFFFFFFFF, 'W'}, {0xFF000000, '#'}, {0xFF00FF00, 'g'},         {0xFFFF0000, 'r'},
        {0xFFFFFF00, 'y'}, {0xFFC0C0C0, '-'}, {qRgb(160, 160, 164), ' '}};
    QStringList lines;
    for (int y = 0; y < side; ++y) {
        QString line;
        for (int x = 0; x < side; ++x) {
            const QRgb pixel = image.pixel(x, y);
            const auto distance = [&](QRgb ink) {
                return std::abs(qRed(ink) - qRed(pixel)) + std::abs(qGreen(ink) - qGreen(pixel)) +
                       std::abs(qBlue(ink) - qBlue(pixel));
            };
            line += QChar(std::min_element(inks.begin(), inks.end(), [&](auto& a, auto& b) {
                              return distance(a.first) < distance(b.first);
                          })->second);
        }
        lines.append('|' + line + '|');
    }
    return lines;
}

// Where a control is pointed at; a table at its current cell.
std::pair<QWidget*, QPoint> targetOf(QWidget* widget) {
    if (auto* table = qobject_cast<QTableView*>(widget))
        return {table->viewport(), table->visualRect(table->currentIndex()).center()};
    return {widget, widget ? spotOn(widget) : QPoint()};
}

}  // namespace

QWidget* Session::named(const QString& name) {
    QWidget* widget = widgetCalled(bench.window.get(), name);
    if (!widget)
        say("there is no " + name);
    else if (!widget->isVisible())
        say(name + " cannot be seen");
    else if (!widget->isEnabled())
        say(name + " is disabled");
    if (!widget || !widget->isVisible())
        return nullptr;
    if (!widget->window()->isActiveWindow()) {
        widget->window()->activateWindow();
        settleDown();
    }
    for (QWidget* above = widget->parentWidget(); above; above = above->parentWidget())
        if (auto* area = qobject_cast<QScrollArea*>(above))
            area->ensureWidgetVisible(widget);
    return widget;
}

// NAME, or NAME @ X for so many pixels from its left edge.
std::pair<QWidget*, QPoint> Session::target(const QString& name) {
    auto [widget, at] = targetOf(named(name.section(" @ ", 0, 0)));
    if (const QString x = name.section(" @ ", 1); !x.isEmpty())
        at.setX(x.toInt());
    return {widget, at};
}

void Session::clickOn(const QString& name, Qt::MouseButton button, bool isDouble) {
    const auto [widget, at] = target(name);
    if (widget && isDouble)
        doubleClick(widget, at);
    else if (widget)
        click(widget, at, button);
}

// LIST ROW: the row of that text, or of that number with a # before it; "#last", "#middle".
void Session::chooseRow(const QString& rest, Qt::KeyboardModifiers keys) {
    auto* view = qobject_cast<QAbstractItemView*>(named(rest.section(' ', 0, 0)));
    if (!view)
        return;
    const int row = rowOf(view, rest.section(' ', 1));
    const QModelIndex index = view->model()->index(row, 0);
    if (row < 0 || !index.isValid()) {
        say("there is no such row");
        return;
    }
    view->scrollTo(index);
    const QPoint at = view->visualRect(index).center();
    click(view->viewport(), {std::min(at.x(), view->viewport()->width() / 2), at.y()},
          Qt::LeftButton, keys);
}

void Session::addKeysAndClicks() {
    verbs["click"] = [this](const QString& name) { clickOn(name, Qt::LeftButton); };
    verbs["right-click"] = [this](const QString& name) { clickOn(name, Qt::RightButton); };
    verbs["middle-click"] = [this](const QString& name) { clickOn(name, Qt::MiddleButton); };
    verbs["double-click"] = [this](const QString& name) { clickOn(name, Qt::LeftButton, true); };
    verbs["select"] = [this](const QString& rest) { chooseRow(rest, {}); };
    verbs["select-also"] = [this](const QString& rest) { chooseRow(rest, Qt::ControlModifier); };
    verbs["focus"] = [this](const QString& name) {
        if (QWidget* widget = named(name))
            widget->setFocus();
    };
    verbs["press"] = [this](const QString& keys) {
        for (const QString& key : keys.split(' ')) {
            const QKeyCombination pressed = QKeySequence(key)[0];
            pressKey(bench.window.get(), pressed.key(), pressed.keyboardModifiers());
            settleDown();
        }
    };
    verbs["keys"] = [this](const QString& text) { typeText(bench.window.get(), text); };
    verbs["type"] = [this](const QString& rest) {
        clickOn(rest.section(' ', 0, 0), Qt::LeftButton);
        pressKey(bench.window.get(), Qt::Key_A, Qt::ControlModifier);
        pressKey(bench.window.get(), Qt::Key_Delete);
        typeText(bench.window.get(), rest.section(' ', 1));
    };
    verbs["altgr"] = [this](const QString& text) {
        QTest::sendKeyEvent(QTest::Click, bench.window->windowHandle(), Qt::Key_unknown, text,
                            Qt::ControlModifier | Qt::AltModifier);
    };
    verbs["copy-text"] = [](const QString& text) {
        QGuiApplication::clipboard()->setText(text);
        QGuiApplication::clipboard()->setText(text, QClipboard::Selection);
    };
    verbs["clipboard"] = [this](const QString&) {
        say(QGuiApplication::clipboard()->text().replace('\t', " ; ").replace('\n', " / "));
    };
    verbs["drop"] = [this](const QString& rest) {
        if (QWidget* widget = named(rest.section(' ', 0, 0)))
            say(drop(widget, spotOn(widget), rest.section(' ', 1), false) ? "as a copy"
                                                                          : "not taken");
    };
    // drop-files LIST [ROW [COLUMN]] > FILE | FILE: onto that row, else onto the empty part; a
    // table also has columns, counted from 0, and "-" in place of a row or column is its header.
    verbs["drop-files"] = [this](const QString& rest) {
        const QString target = rest.section(" > ", 0, 0);
        auto* view = qobject_cast<QAbstractItemView*>(named(target.section(' ', 0, 0)));
        if (!view)
            return;
        QPoint at = view->viewport()->rect().bottomLeft() + QPoint(5, -2);
        QWidget* onto = view->viewport();
        auto* table = qobject_cast<QTableView*>(view);
        if (const QStringList cell = target.split(' '); table && cell.contains("-")) {
            const bool isColumn = cell[1] == "-";
            QHeaderView* header = isColumn ? table->horizontalHeader() : table->verticalHeader();
            const int start = header->sectionViewportPosition(cell[isColumn ? 2 : 1].toInt()) + 5;
            at = isColumn ? QPoint(start, 5) : QPoint(5, start);
            onto = header->viewport();
        } else if (const QString row = target.section(' ', 1); !row.isEmpty()) {
            const bool hasColumn = view->model()->columnCount() > 1 && row.contains(' ');
            const QModelIndex index =
                view->model()->index(rowOf(view, hasColumn ? row.section(' ', 0, -2) : row),
                                     hasColumn ? row.section(' ', -1).toInt() : 0);
            view->scrollTo(index);
            at = view->visualRect(index).center();
        }
        say(drop(onto, at, rest.section(" > ", 1), true) ? "as a copy" : "not taken");
    };
    // drag-rows LIST ROW: what is selected there, to before that row or behind the last
    verbs["drag-rows"] = [this](const QString& rest) {
        auto* view = qobject_cast<QAbstractItemView*>(named(rest.section(' ', 0, 0)));
        if (!view)
            return;
        const std::unique_ptr<QMimeData> rows(view->model()->mimeData({}));
        const QModelIndex index = view->model()->index(rowOf(view, rest.section(' ', 1)), 0);
        const QRect below = view->visualRect(index);
        drop(view->viewport(),
             index.isValid() ? below.topLeft() + QPoint(5, 1)
                             : view->viewport()->rect().bottomLeft(),
             *rows);
    };
    // compose TEXT: as an input method does, in place of as many characters as there are "<" first
    verbs["compose"] = [](const QString& text) {
        const int replaced = int(text.count('<'));
        QInputMethodEvent done;
        done.setCommitString(text.mid(replaced), -replaced, replaced);
        if (QWidget* focus = QApplication::focusWidget())
            QApplication::sendEvent(focus, &done);
    };
    verbs["hover"] = [this](const QString& name) {
        if (const auto [widget, at] = target(name); widget) {
            QHelpEvent event(QEvent::ToolTip, at, widget->mapToGlobal(at));
            QApplication::sendEvent(widget, &event);
            say("tip \"" + QToolTip::text().replace('\n', " / ") + '"');
        }
    };
    // what stands in quiet letters behind the lines of a list, but for lengths: a thread reads them
    verbs["notes"] = [this](const QString& name) {
        static const QRegularExpression length("(, |  )?\\d+:\\d\\d$");
        if (auto* view = qobject_cast<QListView*>(named(name)))
            for (int row = 0; row < view->model()->rowCount(); ++row)
                say(view->model()
                        ->index(row, 0)
                        .data(Qt::AccessibleTextRole)
                        .toString()
                        .remove(length));
    };
    // sign VIEW ROW COLUMN: the colour of what a cell begins with, which must not be selected
    verbs["sign"] = [this](const QString& rest) {
        auto* view = qobject_cast<QAbstractItemView*>(named(rest.section(' ', 0, 0)));
        if (!view)
            return;
        const QModelIndex cell =
            view->model()->index(rest.section(' ', 1, 1).toInt(), rest.section(' ', 2).toInt());
        QRect square = view->visualRect(cell);
        square.setWidth(square.height());
        const QImage image = view->viewport()->grab(square).toImage();
        QHash<QRgb, int> found;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                ++found[qGray(image.pixel(x, y)) < 60 ? qRgb(0, 0, 0) : image.pixel(x, y)];
        for (const auto& [colour, name] :
             {std::pair(qRgb(255, 0, 0), "red"), std::pair(qRgb(255, 255, 0), "yellow"),
              std::pair(qRgb(0xC0, 0xC0, 0xC0), "grey"), std::pair(qRgb(0, 0, 0), "ink")})
            if (found[colour] > 3)
                return say(name);
        say("no sign");
    };
    verbs["choose"] = [this](const QString& name) {
        if (auto* menu = qobject_cast<QMenu*>(frontBox())) {
            for (QAction* action : menu->actions())
                if (action->text().remove('&').section('\t', 0, 0) == name)
                    click(menu, menu->actionGeometry(action).center());
        } else if (auto* action = bench.window->findChild<QAction*>(name);
                   action && action->isEnabled()) {
            action->trigger();
        } else {
            say("there is no such choice");
        }
    };
}

// ---- windows -----------------------------------------------------------------------------------

void Session::start(const QString& file) {
    text_.reset();
    if (!bench.start()) {
        say("the program ends at once");
        return;
    }
    bench.window->activateWindow();
    settle();
    if (!prompts.isQuiet)
        text_ = std::make_unique<WindowText>(bench.window.get());
    bench.window->offerRecovery();
    if (!file.isEmpty())
        bench.window->openAtStart(file);
}

void Session::addWindows() {
    verbs["start"] = [this](const QString& file) { start(file); };
    verbs["page"] = [this](const QString& caption) {
        auto* bar = bench.find<QTabWidget>("Tabs")->tabBar();
        for (int i = 0; i < bar->count(); ++i)
            if (bar->tabText(i).replace("&&", "&") == caption)
                click(bar, bar->tabRect(i).center());
    };
    verbs["dump"] = [this](const QString& name) {
        QWidget* window = frontBox() ? frontBox() : bench.window.get();
        for (const QString& line :
             WindowText::everything(name.isEmpty() ? window : named(name)->window()))
            say(line);
    };
    verbs["look"] = [this](const QString& rest) {
        if (QWidget* widget = named(rest.section(' ', 0, 0)))
            for (const QString& line : picture(widget, rest.section(' ', 1).toInt()))
                say(line);
    };
    verbs["close"] = [this](const QString&) { bench.closeBox(); };
    verbs["close-window"] = [this](const QString& name) { named(name)->close(); };
    verbs["close-other"] = [this](const QString& name) {  // as its own close box does
        QCloseEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        if (QWidget* widget = named(name);
            widget && qApp->notify(widget, &event) && event.isAccepted())
            widget->hide();
    };
    verbs["session-ends"] = [this](const QString&) {
        QMetaObject::invokeMethod(bench.window.get(), "Form_SessionEnds");
    };
    verbs["program-closes"] = [this](const QString&) { bench.window->close(); };
    verbs["minute"] = [this](const QString&) {
        QMetaObject::invokeMethod(bench.find<QTimer>("tmrRecovery"), "timeout");
    };
    verbs["when"] = [this](const QString& operation) { awaited_ = operation; };
    verbs["go"] = [this](const QString&) { isGoingOn_ = true; };
    verbs["cancel-progress"] = [this](const QString&) {
        if (auto* progress = bench.window->findChild<QProgressDialog*>())
            progress->cancel();
    };
    verbs["prepare"] = [this](const QString& answer) { prompts.prepared.append(answer); };
    verbs["real-file-dialogs"] = [this](const QString&) { prompts.isReal = true; };
    verbs["no-viewer"] = [this](const QString&) { prompts.hasViewer = false; };
    verbs["enter"] = [](const QString& text) {
        auto* edit = frontBox() ? frontBox()->findChild<QLineEdit*>() : nullptr;
        if (!edit)
            return;
        edit->selectAll();
        if (qobject_cast<QFileDialog*>(frontBox()))
            edit->setText(text);  // typing would open a list of files
        else
            typeText(edit->window(), text);
    };
    verbs["open"] = [this](const QString& file) {
        prompts.prepared = {file};
        bench.choose("mnuFileOpen");
    };
}

}  // namespace tessaly::test
