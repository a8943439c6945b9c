#pragma once

#include <QWidget>
#include <functional>
#include <memory>

#include "app/program.h"

namespace Ui {
class SplashWindow;
}

namespace tessaly {

/// The window that is shown for `milliseconds`, two seconds, before the main window loads.
class SplashWindow : public QWidget {
    Q_OBJECT

 public:
    /// When the time is up, `loadMain` runs, the splash closes, and `showMain` runs if the main
    /// window is to be shown, as `loadMain` tells.
    SplashWindow(std::function<bool()> loadMain, std::function<void()> showMain,
                 int milliseconds = SplashMilliseconds);
    ~SplashWindow() override;

 private:
    void Timer1_Timer();

    const std::unique_ptr<Ui::SplashWindow> ui_;
    const std::function<bool()> loadMain_;
    const std::function<void()> showMain_;
};

}  // namespace tessaly
