#include "app/program.h"

#include <QApplication>
#include <memory>

#include "app/main_window.h"
#include "app/qt_prompts.h"
#include "app/splash_window.h"
#include "platform/local_file_system.h"
#include "platform/system_folders.h"

namespace tessaly {

int runProgram(const QString& projectFile, int splashMilliseconds,
               const std::function<void(QWidget&)>& shown) {
    LocalFileSystem files;
    LocalDrives drives;
    QtPrompts prompts;
    LocalMp3Tags tags;
    LocalSingleInstance instance(userFolder());
    const Services services{
        files, drives, prompts, tags, instance, QApplication::applicationDirPath(), userFolder()};
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
    return QApplication::exec();
}

}  // namespace tessaly
