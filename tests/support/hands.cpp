// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/hands.h"

#include <QAbstractButton>
#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>
#include <QStyleHints>
#include <QTest>
#include <QTimerEvent>
#include <QUrl>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <limits>

namespace tessaly::test {

namespace {

// Mouse events go to the window; this is where they are in it, if they are.
struct Spot {
    QWindow* window = nullptr;
    QPoint at;
};

Spot spotOf(const QWidget* widget, QPoint at) {
    const QWidget* window = widget->window();
    const QPoint inWindow = widget->mapTo(window, at);
    QWindow* handle = window->windowHandle();
    return {handle && handle->isVisible() && window->rect().contains(inWindow) ? handle : nullptr,
            inWindow};
}

QWindow* keyWindow(QWidget* window) {
    QWindow* focus = QGuiApplication::focusWindow();
    return focus ? focus : window->windowHandle();
}

}  // namespace

QWidget* frontBox() {
    QWidget* popup = QApplication::activePopupWidget();
    return popup ? popup : QApplication::activeModalWidget();
}

QList<QWidget*> openWindows() {
    if (QWidget* box = frontBox())
        return {box};
    QList<QWidget*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->isVisible() && widget->windowHandle() && widget->windowType() != Qt::ToolTip)
            windows.append(widget);
    std::sort(windows.begin(), windows.end(),
              [](const QWidget* a, const QWidget* b) { return a->objectName() < b->objectName(); });
    return windows;
}

QWidget* widgetCalled(QWidget* mainWindow, const QString& name) {
    QList<QWidget*> windows = openWindows();
    windows.append(mainWindow);
    for (QWidget* window : windows) {
        for (QWidget* widget : window->findChildren<QWidget*>()) {
            const auto* button = qobject_cast<QAbstractButton*>(widget);
            if (widget->objectName() == name ||
                (button && frontBox() && button->text().remove('&') == name))
                return widget;
        }
        if (window->objectName() == name)
            return window;
    }
    return nullptr;
}

QString nameOf(const QWidget* widget) {
    const QWidget* named = widget;
    while (named && named->objectName().isEmpty())
        named = named->parentWidget();
    const QString name = named ? named->objectName() : QString();
    return widget == named ? name : name + '/' + widget->metaObject()->className();
}

QPoint spotOn(const QWidget* widget) {
    return {std::min(10, widget->width() / 2), widget->height() / 2};
}

int rowOf(const QAbstractItemView* view, const QString& row) {
    const int count = view->model()->rowCount();
    if (row.startsWith('#'))
        return row == "#last" ? count - 1 : row == "#middle" ? (count - 1) / 2 : row.mid(1).toInt();
    for (int i = 0; i < count; ++i)
        if (view->model()->index(i, 0).data().toString() == row)
            return i;
    return -1;
}

void press(QWidget* widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
    if (const Spot spot = spotOf(widget, at); spot.window)
        QTest::mousePress(spot.window, button, keys, spot.at);
}

void release(QWidget* widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
    if (const Spot spot = spotOf(widget, at); spot.window)
        QTest::mouseRelease(spot.window, button, keys, spot.at);
}

void click(QWidget* widget, QPoint at, Qt::MouseButton button, Qt::KeyboardModifiers keys) {
    if (const Spot spot = spotOf(widget, at); spot.window)
        QTest::mouseClick(spot.window, button, keys, spot.at);
}

void doubleClick(QWidget* widget, QPoint at) {
    if (const Spot spot = spotOf(widget, at); spot.window)
        QTest::mouseDClick(spot.window, Qt::LeftButton, {}, spot.at);
}

void moveTo(QWidget* widget, QPoint at) {
    if (const Spot spot = spotOf(widget, at); spot.window)
        QTest::mouseMove(spot.window, spot.at);
}

void turnWheel(QWidget* widget, QPoint at, int degrees) {
    QWheelEvent event(at, widget->mapToGlobal(at), {}, QPoint(0, degrees * 8), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(widget, &event);
}

bool drop(QWidget* widget, QPoint at, const QString& text, bool asFile) {
    QMimeData data;
    QList<QUrl> files;
    for (const QString& file : text.split(" | "))
        files.append(QUrl::fromLocalFile(file));
    if (asFile)
        data.setUrls(files);
    else
        data.setText(text);
    return drop(widget, at, data);
}

bool drop(QWidget* widget, QPoint at, const QMimeData& data) {
    const Qt::DropActions both = Qt::CopyAction | Qt::MoveAction;
    QDragEnterEvent enter(at, both, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &enter);
    if (!enter.isAccepted() || !widget->acceptDrops())
        return false;
    QDragMoveEvent move(at, both, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(widget, &move);
    QDropEvent event(at, both, &data, Qt::LeftButton, Qt::NoModifier);
    event.setDropAction(Qt::MoveAction);
    QApplication::sendEvent(widget, &event);
    return event.isAccepted() && event.dropAction() == Qt::CopyAction;
}

void composeText(const QString& text) {
    QWidget* focus = QApplication::focusWidget();
    if (!focus || !focus->testAttribute(Qt::WA_InputMethodEnabled))
        return;
    QInputMethodEvent composing(text.left(3), {});
    QApplication::sendEvent(focus, &composing);
    QInputMethodEvent done;
    done.setCommitString(text);
    QApplication::sendEvent(focus, &done);
}

void pressKey(QWidget* window, Qt::Key key, Qt::KeyboardModifiers keys) {
    QWindow* target = keyWindow(window);
    // Alt closes a popup, and its window may be gone before the key itself would reach it.
    const bool closesPopup = keys & Qt::AltModifier && QApplication::activePopupWidget();
    if (target)
        QTest::keyClick(target, closesPopup ? Qt::Key_Alt : key,
                        closesPopup ? Qt::KeyboardModifiers() : keys);
    // A button that was reached by its letter is down for a time, which does not pass.
    for (QWidget* widget : QApplication::allWidgets())
        if (auto* button = qobject_cast<QAbstractButton*>(widget);
            button && button->isDown() && keys & Qt::AltModifier) {
            button->setDown(false);
            button->click();
            break;
        }
}

void typeText(QWidget* window, const QString& text) {
    for (const QChar c : text) {
        QWindow* target = keyWindow(window);
        if (!target)
            return;
        const Qt::Key key = c.unicode() >= 32 && c.unicode() < 127 ? Qt::Key(c.toUpper().unicode())
                                                                   : Qt::Key_unknown;
        QTest::sendKeyEvent(QTest::Click, target, key, QString(c), Qt::NoModifier);
    }
}

void settle() {
    for (int round = 0; round < 2; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
}

StoppedClocks::StoppedClocks() {
    // Letters typed on a list find a line together, however long ago the last one was.
    QGuiApplication::styleHints()->setKeyboardInputInterval(std::numeric_limits<int>::max());
    qApp->installEventFilter(this);
}

void StoppedClocks::paint() {
    paints_ = true;
    for (QWidget* window : QApplication::topLevelWidgets()) {
        QEvent due(QEvent::UpdateRequest);
        if (window->isVisible())
            QApplication::sendEvent(window, &due);
    }
    paints_ = false;
}

bool StoppedClocks::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::UpdateRequest)
        return !paints_;
    if (event->type() != QEvent::Timer)
        return false;
    const int id = static_cast<QTimerEvent*>(event)->timerId();
    for (const auto& timer : QAbstractEventDispatcher::instance()->registeredTimers(watched))
        if (timer.timerId == id)
            return timer.interval > 0;
    return false;
}

}  // namespace tessaly::test
