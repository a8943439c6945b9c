// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <functional>
#include <optional>

#include "app/editor_page.h"
#include "editor/imported_list.h"
#include "editor/music_editor.h"

namespace tessaly {

/// The page of music lists, their tracks and the tracks' files.
///
/// One list box shows the tracks of the list on view; which row was selected is remembered for
/// every list. Code that selects a row runs the same handler as a click.
class MusicPage : public EditorPage {
    Q_OBJECT

 public:
    MusicPage(Project& project, const Services& services, QWidget* parent = nullptr);

    void showProject() override;
    void projectReplaced() override;
    void selectRows(const QList<Rows>& rows) override;

 protected:
    EditorControls controls() const override;
    void showSelection() override;
    FileDisplay display() const override;

 private:
    void buttAddMuList_Click();
    void buttEditMuList_Click();
    void buttDelMuList_Click();
    void buttAddMuTrack_Click();
    void buttEditMuTrack_Click();
    void buttDelMuTrack_Click();
    void buttAddMuFile_Click();
    void buttAddMuItunesPlaylist_Click();
    void buttAddMuListDir_Click();
    void buttAddMuFiles_Click();
    void moveLists(const QList<RowTravel>& travels);
    void moveTracks(const QList<RowTravel>& travels);
    void selectList();
    void lstMuList_Click();
    void lstMuTrack_Click();
    void txtNewMuList_Change();
    void txtNewMuTrack_Change();

    MusicSelection selection() const;
    int currentListRow() const;
    void clearEntries();
    void listEdited(const EditResult& result);
    void trackEdited(const EditResult& result);
    LineNote trackNote(int row);
    void showLists(const Rows& rows);
    void showTracks(const Rows& rows);
    void offerFiles(const QString& list);
    void showAdded(int listRow, int trackRow);
    void showImport(const ImportResult& result, const QString& inside = {});
    void addFiles(const QStringList& paths, int listRow);
    void addDropsAndSorting();
    std::optional<QList<int>> trackNumbers(int list, const KeepGoing& keepGoing) const;
    void sortTracks(const QString& command, bool byNumber);

    ListSection& lists_ = first_;
    ListSection& tracks_ = second_;
    QHash<int, Rows> trackRows_;  // slot of a list -> rows selected among its tracks
    int shownSlot_ = 0;           // slot of the list whose tracks are shown
    bool trackEntered_ = false;   // something was typed for a new track, erased or not
    QList<QAction*> sortCommands_;
};

}  // namespace tessaly
