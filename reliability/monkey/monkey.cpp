// SPDX-License-Identifier: GPL-3.0-or-later
#include "monkey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCryptographicHash>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QTabBar>
#include <QThread>

#include "model/project_snapshot.h"
#include "window_checks.h"

namespace tessaly::monkey {

namespace {

using namespace test;

constexpr size_t NamesKept = 50;
constexpr int SaveEvery = 50;
constexpr int CountEvery = 20;
constexpr int PaintEvery = 10;
constexpr int LookOutsideEvery = 1000;
constexpr int UndoEvery = 100;
constexpr int MeasureEvery = 2000;
constexpr int MostRecords = 250;   // then it is time for something new
constexpr int MostInOneLoop = 40;  // events, before a modal window is closed
constexpr int ActInRunOneIn = 6;   // file operations of a run

const QEvent::Type ActEvent = QEvent::Type(QEvent::registerEventType());

// Some point of the part of a widget that can be seen.
QPoint somePoint(const QWidget* widget, Dice& dice) {
    const QRect seen = widget->visibleRegion().boundingRect();
    if (seen.isEmpty() || dice.oneIn(2))
        return seen.isEmpty() ? widget->rect().center() : seen.center();
    return {seen.x() + dice.below(seen.width()), seen.y() + dice.below(seen.height())};
}

void drag(QWidget* widget, QPoint from, QPoint to) {
    press(widget, from);
    moveTo(widget, (from + to) / 2);
    moveTo(widget, to);
    release(widget, to);
}

}  // namespace

Monkey::Monkey(quint64 seed) : seed_(seed), ledger_(world_) {
    settle();
    world_.onRunOperation = [this] {
        if (!actPosted_ && world_.dice->oneIn(ActInRunOneIn)) {
            actPosted_ = true;
            QCoreApplication::postEvent(this, new QEvent(ActEvent));
        }
    };
    heartbeat_.setInterval(0);
    heartbeat_.callOnTimeout(this, &Monkey::actInside);
    heartbeat_.start();
}

void Monkey::run(qint64 count) {
    last_ = count;
    while (events_ < last_ && wrong_.isEmpty())
        step();
}

// An event of the run that is going on: comes when the run lets the window checkForStop.
bool Monkey::event(QEvent* event) {
    if (event->type() != ActEvent)
        return QObject::event(event);
    actPosted_ = false;
    if (depth_ > 0 && !runKnown_ && world_.isRunning() && events_ < last_ && wrong_.isEmpty())
        step();
    return true;
}

// An event inside a loop that the event going on has opened.
void Monkey::actInside() {
    if (depth_ == 0 || QThread::currentThread()->loopLevel() <= loopsKnown_)
        return;
    if (events_ < last_ && wrong_.isEmpty() && ++inLoop_ < MostInOneLoop) {
        step();
        return;
    }
    if (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
    else if (auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget()))
        dialog->reject();
}

void Monkey::step() {
    Dice dice(seed_, quint64(++events_));
    Dice* const outerDice = std::exchange(world_.dice, &dice);
    const int outerLoops = std::exchange(loopsKnown_, QThread::currentThread()->loopLevel());
    const bool outerRun = std::exchange(runKnown_, world_.isRunning());
    if (++depth_ == 1) {
        inLoop_ = 0;
        world_.bench.files.operations.clear();
        world_.bench.prompts.told.clear();
        world_.happenings = {};
    }
    settleDown();
    act(dice);
    settleDown();
    if (events_ % PaintEvery == 0)
        clocks_.paint();
    if (depth_ == 1) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        if (!world_.bench.window->isVisible()) {
            note("a new start");
            checkAfterEvent();
            world_.restart();
            settle();
        }
    }
    checkAfterEvent();
    --depth_;
    runKnown_ = outerRun;
    loopsKnown_ = outerLoops;
    world_.dice = outerDice;
}

// What a thread learns of sounds comes between two events, and not some time.
void Monkey::settleDown() {
    world_.bench.sounds.finish();
    settle();
}

void Monkey::end() {
    if (wrong_.isEmpty() && world_.bench.window->isVisible() && !world_.isRunning())
        wrong_ += ledger_.undoneAndRedone();
}

void Monkey::note(const QString& name) {
    names_.push_back(QString("%1%2 %3").arg(events_).arg(QString(depth_ - 1, '>'), name));
    if (names_.size() > NamesKept)
        names_.pop_front();
    for (const QChar c : names_.back())
        hash_ = (hash_ ^ c.unicode()) * 1099511628211U;
}

