#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace tessaly {

constexpr int SplashMilliseconds = 2000;

/// The program from its splash to its end, with the machine's own services. Needs a QApplication.
/// `projectFile` is opened once the window is shown; empty: none. Returns the exit code.
/// A benchmark shortens the splash and learns in `shown` that the main window was told to show.
int runProgram(const QString& projectFile, int splashMilliseconds = SplashMilliseconds,
               const std::function<void(QWidget&)>& shown = {});

}  // namespace tessaly
