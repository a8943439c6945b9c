// SPDX-License-Identifier: GPL-3.0-or-later
// How files come to the page of music: chosen, imported, dropped; music_page.cpp has the rest.
#include <QAction>
#include <QPushButton>
#include <algorithm>
#include <climits>
#include <numeric>

#include "app/music_page.h"
#include "app/session_status.h"
#include "editor/folder_tree.h"
#include "editor/list_import.h"
#include "editor/music_files.h"
#include "editor/standard_playlist.h"
#include "model/music_lists.h"
#include "platform/error.h"

namespace tessaly {

using namespace Qt::StringLiterals;

void MusicPage::buttAddMuFile_Click() {
    const QString path = askForFile(FileKind::Music, u"Track '%1'"_s.arg(tracks_.list()->line()));
    if (chooseMusicFile(project_, selection(), path).isDone)
        lstMuTrack_Click();
    emit projectChanged();
    tellUnsavablePaths(services_.prompts, {path});
}

// Brings a list into view with its new tracks, of which the last is selected.
void MusicPage::showAdded(int listRow, int trackRow) {
    selectRows({LineList::rowsOf(listRow), LineList::rowsOf(trackRow)});
    emit summaryDue();
    emit projectChanged();
}

// Shows what an import brought. `inside` is a folder without MP3 files whose folders hold some.
void MusicPage::showImport(const ImportResult& result, const QString& inside) {
    const bool isMade = result.outcome == ImportResult::Outcome::Imported;
    const auto icon = isMade ? Message::Icon::Information : Message::Icon::Exclamation;
    bool addsInside = false;
    for (const ImportMessage& import : boxesOf(result)) {
        Message message{
            .text = import.text, .icon = icon, .title = import.title, .more = import.more};
        if (inside.isEmpty()) {
            services_.prompts.tell(message);
            continue;
        }
        message.more = u"The folders in it do. Each of them can become a list."_s;
        addsInside = services_.prompts.offer(message, u"Add the folders in it"_s);
    }
    if (isMade)
        clearEntries();
    if (result.listRow >= 0)
        showAdded(result.listRow, result.trackRow);
    if (isMade)
        offerFiles(result.list);
    if (addsInside)
        addFiles({inside}, -1);
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
    runLong(u"Add Exported Playlist"_s, u"Reading the tracks..."_s,
            [&](const KeepGoing& keepGoing) {
                const ImportResult result =
                    importPlaylist(project_, services_.files, services_.tags, path, keepGoing);
                return [this, result] { showImport(result); };
            });
}

void MusicPage::buttAddMuListDir_Click() {
    const QString folder = services_.prompts.pickFolder(u"Select folder containing MP3 files"_s, {},
                                                        FileKind::MusicFolder);
    runLong(u"Add Folder"_s, u"Reading the tracks..."_s, [&](const KeepGoing& keepGoing) {
        const ImportResult result =
            importMusicFolder(project_, services_.files, services_.tags, folder, keepGoing);
        QString inside;  // what its folders hold, if it holds no file itself
        if (result.outcome == ImportResult::Outcome::NoFiles) {
            AddSummary ignored;
            const auto found = mp3FoldersIn(services_.files, folder, ignored, keepGoing);
            if (!found.isEmpty() && !ignored.isCancelled)
                inside = folder;
        }
        return [this, result, inside] { showImport(result, inside); };
    });
}

// ---- many files at once -------------------------------------------------------------------------

void MusicPage::buttAddMuFiles_Click() {
    const QStringList paths = services_.prompts.openFiles(
        {.filter = u"MP3 files and playlists (*.mp3 *.MP3 *.m3u *.m3u8 *.pls)"_s,
         .folder = {},
         .title = u"Add MP3 Files and Playlists"_s,
         .kind = FileKind::Music});
    if (!paths.isEmpty())
        addFiles(paths, selection().list);
}

// Loose files join the list in that row; folders and playlists, and files for no list, make lists
// of their own.
void MusicPage::addFiles(const QStringList& paths, int listRow) {
    const bool isLoose = std::none_of(paths.begin(), paths.end(), [this](const QString& path) {
        return isStandardPlaylist(path) || services_.files.isFolder(path);
    });
    runLong(u"Add Files"_s, u"Reading the files..."_s, [&](const KeepGoing& keepGoing) {
        const AddSummary summary = addMusicFiles(project_, services_.files, services_.tags, paths,
                                                 {isLoose ? listRow : -1}, keepGoing);
        return [this, summary] {
            if (summary.listRow >= 0) {
                clearEntries();
                showAdded(summary.listRow, summary.trackRow);
            }
            if (!summary.isCancelled)
                tellSummary(services_.prompts, summary);
        };
    });
}

// ---- sorting -----------------------------------------------------------------------------------

// The program that files are dragged from waits until the drop is over: boxes come after it.
void MusicPage::addDropsAndSorting() {
    const auto after = Qt::QueuedConnection;
    connect(lists_.list(), &LineList::filesDropped, this, &MusicPage::addFiles, after);
    connect(
        tracks_.list(), &LineList::filesDropped, this,
        [this](const QStringList& paths) { addFiles(paths, selection().list); }, after);
    tracks_.addSeparator();
    for (const bool byNumber : {false, true}) {
        const QString text = byNumber ? u"Sort by Track Number"_s : u"Sort by Name"_s;
        QAction* command = tracks_.addCommand(text);
        connect(command, &QAction::triggered, this, [=, this] { sortTracks(text, byNumber); });
        sortCommands_.append(command);
    }
}

// The number in the tag of each track's file, INT_MAX for one without; nothing when cancelled.
std::optional<QList<int>> MusicPage::trackNumbers(int list, const KeepGoing& keepGoing) const {
    const TrackIndex index(project_);
    const QStringList& lines = project_.lstMuTrack[project_.currentMusicList];
    QList<int> numbers;
    for (const QString& line : lines) {
        if (!keepGoing(int(numbers.size()), int(lines.size())))
            return {};
        const TrackRecord* record = index.music(project_.lstMuList[list], line);
        const TagBlock tag =
            record ? services_.tags.read(record->sourcePath.text()).merged() : TagBlock();
        numbers.append(tag.trackNumber ? tag.trackNumber : INT_MAX);
    }
    return numbers;
}

// By the texts of the lines, or by the numbers in the files' tags, those without one last.
void MusicPage::sortTracks(const QString& command, bool byNumber) {
    const int list = selection().list;
    runLong(command, u"Reading the track numbers..."_s, [&](const KeepGoing& keepGoing) {
        std::optional<QList<int>> numbers;
        if (byNumber && !(numbers = trackNumbers(list, keepGoing)))
            return std::function([] {});
        const QStringList lines = project_.lstMuTrack.value(project_.currentMusicList);
        QList<int> order(lines.size());
        std::iota(order.begin(), order.end(), 0);
        std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
            return numbers ? numbers->at(a) < numbers->at(b) : comesBefore(lines[a], lines[b]);
        });
        sortMusicTracks(project_, list, order);
        return std::function([this, order, rows = tracks_.list()->rows()] {
            Rows now;  // what was selected goes with its rows
            for (int row = 0; row < int(order.size()); ++row)
                if (std::binary_search(rows.begin(), rows.end(), order[row]))
                    now.append(row);
            showTracks(now);
            lstMuTrack_Click();
        });
    });
}

}  // namespace tessaly
