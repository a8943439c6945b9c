// SPDX-License-Identifier: GPL-3.0-or-later
// What neither the sessions at the window nor the random steps of editor_model_test.cpp reach.
#include "editor/speech_editor.h"

#include "editor/file_display.h"
#include "editor/music_editor.h"
#include "model/music_lists.h"
#include "platform/local_file_system.h"
#include "support/fake_tags.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

// Titles Welcome and Goodbye in English and German, German the default; trigger 0 and the power-up
// item play Welcome. Their group is left from what they played before.
Project tour() {
    Project project;
    addSpeech(project, "Welcome", "English", "1");
    addSpeech(project, "Goodbye", "English", "2");
    addSpeech(project, "Welcome", "German", "3");
    addDefaultLanguage(project, "German");
    project.TriggerTable[0] = makeRecord("dtrig", "Welcome", "German", "speech");
    project.PowerUpRecord = makeRecord("speech", "Welcome", "German", {});
    return project;
}

QStringList table(const Project& project) {
    QStringList rows;
    for (const TrackRecord& record : project.TrackTable.mid(1))
        rows.append(isSpeech(record) ? record.itemName.text() + '/' + record.groupName.text()
                                     : QString("-"));
    return rows;
}

}  // namespace

TEST(SpeechEditor, TitlesTakeAllThatNamesThemAlong) {
    Project project = tour();
    EXPECT_EQ(renameSpeechTitle(project, 0, "Goodbye").name, "01 Goodbye");
    EXPECT_EQ(table(project),
              (QStringList{"01 Goodbye/English", "Goodbye/English", "01 Goodbye/German"}));
    EXPECT_TRUE(project.TriggerTable[0].itemName.is(u"01 Goodbye"));
    EXPECT_TRUE(project.PowerUpRecord.itemName.is(u"01 Goodbye"));

    EXPECT_EQ(deleteSpeechTitles(project, {1}).row, 0);
    EXPECT_TRUE(isAssigned(project.TriggerTable[0]));
    EXPECT_EQ(deleteSpeechTitles(project, {0}).row, -1);
    EXPECT_EQ(table(project), (QStringList{"-", "-", "-"}));
    EXPECT_FALSE(isAssigned(project.TriggerTable[0]) || hasPowerUpItem(project));
}

TEST(SpeechEditor, LanguagesLeaveTriggersAlone) {
    Project project = tour();
    const Project before = project;
    renameLanguage(project, 1, "Deutsch");
    EXPECT_EQ(table(project),
              (QStringList{"Welcome/English", "Goodbye/English", "Welcome/Deutsch"}));
    EXPECT_TRUE(project.DefaultLanguageTable.last().groupName.is(u"Deutsch"));
    deleteLanguages(project, {1});
    EXPECT_EQ(table(project), (QStringList{"Welcome/English", "Goodbye/English", "-"}));
    EXPECT_EQ(project.DefaultLanguageTable, Project().DefaultLanguageTable);
    EXPECT_EQ(project.TriggerTable, before.TriggerTable);
    EXPECT_EQ(project.PowerUpRecord, before.PowerUpRecord);
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
    deleteMusicLists(project, {2});
    addTrack(project, "", "b", "2");
    EXPECT_EQ(renameMusicList(project, 1, "Folk").name, "Folk");
    EXPECT_EQ(tracksOfMusicList(project, "Folk").value(0), "b");
    addNewMusicList(project, "New");
    EXPECT_TRUE(tracksOfMusicList(project, "New").isEmpty());

    addTrack(project, "", "b", "2");
    deleteMusicLists(project, {3});
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
        EXPECT_EQ(moveMusicTracks(project, 0, {{0, 1}}), Rows{isSameFile ? 1 : 0});
        EXPECT_EQ(project.TrackTable, expected);
        EXPECT_EQ(project.lstMuTrack[0].first(), isSameFile ? "b" : "a");
    }
}

TEST(Displays, EachTagIsThatOfTheFirstBlockThatHasIt) {
    FakeTags tags;
    tags.blocks["a.mp3"] = {.first = {.title = "New", .artist = "", .album = "Both"},
                            .second = {.title = "Old", .artist = "Singer", .album = "Other"}};
    Project project;
    addTrack(project, "Rock", "a", "a.mp3");
    const LocalFileSystem files;
    EXPECT_EQ(musicDisplay(project, {0, 0}, files, tags).tags, (TagBlock{"New", "Singer", "Both"}));
    for (const MusicSelection none : {MusicSelection{0, -1}, {-1, 0}, {0, 2}})
        EXPECT_EQ(musicDisplay(project, none, files, tags).path, "");
}

}  // namespace tessaly
