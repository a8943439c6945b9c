// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/session.h"

#include <QPointer>
#include <QProgressDialog>
#include <QRegularExpression>

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
QStringList SessionPrompts::openFiles(const FileRequest& request) {
    if (isReal)
        return QtPrompts::openFiles(request);
    const QString files =
        session_.answer("files to open: " + request.filter + ", from \"" + request.folder + '"');
    return files.isEmpty() ? QStringList() : files.split(" | ");
}
QString SessionPrompts::saveFile(const FileRequest& request) {
    return isReal ? QtPrompts::saveFile(request)
                  : session_.answer("a file to save: " + request.filter + " (." + request.suffix +
                                    "), from \"" + request.folder + '"');
}
QString SessionPrompts::pickFolder(const QString& caption, const QString& folder, FileKind kind) {
    return isReal ? QtPrompts::pickFolder(caption, folder, kind)
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
    bench.player.onAsked = [this](const QString& what) { say("the player " + what); };
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
        {QRegularExpression(", [^,\"]* left(?! out)"), ""},
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
    bench.sounds.finish();
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

}  // namespace tessaly::test
