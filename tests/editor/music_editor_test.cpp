// What the random steps of editor_model_test.cpp do not reach.
#include "editor/music_editor.h"

#include "model/music_lists.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(MusicEditor, ButtonsFollowTheSelectionAndTheEntries) {
    using Controls = EditorControls;
    EXPECT_EQ(musicControls({}, "", false), Controls{});
    EXPECT_EQ(musicControls({-1, 0}, "x", true), (Controls{{true, false}, {true, false}, false}))
        << "a track without its list";
    EXPECT_EQ(musicControls({0, -1}, "", false), (Controls{{false, true}, {}, false}));
    EXPECT_EQ(musicControls({0, 0}, "", true), (Controls{{false, true}, {true, true}, true}));
}

// As a folder import makes them.
TEST(MusicEditor, AFileIsChosenForAllRecordsOfOneName) {
    Project project;
    addTrack(project, "Rock", "a", "1");
    addTrack(project, "Rock", "a", "2");
    EXPECT_TRUE(chooseMusicFile(project, {0, 0}, "/m/x").isDone);
    for (const TrackRecord& record : project.TrackTable.mid(1))
        EXPECT_EQ(record.sourcePath.text(), QDir::toNativeSeparators("/m/x"));
}

TEST(MusicEditor, ANamelessListOfAFileCanBeRenamed) {
    Project project;
    addTrack(project, "Rock", "a", "1");
    addTrack(project, "", "b", "2");
    addTrack(project, "Gone", "c", "3");
    deleteMusicList(project, 2);
    addTrack(project, "", "b", "2");
    EXPECT_EQ(renameMusicList(project, 1, "Folk").name, "Folk");
    EXPECT_EQ(tracksOfMusicList(project, "Folk").value(0), "b");
    addNewMusicList(project, "New");
    EXPECT_TRUE(tracksOfMusicList(project, "New").isEmpty());

    addTrack(project, "", "b", "2");
    deleteMusicList(project, 3);
    addNewMusicList(project, "Next");
    EXPECT_TRUE(tracksOfMusicList(project, "Next").isEmpty());
}

// Also a deleted one counts; the last record of the table has no partner and stays.
TEST(MusicEditor, MovingATrackSwapsTheFirstRecordOfItsNameAndFile) {
    for (const bool isSameFile : {true, false}) {
        Project project;
        addTrack(project, "A", "a", isSameFile ? "1" : "other");
        project.TrackTable.last().kind = kind::Empty;
        addTrack(project, "A", "b", "2");
        addTrack(project, "A", "a", "1");
        auto expected = project.TrackTable;
        if (isSameFile)
            expected.swapItemsAt(1, 2);
        EXPECT_EQ(moveMusicTrack(project, {0, 0}, Direction::Down).isDone, isSameFile);
        EXPECT_EQ(project.TrackTable, expected);
        EXPECT_EQ(project.lstMuTrack[0].first(), isSameFile ? "b" : "a");
    }
}

}  // namespace tessaly
