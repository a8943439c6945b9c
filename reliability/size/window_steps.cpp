#include "window_steps.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QDir>
#include <QLineEdit>
#include <QListView>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <stdexcept>

#include "app/main_window.h"
#include "bench_prompts.h"
#include "full_size_files.h"
#include "model/format_limits.h"
#include "platform/local_file_system.h"
#include "platform/paths.h"
#include "step_table.h"

namespace tessaly::size {

namespace {

// Takes a folder for the removable drive of a card.
class CardFolderDrives : public LocalDrives {
 public:
    DriveType type(const QString&) const override { return DriveType::Removable; }
    qint64 totalBytes(const QString&) const override { return qint64(1) << 35; }
};

void require(bool condition, const QString& what) {
    if (!condition)
        throw std::runtime_error(what.toStdString());
}

// The window and its operator, whose mouse and keys are real events.
class Operator {
 public:
    explicit Operator(const QString& folder)
        : folder_(folder), services_{files_,          drives_,   prompts_,
                                     tags_,           instance_, QApplication::applicationDirPath(),
                                     folder + "/user"} {
        QDir().mkpath(folder + "/user");
        QDir().mkpath(folder + "/window-card");
        prompts_.drive = folder + "/window-card";
        window_ = std::make_unique<MainWindow>(session_, services_);
        require(window_->startUp(), "the window does not start");
        window_->show();
        table_ = std::make_unique<StepTable>(*window_);
    }

    void largestCard();
    void longLists();
    void imports();

 private:
    template <typename Widget>
    Widget* find(const char* name) const {
        auto* widget = window_->findChild<Widget*>(name);
        require(widget, QString("there is no ") + name);
        return widget;
    }
    QListView* list(const char* name) const { return find<QListView>(name); }
    int lines(const char* name) const { return list(name)->model()->rowCount(); }
    void click(const char* button) const {
        auto* widget = find<QAbstractButton>(button);
        require(widget->isVisible() && widget->isEnabled(), QString("cannot click ") + button);
        QTest::mouseClick(widget, Qt::LeftButton, {}, clickable(widget));
    }
    static QPoint clickable(const QWidget* widget) { return {10, widget->height() / 2}; }
    void choose(const char* menuItem) const { find<QAction>(menuItem)->trigger(); }
    void press(const char* widget, Qt::Key key) const {
        QTest::keyClick(find<QWidget>(widget), key);
    }
    void type(const char* field, const QString& text) const {
        find<QLineEdit>(field)->clear();
        QTest::keyClicks(find<QWidget>(field), text);
    }
    void clickRow(const char* name, int row) const {
        QListView* widget = list(name);
        const QModelIndex line = widget->model()->index(row, 0);
        QTest::mouseClick(widget->viewport(), Qt::LeftButton, {},
                          widget->visualRect(line).center());
        require(widget->currentIndex() == line,
                QString("cannot click line %1 of ").arg(row) + name);
    }
    void bringIntoView(const char* name, int row) const {
        list(name)->scrollTo(list(name)->model()->index(row, 0));
    }
    // What is not timed: a row selected as a click does it.
    void select(const char* name, int row) const {
        bringIntoView(name, row);
        QCoreApplication::processEvents();
        clickRow(name, row);
    }
    void showPage(int page) const { find<QTabWidget>("Tabs")->setCurrentIndex(page); }
    void open(const char* file) {
        prompts_.path = folder_ + '/' + file;
        choose("mnuFileOpen");
        require(session_.fileName() == prompts_.path, QString("cannot open ") + file);
    }

    // Steps of several projects. `what` is put in front of their names.
    void pages(const std::string& what);
    void openAndSave(const std::string& what, const char* file);
    void clicksInList(const std::string& what, const char* name);
    void musicPage(const std::string& what, int musicList);
    void speechPage(const std::string& what);
    void triggersPage(const std::string& what, int musicList);
    void setupPage(const std::string& what);
    void createCard();

    enum Page { Speech, Music, Triggers, Setup, Create, Pages };

