// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/program.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QTimer>
#include <QVBoxLayout>
#include <memory>

#include "app/main_window.h"
#include "app/qt_prompts.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

namespace tessaly {

using namespace Qt::StringLiterals;

StartArguments startArguments(const QStringList& arguments) {
    const QString usage =
        u" Tessaly takes one project file (.crd2) and nothing else; tessaly-cli has the commands."_s;
    for (const QString& argument : arguments)
        if (argument.startsWith(u'-'))
            return {{}, u"There is no option "_s + argument + u"."_s + usage};
    if (arguments.size() > 1)
        return {{},
                u"There are %1 files, but only one can be opened."_s.arg(arguments.size()) + usage};
    const QString file = arguments.value(0);
    return {file.isEmpty() ? QString() : absolutePath(file), {}};
}

SplashWindow::SplashWindow(std::function<bool()> loadMain, std::function<void()> showMain,
                           int milliseconds)
    : QWidget(nullptr, Qt::SplashScreen),
      loadMain_(std::move(loadMain)),
      showMain_(std::move(showMain)) {
    setObjectName(u"frmSplash"_s);
    setWindowTitle(u"TRL740 Card Preparation"_s);
    setMinimumSize(420, 230);
    auto* layout = new QVBoxLayout(this);
    const auto addLine = [layout](const QString& name, const QString& text, int points = 0) {
        auto* label = new QLabel(text);
        label->setObjectName(name);
        label->setAlignment(Qt::AlignCenter);
        QFont font = label->font();
        if (points > 0)
            font.setPointSize(points);
        font.setBold(points > 20);
        label->setFont(font);
        layout->addWidget(label);
    };
    const auto addSpace = [layout] {
        layout->addItem(new QSpacerItem(20, 20, QSizePolicy::Minimum, QSizePolicy::Expanding));
    };
    addSpace();
    addLine(u"lblProductName"_s, u"TRL740"_s, 34);
    addLine(u"lblVersion"_s, u"Card Preparation Tool"_s, 16);
    addSpace();
    addLine(u"lblVersionNumber"_s, u"Version "_s TESSALY_VERSION);
    addLine(u"lblMaker1"_s, u"Prepares memory cards for stand-alone audio players"_s);
    addLine(u"lblMaker2"_s, u"Free software under the GNU General Public License 3"_s);
    layout->addSpacing(8);
    adjustSize();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
    auto* timer = new QTimer(this);
    timer->setObjectName(u"Timer1"_s);
    timer->setSingleShot(true);
    timer->setInterval(milliseconds);
    connect(timer, &QTimer::timeout, this, &SplashWindow::Timer1_Timer);
    timer->start();
}

void SplashWindow::Timer1_Timer() {
    const bool isLoaded = loadMain_();
    close();
    if (isLoaded)
        showMain_();
}

int runProgram(const QString& projectFile, int splashMilliseconds,
               const std::function<void(QWidget&)>& shown) {
    LocalFileSystem files;
    LocalDrives drives;
    QtPrompts prompts;
    LocalMp3Tags tags;
    LocalSingleInstance instance(userFolder());
    SoundBook sounds(soundBookFile());
    const Services services{
        files,       drives, prompts, tags, instance, sounds, QApplication::applicationDirPath(),
        userFolder()};
    Project project;
    ProjectSession session(project, files);
    std::unique_ptr<MainWindow> window;

    const auto loadMain = [&] {
        window = std::make_unique<MainWindow>(session, services);
        return window->startUp();
    };
    const auto showMain = [&] {
        window->show();
        if (shown)
            shown(*window);
        window->offerRecovery();
        if (!projectFile.isEmpty())
            window->openAtStart(projectFile);
    };
    SplashWindow splash(loadMain, showMain, splashMilliseconds);
    splash.show();
    const int exitCode = QApplication::exec();
    sounds.save();
    return exitCode;
}

}  // namespace tessaly
