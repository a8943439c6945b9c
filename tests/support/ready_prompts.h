// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <functional>

#include "app/prompts.h"

namespace tessaly::test {

/// An operator who answers at once, with whatever is ready.
class ReadyPrompts : public Prompts {
 public:
    bool yes = true;
    QString path;       ///< of a file, a folder or a drive; empty: cancelled
    QString text;       ///< what is typed; null: cancelled
    int line = 0;       ///< of a list; -1: cancelled
    QStringList told;   ///< the texts of all boxes
    int lineCount = 0;  ///< of the list that is shown
    /// Called right before an answer is taken: the place to make one up.
    std::function<void(const QString& what)> onAsked = [](const QString&) {};

    void tell(const Message& message) override { told.append(message.text); }
    bool ask(const Message& question, bool) override {
        tell(question);
        onAsked(question.text);
        return yes;
    }
    bool offer(const Message& message, const QString&) override { return ask(message, true); }
    QString openFile(const FileRequest& request) override {
        return place("open " + request.filter);
    }
    QStringList openFiles(const FileRequest& request) override {
        const QString one = openFile(request);
        return one.isEmpty() ? QStringList() : one.split(" | ");
    }
    QString saveFile(const FileRequest& request) override {
        return place("save " + request.filter);
    }
    QString pickFolder(const QString& caption, const QString&, FileKind) override {
        return place(caption);
    }
    QString pickDrive(const Drives&, const QString&) override { return place("drive"); }
    int pickLine(const QString& caption, const QStringList& lines) override {
        lineCount = int(lines.size());
        onAsked(caption);
        return line;
    }
    QString inputText(const QString& prompt, const QString& initial, int limit) override {
        onAsked(prompt);
        return limit > 0 && text != initial ? text.left(limit) : text;
    }
    bool openDocument(const QString&) override { return true; }
    void beep() override {}

 private:
    QString place(const QString& what) {
        onAsked(what);
        return path;
    }
};

}  // namespace tessaly::test