QStringList Monkey::lastEvents() const {
    return {names_.begin(), names_.end()};
}

QByteArray Monkey::outcome() const {
    // The scratch folder has another name each time.
    Project project = world_.bench.current;
    const auto neutral = [this](const QString& text) {
        return QString(text).replace(world_.bench.scratch.path(), "@");
    };
    for (TrackRecord& record : project.TrackTable)
        record.sourcePath = neutral(record.sourcePath.text());
    project.txtChimeFileName = neutral(project.txtChimeFileName);
    project.cfDrive = neutral(project.cfDrive);
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(encodeSnapshot(project));
    hash.addData(QByteArray::number(hash_));
    return hash.result().toHex().left(16);
}

// ---- what it does ------------------------------------------------------------------------------

void Monkey::act(Dice& dice) {
    using Action = bool (Monkey::*)(QWidget*, Dice&);
    static const std::pair<int, Action> actions[] = {
        {20, &Monkey::clickButton},  {22, &Monkey::workOnList}, {22, &Monkey::workOnField},
        {12, &Monkey::pressSomeKey}, {6, &Monkey::switchPage},  {2, &Monkey::workOnMenu},
        {4, &Monkey::pokeAnywhere},  {2, &Monkey::changeWindow}};
    const auto windows = openWindows();
    if (windows.isEmpty() || dice.oneIn(25)) {
        somethingElse(dice);
        return;
    }
    QWidget* window = dice.anyOf(windows);
    if (depth_ == 1 && world_.bench.current.TrackTable.size() > MostRecords) {
        note("New, for there is much");
        world_.bench.choose("mnuFileNew");
        return;
    }
    int drawn = dice.below(90);  // what the weights come to
    for (const auto& [weight, action] : actions) {
        drawn -= weight;
        if (drawn >= 0)
            continue;
        if (!(this->*action)(window, dice))
            pressSomeKey(window, dice);
        return;
    }
}

bool Monkey::clickButton(QWidget* window, Dice& dice) {
    const auto buttons = reachable<QAbstractButton>(window);
    if (buttons.isEmpty())
        return false;
    QWidget* button = dice.anyOf(buttons);
    note("click " + nameOf(button));
    click(button, button->rect().center());
    return true;
}

