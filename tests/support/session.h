// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <functional>

#include "app/qt_prompts.h"
#include "support/hands.h"
#include "support/window_bench.h"
#include "support/window_text.h"

namespace tessaly::test {

class Session;

/// Real boxes, but for those that choose a file or folder: they say what they are asked for and
/// take the answer from the session. An answer that was prepared is given without any box.
class SessionPrompts : public QtPrompts {
 public:
    explicit SessionPrompts(Session& session) : session_(session) {}

    QStringList prepared;  ///< answers, in turn
    bool isReal = false;   ///< file dialogs, too
    bool isQuiet = false;  ///< no boxes at all: Yes to each, and nobody looks at the window
    bool hasViewer = true;

    void tell(const Message& message) override;
    bool ask(const Message& question, bool defaultsToNo) override;
    QString openFile(const FileRequest& request) override;
    QStringList openFiles(const FileRequest& request) override;
    QString saveFile(const FileRequest& request) override;
    QString pickFolder(const QString& caption, const QString& start, FileKind kind) override;
    QString pickDrive(const Drives& drives, const QString& current) override;
    int pickLine(const QString& caption, const QStringList& lines) override;
    QString inputText(const QString& prompt, const QString& initial, int limit) override;
    bool openDocument(const QString& file) override;
    void beep() override;

 private:
    Session& session_;
};

/// Plays what people do at the window, from a text, and writes down what the window shows.
///
/// A text begins with "# " and why the session is there. Each following line is a gesture; lines
/// that begin with four blanks are what came of the gesture before them. The gestures are in
/// session_gestures.cpp and session_world.cpp; what has to do with boxes and runs of a card is done
/// as it comes: gestures behind one that opens a box are made in that box until it closes, and
/// those behind "when OPERATION", a gesture later, are made while that file operation of a run is
/// under way, up to "go on".
///
/// "~" is the scratch folder and "{samples}" that of the samples, in both directions. What differs
/// from machine to machine is written as {version}, {time}, {number}.
class Session : public QObject {
 public:
    explicit Session(const Drives* ownDrives = nullptr, FileSystem* ownFiles = nullptr);
    ~Session() override;

    /// Plays a text; returns it with what came of each gesture.
    QString play(const QString& text);

    /// One gesture by itself; what comes of it is written down behind the others.
    void perform(const QString& gesture);

    /// Writes a line down.
    void say(const QString& line);
    /// The answer to a question: the one that was prepared, else the next gesture, without its
    /// verb. Null for "cancel".
    QString answer(const QString& question);

    QString inFull(QString text) const;
    const QStringList& transcript() const { return transcript_; }

    SessionPrompts prompts{*this};
    WindowBench bench;
    StoppedClocks clocks;
    /// Further verbs and what they do with the rest of their line.
    QHash<QString, std::function<void(const QString&)>> verbs;
    std::function<void()> settleDown = [this] {
        settle();
        bench.sounds.finish();  // which may be what the next painting asks for
        settle();
    };

 protected:
    void timerEvent(QTimerEvent* event) override;

 private:
    void addKeysAndClicks();
    void addWindows();
    void addWorld();
    void start(const QString& file);
    void playInside(const std::function<bool()>& isOver);
    bool playNext();
    void showChanges();
    void run(const QString& program, const QStringList& arguments, bool isSilent = false);
    std::pair<QWidget*, QPoint> target(const QString& name);
    void clickOn(const QString& name, Qt::MouseButton button, bool isDouble = false);
    void chooseRow(const QString& rest, Qt::KeyboardModifiers keys);
    QWidget* named(const QString& name);
    QString neutral(QString line) const;

    std::unique_ptr<WindowText> text_;
    QStringList script_, transcript_, wrong_;
    QList<QWidget*> boxes_;  ///< that are open and known
    QString awaited_;        ///< the file operation at which the next gestures are made
    bool isDue_ = false, isGoingOn_ = false;
    int heartbeat_ = 0;
};

}  // namespace tessaly::test
