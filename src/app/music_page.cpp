// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/music_page.h"

#include <QProgressDialog>
#include <QPushButton>
#include <QScopeGuard>

#include "app/session_status.h"
#include "editor/list_import.h"
#include "model/music_lists.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

MusicPage::MusicPage(Project& project, const Services& services, QWidget* parent)
    : EditorPage(project, services,
                 {.item = u"MuList",
                  .list = u"lstMuList",
                  .image = u"imgMuList",
                  .step = 1,
                  .title = u"Select or add a new Music List",
                  .label = u"New &list:",
                  .what = u"list",
                  .more = {{u"buttAddMuItunesPlaylist", u"Add Exported  &Playlist..."},
                           {u"buttAddMuListDir", u"Add F&older..."}}},
                 {.item = u"MuTrack",
                  .list = u"lstMuTrack",
                  .image = u"imgMuTrack",
                  .step = 2,
                  .title = u"Select or add a new Music Track",
                  .label = u"New &track:",
                  .what = u"track"},
                 {.frame = u"fraMuFile",
                  .title = u"3) File to play for this Music List and Track:",
                  .path = u"txtMuFile",
                  .browse = u"buttAddMuFile",
                  .lines = {{u"lblMuFileSize", u"File Size:"},
                            {u"lblMP3tagTitle", u"Title:"},
                            {u"lblMP3tagArtist", u"Artist:"},
                            {u"lblMP3tagAlbum", u"Album:"}}},
                 parent) {
    lists_.connectTo(this, {.add = &MusicPage::buttAddMuList_Click,
                            .edit = &MusicPage::buttEditMuList_Click,
                            .remove = &MusicPage::buttDelMuList_Click,
                            .move = &MusicPage::moveList,
                            .enter = &MusicPage::txtNewMuList_Change,
                            .select = &MusicPage::selectList});
    tracks_.connectTo(this, {.add = &MusicPage::buttAddMuTrack_Click,
                             .edit = &MusicPage::buttEditMuTrack_Click,
                             .remove = &MusicPage::buttDelMuTrack_Click,
                             .move = &MusicPage::moveTrack,
                             .enter = &MusicPage::txtNewMuTrack_Change,
                             .select = &MusicPage::lstMuTrack_Click});
    connect(lists_.moreButton(0), &QPushButton::clicked, this,
            &MusicPage::buttAddMuItunesPlaylist_Click);
    connect(lists_.moreButton(1), &QPushButton::clicked, this, &MusicPage::buttAddMuListDir_Click);
    connect(file_.browseButton(), &QPushButton::clicked, this, &MusicPage::buttAddMuFile_Click);
    showSelection();
}

MusicSelection MusicPage::selection() const {
    return {.list = lists_.list()->row(), .track = tracks_.list()->row()};
}

EditorControls MusicPage::controls() const {
    return musicControls(selection(), lists_.entry(), trackEntered_);
}

FileDisplay MusicPage::display() const {
    return musicDisplay(project_, selection(), services_.files, services_.tags);
}

void MusicPage::projectReplaced() {
    trackRows_.clear();
    clearEntries();
    const int row = currentListRow();
    showLists(row);
    if (row >= 0)
        return lstMuList_Click();
    showTracks(-1);
    showSelection();
}

void MusicPage::selectRows(const QList<int>& rows) {
    showLists(rows.value(0, -1));
    if (const auto list = lineAt(project_.lstMuList, rows.value(0, -1)))
        selectMusicList(project_, *list);
    showTracks(rows.value(1, -1));
    showSelection();
}

int MusicPage::currentListRow() const {
    const QString list = project_.MusicListNames.value(project_.currentMusicList);
    return int(project_.lstMuList.indexOf(list));
}

void MusicPage::showProject() {
    const int row = lists_.list()->row();
    showLists(row);
    const bool isOnView = shownSlot_ == project_.currentMusicList;
    if (!isOnView && row >= 0 && currentListRow() >= 0) {  // another page brought it on view
        showLists(currentListRow());
        return lstMuList_Click();
    }
    showTracks(isOnView ? tracks_.list()->row() : trackRows_.value(project_.currentMusicList, -1));
    showSelection();
}

void MusicPage::showLists(int row) {
    lists_.list()->showLines(project_.lstMuList, row);
}

void MusicPage::showTracks(int row) {
    const QStringList tracks = project_.lstMuTrack.value(project_.currentMusicList);
    tracks_.list()->showLines(project_.lstMuList.isEmpty() ? QStringList() : tracks, row);
    shownSlot_ = project_.currentMusicList;
    trackRows_[shownSlot_] = row;
}

// The operator selected a list, or none any more.
void MusicPage::selectList() {
    if (lists_.list()->row() >= 0)
        lstMuList_Click();
    else
        showSelection();
}

void MusicPage::lstMuList_Click() {
    if (const auto list = lineAt(project_.lstMuList, lists_.list()->row()))
        selectMusicList(project_, *list);
    showTracks(trackRows_.value(project_.currentMusicList, -1));
    showSelection();
    emit summaryDue();
}

void MusicPage::lstMuTrack_Click() {
    trackRows_[project_.currentMusicList] = tracks_.list()->row();
    showSelection();
    emit summaryDue();
}

void MusicPage::txtNewMuList_Change() {
    lists_.list()->selectRow(-1);
    entered(lists_);
}

void MusicPage::txtNewMuTrack_Change() {
    trackEntered_ = true;
    entered(tracks_);
}

