// SPDX-License-Identifier: GPL-3.0-or-later
// What neither the sessions at the window nor the random steps of editor_model_test.cpp reach.
#include "editor/speech_editor.h"

#include <QSet>
#include <random>

#include "editor/edit_words.h"
#include "editor/file_display.h"
#include "editor/music_editor.h"
#include "editor/speech_overview.h"
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

TEST(SpeechEditor, AFileIsTakenAwayAndWhatPlaysTheTitleStays) {
    Project project = tour();
    Project expected = project;
    expected.TrackTable[1].kind = expected.TrackTable[3].kind = kind::Empty;
    EXPECT_FALSE(speechControls(project, {1}, {1}, {}, {}).clearFile);
    EXPECT_TRUE(speechControls(project, {0}, {1}, {}, {}).clearFile);
    EXPECT_FALSE(isMarkedBy(project, [&] { moveLines(project.lstSpTitles, {{1, 0}, {0, 1}}); }));
    // Two have one, one has none, and two are no pairs.
    EXPECT_EQ(clearSpeechFiles(project, {{0, 0}, {1, 1}, {0, 1}, {-1, 0}, {0, 2}}), 2);
    expected.unsavedChanges = true;
    EXPECT_EQ(project, expected);
    EXPECT_EQ(editInWords(tour(), project), "Remove File of 'Welcome'");
    EXPECT_EQ(removalInWords(tour(), project), "2 files removed");
    EXPECT_FALSE(speechControls(project, {0}, {1}, {}, {}).clearFile);
    // A new file does not bring the old one's attributes back.
    EXPECT_TRUE(chooseSpeechFile(project, {0, 0}, "4").isDone);
    EXPECT_EQ(project.TrackTable.last(), makeRecord("speech", "Welcome", "English", "4"));
}

// Whatever the lists and the checks of a card say of a file, the overview says, too.
TEST(SpeechOverview, AgreesWithListsAndChecksInRandomProjects) {
    const ScratchFolder scratch;
    const LocalFileSystem files;
    SoundBook book;
    const auto soundOf = [&book](const QString& path, const FileStamp& stamp) {
        book.quick(path, stamp);
        return book.known(path, stamp);
    };
    const QStringList paths = {
        scratch.write("a.mp3", silentMp3()),     scratch.write("empty.mp3", {}),
        scratch.write("notes.txt", silentMp3()), scratch.write("page.mp3", "<html>"),
        scratch.write("B.Mp3", silentMp3()),     scratch.path("gone.mp3")};
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        Project project = randomProject(random, 120, Names::Any);
        for (TrackRecord& record : project.TrackTable)
            record.sourcePath = paths[int(random() % unsigned(paths.size()))];
        SpeechOverview overview(project, {});
        const bool hasFiles = overview.inWords().contains("not looked for yet");
        while (!overview.hasSeenAll())
            overview.lookFurther(files, soundOf, 7);
        const SpeechOverview again(project, overview);  // knows what was seen before
        QHash<SpeechFile, int> counts;
        for (int title = 0; title < overview.titles().size(); ++title)
            for (int language = 0; language < overview.languages().size(); ++language) {
                const SpeechSelection pair{title, language};
                const SpeechCell& cell = overview.at(pair);
                const QString path = speechDisplay(project, pair, files).path;
                const auto expected = path.isEmpty()         ? SpeechFile::None
                                      : path == paths.last() ? SpeechFile::Missing
                                      : path == paths[0] || path == paths[4]
                                          ? SpeechFile::There
                                          : SpeechFile::NotPlayable;
                EXPECT_EQ(cell.path, path);
                EXPECT_EQ(int(cell.file), int(expected)) << path.toStdString();
                EXPECT_EQ(cell.problem.isEmpty(),
                          expected == SpeechFile::None || expected == SpeechFile::There);
                EXPECT_EQ(cell, again.at(pair));
                ++counts[expected];
            }
        const int all = int(overview.titles().size() * overview.languages().size());
        EXPECT_EQ(hasFiles, counts[SpeechFile::None] < all);
        QString words = QString("%1 of %2 there").arg(counts[SpeechFile::There]).arg(all);
        for (const auto& [file, what] : {std::pair(SpeechFile::None, " without a file"),
                                         std::pair(SpeechFile::Missing, " missing"),
                                         std::pair(SpeechFile::NotPlayable, " not playable")})
            if (counts[file] > 0)
                words += QString(", %1%2").arg(counts[file]).arg(what);
        EXPECT_EQ(overview.inWords(), all > 0 ? words : QString());
        // As many steps as there are empty cells lead through all of them, down each language.
        SpeechSelection at;
        QSet<std::pair<int, int>> met;
        for (int i = 0; i < counts[SpeechFile::None]; ++i) {
            const SpeechSelection next = overview.nextEmpty(at);
            EXPECT_TRUE(std::pair(at.language, at.title) < std::pair(next.language, next.title));
            EXPECT_EQ(overview.at(next).file, SpeechFile::None);
            met.insert({next.title, next.language});
            at = next;
        }
        EXPECT_EQ(met.size(), counts[SpeechFile::None]);
        EXPECT_EQ(overview.nextEmpty(at), overview.nextEmpty({}));
    }
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

// A card that is written follows the table, not the lines. Other lists keep their places.
TEST(MusicEditor, SortingAListSortsItsRecords) {
    Project project;
    addTrack(project, "A", "b", "2");
    addTrack(project, "B", "a", "3");
    addTrack(project, "A", "a", "1");
    project.currentMusicList = 0;
    auto expected = project.TrackTable;
    expected.swapItemsAt(1, 3);
    sortMusicTracks(project, 0, {1, 0});
    EXPECT_EQ(project.TrackTable, expected);
    EXPECT_EQ(project.lstMuTrack[0], QStringList({"a", "b"}));
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
