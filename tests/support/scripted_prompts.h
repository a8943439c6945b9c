// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gtest/gtest.h>

#include <QList>
#include <QStringList>
#include <functional>

#include "app/prompts.h"

namespace tessaly::test {

/// Answers in the operator's place from lists prepared by the test. A question nobody prepared an
/// answer for is a failure.
class ScriptedPrompts : public Prompts {
 public:
    struct Shown {
        QString text, title;
        Message::Icon icon = Message::Icon::Information;
        bool isQuestion = false;
        bool defaultsToNo = false;
    };

    QList<bool> answers;  ///< to questions and offers, in turn
    QStringList paths;    ///< to file, folder and drive dialogs, in turn; empty: cancelled
    QStringList inputs;   ///< to input boxes, in turn; null: cancelled
    QList<int> lines;     ///< to lists, in turn

    QList<Shown> shown;   ///< everything that was told or asked
    QStringList offered;  ///< lines of the last list
    std::function<void(const Shown&)> onShown = [](const Shown&) {};
    /// Called right before an answer is taken: the place to make one up.
    std::function<void(const QString& what)> onAsked = [](const QString&) {};

    /// The texts since the last call.
    QStringList takeTexts() {
        QStringList texts;
        for (const Shown& message : std::exchange(shown, {}))
            texts.append(message.text);
        return texts;
    }

    void tell(const Message& message) override { note(message, false, false); }
    bool ask(const Message& question, bool defaultsToNo) override {
        note(question, true, defaultsToNo);
        return take(answers, question.text, false);
    }
    bool offer(const Message& message, const QString&) override {
        note(message, true, true);
        return take(answers, message.text, false);
    }
    QString openFile(const FileRequest& request) override {
        return take(paths, "open " + request.filter, QString());
    }
    QString saveFile(const FileRequest& request) override {
        return take(paths, "save " + request.filter, QString());
    }
    QString pickFolder(const QString& caption, const QString&) override {
        return take(paths, caption, QString());
    }
    QString pickDrive(const Drives&, const QString&) override {
        return take(paths, "drive", QString());
    }
    int pickLine(const QString& caption, const QStringList& choices) override {
        offered = choices;
        return take(lines, caption, -1);
    }
    QString inputText(const QString& prompt, const QString& initial, int limit) override {
        const QString typed = take(inputs, prompt, QString());
        return limit > 0 && typed != initial ? typed.left(limit) : typed;
    }
    bool openDocument(const QString&) override { return true; }
    void beep() override {}

 private:
    void note(const Message& message, bool isQuestion, bool defaultsToNo) {
        shown.append({message.text, message.title, message.icon, isQuestion, defaultsToNo});
        onShown(shown.last());
    }

    template <typename List, typename Value>
    Value take(List& list, const QString& what, Value otherwise) {
        onAsked(what);
        if (list.isEmpty()) {
            ADD_FAILURE() << "nobody answers: " << what.toStdString();
            return otherwise;
        }
        return list.takeFirst();
    }
};

}  // namespace tessaly::test
