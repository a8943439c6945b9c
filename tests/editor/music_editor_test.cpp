// What the random steps of editor_model_test.cpp do not reach.
#include "editor/music_editor.h"

#include "model/music_lists.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

// Records as "list/track <- path", those of deleted items in brackets.
QStringList table(const Project& project) {
    QStringList rows;
    for (const TrackRecord& record : project.TrackTable.mid(1)) {
        const QString row = record.groupName.text() + '/' + record.itemName.text() + " <- " +
                            record.sourcePath.text();
        rows.append(isMusic(record) ? row : '[' + row + ']');
    }
    return rows;
}

}  // namespace

// As a folder import makes them.
TEST(MusicEditor, AFileIsChosenForAllRecordsOfOneName) {
    Project project;
    addTrack(project, "Rock", "a", "1");
    addTrack(project, "Rock", "a", "2");
    EXPECT_TRUE(chooseMusicFile(project, {0, 0}, "/m/x").isDone);
    const QString path = QDir::toNativeSeparators("/m/x");
    EXPECT_EQ(table(project), (QStringList{"Rock/a <- " + path, "Rock/a <- " + path}));
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

// "A/a2" is another file for a of list A; what is in brackets was deleted.
TEST(MusicEditor, MovingATrackSwapsTheFirstRecordOfItsNameAndFile) {
    const struct {
        const char *what, *records, *lines;  // the lines of list A, of which the first moves down
        const char *recordsAfter, *linesAfter;
    } cases[] = {
        {"a deleted one of that name and file", "[A/a] A/b A/a", "a b", "A/b [A/a] A/a", "b a"},
        {"a deleted one with another file", "[A/a2] A/a A/b", "a b", "[A/a] A/b A/a", "b a"},
    };
    for (const auto& [what, before, lines, after, linesAfter] : cases) {
        SCOPED_TRACE(what);
        Project project;
        addMusicList(project, "B");
        addMusicList(project, "A");
        for (QString text : QString(before).split(' ')) {
            const bool isDeleted = text.startsWith('[');
            text.remove('[').remove(']');
            addTrack(project, text.left(1), text.mid(2, 1), text.mid(2));
            if (isDeleted)
                project.TrackTable.last().kind = "empty";
        }
        selectMusicList(project, "A");
        project.lstMuTrack[project.currentMusicList] = QString(lines).split(' ');
        EXPECT_EQ(moveMusicTrack(project, {1, 0}, Direction::Down).row, 1);
        QStringList records = table(project);
        for (QString& record : records)
            record = record.left(record.indexOf(" <-")) + (record.startsWith('[') ? "]" : "");
        EXPECT_EQ(records.join(' '), after);
        EXPECT_EQ(tracksOfMusicList(project, "A").join(' '), linesAfter);
    }
}

}  // namespace tessaly
