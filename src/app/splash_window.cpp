#include "app/splash_window.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTimer>

#include "ui_splash_window.h"

namespace tessaly {

SplashWindow::SplashWindow(std::function<bool()> loadMain, std::function<void()> showMain,
                           int milliseconds)
    : QWidget(nullptr, Qt::SplashScreen),
      ui_(std::make_unique<Ui::SplashWindow>()),
      loadMain_(std::move(loadMain)),
      showMain_(std::move(showMain)) {
    ui_->setupUi(this);
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    auto* timer = new QTimer(this);
    timer->setObjectName("Timer1");
    timer->setSingleShot(true);
    timer->setInterval(milliseconds);
    connect(timer, &QTimer::timeout, this, &SplashWindow::Timer1_Timer);
    timer->start();
}

SplashWindow::~SplashWindow() = default;

void SplashWindow::Timer1_Timer() {
    const bool isLoaded = loadMain_();
    close();
    if (isLoaded)
        showMain_();
}

}  // namespace tessaly
