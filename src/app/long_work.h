// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QProgressDialog>
#include <QString>
#include <functional>

#include "app/prompts.h"
#include "editor/imported_list.h"

class QWidget;

namespace tessaly {

/// A dialog with progress and Cancel above a window, for work that shows it often. It appears when
/// that takes a while; from then on the window lives, but takes no clicks.
class ProgressBox {
 public:
    ProgressBox(QWidget* window, const QString& title);

    /// Shows how far it is, 0 to 1; below 0 when that cannot be told. Cheap when it comes too
    /// often. Returns false once the operator has cancelled.
    bool show(const QString& words, double share = -1);

    /// What follows has to be done.
    void endCancelling();

    /// Milliseconds since the work began.
    qint64 elapsed() const { return sinceStart_.elapsed(); }

 private:
    QProgressDialog dialog_;
    QElapsedTimer sinceStart_, sinceLook_;
};

/// Does some work on a thread of its own, and asks `meanwhile` by the caller's thread, thirty times
/// a second, until it is done. Throws what the work threw.
void runOnThread(const std::function<void()>& work, const std::function<void()>& meanwhile);

/// Something that is done with many files and asks whether to go on. Returns what is to be shown of
/// it once it is done.
using LongWork = std::function<std::function<void()>(const KeepGoing&)>;

/// Does long work behind a ProgressBox above `window`. What the work returned is called when that
/// is gone. What either throws is told.
void runBehindProgress(QWidget* window, Prompts& prompts, const QString& title, const QString& what,
                       const LongWork& work);

}  // namespace tessaly
