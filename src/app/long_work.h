// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

#include "app/prompts.h"
#include "editor/imported_list.h"

class QWidget;

namespace tessaly {

/// Something that is done with many files and asks whether to go on. Returns what is to be shown of
/// it once it is done.
using LongWork = std::function<std::function<void()>(const KeepGoing&)>;

/// Does long work behind a dialog that appears above `window` when it takes a while, with its
/// progress and Cancel. What the work returned is called when that dialog is gone. What either
/// throws is told.
void runBehindProgress(QWidget* window, Prompts& prompts, const QString& title, const QString& what,
                       const LongWork& work);

}  // namespace tessaly