void MusicPage::clearEntries() {
    lists_.clearEntry();
    tracks_.clearEntry();
    trackEntered_ = false;
}

// ---- lists -------------------------------------------------------------------------------------

void MusicPage::listEdited(const EditResult& result) {
    if (result.isDone) {
        showLists(result.row);
        lstMuList_Click();
    }
    emit projectChanged();
}

void MusicPage::buttAddMuList_Click() {
    const EditResult result = addNewMusicList(project_, lists_.entry());
    if (result.isDone)
        lists_.clearEntry();
    listEdited(result);
}

void MusicPage::buttEditMuList_Click() {
    const QString answer = askForName(lists_, u"Enter new name of Music List:"_s);
    showLists(renameMusicList(project_, selection().list, answer).row);
    showSelection();
    emit projectChanged();
}

void MusicPage::buttDelMuList_Click() {
    listEdited(deleteMusicList(project_, selection().list));
}

void MusicPage::moveList(Direction direction) {
    if (const auto result = moveMusicList(project_, selection().list, direction); result.isDone)
        listEdited(result);
}

// ---- tracks ------------------------------------------------------------------------------------

void MusicPage::trackEdited(const EditResult& result) {
    if (result.isDone) {
        showTracks(result.row);
        lstMuTrack_Click();
    }
    emit projectChanged();
}

void MusicPage::buttAddMuTrack_Click() {
    const EditResult result = addNewMusicTrack(project_, selection(), tracks_.entry());
    if (result.isDone) {
        showTracks(result.row);
        tracks_.clearEntry();
        trackEntered_ = false;
        showSelection();
        tracks_.list()->scrollToBottom();
    }
    emit projectChanged();
}

void MusicPage::buttEditMuTrack_Click() {
    const QString answer = askForName(tracks_, u"Enter new text for Music Track:"_s);
    trackEdited(renameMusicTrack(project_, selection(), answer));
}

void MusicPage::buttDelMuTrack_Click() {
    trackEdited(deleteMusicTrack(project_, selection()));
}

void MusicPage::moveTrack(Direction direction) {
    if (const auto result = moveMusicTrack(project_, selection(), direction); result.isDone)
        trackEdited(result);
}

void MusicPage::buttAddMuFile_Click() {
    const QString path = askForFile(FileKind::Music, u"Track '%1'"_s.arg(tracks_.list()->line()));
    if (chooseMusicFile(project_, selection(), path).isDone)
        lstMuTrack_Click();
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

// ---- imports -----------------------------------------------------------------------------------

// Runs an import behind a dialog that appears when it takes long, and shows its list.
void MusicPage::importList(const std::function<ImportResult(const KeepGoing&)>& run) {
    QProgressDialog progress(u"Reading the tracks..."_s, u"Cancel"_s, 0, 0, window());
    progress.setWindowModality(Qt::ApplicationModal);
    progress.setMinimumDuration(50);  // an operator who waits longer wonders
    emit editBegins();
    const auto ends = qScopeGuard([this] { emit editEnds(); });
    const KeepGoing keepGoing = [&](int done, int total) {
        progress.setMaximum(total);
        progress.setValue(done);  // pumps events while the dialog is shown
        return !progress.wasCanceled();
    };
    const qsizetype before = project_.TrackTable.size();
    try {
        const ImportResult result = run(keepGoing);
        progress.reset();
        const bool isMade = result.outcome == ImportResult::Outcome::Imported;
        const auto icon = isMade ? Message::Icon::Information : Message::Icon::Exclamation;
        for (const ImportMessage& message : boxesOf(result))
            services_.prompts.tell({.text = message.text, .icon = icon, .title = message.title});
        if (isMade)
            clearEntries();
        listEdited({.isDone = result.listRow >= 0, .row = result.listRow});
        trackEdited({.isDone = result.trackRow >= 0, .row = result.trackRow});
        if (isMade)
            offerFiles(result.list);
    } catch (const TessalyError& error) {
        progress.reset();
        services_.prompts.tell({.text = error.description, .icon = Message::Icon::Exclamation});
    }
    emit projectChanged();
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
            {.text = namesakes + u"\r\r"_s + NamesakesFate.toString() +
                     u"  \"Give each its file\" makes each track play the file it was made of."_s,
             .icon = Message::Icon::Exclamation},
            u"Give each its file"_s))
        return;
    giveEachItsFile(project_, {list});
    lstMuTrack_Click();
}

void MusicPage::buttAddMuItunesPlaylist_Click() {
    const QString path = services_.prompts.openFile(
        {.filter = u"TXT files (*.txt);;M3U files (*.M3U *.m3u)"_s,
         .folder = foldersOfProgram(services_.appFolder, services_.userFolder)
                       .projectsStart(services_.files),
         .title = u"Add Exported Playlist"_s,
         .kind = FileKind::Playlist});
    importList([&](const KeepGoing& keepGoing) {
        return importPlaylist(project_, services_.files, services_.tags, path, keepGoing);
    });
}

void MusicPage::buttAddMuListDir_Click() {
    const QString folder = services_.prompts.pickFolder(u"Select folder containing MP3 files"_s, {},
                                                        FileKind::MusicFolder);
    importList([&](const KeepGoing& keepGoing) {
        return importMusicFolder(project_, services_.files, services_.tags, folder, keepGoing);
    });
}

}  // namespace tessaly
