// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>

#include "support/window_bench.h"

namespace tessaly::monkey {

/// What the window shows in front and should not, one sentence each; empty when all is well.
/// Compares lists, fields, choices and caption with the project.
QStringList wrongInWindow(const test::WindowBench& bench, bool isRunning);

/// Whether the status bar says what a new count of the project comes to.
QStringList wrongInStatusBar(const test::WindowBench& bench);

}  // namespace tessaly::monkey
