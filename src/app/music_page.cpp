// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/music_page.h"

#include <QAction>
#include <QPushButton>

#include "app/sound_watch.h"
#include "model/music_lists.h"
#include "sound/sound_words.h"

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
                  .hint = u"Type a name below and press Enter, or drop folders, playlists or MP3 "
                          u"files here",
                  .more = {{u"buttAddMuItunesPlaylist", u"Add Exported  &Playlist..."},
                           {u"buttAddMuListDir", u"Add F&older..."},
                           {u"buttAddMuFiles", u"Add File&s..."}}},
                 {.item = u"MuTrack",
                  .list = u"lstMuTrack",
                  .image = u"imgMuTrack",
                  .step = 2,
                  .title = u"Select or add a new Music Track",
                  .label = u"New &track:",
                  .what = u"track",
                  .hint = u"Type a name below and press Enter, or drop MP3 files here"},
                 {.frame = u"fraMuFile",
                  .title = u"3) File to play for this Music List and Track:",
                  .path = u"txtMuFile",
                  .browse = u"buttAddMuFile",
                  .listen = u"buttListenMuFile",
                  .lines = {{u"lblMuFileSize", u"File Size:"},
                            {u"lblMP3tagTitle", u"Title:"},
                            {u"lblMP3tagArtist", u"Artist:"},
                            {u"lblMP3tagAlbum", u"Album:"}},
                  .sound = u"lblMuSound"},
                 parent) {
    lists_.connectTo(this, {.add = &MusicPage::buttAddMuList_Click,
                            .edit = &MusicPage::buttEditMuList_Click,
                            .remove = &MusicPage::buttDelMuList_Click,
                            .move = &MusicPage::moveLists,
                            .enter = &MusicPage::txtNewMuList_Change,
                            .select = &MusicPage::selectList});
    tracks_.connectTo(this, {.add = &MusicPage::buttAddMuTrack_Click,
                             .edit = &MusicPage::buttEditMuTrack_Click,
                             .remove = &MusicPage::buttDelMuTrack_Click,
                             .move = &MusicPage::moveTracks,
                             .enter = &MusicPage::txtNewMuTrack_Change,
                             .select = &MusicPage::lstMuTrack_Click});
    connect(lists_.moreButton(0), &QPushButton::clicked, this,
            &MusicPage::buttAddMuItunesPlaylist_Click);
    connect(lists_.moreButton(1), &QPushButton::clicked, this, &MusicPage::buttAddMuListDir_Click);
    connect(lists_.moreButton(2), &QPushButton::clicked, this, &MusicPage::buttAddMuFiles_Click);
    connect(file_.browseButton(), &QPushButton::clicked, this, &MusicPage::buttAddMuFile_Click);
    addDropsAndSorting();
    lists_.list()->setNotes(
        [this](int row) { return notes().list(project_.lstMuList.value(row)); });
    tracks_.list()->setNotes([this](int row) { return trackNote(row); });
    showSelection();
}

MusicSelection MusicPage::selection() const {
    return {.list = lists_.list()->row(), .track = tracks_.list()->row()};
}

EditorControls MusicPage::controls() const {
    return musicControls(lists_.list()->rows(), tracks_.list()->rows(), lists_.entry(),
                         trackEntered_);
}

void MusicPage::showSelection() {
    EditorPage::showSelection();
    const bool canSort = lists_.list()->row() >= 0 && tracks_.list()->model()->rowCount() > 1;
    for (QAction* command : sortCommands_)
        command->setEnabled(canSort);
}

FileDisplay MusicPage::display() const {
    return musicDisplay(project_, selection(), services_.files, services_.tags);
}

void MusicPage::projectReplaced() {
    trackRows_.clear();
    clearEntries();
    const int row = currentListRow();
    showLists(LineList::rowsOf(row));
    if (row >= 0)
        return lstMuList_Click();
    showTracks({});
    showSelection();
}

