// The session on the speech page has the sixteen languages, moves and files.
#include "editor/speech_editor.h"

#include <functional>

#include "editor/file_display.h"
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

    EXPECT_EQ(deleteSpeechTitle(project, 1).row, 0);
    EXPECT_TRUE(isAssigned(project.TriggerTable[0]));
    EXPECT_EQ(deleteSpeechTitle(project, 0).row, -1);
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
    deleteLanguage(project, 1);
    EXPECT_EQ(table(project), (QStringList{"Welcome/English", "Goodbye/English", "-"}));
    EXPECT_EQ(project.DefaultLanguageTable, Project().DefaultLanguageTable);
    EXPECT_EQ(project.TriggerTable, before.TriggerTable);
    EXPECT_EQ(project.PowerUpRecord, before.PowerUpRecord);
}

TEST(SpeechEditor, ButtonsFollowTheSelectionAndTheEntries) {
    using Controls = EditorControls;
    Project project;
    EXPECT_EQ(speechControls(project, {}, "", ""), Controls{});
    EXPECT_EQ(speechControls(project, {0, -1}, "x", "x"),
              (Controls{{true, true}, {true, false}, false}));
    EXPECT_EQ(speechControls(project, {-1, 0}, "", ""), (Controls{{}, {false, true}, false}));
    project.lstLangs = QStringList(16, "x");
    EXPECT_EQ(speechControls(project, {0, 0}, "", "x"),
              (Controls{{false, true}, {false, true}, true}));
}

// Each by itself, also one that has nothing to do.
TEST(SpeechEditor, EveryEditMarksTheProject) {
    for (const int row : {-1, 0})
        for (const QString text : {"", "x"}) {
            const std::function<EditResult(Project&)> edits[] = {
                [&](Project& p) { return addSpeechTitle(p, text); },
                [&](Project& p) { return addLanguage(p, text); },
                [&](Project& p) {
                    return chooseSpeechFile(p, {0, row}, text);
                },
                [&](Project& p) {
                    return chooseSpeechFile(p, {row, 0}, text);
                },
                [&](Project& p) { return renameSpeechTitle(p, row, text); },
                [&](Project& p) { return renameLanguage(p, row, text); },
                [&](Project& p) { return deleteSpeechTitle(p, row); },
                [&](Project& p) { return deleteLanguage(p, row); }};
            for (const auto& edit : edits) {
                Project project = tour();
                EditResult result;
                EXPECT_TRUE(isMarkedBy(project, [&] { result = edit(project); }));
                project.unsavedChanges = false;
                EXPECT_NE(result.isDone, project == tour());
            }
        }
}

TEST(Displays, ShowTheFileBehindTheSelection) {
    const ScratchFolder scratch;
    FakeTags tags;
    tags.blocks["a.mp3"] = {.first = {.title = "New", .artist = "", .album = "Both"},
                            .second = {.title = "Old", .artist = "Singer", .album = "Other"}};
    const LocalFileSystem files;
    const QString path = scratch.write("a.mp3", QByteArray(1'250'000, 'x'));
    Project project;
    addTrack(project, "Rock", "a", path);
    addTrack(project, "Rock", "gone", scratch.path("b.mp3"));
    addSpeech(project, "Welcome", "English", path);
    const FileDisplay music = musicDisplay(project, {0, 0}, files, tags);
    EXPECT_EQ(music.path, path);
    EXPECT_EQ(music.size, "1.3 MB");
    EXPECT_EQ(music.tags, (TagBlock{"New", "Singer", "Both"}));
    EXPECT_EQ(speechDisplay(project, {0, 0}, files).size, "1.3 MB");
    EXPECT_EQ(musicDisplay(project, {0, 1}, files, tags).size, "0.0 MB");
    for (const MusicSelection none : {MusicSelection{0, -1}, {-1, 0}, {0, 2}})
        EXPECT_EQ(musicDisplay(project, none, files, tags).path, "");
}

}  // namespace tessaly
