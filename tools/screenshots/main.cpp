// Takes the pictures of the documents: every page and window of the real program with the sample
// tour. Arguments: the samples' folder, the support folders' parent, the folder for the pictures.
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <cstdio>

#include "app/about_window.h"
#include "app/list_section.h"
#include "app/main_window.h"
#include "app/program.h"
#include "app/qt_prompts.h"
#include "editor/tour_import.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"

using namespace tessaly;

namespace {

// The drives of a desk on which a card lies.
class DeskDrives : public Drives {
 public:
    explicit DeskDrives(QString card) : card_(std::move(card)) {}
    DriveType type(const QString&) const override { return DriveType::Removable; }
    qint64 totalBytes(const QString&) const override { return 512000000; }
    QList<Volume> volumes() const override {
        return {{"/", "System", DriveType::Fixed, 512110190592, 301234567890},
                {"/media/ann/TOUR/", "TOUR", DriveType::Removable, 512000000, 498000000},
                {"/media/ann/Backup/", "Backup", DriveType::Fixed, 2000398934016, 1204567890123},
                {"/mnt/music/", "music", DriveType::Network, -1, -1}};
    }
    VolumeGeometry geometry(const QString&) const override {
        return {.clusterBytes = 8192, .totalBytes = 512000000, .freeBytes = 512000000};
    }
    QString medium(const QString&) const override { return "the card"; }
    QStringList mountsInside(const QString&) const override { return {}; }

 private:
    QString card_;
};

// Opens one file without asking and says nothing.
class SilentPrompts : public QtPrompts {
 public:
    QString project;
    void tell(const Message&) override {}
    bool ask(const Message&, bool) override { return true; }
    QString openFile(const FileRequest&) override { return project; }
};

class OnlyInstance : public SingleInstance {
 public:
    bool isOnlyOne() override { return true; }
};

void settle() {
    QTest::qWait(100);
}

void shoot(QWidget& widget, const QString& folder, const QString& name) {
    settle();
    if (!widget.grab().save(pathIn(folder, name + ".png")))
        std::fprintf(stderr, "%s was not written\n", qPrintable(name));
}

// Shows the files as if they lay in a folder of the person at the desk.
void hideOwnFolder(QWidget& window, const QString& samples) {
    const QString own = QFileInfo(samples).absoluteFilePath();
    for (auto* edit : window.findChildren<QLineEdit*>()) {
        const QSignalBlocker noEdit(edit);
        edit->setText(edit->text().replace(own + "/tour", "/home/ann/Harbour Tour"));
    }
}

Project sampleProject(const FileSystem& files, const QString& samples, const QString& card) {
    Project project;
    importFolder(files, LocalMp3Tags(), pathIn(samples, "tour"), false, project);
    project.txtCardTitle1 = "  Harbour Tour  ";
    project.txtCardTitle2 = "  Willkommen!   ";
    project.cfDrive = withLastSeparator(card);
    TrackRecord& trigger = project.TriggerTable[1];
    trigger.sourcePath = "speech";
    trigger.itemName = "Welcome";
    project.PowerUpRecord.kind = "music";
    project.PowerUpRecord.groupName = "Harbour Morning";
    project.PowerUpRecord.itemName = "<Play Full List>";
    return project;
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Tessaly");
    if (argc != 4) {
        std::fprintf(stderr, "usage: tessaly-screenshots SAMPLES SUPPORT PICTURES\n");
        return 2;
    }
    const QString samples = argv[1], support = argv[2], pictures = argv[3];
    const QTemporaryDir scratch;
    const QString card = "/media/ann/TOUR/";
    LocalFileSystem files;
    const DeskDrives drives(card);
    SilentPrompts prompts;
    LocalMp3Tags tags;
    OnlyInstance instance;
    const Services services{
        files, drives, prompts, tags, instance, support, scratch.filePath("user")};
    prompts.project = scratch.filePath("harbour.crd2");
    Project sample = sampleProject(files, samples, card);
    saveProject(files, prompts.project, sample);

    Project project;
    ProjectSession session(project, files);
    SplashWindow splash([] { return false; }, [] {});
    splash.show();
    shoot(splash, pictures, "splash");
    splash.close();

    MainWindow window(session, services);
    window.startUp();
    window.resize(940, 640);
    window.show();
    window.findChild<QAction*>("mnuFileOpen")->trigger();
    auto* tabs = window.findChild<QTabWidget*>("Tabs");
    const auto select = [&](const char* list, int row) {
        auto* lines = window.findChild<LineList*>(list);
        lines->setCurrentIndex(lines->model()->index(row, 0));
    };
    select("lstSpTitles", 0);
    select("lstLangs", 2);
    select("lstMuTrack", 1);
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        if (i == 2) {
            select("lstTrigLeft", 2);
            select("lstTrigRight", 3);
        }
        QString name = tabs->tabText(i).toLower();
        name = name.remove("&").simplified().replace(' ', '-');
        settle();
        hideOwnFolder(window, samples);
        shoot(window, pictures, name);
    }
    window.findChild<QAbstractButton*>("buttAdvancedSettings")->click();
    auto* systemTexts = window.findChild<QWidget*>("frmSystemText");
    shoot(*systemTexts, pictures, "system-text");
    systemTexts->hide();
    AboutWindow about("0000", supportFoldersIn("/usr/share/tessaly").makersFiles(), prompts,
                      &window);
    about.show();
    shoot(about, pictures, "about");
    about.close();
    DriveDialog dialog(drives, {}, &window);
    dialog.show();
    shoot(dialog, pictures, "drive-dialog");
    return 0;
}
