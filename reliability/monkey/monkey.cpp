#include "monkey.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCryptographicHash>
#include <QDialog>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>
#include <QThread>

#include "model/project_snapshot.h"
#include "window_checks.h"

namespace tessaly::monkey {

namespace {

constexpr size_t NamesKept = 50;
constexpr int SaveEvery = 50;
constexpr int CountEvery = 20;
constexpr int PaintEvery = 10;
constexpr int LookOutsideEvery = 1000;
constexpr int MeasureEvery = 2000;
constexpr int MostRecords = 250;   // then it is time for something new
constexpr int MostInOneLoop = 40;  // events, before a modal window is closed
constexpr int ActInRunOneIn = 6;   // file operations of a run

const QEvent::Type ActEvent = QEvent::Type(QEvent::registerEventType());

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
        world_.bench.prompts.shown.clear();
        world_.bench.prompts.files.clear();
        world_.happenings = {};
    }
    settle();
    act(dice);
    settle();
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
    actInWindow(window, dice);
}

void Monkey::actInWindow(QWidget* window, Dice& dice) {
    using Action = bool (Monkey::*)(QWidget*, Dice&);
    struct Weighed {
        int weight;
        Action action;
    };
    static const Weighed actions[] = {{20, &Monkey::clickButton}, {22, &Monkey::workOnList},
                                      {22, &Monkey::workOnField}, {12, &Monkey::pressSomeKey},
                                      {6, &Monkey::switchPage},   {2, &Monkey::workOnMenu},
                                      {4, &Monkey::pokeAnywhere}, {2, &Monkey::changeWindow}};
    int total = 0;
    for (const Weighed& action : actions)
        total += action.weight;
    int drawn = dice.below(total);
    for (const Weighed& action : actions) {
        drawn -= action.weight;
        if (drawn < 0) {
            if (!(this->*action.action)(window, dice))
                pressSomeKey(window, dice);
            return;
        }
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
    const auto lists = reachable<QListView>(window);
    if (lists.isEmpty())
        return false;
    QListView* list = dice.anyOf(lists);
    QWidget* view = list->viewport();
    const auto rowPoint = [&](int row) {
        const QPoint at = list->visualRect(list->model()->index(row, 0)).center();
        return view->rect().contains(at) ? at : view->rect().center();
    };
    const int rows = list->model()->rowCount();
    const int row = rows > 0 ? dice.below(rows) : -1;
    const QPoint at = row >= 0 ? rowPoint(row) : somePoint(view, dice);
    const QString where = nameOf(list) + ' ' + QString::number(row);
    switch (dice.below(12)) {
        case 0:
            note("click with Shift " + where);
            click(view, at, Qt::LeftButton, Qt::ShiftModifier);
            break;
        case 1:
        case 2:
            note("click with Ctrl " + where);
            click(view, at, Qt::LeftButton, Qt::ControlModifier);
            break;
        case 3: {
            const QPoint to = row >= 0 ? rowPoint(dice.below(rows)) : somePoint(view, dice);
            note("drag from " + where);
            press(view, at);
            moveTo(view, (at + to) / 2);
            moveTo(view, to);
            release(view, to);
            break;
        }
        case 4:
            note("double click " + where);
            doubleClick(view, at);
            break;
        case 5:
            note("right click " + where);
            click(view, at, Qt::RightButton);
            break;
        case 6:
            note("wheel on " + nameOf(list));
            turnWheel(view, view->rect().center(), dice.oneIn(2) ? 15 : -30);
            break;
        case 7:
            note("move " + where);
            click(view, at);
            pressKey(window, dice.oneIn(2) ? Qt::Key_Up : Qt::Key_Down, Qt::AltModifier);
            break;
        default:
            note("click " + where);
            click(view, at);
            break;
    }
    return true;
}

bool Monkey::workOnField(QWidget* window, Dice& dice) {
    const auto fields = reachable<QLineEdit>(window);
    if (fields.isEmpty())
        return false;
    QLineEdit* field = dice.anyOf(fields);
    const QString text = world_.text();
    const QString name = nameOf(field);
    const auto clear = [&] {
        if (!dice.oneIn(3)) {
            pressKey(window, Qt::Key_A, Qt::ControlModifier);
            pressKey(window, Qt::Key_Delete);
        }
    };
    switch (dice.below(12)) {
        case 0:
            note("paste into " + name);
            QGuiApplication::clipboard()->setText(text);
            click(field, somePoint(field, dice));
            clear();
            pressKey(window, Qt::Key_V, Qt::ControlModifier);
            break;
        case 1:
            note("drop on " + name);
            drop(field, somePoint(field, dice), text, dice.oneIn(3));
            break;
        case 2:
            note("compose in " + name);
            click(field, somePoint(field, dice));
            composeText(text);
            break;
        case 3:
            note("drag over " + name);
            press(field, somePoint(field, dice));
            moveTo(field, somePoint(field, dice));
            release(field, somePoint(field, dice));
            break;
        case 4:
            note("right click " + name);
            click(field, somePoint(field, dice), Qt::RightButton);
            break;
        case 5:
            note("middle click " + name);
            click(field, somePoint(field, dice), Qt::MiddleButton);
            break;
        default: {
            const bool enter = dice.oneIn(2);
            note((enter ? "type and Enter in " : "type in ") + name);
            click(field, somePoint(field, dice));
            clear();
            typeText(window, text.left(40));
            if (enter)
                pressKey(window, Qt::Key_Return);
            break;
        }
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
    static const Qt::Key plain[] = {
        Qt::Key_Tab,    Qt::Key_Tab,   Qt::Key_Backtab, Qt::Key_Return,    Qt::Key_Enter,
        Qt::Key_Escape, Qt::Key_Up,    Qt::Key_Down,    Qt::Key_Left,      Qt::Key_Right,
        Qt::Key_Home,   Qt::Key_End,   Qt::Key_PageUp,  Qt::Key_PageDown,  Qt::Key_Delete,
        Qt::Key_Space,  Qt::Key_Space, Qt::Key_F10,     Qt::Key_Backspace, Qt::Key_Menu,
        Qt::Key_F2,     Qt::Key_A,     Qt::Key_R,       Qt::Key_Insert,    Qt::Key_Alt};
    static const Qt::Key withAlt[] = {Qt::Key_Up, Qt::Key_Down, Qt::Key_F, Qt::Key_H,
                                      Qt::Key_A,  Qt::Key_E,    Qt::Key_D, Qt::Key_N,
                                      Qt::Key_L,  Qt::Key_T,    Qt::Key_S, Qt::Key_C,
                                      Qt::Key_P,  Qt::Key_R,    Qt::Key_B, Qt::Key_Left};
    static const Qt::Key withControl[] = {
        Qt::Key_A, Qt::Key_C,   Qt::Key_V,    Qt::Key_X,     Qt::Key_Z,        Qt::Key_Y,
        Qt::Key_S, Qt::Key_Tab, Qt::Key_Left, Qt::Key_Right, Qt::Key_PageDown, Qt::Key_Home};
    static const Qt::Key rarely[] = {Qt::Key_N, Qt::Key_O, Qt::Key_Q, Qt::Key_S};
    Qt::Key key = dice.anyOf(plain);
    Qt::KeyboardModifiers keys;
    const int kind = dice.below(100);
    if (kind < 12) {
        key = dice.anyOf(withAlt);
        keys = Qt::AltModifier;
    } else if (kind < 26) {
        key = dice.anyOf(withControl);
        keys = Qt::ControlModifier;
    } else if (kind < 28) {
        key = dice.anyOf(rarely);
        keys = Qt::ControlModifier;
        if (key == Qt::Key_S)
            keys |= Qt::ShiftModifier;
    } else if (kind < 36) {
        keys = Qt::ShiftModifier;
    }
    note("press " + QKeySequence(key | keys).toString(QKeySequence::PortableText));
    pressKey(window, key, keys);
    return true;
}

bool Monkey::pokeAnywhere(QWidget* window, Dice& dice) {
    const QPoint at(dice.below(window->width()), dice.below(window->height()));
    note(QString("poke %1 at %2, %3").arg(nameOf(window)).arg(at.x()).arg(at.y()));
    switch (dice.below(5)) {
        case 0:
            click(window, at, Qt::RightButton);
            break;
        case 1:
            if (!qobject_cast<QMenu*>(window))  // the first click closes it
                doubleClick(window, at);
            break;
        case 2:
            moveTo(window, at);
            break;
        default:
            click(window, at);
    }
    return true;
}

bool Monkey::changeWindow(QWidget* window, Dice& dice) {
    const auto widgets = reachable<QWidget>(window);
    switch (dice.below(4)) {
        case 0:
            note("resize " + nameOf(window));
            window->resize(400 + dice.below(1000), 300 + dice.below(700));
            break;
        case 1: {
            if (widgets.isEmpty())
                return false;
            QWidget* widget = dice.anyOf(widgets);
            note("focus " + nameOf(widget));
            widget->setFocus(Qt::OtherFocusReason);
            break;
        }
        case 2:
            note("activate " + nameOf(window));
            window->activateWindow();
            break;
        default: {
            if (widgets.isEmpty())
                return false;
            QWidget* widget = dice.anyOf(widgets);
            note("drop on " + nameOf(widget));
            drop(widget, widget->rect().center(), world_.text(), dice.oneIn(2));
        }
    }
    return true;
}

bool Monkey::somethingElse(Dice& dice) {
    test::WindowBench& bench = world_.bench;
    switch (dice.below(12)) {
        case 0:
            if (QApplication::activeModalWidget() || QApplication::activePopupWidget())
                break;  // which the platform keeps the close command from, too
            note("the close box");
            bench.closeBox();
            return true;
        case 1:
            note("the session ends");
            QMetaObject::invokeMethod(bench.window.get(), "Form_SessionEnds");
            return true;
        case 2:
        case 3:
        case 4:
        case 5:
            note("a minute has passed");
            QMetaObject::invokeMethod(bench.find<QTimer>("tmrRecovery"), "timeout");
            return true;
        case 6:
            for (QWidget* widget : QApplication::topLevelWidgets())
                if (widget->isVisible() && widget != bench.window.get() &&
                    widget->objectName() == "frmSystemText" && !QApplication::activeModalWidget()) {
                    note("close " + nameOf(widget));
                    widget->close();
                    return true;
                }
            break;
        default:
            break;
    }
    note("outside: " + world_.change());
    return true;
}

// ---- what it checks ----------------------------------------------------------------------------

void Monkey::checkAfterEvent() {
    test::WindowBench& bench = world_.bench;
    const bool isRunning = world_.isRunning();
    QStringList found = test::inconsistencies(bench.current);
    if (bench.window->isVisible() && QThread::currentThread()->loopLevel() == 0)
        found += wrongInWindow(bench, isRunning);
    found += ledger_.afterEvent();
    if (events_ % CountEvery == 0)
        found += wrongInStatusBar(bench);
    if (events_ % SaveEvery == 0)
        found += ledger_.savedAndReadBack();
    if (depth_ == 1) {
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
        for (const auto& message : bench.prompts.shown)
            found.append("in this event was said: " + message.text);
    wrong_ += found;
}

}  // namespace tessaly::monkey