void MusicPage::selectRows(const QList<Rows>& rows) {
    showLists(rows.value(0));
    if (const auto list = lineAt(project_.lstMuList, lists_.list()->row()))
        selectMusicList(project_, *list);
    showTracks(rows.value(1));
    showSelection();
}

int MusicPage::currentListRow() const {
    const QString list = project_.MusicListNames.value(project_.currentMusicList);
    return int(project_.lstMuList.indexOf(list));
}

void MusicPage::showProject() {
    const Rows rows = lists_.list()->rows();
    showLists(rows);
    const bool isOnView = shownSlot_ == project_.currentMusicList;
    if (!isOnView && rows.size() == 1 &&
        currentListRow() >= 0) {  // another page brought it on view
        showLists({currentListRow()});
        return lstMuList_Click();
    }
    showTracks(isOnView ? tracks_.list()->rows() : trackRows_.value(project_.currentMusicList));
    showSelection();
}

LineNote MusicPage::trackNote(int row) {
    const int slot = project_.currentMusicList;
    LineNote note = notes().track(project_.MusicListNames.value(slot),
                                  project_.lstMuTrack.value(slot).value(row), services_.files);
    if (!note.record)
        return note;
    const ItemSound item = services_.sounds.of(*note.record, note.path, note.stamp);
    QStringList words{note.text};
    if (const QString problem = item.problem(); !problem.isEmpty())
        words.prepend(WarningSign + problem);
    if (item.sound && item.sound->quick.milliseconds > 0)
        words.append(inMinutes(item.sound->quick.milliseconds));
    words.removeAll(QString());
    note.text = words.join(u"  "_s);
    return note;
}

void MusicPage::showLists(const Rows& rows) {
    lists_.list()->showLines(project_.lstMuList, rows);
}

void MusicPage::showTracks(const Rows& rows) {
    const QStringList tracks = project_.lstMuTrack.value(project_.currentMusicList);
    tracks_.list()->showLines(project_.lstMuList.isEmpty() ? QStringList() : tracks, rows);
    shownSlot_ = project_.currentMusicList;
    trackRows_[shownSlot_] = rows;
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
    showTracks(trackRows_.value(project_.currentMusicList));
    showSelection();
    emit summaryDue();
}

void MusicPage::lstMuTrack_Click() {
    trackRows_[project_.currentMusicList] = tracks_.list()->rows();
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
        showLists(LineList::rowsOf(result.row));
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
    showLists(LineList::rowsOf(renameMusicList(project_, selection().list, answer).row));
    showSelection();
    emit projectChanged();
}

void MusicPage::buttDelMuList_Click() {
    listEdited(deleteMusicLists(project_, lists_.list()->rows()));
}

void MusicPage::moveLists(const QList<RowTravel>& travels) {
    const Rows rows = moveMusicLists(project_, travels);
    if (rows == lists_.list()->rows())
        return;
    showLists(rows);
    selectList();
    emit projectChanged();
}

// ---- tracks ------------------------------------------------------------------------------------

void MusicPage::trackEdited(const EditResult& result) {
    if (result.isDone) {
        showTracks(LineList::rowsOf(result.row));
        lstMuTrack_Click();
    }
    emit projectChanged();
}

void MusicPage::buttAddMuTrack_Click() {
    const EditResult result = addNewMusicTrack(project_, selection(), tracks_.entry());
    if (result.isDone) {
        showTracks(tracks_.list()->rows());
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
    trackEdited(deleteMusicTracks(project_, selection().list, tracks_.list()->rows()));
}

void MusicPage::moveTracks(const QList<RowTravel>& travels) {
    const Rows rows = moveMusicTracks(project_, selection().list, travels);
    if (rows.isEmpty() || rows == tracks_.list()->rows())
        return;
    showTracks(rows);
    lstMuTrack_Click();
    emit projectChanged();
}

}  // namespace tessaly
