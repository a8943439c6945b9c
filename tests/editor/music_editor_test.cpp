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

// Lists Rock (a, b) and Rock 2 (a).
Project smallProject() {
    Project project;
    addTrack(project, "Rock", "a", "1");
    addTrack(project, "Rock 2", "a", "2");
    addTrack(project, "Rock", "b", "3");
    return project;
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

TEST(MusicEditor, DeletingFreesWhatPlaysTheItem) {
    const struct {
        const char* what;
        QString playedTrack;
        MusicSelection removed;  // without a track: the list
        const char* left;        // numbers of the files that are left
        int row;
        bool isFreed;
    } cases[] = {
        {"list played whole", "<Play Full List>", {0, -1}, "2", 0, true},
        {"other list", "<Play Full List>", {1, -1}, "13", 0, false},
        {"track", "b", {0, 1}, "12", 0, true},
        {"other track of the list", "b", {0, 0}, "23", 0, false},
        {"track of a list played whole", "<Play Full List>", {0, 1}, "12", 0, false},
        {"last track of a list", "b", {1, 0}, "13", -1, false},
    };
    for (const auto& [what, playedTrack, removed, left, row, isFreed] : cases) {
        SCOPED_TRACE(what);
        Project project = smallProject();
        project.TriggerTable[0] = makeRecord("dtrig", playedTrack, "Rock", "music");
        project.PowerUpRecord = makeRecord("music", playedTrack, "Rock", {});
        const EditResult deleted = removed.track < 0 ? deleteMusicList(project, removed.list)
                                                     : deleteMusicTrack(project, removed);
        EXPECT_EQ(deleted.row, row);
        QString files;
        for (const TrackRecord& record : project.TrackTable)
            files += isMusic(record) ? record.sourcePath.text() : QString();
        EXPECT_EQ(files, left);
        EXPECT_EQ(isAssigned(project.TriggerTable[0]), !isFreed);
        EXPECT_EQ(hasPowerUpItem(project), !isFreed);
    }
    // The last list leaves an empty track box behind.
    Project project = smallProject();
    deleteMusicList(project, 1);
    EXPECT_EQ(deleteMusicList(project, 0).row, -1);
    EXPECT_TRUE(project.lstMuTrack[project.currentMusicList].isEmpty());
}

TEST(MusicEditor, MovingATrackSwapsItsRecordWithTheNext) {
    const Direction up = Direction::Up, down = Direction::Down;
    const struct Case {
        const char* what;
        const char* records;  // of lists A and B, "A/a2" with another file; in brackets: deleted
        const char* lines;    // of list A
        int track;
        Direction direction;
        const char* recordsAfter;  // without the files; nullptr: nothing moves
        const char* linesAfter;
    } cases[] = {
        {"past another list's record", "A/a B/x A/b", "a b", 0, down, "B/x A/a A/b", "b a"},
        {"and up again", "B/x A/a A/b", "b a", 1, up, "A/a B/x A/b", "a b"},
        {"list box and table apart", "A/a A/b B/x", "b a", 0, down, "A/a B/x A/b", "a b"},
        {"the last record down", "A/a A/b", "b a", 0, down, nullptr, nullptr},
        {"the first record up", "A/a A/b", "b a", 1, up, nullptr, nullptr},
        {"past a deleted record", "A/a [A/c] A/b", "a b", 0, down, "[A/c] A/a A/b", "b a"},
        {"a deleted one of that name and file", "[A/a] A/b A/a", "a b", 0, down, "A/b [A/a] A/a",
         "b a"},
        {"a deleted one with another file", "[A/a2] A/a A/b", "a b", 0, down, "[A/a] A/b A/a",
         "b a"},
        {"a track without a file", "A/b B/x", "a b", 0, down, "A/b B/x", "b a"},
        {"the last line down", "A/b A/a", "a b", 1, down, nullptr, nullptr},
        {"the first line up", "A/b A/a", "a b", 0, up, nullptr, nullptr},
        {"nothing selected", "A/a A/b", "a b", -1, down, nullptr, nullptr},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Project project;
        addMusicList(project, "B");
        addMusicList(project, "A");
        for (QString text : QString(c.records).split(' ')) {
            const bool isDeleted = text.startsWith('[');
            text.remove('[').remove(']');
            addTrack(project, text.left(1), text.mid(2, 1), text.mid(2));
            if (isDeleted)
                project.TrackTable.last().kind = "empty";
        }
        selectMusicList(project, "A");
        project.lstMuTrack[project.currentMusicList] = QString(c.lines).split(' ');
        const bool moves = c.recordsAfter;
        const Project before = project;
        const EditResult moved = moveMusicTrack(project, {1, c.track}, c.direction);
        EXPECT_EQ(moved.isDone, moves);
        EXPECT_EQ(moved.row, c.track + (moves ? int(c.direction) : 0));
        EXPECT_EQ(project == before, !moves);
        if (!moves)
            continue;
        QStringList records = table(project);
        for (QString& record : records)
            record = record.left(record.indexOf(" <-")) + (record.startsWith('[') ? "]" : "");
        EXPECT_EQ(records.join(' '), c.recordsAfter);
        EXPECT_EQ(tracksOfMusicList(project, "A").join(' '), c.linesAfter);
        EXPECT_FALSE(project.unsavedChanges);
    }
}

}  // namespace tessaly
