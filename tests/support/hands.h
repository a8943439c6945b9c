// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractItemView>
#include <QList>
#include <QMimeData>
#include <QString>
#include <QWidget>

// What an operator's hands can do to the windows that are there, as events of the platform: they
// find their own way to the widget below the mouse or with the focus, menus and modal windows
// first.

namespace tessaly::test {

/// The windows that take events now: the menu that is open, else the modal window, else all.
QList<QWidget*> openWindows();

/// The menu or the modal window that keeps the others from events; null without one.
QWidget* frontBox();

/// The visible, enabled widgets of a class in a window, in a fixed order.
template <typename Widget>
QList<Widget*> reachable(const QWidget* window) {
    QList<Widget*> found;
    for (Widget* widget : window->findChildren<Widget*>())
        if (widget->isVisible() && widget->isEnabled() && !widget->visibleRegion().isEmpty() &&
            widget->window() == window)
            found.append(widget);
    return found;
}

/// The widget of that name, or in a box also the button with that text: in the box in front, else
/// in an open window. Null for none.
QWidget* widgetCalled(QWidget* mainWindow, const QString& name);

/// What a widget is called in the log.
QString nameOf(const QWidget* widget);

/// Where a click means a button, a row or a field, in its own coordinates.
QPoint spotOn(const QWidget* widget);

/// The row of a list with that text, or "#" and its number, "last" or "middle"; -1 for none.
int rowOf(const QAbstractItemView* view, const QString& row);

void press(QWidget* widget, QPoint at, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers keys = {});
void release(QWidget* widget, QPoint at, Qt::MouseButton button = Qt::LeftButton,
             Qt::KeyboardModifiers keys = {});
void click(QWidget* widget, QPoint at, Qt::MouseButton button = Qt::LeftButton,
           Qt::KeyboardModifiers keys = {});
void doubleClick(QWidget* widget, QPoint at);
void moveTo(QWidget* widget, QPoint at);  ///< buttons that are down stay down
void turnWheel(QWidget* widget, QPoint at, int degrees);
/// Offers a move, which a source would take from itself; true when it came in as a copy. Several
/// files are parted by " | ".
bool drop(QWidget* widget, QPoint at, const QString& text, bool asFile);
bool drop(QWidget* widget, QPoint at, const QMimeData& data);
void composeText(const QString& text);  ///< as an input method does

void pressKey(QWidget* window, Qt::Key key, Qt::KeyboardModifiers keys = {});
void typeText(QWidget* window, const QString& text);

/// Lets everything happen that is due now. What waits for a time does not come about.
void settle();

/// Keeps timers from going off while it lives, so that the speed of the machine changes nothing;
/// those of no duration are no timers. Windows are painted when paint() says so.
class StoppedClocks : public QObject {
 public:
    StoppedClocks();

    /// Paints what is due in all windows.
    void paint();

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    bool paints_ = false;
};

}  // namespace tessaly::test
