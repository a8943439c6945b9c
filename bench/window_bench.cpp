// SPDX-License-Identifier: GPL-3.0-or-later
// How long the window makes its operator wait, with a small and with a full project whose files are
// all there.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTabWidget>
#include <QTemporaryDir>

#include "app/main_window.h"
#include "model/card_file.h"
#include "platform/local_file_system.h"
#include "promises.h"
#include "sample_project.h"
#include "support/ready_prompts.h"

using namespace tessaly;

namespace {

constexpr int Rounds = 7;

class OnlyInstance : public SingleInstance {
 public:
    bool isOnlyOne() override { return true; }
};

// A project whose small files are all there, saved in `folder`.
QString savedProject(LocalFileSystem& files, const QTemporaryDir& folder, int tracks) {
    Project project = musicProject(tracks, folder.path());
    for (const TrackRecord& record : project.TrackTable) {
        QFile file(record.sourcePath.text());
        if (isMusic(record) && file.open(QIODevice::WriteOnly))
            file.write("x");
    }
    const QString path = folder.filePath(QString("p%1.crd2").arg(tracks));
    saveProject(files, path, project);
    return path;
}

template <typename Action>
double milliseconds(Action action) {
    QElapsedTimer timer;
    timer.start();
    action();
    QCoreApplication::processEvents();
    return double(timer.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_LOGGING_RULES", "default.warning=false");  // the offscreen platform is talkative
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QTemporaryDir folder;
    LocalFileSystem files;
    const LocalDrives drives;
    test::ReadyPrompts prompts;
    LocalMp3Tags tags;
    OnlyInstance instance;
    SoundBook sounds;
    const Services services{files,
                            drives,
                            prompts,
                            tags,
                            instance,
                            sounds,
                            QApplication::applicationDirPath(),
                            folder.filePath("user")};
    Promises promises;
    std::printf("\nLeast, median and most of %d, in milliseconds:\n", Rounds);
    for (const int tracks : {1000, 9995}) {
        prompts.path = savedProject(files, folder, tracks);
        std::vector<double> opening, switching, first;
        for (int round = 0; round < Rounds; ++round) {
            Project project;
            ProjectSession session(project, files);
            MainWindow window(session, services);
            window.startUp();
            first.push_back(milliseconds([&] { window.show(); }));
            auto* tabs = window.findChild<QTabWidget*>("Tabs");
            tabs->setCurrentIndex(0);
            auto* open = window.findChild<QAction*>("mnuFileOpen");
            opening.push_back(milliseconds([&] { open->trigger(); }));
            switching.push_back(milliseconds([&] { tabs->setCurrentIndex(tabs->count() - 1); }));
        }
        const std::string size = std::to_string(tracks) + " tracks: ";
        promises.check(size + "open a project", opening, 300, "ms");
        promises.check(size + "switch to Create Card", switching, 50, "ms");
    }
    return promises.exitCode();
}
