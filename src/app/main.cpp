#include <QApplication>
#include <QStandardPaths>
#include <memory>

#include "app/main_window.h"
#include "app/qt_prompts.h"
#include "app/splash_window.h"
#include "platform/local_file_system.h"
#include "platform/write_signals.h"

int main(int argc, char** argv) {
    using namespace tessaly;
    turnWriteSignalsIntoErrors();
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    QApplication::setApplicationVersion(TESSALY_VERSION);
    const QString userFolder =
        QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);

    LocalFileSystem files;
    LocalDrives drives;
    QtPrompts prompts;
    LocalMp3Tags tags;
    LocalSingleInstance instance(userFolder);
    const Services services{
        files, drives, prompts, tags, instance, QApplication::applicationDirPath(), userFolder};
    Project project;
    ProjectSession session(project, files);
    std::unique_ptr<MainWindow> window;

    const auto loadMain = [&] {
        window = std::make_unique<MainWindow>(session, services);
        return window->startUp();
    };
    const auto showMain = [&] {
        window->show();
        window->offerRecovery();
    };
    SplashWindow splash(loadMain, showMain);
    splash.show();
    return QApplication::exec();
}
