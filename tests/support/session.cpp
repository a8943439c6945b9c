// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/session.h"

#include <QClipboard>
#include <QFileDialog>
#include <QHelpEvent>
#include <QInputMethodEvent>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QProcess>
#include <QProgressDialog>
#include <QRegularExpression>
#include <QScrollArea>
#include <QToolTip>

#include "model/project_snapshot.h"

namespace tessaly::test {

// ---- boxes -------------------------------------------------------------------------------------

void SessionPrompts::tell(const Message& message) {
    if (isQuiet)
        session_.say("says " + message.text);
    else
        QtPrompts::tell(message);
}
bool SessionPrompts::ask(const Message& question, bool defaultsToNo) {
    return isQuiet || QtPrompts::ask(question, defaultsToNo);
}
QString SessionPrompts::openFile(const FileRequest& request) {
    return isReal ? QtPrompts::openFile(request)
                  : session_.answer("a file to open: " + request.filter + ", from \"" +
                                    request.folder + '"');
}
QString SessionPrompts::saveFile(const FileRequest& request) {
    return isReal ? QtPrompts::saveFile(request)
                  : session_.answer("a file to save: " + request.filter + " (." + request.suffix +
                                    "), from \"" + request.folder + '"');
}
QString SessionPrompts::pickFolder(const QString& caption, const QString& folder) {
    return isReal ? QtPrompts::pickFolder(caption, folder)
                  : session_.answer(caption + ", from \"" + folder + '"');
}
QString SessionPrompts::pickDrive(const Drives& drives, const QString& current) {
    return isQuiet ? session_.answer("a drive") : QtPrompts::pickDrive(drives, current);
}
int SessionPrompts::pickLine(const QString& caption, const QStringList& lines) {
    return isQuiet ? 0 : QtPrompts::pickLine(caption, lines);
}
QString SessionPrompts::inputText(const QString& prompt, const QString& initial, int limit) {
    return isQuiet ? session_.answer(prompt) : QtPrompts::inputText(prompt, initial, limit);
}
bool SessionPrompts::openDocument(const QString& file) {
    session_.say("shows the document " + file);
    return hasViewer;
}
void SessionPrompts::beep() {
    session_.say("beeps");
}

QString Session::answer(const QString& question) {
    say("asks for " + question);
    if (!prompts.prepared.isEmpty())
        return inFull(prompts.prepared.takeFirst());
    const QString line = script_.value(0);
    if (line != "cancel" && !line.startsWith("answer ")) {
        say("NOBODY ANSWERS");
        return {};
    }
    transcript_.append(script_.takeFirst());
    return line == "cancel" ? QString() : inFull(line.section(' ', 1));
}

// ---- playing -----------------------------------------------------------------------------------

Session::Session(const Drives* ownDrives, FileSystem* ownFiles)
    : bench(&prompts, ownDrives, ownFiles) {
    addKeysAndClicks();
    addWindows();
    addWorld();
    bench.files.onOperation = [this] {
        if (!awaited_.isEmpty() && bench.files.operations.last() == awaited_) {
            awaited_.clear();
            isDue_ = true;
        }
    };
    heartbeat_ = startTimer(0);
}

Session::~Session() {
    text_.reset();
    bench.window.reset();
}

QString Session::inFull(QString text) const {
    return text.replace('~', bench.scratch.path()).replace("{samples}", TESSALY_SAMPLES);
}

QString Session::neutral(QString line) const {
    static const std::pair<QRegularExpression, const char*> varying[] = {
        {QRegularExpression(
             "(20\\d\\d-?\\d\\d-?\\d\\d[ -]\\d\\d:?\\d\\d(:?\\d\\d)?(-\\d{3})?\\.?)+"),
         "{time}"},
        {QRegularExpression("0x[0-9A-F]{4}"), "{number}"},
        {QRegularExpression("(?<=records, |up to byte )\\d+"), "{number}"},
        {QRegularExpression(", [^,\"]* left"), ""},
        {QRegularExpression("[^ ]*\u2026[^ ]*"), "{cut}"},
        {QRegularExpression(" {8,}"), "  "}};
    line.replace(bench.scratch.path(), "~")
        .replace(bench.scratch.path().mid(1), "~")
        .replace(TESSALY_SAMPLES, "{samples}")
        .replace(TESSALY_VERSION, "{version}");
    for (const auto& [pattern, word] : varying)
        line.replace(pattern, word);
    return line;
}

void Session::say(const QString& line) {
    transcript_.append("    " + neutral(line));
}

QString Session::play(const QString& text) {
    for (const QString& line : text.trimmed().split('\n'))
        if (!line.startsWith("    "))
            script_.append(line);
    while (!script_.isEmpty())
        playNext();
    return transcript_.join('\n') + '\n';
}

bool Session::playNext() {
    if (script_.isEmpty())
        return false;
    transcript_.append(script_.takeFirst());
    perform(transcript_.last());
    return true;
}

void Session::perform(const QString& gesture) {
    if (gesture.isEmpty() || gesture.startsWith('#'))
        return;
    const QString verb = gesture.section(' ', 0, 0);
    const auto act = verbs.value(verb);
    if (!act) {
        say("THERE IS NO SUCH GESTURE");
        return;
    }
    act(inFull(gesture.section(' ', 1)));
    settleDown();
    if (!frontBox() && !QApplication::activeWindow() && bench.window && bench.window->isVisible()) {
        bench.window->activateWindow();  // as a desktop does when a box has closed
        settleDown();
    }
    showChanges();
    QWidget* focus = QApplication::focusWidget();
    if (verb == "press" && focus)
        say("focus " + nameOf(focus));
}

void Session::showChanges() {
    if (prompts.isQuiet)
        return;
    if (text_)
        for (const QString& line : text_->changes())
            say(line);
    const QStringList wrong = inconsistencies(bench.current);
    for (const QString& sentence : wrong)
        if (!wrong_.contains(sentence))
            say("WRONG: " + sentence);
    wrong_ = wrong;
}

// Comes in every event loop that a gesture opens.
void Session::timerEvent(QTimerEvent* event) {
    if (event->timerId() != heartbeat_)
        return;
    killTimer(heartbeat_);  // a timer does not fire while its event is under way: the next may
    heartbeat_ = startTimer(0);
    if (std::exchange(isDue_, false)) {
        say("-- under way");
        showChanges();
        playInside([this] { return std::exchange(isGoingOn_, false); });
        return;
    }
    const QPointer<QWidget> box = frontBox();
    if (!box || boxes_.contains(box.data()) || qobject_cast<QProgressDialog*>(box.data()))
        return;
    boxes_.append(box);
    showChanges();
    box->activateWindow();
    settle();
    for (const QString& line : WindowText::ofBox(box))
        say(line);
    playInside([&] { return !box || !box->isVisible(); });
    boxes_.removeLast();
    if (box && box->isVisible()) {
        say("NOBODY ANSWERS");
        box->close();
    }
}

void Session::playInside(const std::function<bool()>& isOver) {
    while (!isOver() && playNext()) {
    }
}

// ---- what people do ----------------------------------------------------------------------------

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

void Session::clickOn(const QString& name, Qt::MouseButton button, bool isDouble) {
    QWidget* widget = named(name);
    if (widget && isDouble)
        doubleClick(widget, spotOn(widget));
    else if (widget)
        click(widget, spotOn(widget), button);
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
    verbs["drop"] = [this](const QString& rest) {
        if (QWidget* widget = named(rest.section(' ', 0, 0)))
            say(drop(widget, spotOn(widget), rest.section(' ', 1), false) ? "as a copy"
                                                                          : "not taken");
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
        if (QWidget* widget = named(name)) {
            QHelpEvent event(QEvent::ToolTip, {5, 5}, widget->mapToGlobal(QPoint(5, 5)));
            QApplication::sendEvent(widget, &event);
            say("tip \"" + QToolTip::text() + '"');
        }
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
            for (const QString& line : WindowText::picture(widget, rest.section(' ', 1).toInt()))
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

// ---- the world around it -----------------------------------------------------------------------

void Session::run(const QString& program, const QStringList& arguments, bool isSilent) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", bench.scratch.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(bench.scratch.path());
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        say("it does not end");
    for (const QString& line : QString::fromUtf8(process.readAll()).trimmed().split('\n'))
        if (!isSilent && !line.startsWith("QStandardPaths"))
            say(line.trimmed());
    if (process.exitCode() != 0)
        say(QString("exit code %1").arg(process.exitCode()));
}

void Session::addWorld() {
    ScratchFolder& scratch = bench.scratch;
    const auto words = [](const QString& rest) { return rest.split(" | "); };
    verbs["file"] = [&](const QString& rest) {  // NAME | CONTENT
        scratch.write(rest.section(" | ", 0, 0),
                      rest.section(" | ", 1).replace("\\n", "\n").toUtf8());
    };
    verbs["grow"] = [&, words](const QString& rest) {  // NAME | BYTES
        QFile::resize(scratch.path(words(rest)[0]), words(rest)[1].toLongLong());
    };
    verbs["folder"] = [&](const QString& name) { scratch.makeFolder(name); };
    verbs["remove"] = [&](const QString& name) { QFile::remove(scratch.path(name)); };
    verbs["copy"] = [&, words](const QString& rest) {  // FROM | TO | bytes less
        const QStringList names = words(rest);
        scratch.write(names[1], scratch.read(names[0]).chopped(names.value(2).toInt()));
    };
    verbs["files"] = [&](const QString& folder) {
        const auto content = scratch.content(folder);
        for (auto file = content.begin(); file != content.end(); ++file)
            say(file.key() + (file.key().endsWith(".crd2")  // which is as long as its paths
                                  ? QString()
                                  : QString(" %1 bytes").arg(file->size())));
        if (content.isEmpty())
            say("empty");
    };
    verbs["compare"] = [&, words](const QString& rest) {  // FOLDER | FOLDER
        const auto first = scratch.content(words(rest)[0]),
                   second = scratch.content(words(rest)[1]);
        QStringList names = first.keys() + second.keys();
        names.removeDuplicates();
        for (const QString& name : names)
            if (first.value(name) != second.value(name))
                say("they differ in " + name);
    };
    verbs["copies"] = [this](const QString&) {
        say(QString("%1 recovery copies").arg(bench.recoveryCopies()));
    };
    verbs["killed"] = [&](const QString&) {
        text_.reset();
        bench.window.reset();
        QFile mark(scratch.write("user/recovery/running", {}));
        if (mark.open(QIODevice::ReadWrite))
            mark.setFileTime(QDateTime::fromSecsSinceEpoch(1000000000),
                             QFileDevice::FileModificationTime);
    };
    verbs["fails"] = [this](const QString& what) {
        bench.files.failWhen = [what](const QString& operation) {
            return operation.startsWith(what);
        };
    };
    verbs["works"] = [this](const QString&) {
        bench.files.failWhen = [](const QString&) { return false; };
    };
    // Lets the window look after itself in file operations, too.
    verbs["slow-files"] = [this](const QString&) {
        bench.files.onOperation = [this, before = bench.files.onOperation] {
            before();
            QCoreApplication::processEvents();
        };
    };
    verbs["operations"] = [this](const QString& what) {  // those that begin so, since the last time
        say(std::exchange(bench.files.operations, {})
                .filter(QRegularExpression('^' + what))
                .join(", "));
    };
    verbs["drive"] = [this](const QString& type) {
        for (const DriveType one : {DriveType::Removable, DriveType::Fixed, DriveType::Network,
                                    DriveType::CdRom, DriveType::RamDisk, DriveType::Unknown})
            if (driveTypeName(one) == type)
                bench.drives.driveType = one;
    };
    verbs["card"] = [this](const QString& what) {
        bench.drives.isReady = what != "out";
        if (what.startsWith("of "))
            bench.drives.volume.totalBytes = what.mid(3).toLongLong();
        else if (what != "out" && what != "in")
            bench.drives.inserted = what;
    };
    verbs["volume"] = [&, words](const QString& rest) {  // ROOT | NAME | TYPE | BYTES | FREE
        const QStringList fields = words(rest);
        const DriveType before = bench.drives.driveType;
        verbs["drive"](fields[2]);
        bench.drives.list.append(
            {fields[0], fields[1], std::exchange(bench.drives.driveType, before), "vfat",
             fields[3].toLongLong(), fields[4].toLongLong(), fields[3] != "0"});
    };
    // What no hands at this window make, but files hold.
    verbs["odd-project"] = [this](const QString& name) {
        Project odd = bench.project;
        odd.buttChimeAlways = odd.buttChimeOnce = false;
        odd.txtCardTitle2 = "a title of more than sixteen characters";
        odd.TriggerTable[1].itemName = "x";
        odd.TriggerTable[1].groupName = "Gone";
        odd.TriggerTable[1].sourcePath = "music";
        odd.PowerUpRecord = makeRecord("music", "x", "Gone", {});
        LocalFileSystem files;
        saveProject(files, bench.scratch.path(name), odd);
    };
    verbs["second-instance"] = [this](const QString&) { bench.instance.isFirst = false; };
#ifdef TESSALY_CLI
    verbs["cli"] = [this, words](const QString& rest) {
        run(TESSALY_CLI, QStringList{"--app-folder", bench.scratch.path("app")} + words(rest));
    };
    verbs["silent-cli"] = [this, words](const QString& rest) {  // prints times of its own
        run(TESSALY_CLI, QStringList{"--app-folder", bench.scratch.path("app")} + words(rest),
            true);
    };
    verbs["program"] = [this, words](const QString& rest) { run(TESSALY_PROGRAM, words(rest)); };
#endif
}

}  // namespace tessaly::test
