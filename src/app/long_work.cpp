// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/long_work.h"

#include <QCoreApplication>
#include <QThread>
#include <algorithm>
#include <exception>
#include <memory>
#include <optional>

#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

ProgressBox::ProgressBox(QWidget* window, const QString& title)
    : dialog_({}, u"Cancel"_s, 0, 0, window) {
    dialog_.setWindowTitle(title);
    dialog_.setWindowModality(Qt::ApplicationModal);
    dialog_.setAutoClose(false);
    dialog_.setAutoReset(false);
    // As wide as it will be: its text grows and shrinks.
    dialog_.setMinimumWidth(dialog_.fontMetrics().averageCharWidth() * 60);
    sinceStart_.start();
}

bool ProgressBox::show(const QString& words, double share) {
    constexpr int AppearsAfterMs = 50;  // an operator who waits longer wonders
    constexpr int LooksEveryMs = 20, Steps = 1000;
    const bool isDue = !sinceLook_.isValid() || sinceLook_.elapsed() >= LooksEveryMs;
    if (!isDue || (sinceStart_.elapsed() < AppearsAfterMs && !dialog_.isVisible()))
        return !dialog_.wasCanceled();
    sinceLook_.start();
    dialog_.setLabelText(words);
    dialog_.setMaximum(share < 0 ? 0 : Steps);
    dialog_.setValue(share < 0 ? 0 : int(share * Steps));
    dialog_.show();
    QCoreApplication::processEvents();
    return !dialog_.wasCanceled();
}

void ProgressBox::endCancelling() {
    dialog_.setCancelButton(nullptr);
}

void runOnThread(const std::function<void()>& work, const std::function<void()>& meanwhile) {
    constexpr int AsksEveryMs = 30;
    std::exception_ptr thrown;
    const std::unique_ptr<QThread> thread(QThread::create([&] {
        try {
            work();
        } catch (...) {
            thrown = std::current_exception();
        }
    }));
    thread->start();
    while (!thread->wait(AsksEveryMs))
        meanwhile();
    if (thrown)
        std::rethrow_exception(thrown);
}

void runBehindProgress(QWidget* window, Prompts& prompts, const QString& title, const QString& what,
                       const LongWork& work) {
    std::optional<ProgressBox> progress(std::in_place, window, title);
    const KeepGoing keepGoing = [&](int done, int total) {
        return progress->show(what, total > 0 ? double(done) / total : -1);
    };
    try {
        const std::function<void()> show = work(keepGoing);
        progress.reset();
        show();
    } catch (const TessalyError& error) {
        progress.reset();
        prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
}

}  // namespace tessaly
