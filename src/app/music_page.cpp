#include "app/music_page.h"

#include <QFileInfo>
#include <QListWidget>
#include <QProgressDialog>

#include "app/list_view_tools.h"
#include "editor/displays.h"
#include "editor/music_folder_import.h"
#include "editor/playlist_import.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "ui_music_page.h"

namespace tessaly {

MusicPage::MusicPage(Project& project, const Services& services, QWidget* parent)
    : Page(parent), project_(project), services_(services), ui_(std::make_unique<Ui::MusicPage>()) {
    ui_->setupUi(this);
    makeMoveButtons(ui_->imgMuListUp, ui_->imgMuListDn, ui_->lstMuList, "list");
    measureLinesFast(ui_->lstMuTrack);
    makeMoveButtons(ui_->imgMuTrackUp, ui_->imgMuTrackDn, ui_->lstMuTrack, "track");
    const auto clicked = [this](QAbstractButton* button, void (MusicPage::*handler)()) {
        connect(button, &QAbstractButton::clicked, this, handler);
    };
    clicked(ui_->buttAddMuList, &MusicPage::buttAddMuList_Click);
    clicked(ui_->buttEditMuList, &MusicPage::buttEditMuList_Click);
    clicked(ui_->buttDelMuList, &MusicPage::buttDelMuList_Click);
    clicked(ui_->buttAddMuTrack, &MusicPage::buttAddMuTrack_Click);
    clicked(ui_->buttEditMuTrack, &MusicPage::buttEditMuTrack_Click);
    clicked(ui_->buttDelMuTrack, &MusicPage::buttDelMuTrack_Click);
    clicked(ui_->buttAddMuFile, &MusicPage::buttAddMuFile_Click);
    clicked(ui_->buttAddMuItunesPlaylist, &MusicPage::buttAddMuItunesPlaylist_Click);
    clicked(ui_->buttAddMuListDir, &MusicPage::buttAddMuListDir_Click);
    connect(ui_->imgMuListUp, &QToolButton::clicked, this, [this] { moveList(Direction::Up); });
    connect(ui_->imgMuListDn, &QToolButton::clicked, this, [this] { moveList(Direction::Down); });
    connect(ui_->imgMuTrackUp, &QToolButton::clicked, this, [this] { moveTrack(Direction::Up); });
    connect(ui_->imgMuTrackDn, &QToolButton::clicked, this, [this] { moveTrack(Direction::Down); });
    connect(ui_->lstMuList, &QListWidget::itemSelectionChanged, this, [this] {
        if (selectedRow(ui_->lstMuList) >= 0) {
            lstMuList_Click();
            return;
        }
        showListSelection();
    });
    connect(ui_->lstMuTrack, &QListWidget::itemSelectionChanged, this,
            &MusicPage::lstMuTrack_Click);
    connect(ui_->txtNewMuList, &QLineEdit::textChanged, this, &MusicPage::txtNewMuList_Change);
    connect(ui_->txtNewMuTrack, &QLineEdit::textChanged, this, &MusicPage::txtNewMuTrack_Change);
    for (QWidget* button : std::initializer_list<QWidget*>{
             ui_->buttAddMuList, ui_->buttEditMuList, ui_->buttDelMuList, ui_->buttAddMuTrack,
             ui_->buttEditMuTrack, ui_->buttDelMuTrack, ui_->buttAddMuFile})
        button->setEnabled(false);
}

MusicPage::~MusicPage() = default;

MusicSelection MusicPage::selection() const {
    return {.list = selectedRow(ui_->lstMuList), .track = selectedRow(ui_->lstMuTrack)};
}

void MusicPage::edited() {
    emit projectChanged();
}

// ---- showing -----------------------------------------------------------------------------------

void MusicPage::projectReplaced() {
    trackRows_.clear();
    ui_->txtNewMuList->clear();
    ui_->txtNewMuTrack->clear();
    for (QPushButton* button : {ui_->buttEditMuList, ui_->buttDelMuList, ui_->buttAddMuTrack,
                                ui_->buttEditMuTrack, ui_->buttDelMuTrack, ui_->buttAddMuFile})
        button->setEnabled(false);
    clearFile();
    const int row = currentListRow();
    showLists(row);
    if (row >= 0)
        lstMuList_Click();
    else
        showTracks(-1);
}

int MusicPage::currentListRow() const {
    return int(
        project_.lstMuList.indexOf(project_.MusicListNames.value(project_.currentMusicList)));
}

void MusicPage::showProject() {
    const int row = selectedRow(ui_->lstMuList);
    showLists(row);
    if (shownSlot_ == project_.currentMusicList) {
        showTracks(selectedRow(ui_->lstMuTrack));
        return;
    }
    // Another page brought another list on view.
    if (row >= 0 && currentListRow() >= 0) {
        showLists(currentListRow());
        lstMuList_Click();
    } else {
        showTracks(trackRows_.value(project_.currentMusicList, -1));
        ui_->buttAddMuFile->setEnabled(false);
        clearFile();
    }
}

void MusicPage::showLists(int row) {
    showLines(ui_->lstMuList, project_.lstMuList, row);
    showListSelection();
}

void MusicPage::showListSelection() {
    const bool isSelected = selectedRow(ui_->lstMuList) >= 0;
    ui_->buttEditMuList->setEnabled(isSelected);
    ui_->buttDelMuList->setEnabled(isSelected);
    if (isSelected)
        return;
    // Without its list a selected track is no whole selection.
    ui_->buttAddMuFile->setEnabled(false);
    clearFile();
}

void MusicPage::showTracks(int row) {
    showLines(ui_->lstMuTrack,
              project_.lstMuList.isEmpty() ? QStringList()
                                           : project_.lstMuTrack.value(project_.currentMusicList),
              row);
    shownSlot_ = project_.currentMusicList;
    trackRows_[shownSlot_] = row;
}

void MusicPage::clearFile() {
    ui_->txtMuFile->clear();
    ui_->lblMuFileSize->setText("0.0 MB");
    for (QLabel* label : {ui_->lblMP3tagTitle, ui_->lblMP3tagArtist, ui_->lblMP3tagAlbum})
        label->clear();
}

void MusicPage::showFile() {
    const FileDisplay display =
        musicDisplay(project_, selection(), services_.files, services_.tags);
    ui_->txtMuFile->setText(display.path);
    ui_->lblMuFileSize->setText(display.size);
    ui_->lblMP3tagTitle->setText(display.tags.title);
    ui_->lblMP3tagArtist->setText(display.tags.artist);
    ui_->lblMP3tagAlbum->setText(display.tags.album);
    emit summaryDue();
}

void MusicPage::lstMuList_Click() {
    showListSelection();
    if (const auto list = lineAt(project_.lstMuList, selectedRow(ui_->lstMuList)))
        selectMusicList(project_, *list);
    const int row = trackRows_.value(project_.currentMusicList, -1);
    showTracks(row);
    ui_->buttAddMuFile->setEnabled(row >= 0);
    showFile();
}

void MusicPage::lstMuTrack_Click() {
    const MusicSelection selected = selection();
    trackRows_[project_.currentMusicList] = selected.track;
    if (selected.list < 0 || selected.track < 0) {
        ui_->buttAddMuFile->setEnabled(false);
        clearFile();
        return;
    }
    for (QPushButton* button : {ui_->buttDelMuTrack, ui_->buttEditMuTrack, ui_->buttAddMuFile})
        button->setEnabled(true);
    showFile();
}

// ---- entry fields ------------------------------------------------------------------------------

void MusicPage::txtNewMuList_Change() {
    const bool hasName = !ui_->txtNewMuList->text().isEmpty();
    ui_->buttAddMuList->setEnabled(hasName);
    if (hasName)
        setDefaultButton(ui_->buttAddMuList);
    else
        unsetDefaultButton(ui_->buttAddMuList);
    selectRowSilently(ui_->lstMuList, -1);
    showListSelection();
}

void MusicPage::txtNewMuTrack_Change() {
    ui_->buttAddMuTrack->setEnabled(true);
    setDefaultButton(ui_->buttAddMuTrack);
}

// ---- lists -------------------------------------------------------------------------------------

void MusicPage::buttAddMuList_Click() {
    const EditResult result = addNewMusicList(project_, ui_->txtNewMuList->text());
    if (result.isDone) {
        ui_->txtNewMuList->clear();
        showLists(result.row);
        lstMuList_Click();
    }
    edited();
}

void MusicPage::buttEditMuList_Click() {
    const int row = selectedRow(ui_->lstMuList);
    const auto name = lineAt(project_.lstMuList, row);
    const QString answer =
        name ? services_.prompts.inputText("Enter new name of Music List:", *name) : QString();
    const EditResult result = renameMusicList(project_, row, answer);
    showLists(result.row);
    edited();
}

void MusicPage::buttDelMuList_Click() {
    const EditResult result = deleteMusicList(project_, selectedRow(ui_->lstMuList));
    if (result.isDone) {
        showLists(result.row);
        lstMuList_Click();
    }
    edited();
}

void MusicPage::moveList(Direction direction) {
    const EditResult result = moveMusicList(project_, selectedRow(ui_->lstMuList), direction);
    if (!result.isDone)
        return;
    showLists(result.row);
    lstMuList_Click();
    edited();
}

// ---- tracks ------------------------------------------------------------------------------------

void MusicPage::buttAddMuTrack_Click() {
    const EditResult result = addNewMusicTrack(project_, selection(), ui_->txtNewMuTrack->text());
    if (result.isDone) {
        showTracks(result.row);
        ui_->txtNewMuTrack->clear();
        ui_->buttAddMuTrack->setEnabled(false);
        ui_->lstMuTrack->scrollToBottom();
    }
    edited();
}

void MusicPage::buttEditMuTrack_Click() {
    const auto name =
        lineAt(project_.lstMuTrack.value(project_.currentMusicList), selectedRow(ui_->lstMuTrack));
    const QString answer =
        name && selectedRow(ui_->lstMuList) >= 0
            ? services_.prompts.inputText("Enter new text for Music Track:", *name)
            : QString();
    const EditResult result = renameMusicTrack(project_, selection(), answer);
    if (result.isDone) {
        showTracks(result.row);
        lstMuTrack_Click();
    }
    edited();
}

void MusicPage::buttDelMuTrack_Click() {
    const EditResult result = deleteMusicTrack(project_, selection());
    if (result.isDone) {
        showTracks(result.row);
        if (result.row >= 0)
            lstMuTrack_Click();
    }
    if (ui_->lstMuTrack->count() == 0) {
        for (QPushButton* button : {ui_->buttDelMuTrack, ui_->buttEditMuTrack, ui_->buttAddMuFile})
            button->setEnabled(false);
        clearFile();
        emit summaryDue();
    }
    edited();
}

void MusicPage::moveTrack(Direction direction) {
    const EditResult result = moveMusicTrack(project_, selection(), direction);
    if (!result.isDone)
        return;
    showTracks(result.row);
    lstMuTrack_Click();
    edited();
}

void MusicPage::buttAddMuFile_Click() {
    const MusicSelection selected = selection();
    QString path;
    if (selected.list >= 0 && selected.track >= 0)
        path =
            services_.prompts.openFile({.filter = "MP3 files (*.mp3)", .folder = lastFileFolder_});
    if (!path.isEmpty())
        lastFileFolder_ = QFileInfo(path).path();
    if (chooseMusicFile(project_, selected, path).isDone)
        showFile();
    edited();
}

// ---- imports -----------------------------------------------------------------------------------

// Runs an import behind a dialog that appears when it takes long, and shows what came of it.
void MusicPage::importList(const std::function<ImportResult(const KeepGoing&)>& run) {
    QProgressDialog progress("Reading the tracks...", "Cancel", 0, 0, window());
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(50);  // an operator who waits longer wonders
    const KeepGoing keepGoing = [&](int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);  // pumps events while the dialog is shown
        return !progress.wasCanceled();
    };
    try {
        const ImportResult result = run(keepGoing);
        progress.reset();
        for (const ImportMessage& message : boxesOf(result))
            services_.prompts.tell({.text = message.text,
                                    .icon = message.icon == ImportMessage::Icon::Exclamation
                                                ? Message::Icon::Exclamation
                                                : Message::Icon::Information,
                                    .title = message.title});
        if (result.outcome == ImportResult::Outcome::Imported)
            ui_->txtNewMuList->clear();
        if (result.listRow >= 0) {
            showLists(result.listRow);
            lstMuList_Click();
            if (result.trackRow >= 0) {
                showTracks(result.trackRow);
                lstMuTrack_Click();
            }
        }
    } catch (const TessalyError& error) {
        progress.reset();
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
    edited();
}

void MusicPage::buttAddMuItunesPlaylist_Click() {
    const QString path = services_.prompts.openFile(
        {.filter = "TXT files (*.txt);;M3U files (*.M3U *.m3u)",
         .folder = foldersOfProgram(services_.appFolder, services_.userFolder)
                       .projectsStart(services_.files)});
    importList([&](const KeepGoing& keepGoing) {
        return importPlaylist(project_, services_.files, services_.tags, path, keepGoing);
    });
}

void MusicPage::buttAddMuListDir_Click() {
    const QString folder =
        services_.prompts.pickFolder("Select folder containing MP3 files", lastMusicFolder_);
    if (!folder.isEmpty())
        lastMusicFolder_ = folder;
    importList([&](const KeepGoing& keepGoing) {
        return importMusicFolder(project_, services_.files, services_.tags, folder, keepGoing);
    });
}

}  // namespace tessaly
