// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>

namespace tessaly {

/// What the window is to start with.
struct StartArguments {
    QString projectFile;  ///< absolute; empty: none
    QString problem;      ///< a sentence that says why the program cannot start like this, or empty
};

/// A double-clicked project file comes as the only argument; nothing else is understood. An
/// argument that begins with a hyphen is taken for an option. Whether the file can be read is not
/// asked here.
StartArguments startArguments(const QStringList& arguments);

constexpr int SplashMilliseconds = 2000;

/// The window that is shown for `milliseconds`, two seconds, before the main window loads.
class SplashWindow : public QWidget {
    Q_OBJECT

 public:
    /// When the time is up, `loadMain` runs, the splash closes, and `showMain` runs if the main
    /// window is to be shown, as `loadMain` tells.
    SplashWindow(std::function<bool()> loadMain, std::function<void()> showMain,
                 int milliseconds = SplashMilliseconds);

 private:
    void Timer1_Timer();

    const std::function<bool()> loadMain_;
    const std::function<void()> showMain_;
};

/// The program from its splash to its end, with the machine's own services. Needs a QApplication.
/// `projectFile` is opened once the window is shown; empty: none. Returns the exit code.
/// A benchmark shortens the splash and learns in `shown` that the main window was told to show.
int runProgram(const QString& projectFile, int splashMilliseconds = SplashMilliseconds,
               const std::function<void(QWidget&)>& shown = {});

}  // namespace tessaly
