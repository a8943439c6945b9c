// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/long_work.h"

#include <QProgressDialog>

#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

void runBehindProgress(QWidget* window, Prompts& prompts, const QString& title, const QString& what,
                       const LongWork& work) {
    QProgressDialog progress(what, u"Cancel"_s, 0, 0, window);
    progress.setWindowTitle(title);
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(50);  // an operator who waits longer wonders
    const KeepGoing keepGoing = [&](int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);  // pumps events while the dialog is shown
        return !progress.wasCanceled();
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
