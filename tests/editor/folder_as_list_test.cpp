#include "editor/list_import.h"
#include "editor/music_editor.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/fake_tags.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

const LocalFileSystem Files;

}  // namespace

TEST(MusicFolderImport, TakesFilesInTheOrderOfTheirNames) {
    const ScratchFolder scratch;
    for (const char* name : {"a_b.mp3", "AB.MP3", "a.mp3", "b.Mp3", "c.mp3.mp3", "10.mp3", "9.mp3",
                             "cover.jpg", "mp3", "x.mp3x"})
        scratch.write(QString("Summer Evenings at Sea/") + name, "x");
    scratch.makeFolder("Summer Evenings at Sea/folder.mp3");
    // Where there are no links, a plain file has to do.
    if (!scratch.link(scratch.path("Summer Evenings at Sea/a.mp3"),
                      "Summer Evenings at Sea/link.mp3"))
        scratch.write("Summer Evenings at Sea/link.mp3", "x");
    scratch.link("nowhere", "Summer Evenings at Sea/dangling.mp3");
    FakeTags tags;
    tags.blocks["9.mp3"] = {titled("T"), {}};
    tags.blocks["10.mp3"] = {titled("T"), {}};
    tags.blocks["a.mp3"] = {{}, titled("the second block does not count")};
    tags.blocks["b.Mp3"] = {titled("A title of more letters"), {}};

    Project project;
    const ImportResult result =
        importMusicFolder(project, Files, tags, scratch.path("Summer Evenings at Sea/"));
    EXPECT_EQ(result.outcome, ImportResult::Outcome::Imported);
    EXPECT_EQ(result.list, "Summer Evenings ");
    EXPECT_EQ(result.listRow, 0);
    EXPECT_EQ(result.trackRow, 7);
    QStringList records;
    for (const TrackRecord& record : project.TrackTable.mid(1)) {
        EXPECT_TRUE(isMusic(record) && record.groupName.is(result.list));
        records.append(record.itemName.text() + " <- " + lastNameOf(record.sourcePath.text()));
    }
    EXPECT_EQ(records, (QStringList{"T <- 10.mp3", "T <- 9.mp3", "a <- a.mp3", "AB <- AB.MP3",
                                    "a_b <- a_b.mp3", "A title of more  <- b.Mp3", "c <- c.mp3.mp3",
                                    "link <- link.mp3"}));
    EXPECT_EQ(project.TrackTable[1].sourcePath.text(),
              scratch.path("Summer Evenings at Sea/10.mp3"));
    EXPECT_EQ(importMusicFolder(project, Files, tags, scratch.path("Summer Evenings at Sea")).list,
              "01 Summer Evenings ");
}

TEST(MusicFolderImport, TracksOfOneNameCanGetTheirFiles) {
    const struct {
        QStringList titles;       // of the files 0, 1, 2, ...
        QStringList silent;       // lines that have no file then
        QStringList files;        // of all lines in the end; "-" for none
        QStringList gone = {};    // lines that the operator removed meanwhile
        QStringList chosen = {};  // lines that got the file "x" by hand
    } cases[] = {
        {{"a", "b"}, {}, {"0", "1"}},
        // Saved alike, but not the same.
        {{"Мечта", "Осень"}, {}, {"0", "1"}},
        {{"T", "T", "a", "T"}, {"01 T", "02 T"}, {"0", "1", "2", "3"}},
        // A title that looks like a number in front of another.
        {{"T", "T", "01 T"}, {"01 01 T"}, {"0", "1", "2"}},
        {{"T", "01 T", "T"}, {"02 T"}, {"0", "1", "2"}},
        {{"T", "T", "01 T", "01 T"}, {"01 01 T", "02 01 T"}, {"0", "1", "2", "3"}},
        {{"T", "T", "T"}, {"01 T", "02 T"}, {"0", "2"}, {"01 T"}},
        {{"T", "T", "T"}, {"01 T", "02 T"}, {"0", "x", "2"}, {}, {"01 T"}},
    };
    for (const auto& [titles, silent, wanted, gone, chosen] : cases) {
        SCOPED_TRACE(titles.join('|').toStdString());
        QList<ImportedTrack> tracks;
        for (const QString& title : titles)
            tracks.append({title, QString::number(tracks.size())});
        Project project;
        addImportedList(project, "L", tracks, RecordNames::AsFound);
        EXPECT_EQ(namesakesText(project, "L").isEmpty(), silent.isEmpty());
        EXPECT_TRUE(namesakesText(project, "L").contains(silent.join("\", \"")));
        const auto fileOf = [&](const QString& line) {
            const TrackRecord* record = TrackIndex(project).music("L", line);
            return record ? record->sourcePath.text() : QString("-");
        };
        QStringList& lines = project.lstMuTrack[0];
        for (const QString& line : gone)
            lines.removeOne(line);
        for (const QString& line : chosen)
            chooseMusicFile(project, {0, int(lines.indexOf(line))}, "x");
        // A trigger a line: what played a file plays it afterwards.
        QStringList played;
        for (const QString& line : lines) {
            project.TriggerTable[size_t(played.size())] = makeRecord("dtrig", line, "L", "music");
            played.append(fileOf(line));
        }
        EXPECT_EQ(canGiveEachItsFile(project, {"L"}), !silent.isEmpty());
        EXPECT_TRUE(isMarkedBy(project, [&] { giveEachItsFile(project, {"L"}); }));
        QStringList files;
        for (qsizetype i = 0; i < lines.size(); ++i) {
            files.append(fileOf(lines[i]));
            const QString now = fileOf(project.TriggerTable[size_t(i)].itemName.text());
            EXPECT_TRUE(played[i] == "-" || played[i] == now);
        }
        EXPECT_EQ(files, wanted);
        EXPECT_FALSE(canGiveEachItsFile(project, {"L"}));
    }
}

// tests/app/editor_pages_test.cpp cancels one.
TEST(MusicFolderImport, WithoutFilesTheLastTrackOfTheLastListIsSelected) {
    const ScratchFolder scratch;
    scratch.write("empty/cover.jpg", "x");
    Project project;
    addMusicList(project, "Rock");
    addTrack(project, "Folk", "a", "1");
    Project expected = project;
    selectMusicList(project, "Rock");
    const ImportResult none = importMusicFolder(project, Files, FakeTags(), scratch.path("empty"));
    EXPECT_EQ(none.outcome, ImportResult::Outcome::NoFiles);
    EXPECT_EQ(none.listRow, 1);
    EXPECT_EQ(none.trackRow, 0);
    EXPECT_THROW(importMusicFolder(project, Files, FakeTags(), scratch.path("gone")), TessalyError);
    expected.unsavedChanges = true;
    EXPECT_TRUE(project == expected);
}

}  // namespace tessaly