    const QString folder_;
    LocalFileSystem files_;
    const CardFolderDrives drives_;
    BenchPrompts prompts_;
    LocalMp3Tags tags_;
    OnlyInstance instance_;
    const Services services_;
    Project project_;
    ProjectSession session_{project_, files_};
    std::unique_ptr<MainWindow> window_;
    std::unique_ptr<StepTable> table_;
};

void Operator::pages(const std::string& what) {
    const char* names[] = {"Speech Files", "Music Files", "Triggers & Attributes", "Setup Items",
                           "Create Card"};
    for (int page = 0; page < Pages; ++page)
        table_->time(
            what + "go to " + names[page], [&] { showPage(page); },
            [&] { showPage((page + 1) % Pages); });
}

void Operator::openAndSave(const std::string& what, const char* file) {
    for (const int page : {int(Speech), int(Music), int(Triggers), int(Create)})
        table_->time(
            what + "open the project, page " + std::to_string(page + 1), [&] { open(file); },
            [&] { showPage(page); }, 3);
    prompts_.path = folder_ + "/saved.crd2";
    table_->time(what + "save", [&] { choose("mnuFileSaveAs"); });
    auto* timer = find<QTimer>("tmrRecovery");
    table_->time(
        what + "the recovery copy of every minute",
        [&] { QMetaObject::invokeMethod(timer, "timeout", Qt::DirectConnection); },
        [&] { project_.txtCardTitle2 = project_.txtCardTitle2 == "a" ? "b" : "a"; });
}

// First, middle and last line with the mouse, then along with the keys.
void Operator::clicksInList(const std::string& what, const char* name) {
    const int last = lines(name) - 1;
    for (const auto& [where, row] :
         {std::pair("first", 0), std::pair("middle", last / 2), std::pair("last", last)})
        table_->time(
            what + "click the " + where + " line of " + name,
            [&, line = row] { clickRow(name, line); },
            [&, line = row] {
                list(name)->clearSelection();
                list(name)->setCurrentIndex({});
                bringIntoView(name, line);
            });
    select(name, last / 2);
    table_->time(what + "arrow key in " + name, [&] { press(name, Qt::Key_Down); });
    table_->time(
        what + "Home in " + name, [&] { press(name, Qt::Key_Home); }, [&] { select(name, last); });
    table_->time(
        what + "End in " + name, [&] { press(name, Qt::Key_End); }, [&] { select(name, 0); });
}

void Operator::musicPage(const std::string& what, int musicList) {
    showPage(Music);
    if (lines("lstMuList") > 1)
        clicksInList(what, "lstMuList");
    select("lstMuList", musicList);
    clicksInList(what, "lstMuTrack");
    const auto lastTrack = [&] { return lines("lstMuTrack") - 1; };
    const auto middle = [&] { select("lstMuTrack", lastTrack() / 2); };
    table_->time(what + "type the name of a track", [&] { press("txtNewMuTrack", Qt::Key_X); });
    table_->time(
        what + "add a track", [&] { click("buttAddMuTrack"); },
        [&] { type("txtNewMuTrack", "Track 007"); });
    prompts_.path = folder_ + "/sources/00007.mp3";
    table_->time(
        what + "choose its file", [&] { click("buttAddMuFile"); },
        [&] { select("lstMuTrack", lastTrack()); });
    int renamed = 0;
    const auto newName = [&] { prompts_.text = QString("Renamed %1").arg(++renamed); };
    table_->time(
        what + "rename a track", [&] { click("buttEditMuTrack"); },
        [&] {
            middle();
            newName();
        });
    table_->time(
        what + "move a track down", [&] { click("imgMuTrackDn"); }, middle);
    table_->time(
        what + "move the last track up", [&] { click("imgMuTrackUp"); },
        [&] { select("lstMuTrack", lastTrack()); });
    table_->time(
        what + "delete a track", [&] { click("buttDelMuTrack"); }, middle);
    table_->time(
        what + "rename the list", [&] { click("buttEditMuList"); },
        [&] {
            select("lstMuList", musicList);
            newName();
        });
    table_->time(
        what + "type the name of a list", [&] { press("txtNewMuList", Qt::Key_X); },
        [&] { select("lstMuList", musicList); });
    table_->time(
        what + "add a list", [&] { click("buttAddMuList"); },
        [&] { type("txtNewMuList", "One more"); });
    table_->time(
        what + "move a list up", [&] { click("imgMuListUp"); },
        [&] { select("lstMuList", lines("lstMuList") - 1); });
    table_->time(
        what + "delete an empty list", [&] { click("buttDelMuList"); },
        [&] { select("lstMuList", lines("lstMuList") - 1); });
    select("lstMuList", musicList);
}

void Operator::speechPage(const std::string& what) {
    showPage(Speech);
    clicksInList(what, "lstSpTitles");
    clicksInList(what, "lstLangs");
    const auto pair = [&] {
        select("lstLangs", 3);
        select("lstSpTitles", lines("lstSpTitles") / 2);
    };
    prompts_.path = folder_ + "/sources/00009.mp3";
    table_->time(
        what + "choose the file of a pair", [&] { click("buttAddSpFile"); }, pair);
    table_->time(
        what + "move a title down", [&] { click("imgSpDn"); }, pair);
    table_->time(
        what + "move a language down", [&] { click("imgLangsDn"); },
        [&] { select("lstLangs", 5); });
    int renamed = 0;
    const auto newName = [&] { prompts_.text = QString("New %1").arg(++renamed); };
    table_->time(
        what + "rename a title in all languages", [&] { click("buttEditSpTitle"); },
        [&] {
            pair();
            newName();
        });
    table_->time(
        what + "rename a language of all titles", [&] { click("buttEditLang"); },
        [&] {
            select("lstLangs", 7);
            newName();
        });
    table_->time(
        what + "type the name of a title", [&] { press("txtNewSpTitle", Qt::Key_X); },
        [&] { find<QLineEdit>("txtNewSpTitle")->clear(); });
    table_->time(
        what + "add a title", [&] { click("buttAddSpTitle"); },
        [&] { type("txtNewSpTitle", "One more"); });
    table_->time(
        what + "delete an empty title", [&] { click("buttDelSpTitle"); },
        [&] { select("lstSpTitles", lines("lstSpTitles") - 1); });
}

void Operator::triggersPage(const std::string& what, int musicList) {
    showPage(Triggers);
    if (!project_.lstSpTitles.isEmpty()) {
        table_->time(
            what + "triggers: show the titles", [&] { click("buttTrigSpeech"); },
            [&] { click("buttTrigMusic"); });
        clicksInList(what + "triggers: titles: ", "lstTrigLeft");
        select("lstTrigLeft", std::min(509, lines("lstTrigLeft") - 1));
        table_->time(
            what + "triggers: title loud", [&] { click("buttPlayLoudVolume"); },
            [&] { click("buttPlayNormVolume"); });
    }
    click("buttTrigMusic");
    table_->time(
        what + "triggers: show the lists", [&] { click("buttTrigMusic"); },
        [&] { click("buttTrigSpeech"); });
    table_->time(
        what + "triggers: select the list", [&] { clickRow("lstTrigLeft", musicList + 1); },
        [&] {
            select("lstTrigLeft", 0);
            bringIntoView("lstTrigLeft", musicList + 1);
        });
    clicksInList(what + "triggers: tracks: ", "lstTrigRight");
    select("lstTrigRight", std::min(510, lines("lstTrigRight") - 1));
    table_->time(
        what + "triggers: track loud", [&] { click("buttPlayLoudVolume"); },
        [&] { click("buttPlayNormVolume"); });
    table_->time(
        what + "triggers: track cancels", [&] { click("buttCancelOnInt"); },
        [&] { click("buttResumeOnInt"); });
    table_->time(what + "triggers: endless loop", [&] { click("chkEndlessLoop"); });
    table_->time(what + "triggers: power-up item", [&] { click("chkPowerUp"); });
    table_->time(what + "triggers: assign and clear", [&] { click("buttTrig_1"); });
    table_->time(
        what + "triggers: view another", [&] { click("buttViewTrig_1"); },
        [&] { click("buttTrigMusic"); });
    click("buttTrigMusic");
}

void Operator::setupPage(const std::string& what) {
    showPage(Setup);
    find<QLineEdit>("txtCardTitle1")->clear();
    table_->time(what + "type in the card title", [&] { press("txtCardTitle1", Qt::Key_X); });
    table_->time(what + "choose a default language", [&] {
        QTest::mouseClick(list("lstDefaultLangs")->viewport(), Qt::LeftButton, {}, {8, 8});
    });
    table_->time(
        what + "choose the chime", [&] { click("buttPlayIntChime"); },
        [&] { click("buttPlayExtChime"); });
    click("buttDisableChime");
}

// With a trigger and the power-up item on the last lines that they can name.
void Operator::createCard() {
    showPage(Triggers);
    click("buttTrigSpeech");
    select("lstTrigLeft", limits::ReferenceTitle - 1);
    click("buttTrig_0");
    click("buttTrigMusic");
    select("lstTrigLeft", limits::ReferenceList);
    select("lstTrigRight", limits::ReferenceTrack);
    click("chkPowerUp");
    showPage(Create);
    click("buttSelectCF");
    table_->time("largest card: check again", [&] { click("buttCFCheckAgain"); });
    prompts_.told.clear();
    table_->timeSilence("largest card: create it", [&] { click("buttCreateCard"); });
    require(prompts_.told == QStringList("Card successfully created!"), prompts_.told.join('\n'));
    prompts_.told.clear();
    table_->timeSilence("largest card: settings only", [&] { click("buttCreateXD3"); });
    require(prompts_.told == QStringList("Card successfully created!"), prompts_.told.join('\n'));
}

void Operator::largestCard() {
    const std::string what = "largest card: ";
    open("tour.crd2");
    pages(what);
    speechPage(what);
    musicPage(what, 125);
    triggersPage(what, 125);
    setupPage(what);
    openAndSave(what, "tour.crd2");
    createCard();
}

void Operator::longLists() {
    const std::string what = "list of 5,000: ";
    open("long.crd2");
    pages(what);
    musicPage(what, 0);
    triggersPage(what, 0);
    openAndSave(what, "long.crd2");
    showPage(Music);
    table_->time(
        what + "delete it", [&] { click("buttDelMuList"); },
        [&] {
            open("long.crd2");
            select("lstMuList", 0);
        },
        3);
}

void Operator::imports() {
    const std::string what = "list of 9,995: ";
    choose("mnuFileNew");
    showPage(Music);
    prompts_.path = folder_ + "/all.m3u";
    table_->timeSilence(what + "import of the playlist", [&] { click("buttAddMuItunesPlaylist"); });
    require(lines("lstMuTrack") == TrackFiles, "the playlist was not imported");
    choose("mnuFileNew");
    prompts_.path = folder_ + "/sources";
    table_->timeSilence(what + "import of the folder", [&] { click("buttAddMuListDir"); });
    require(lines("lstMuTrack") == TrackFiles, "the folder was not imported");
    pages(what);
    musicPage(what, 0);
    triggersPage(what, 0);
    prompts_.path = folder_ + "/nine.crd2";
    choose("mnuFileSaveAs");
    openAndSave(what, "nine.crd2");
    table_->time(
        what + "New", [&] { choose("mnuFileNew"); }, [&] { open("nine.crd2"); }, 3);
    table_->time(
        what + "Recover", [&] { choose("mnuFileRecover"); },
        [&] {
            open("nine.crd2");
            project_.txtCardTitle2 += "c";
        });
}

}  // namespace

void workInWindow(const QString& folder) {
    Operator person(folder);
    person.largestCard();
    person.longLists();
    person.imports();
}

}  // namespace tessaly::size