bool Monkey::workOnList(QWidget* window, Dice& dice) {
    const auto lists = reachable<QAbstractItemView>(window);
    if (lists.isEmpty())
        return false;
    QAbstractItemView* list = dice.anyOf(lists);
    QWidget* view = list->viewport();
    const int rows = list->model()->rowCount();
    const int row = rows > 0 ? dice.below(rows) : -1;
    const auto somewhere = [&](int wanted) {
        if (wanted < 0)
            return somePoint(view, dice);
        const QPoint at = list->visualRect(list->model()->index(wanted, 0)).center();
        return view->rect().contains(at) ? at : view->rect().center();
    };
    const QPoint at = somewhere(row);
    const auto noteRow = [&](const char* what) {
        note(QString(what) + ' ' + nameOf(list) + ' ' + QString::number(row));
    };
    switch (dice.below(20)) {
        case 0:
        case 1:
        case 2: {
            const bool isShift = dice.oneIn(3);
            noteRow(isShift ? "click with Shift" : "click with Ctrl");
            click(view, at, Qt::LeftButton, isShift ? Qt::ShiftModifier : Qt::ControlModifier);
            break;
        }
        case 3:
            noteRow("drag from");
            drag(view, at, somewhere(row >= 0 ? dice.below(rows) : -1));
            break;
        case 4:
            noteRow("double click");
            doubleClick(view, at);
            break;
        case 5:
            noteRow("right click");
            click(view, at, Qt::RightButton);
            break;
        case 6:
            noteRow("wheel on");
            turnWheel(view, view->rect().center(), dice.oneIn(2) ? 15 : -30);
            break;
        case 7:
            noteRow("move");
            click(view, at);
            pressKey(window, dice.oneIn(2) ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
            break;
        case 8:
        case 9: {
            const QStringList paths = world_.droppedPaths();
            noteRow("drop files on");
            drop(view, at, paths.join(" | "), true);
            break;
        }
        case 10: {
            const std::unique_ptr<QMimeData> dragged(list->model()->mimeData({}));
            noteRow("drop the rows dragged on");
            if (dragged)
                drop(view, dice.oneIn(3) ? view->rect().bottomLeft() : at, *dragged);
            break;
        }
        case 11:
        case 12: {
            static const char* const keys[] = {"Del", "F2", "Return", "Ctrl+A", "Shift+End"};
            const QString key = dice.anyOf(keys);
            noteRow(qPrintable("press " + key + " in"));
            click(view, at);
            const QKeyCombination pressed = QKeySequence(key)[0];
            pressKey(window, pressed.key(), pressed.keyboardModifiers());
            break;
        }
        case 13:  // those of the context menu
            if (!list->actions().isEmpty()) {
                QAction* command = dice.anyOf(list->actions());
                noteRow(qPrintable("command " + command->text() + " of"));
                command->trigger();
                break;
            }
            [[fallthrough]];
        default:
            noteRow("click");
            click(view, at);
    }
    return true;
}

bool Monkey::workOnField(QWidget* window, Dice& dice) {
    const auto fields = reachable<QLineEdit>(window);
    if (fields.isEmpty())
        return false;
    QLineEdit* field = dice.anyOf(fields);
    const QString text = world_.text();
    const QPoint at = somePoint(field, dice);
    const bool clears = !dice.oneIn(3);
    static const char* const what[] = {"paste into",  "drop on",      "compose in",  "drag over",
                                       "right click", "middle click", "type in",     "type in",
                                       "type in",     "type, Enter",  "type, Enter", "type, Enter"};
    const int kind = dice.below(int(std::size(what)));
    note(QString(what[kind]) + ' ' + nameOf(field));
    if (kind == 1) {
        drop(field, at, text, dice.oneIn(3));
        return true;
    }
    if (kind == 3) {
        drag(field, at, somePoint(field, dice));
        return true;
    }
    click(field, at, kind == 4 ? Qt::RightButton : kind == 5 ? Qt::MiddleButton : Qt::LeftButton);
    if (clears && (kind == 0 || kind > 5)) {
        pressKey(window, Qt::Key_A, Qt::ControlModifier);
        pressKey(window, Qt::Key_Delete);
    }
    if (kind == 0) {
        QGuiApplication::clipboard()->setText(text);
        pressKey(window, Qt::Key_V, Qt::ControlModifier);
    } else if (kind == 2) {
        composeText(text);
    } else if (kind > 5) {
        typeText(window, text.left(40));
        if (kind > 8)
            pressKey(window, Qt::Key_Return);
    }
    return true;
}

bool Monkey::workOnMenu(QWidget* window, Dice& dice) {
    if (auto* menu = qobject_cast<QMenu*>(window)) {
        QAction* action = menu->actions().isEmpty() ? nullptr : dice.anyOf(menu->actions());
        note("choose " + (action ? action->text() : QString("nothing")));
        if (action)
            click(menu, menu->actionGeometry(action).center());
        return true;
    }
    const auto bars = reachable<QMenuBar>(window);
    if (bars.isEmpty())
        return false;
    QAction* action = dice.anyOf(bars.first()->actions());
    note("open the menu " + action->text());
    click(bars.first(), bars.first()->actionGeometry(action).center());
    return true;
}

bool Monkey::switchPage(QWidget* window, Dice& dice) {
    const auto bars = reachable<QTabBar>(window);
    if (bars.isEmpty())
        return false;
    const int page = dice.below(bars.first()->count());
    note("page " + bars.first()->tabText(page));
    click(bars.first(), bars.first()->tabRect(page).center());
    return true;
}

bool Monkey::pressSomeKey(QWidget* window, Dice& dice) {
    static const char* const plain[] = {
        "Tab",  "Tab",      "Shift+Tab",  "Return",    "Enter",      "Esc",       "Up",  "Down",
        "Left", "End",      "Right",      "Home",      "PgUp",       "PgDown",    "Del", "Space",
        "F2",   "Space",    "F10",        "Menu",      "Backspace",  "A",         "R",   "Ins",
        "Alt",  "Shift+Up", "Shift+Down", "Shift+End", "Shift+Left", "Shift+Home"};
    static const char* const withAlt[] = {
        "Alt+Up", "Alt+Down", "Alt+F", "Alt+H", "Alt+A", "Alt+E", "Alt+D", "Alt+N",   "Alt+L",
        "Alt+T",  "Alt+S",    "Alt+C", "Alt+P", "Alt+R", "Alt+B", "Alt+M", "Alt+Left"};
    static const char* const withControl[] = {"Ctrl+A",    "Ctrl+C",     "Ctrl+V",      "Ctrl+X",
                                              "Ctrl+Z",    "Ctrl+Y",     "Ctrl+S",      "Ctrl+Tab",
                                              "Ctrl+Left", "Ctrl+Right", "Ctrl+PgDown", "Ctrl+Home",
                                              "Ctrl+G",    "Ctrl+G",     "Ctrl+Down"};
    static const char* const rarely[] = {"Ctrl+N", "Ctrl+O", "Ctrl+Q", "Ctrl+Shift+S", "Ctrl+F",
                                         "F3",     "F3",     "Alt+1",  "Shift+F3"};
    const int kind = dice.below(100);
    const QString name = kind < 12   ? dice.anyOf(withAlt)
                         : kind < 26 ? dice.anyOf(withControl)
                         : kind < 30 ? dice.anyOf(rarely)
                                     : dice.anyOf(plain);
    note("press " + name);
    const QKeyCombination keys = name == "Alt" ? Qt::Key_Alt : QKeySequence(name)[0];
    pressKey(window, keys.key(), keys.keyboardModifiers());
    return true;
}

bool Monkey::pokeAnywhere(QWidget* window, Dice& dice) {
    const QPoint at(dice.below(window->width()), dice.below(window->height()));
    note(QString("poke %1 at %2, %3").arg(nameOf(window)).arg(at.x()).arg(at.y()));
    const int kind = dice.below(5);
    if (kind == 1 && !qobject_cast<QMenu*>(window))  // the first click closes it
        doubleClick(window, at);
    else if (kind == 2)
        moveTo(window, at);
    else if (kind != 1)
        click(window, at, kind == 0 ? Qt::RightButton : Qt::LeftButton);
    return true;
}

bool Monkey::changeWindow(QWidget* window, Dice& dice) {
    const auto widgets = reachable<QWidget>(window);
    if (widgets.isEmpty())
        return false;
    QWidget* widget = dice.anyOf(widgets);
    switch (dice.below(4)) {
        case 0:
            note("resize " + nameOf(window));
            window->resize(400 + dice.below(1000), 300 + dice.below(700));
            break;
        case 1:
            note("focus " + nameOf(widget));
            widget->setFocus(Qt::OtherFocusReason);
            break;
        case 2:
            note("activate " + nameOf(window));
            window->activateWindow();
            break;
        default:
            note("drop on " + nameOf(widget));
            drop(widget, widget->rect().center(), world_.text(), dice.oneIn(2));
    }
    return true;
}

void Monkey::somethingElse(Dice& dice) {
    WindowBench& bench = world_.bench;
    const int kind = dice.below(12);
    auto* texts = bench.find<QWidget>("frmSystemText");
    if (kind == 0 && !frontBox()) {  // which the platform keeps the close command from, too
        note("the close box");
        bench.closeBox();
    } else if (kind == 1) {
        note("the session ends");
        QMetaObject::invokeMethod(bench.window.get(), "Form_SessionEnds");
    } else if (kind > 1 && kind < 6) {
        note("a minute has passed");
        QMetaObject::invokeMethod(bench.find<QTimer>("tmrRecovery"), "timeout");
    } else if (kind == 6 && texts->isVisible() && !frontBox()) {
        note("close the system texts");
        texts->close();
    } else {
        note("outside: " + world_.change());
    }
}

// ---- what it checks ----------------------------------------------------------------------------

void Monkey::checkAfterEvent() {
    WindowBench& bench = world_.bench;
    const bool isRunning = world_.isRunning();
    QStringList found = inconsistencies(bench.current);
    if (bench.window->isVisible() && QThread::currentThread()->loopLevel() == 0)
        found += wrongInWindow(bench, isRunning);
    found += ledger_.afterEvent();
    if (events_ % CountEvery == 0)
        found += wrongInStatusBar(bench);
    if (events_ % SaveEvery == 0)
        found += ledger_.savedAndReadBack();
    if (depth_ == 1) {
        if (!isRunning && bench.window->isVisible()) {
            found += ledger_.nothingWithoutAStep();
            if (events_ % UndoEvery == 0)
                found += ledger_.undoneAndRedone();
        }
        if (events_ % LookOutsideEvery == 0)
            found += ledger_.outside();
        if (events_ % MeasureEvery == 0)
            found += ledger_.growth();
        if (isRunning)
            found.append("a run goes on without end");
        if (QApplication::activeModalWidget())
            found.append("a modal window is left open");
    }
    if (testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed())
        found.append("the bench reports a failure, see above");
    if (!found.isEmpty())
        for (const QString& text : bench.prompts.told)
            found.append("in this event was said: " + text);
    wrong_ += found;
}

}  // namespace tessaly::monkey
