#include <QApplication>
#include <QStandardPaths>
#include <cstdio>
#include <memory>

#include "app/main_window.h"
#include "app/qt_prompts.h"
#include "app/splash_window.h"
#include "app/start_arguments.h"
#include "platform/command_line.h"
#include "platform/local_file_system.h"
#include "platform/write_signals.h"

using namespace tessaly;

namespace {

constexpr int Usage = 2;

int refuse(const QString& problem) {
    std::fprintf(stderr, "tessaly: %s\n", qPrintable(problem));
#ifdef Q_OS_WIN
    QtPrompts().tell({.text = problem, .icon = Message::Icon::Critical});  // there is no console
#endif
    return Usage;
}

}  // namespace

int main(int argc, char** argv) {
    turnWriteSignalsIntoErrors();
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    QApplication::setApplicationVersion(TESSALY_VERSION);
    const StartArguments start = startArguments(commandLineArguments(argc, argv));
    if (!start.problem.isEmpty())
        return refuse(start.problem);
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
        if (!start.projectFile.isEmpty())
            window->openAtStart(start.projectFile);
    };
    SplashWindow splash(loadMain, showMain);
    splash.show();
    return QApplication::exec();
}
