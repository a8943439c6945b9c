#include "app/music_page.h"

#include <QFileInfo>
#include <QListWidget>
#include <QProgressDialog>

#include "app/list_view_tools.h"
#include "app/save_questions.h"
#include "editor/file_display.h"
#include "editor/folder_as_list.h"
#include "editor/give_files.h"
#include "editor/playlist_import.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "ui_music_page.h"

namespace tessaly {

MusicPage::MusicPage(Project& project, const Services& services, QWidget* parent)
    : Page(parent), project_(project), services_(services), ui_(std::make_unique<Ui::MusicPage>()) {
    ui_->setupUi(widget());
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
        if (selectedRow(ui_->lstMuList) >= 0)
            lstMuList_Click();
        else
            showSelection();
    });
    connect(ui_->lstMuTrack, &QListWidget::itemSelectionChanged, this,
            &MusicPage::lstMuTrack_Click);
    connect(ui_->txtNewMuList, &QLineEdit::textChanged, this, &MusicPage::txtNewMuList_Change);
    connect(ui_->txtNewMuTrack, &QLineEdit::textChanged, this, &MusicPage::txtNewMuTrack_Change);
    showSelection();
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
    clearEntries();
    const int row = currentListRow();
    showLists(row);
    if (row >= 0) {
        lstMuList_Click();
    } else {
        showTracks(-1);
        showSelection();
    }
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
    } else if (row >= 0 && currentListRow() >= 0) {  // another page brought another list on view
        showLists(currentListRow());
        lstMuList_Click();
        return;
    } else {
        showTracks(trackRows_.value(project_.currentMusicList, -1));
    }
    showSelection();
}

void MusicPage::showLists(int row) {
    showLines(ui_->lstMuList, project_.lstMuList, row);
}

void MusicPage::showTracks(int row) {
    showLines(ui_->lstMuTrack,
              project_.lstMuList.isEmpty() ? QStringList()
                                           : project_.lstMuTrack.value(project_.currentMusicList),
              row);
    shownSlot_ = project_.currentMusicList;
    trackRows_[shownSlot_] = row;
}

// Whatever changed what is selected or entered ends here: which buttons can be used, and the file
// of the selected track.
void MusicPage::showSelection() {
    const MusicControls enabled =
        musicControls(selection(), ui_->txtNewMuList->text(), trackEntered_);
    ui_->buttAddMuList->setEnabled(enabled.buttAddMuList);
    ui_->buttEditMuList->setEnabled(enabled.buttEditMuList);
    ui_->buttDelMuList->setEnabled(enabled.buttDelMuList);
    ui_->buttAddMuTrack->setEnabled(enabled.buttAddMuTrack);
    ui_->buttEditMuTrack->setEnabled(enabled.buttEditMuTrack);
    ui_->buttDelMuTrack->setEnabled(enabled.buttDelMuTrack);
    ui_->buttAddMuFile->setEnabled(enabled.buttAddMuFile);
    const FileDisplay display =
        musicDisplay(project_, selection(), services_.files, services_.tags);
    ui_->txtMuFile->setText(display.path);
    ui_->lblMuFileSize->setText(display.size);
    ui_->lblMP3tagTitle->setText(display.tags.title);
    ui_->lblMP3tagArtist->setText(display.tags.artist);
    ui_->lblMP3tagAlbum->setText(display.tags.album);
}

void MusicPage::lstMuList_Click() {
    if (const auto list = lineAt(project_.lstMuList, selectedRow(ui_->lstMuList)))
        selectMusicList(project_, *list);
    showTracks(trackRows_.value(project_.currentMusicList, -1));
    showSelection();
    emit summaryDue();
}

void MusicPage::lstMuTrack_Click() {
    trackRows_[project_.currentMusicList] = selectedRow(ui_->lstMuTrack);
    showSelection();
    emit summaryDue();
}

// ---- entry fields ------------------------------------------------------------------------------

void MusicPage::txtNewMuList_Change() {
    selectRowSilently(ui_->lstMuList, -1);
    showSelection();
    if (ui_->txtNewMuList->text().isEmpty())
        unsetDefaultButton(ui_->buttAddMuList);
    else
        setDefaultButton(ui_->buttAddMuList);
}

void MusicPage::txtNewMuTrack_Change() {
    trackEntered_ = true;
    showSelection();
    setDefaultButton(ui_->buttAddMuTrack);
}

void MusicPage::clearEntries() {
    ui_->txtNewMuList->clear();
    ui_->txtNewMuTrack->clear();
    trackEntered_ = false;
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
    showSelection();
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
        trackEntered_ = false;
        showSelection();
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
        lstMuTrack_Click();
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
        lstMuTrack_Click();
    edited();
    tellUnsavablePaths(services_.prompts, {path});
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
    const qsizetype before = project_.TrackTable.size();
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
            clearEntries();
        if (result.listRow >= 0) {
            showLists(result.listRow);
            lstMuList_Click();
            if (result.trackRow >= 0) {
                showTracks(result.trackRow);
                lstMuTrack_Click();
            }
        }
        if (result.outcome == ImportResult::Outcome::Imported)
            offerFiles(result.list);
    } catch (const TessalyError& error) {
        progress.reset();
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
    edited();
    QStringList added;
    for (const TrackRecord& record : project_.TrackTable.mid(before))
        added.append(record.sourcePath.text());
    tellUnsavablePaths(services_.prompts, added);
}

// Says which tracks of a new list are silent, and makes them play when that is wanted.
void MusicPage::offerFiles(const QString& list) {
    const QString namesakes = namesakesText(project_, list);
    if (namesakes.isEmpty() ||
        !services_.prompts.offer(
            {.text = namesakes + "\r\r" + NamesakesFate.toString() +
                     "  \"Give each its file\" makes each track play the file it was made of.",
             .icon = Message::Icon::Exclamation},
            "Give each its file"))
        return;
    giveEachItsFile(project_, {list});
    lstMuTrack_Click();
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
