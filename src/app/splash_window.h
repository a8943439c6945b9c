#pragma once

#include <QWidget>
#include <functional>
#include <memory>

namespace Ui {
class SplashWindow;
}

namespace tessaly {

/// The window that is shown for two seconds before the main window loads.
class SplashWindow : public QWidget {
    Q_OBJECT

 public:
    /// `loadMain` runs once when the time is up; the splash closes after it.
    explicit SplashWindow(std::function<void()> loadMain);
    ~SplashWindow() override;

 private:
    void Timer1_Timer();

    const std::unique_ptr<Ui::SplashWindow> ui_;
    const std::function<void()> loadMain_;
};

}  // namespace tessaly
