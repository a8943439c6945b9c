#include "editor/music_editor.h"

#include <functional>

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

void setPlayers(Project& project, const QString& list, const QString& track) {
    for (TrackRecord* player : {&project.TriggerTable[0], &project.PowerUpRecord}) {
        player->groupName = list;
        player->itemName = track;
    }
    project.TriggerTable[0].sourcePath = "music";
    project.PowerUpRecord.kind = "music";
}

// What trigger 0 and the power-up item play: "music list/track".
QStringList players(const Project& project) {
    const auto names = [](const TrackRecord& record) {
        return ' ' + record.groupName.text() + '/' + record.itemName.text();
    };
    const TrackRecord &trigger = project.TriggerTable[0], &powerUp = project.PowerUpRecord;
    return {trigger.sourcePath.text() + names(trigger), powerUp.kind.text() + names(powerUp)};
}

// Lists Rock (a, b) and Rock 2 (a); trigger 0 and power-up item play Rock/b.
Project smallProject() {
    Project project;
    addTrack(project, "Rock", "a", "1");
    addTrack(project, "Rock 2", "a", "2");
    addTrack(project, "Rock", "b", "3");
    setPlayers(project, "Rock", "b");
    return project;
}

}  // namespace

TEST(MusicEditor, NewNamesAreMadeUnique) {
    Project project;
    for (const char* expected : {"Rock", "01 Rock", "02 Rock"})
        EXPECT_EQ(addNewMusicList(project, "Rock").name, expected);
    EXPECT_FALSE(addNewMusicList(project, "").isDone);
    EXPECT_EQ(project.lstMuList.size(), 3);
    for (const char* expected : {"", "01 ", "02 "}) {
        const EditResult added = addNewMusicTrack(project, {.list = 1, .track = 7}, "");
        EXPECT_EQ(added.name, expected);
        EXPECT_EQ(added.row, 7);
    }
    EXPECT_EQ(tracksOfMusicList(project, "01 Rock").size(), 3);
    EXPECT_EQ(project.TrackTable.size(), 1);

    // A deleted list passes nothing on to the next one of its name.
    EXPECT_EQ(deleteMusicList(project, 1).row, 1);
    EXPECT_EQ(addNewMusicList(project, "01 Rock").row, 2);
    EXPECT_TRUE(tracksOfMusicList(project, "01 Rock").isEmpty());
}

TEST(MusicEditor, AFileChosenAgainReplacesTheFirst) {
    Project project;
    addNewMusicList(project, "Rock");
    addNewMusicTrack(project, {.list = 0}, "a");
    EXPECT_FALSE(chooseMusicFile(project, {0, 0}, "").isDone);
    EXPECT_EQ(table(project), QStringList());
    for (const QString path : {"/m/1.mp3", "/m/2.mp3"}) {
        EXPECT_TRUE(chooseMusicFile(project, {0, 0}, path).isDone);
        EXPECT_EQ(table(project), QStringList{"Rock/a <- " + QDir::toNativeSeparators(path)});
    }
    EXPECT_EQ(project.TrackTable[1], [] {
        TrackRecord record;
        record.kind = "music";
        record.itemName = "a";
        record.groupName = "Rock";
        record.sourcePath = QDir::toNativeSeparators("/m/2.mp3");
        return record;
    }());
    // All records of one name get the file, as a folder import makes them.
    project.TrackTable.append(project.TrackTable[1]);
    chooseMusicFile(project, {0, 0}, "x");
    EXPECT_EQ(table(project), (QStringList{"Rock/a <- x", "Rock/a <- x"}));
}

TEST(MusicEditor, RenamingFollowsEverywhere) {
    Project project = smallProject();
    const EditResult list = renameMusicList(project, 0, "Folk");
    EXPECT_EQ(list.row, -1);
    EXPECT_EQ(project.lstMuList, (QStringList{"Folk", "Rock 2"}));
    EXPECT_EQ(tracksOfMusicList(project, "Folk"), (QStringList{"a", "b"}));
    EXPECT_EQ(tracksOfMusicList(project, "Rock 2"), QStringList("a"));
    EXPECT_EQ(players(project), (QStringList{"music Folk/b", "music Folk/b"}));
    const EditResult track = renameMusicTrack(project, {0, 1}, "a");
    EXPECT_EQ(track.row, 1);
    EXPECT_EQ(track.name, "01 a");
    EXPECT_EQ(renameMusicTrack(project, {0, 0}, "a").name, "02 a");
    EXPECT_EQ(renameMusicList(project, 1, "Rock 2").name, "01 Rock 2");
    EXPECT_EQ(table(project),
              (QStringList{"Folk/02 a <- 1", "01 Rock 2/a <- 2", "Folk/01 a <- 3"}));
    EXPECT_EQ(players(project), (QStringList{"music Folk/01 a", "music Folk/01 a"}));

    // Cancel is not a name that clashes with a track that has none.
    addNewMusicTrack(project, {.list = 0}, "");
    EXPECT_FALSE(renameMusicTrack(project, {0, 2}, "").isDone);
    EXPECT_EQ(tracksOfMusicList(project, "Folk").last(), "");
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
    struct Case {
        const char* what;
        QString playedTrack;
        MusicSelection removed;  // without a track: the list
        const char* left;        // numbers of the files that are left
        int row;
        bool isFreed;
    };
    const QString full = "<Play Full List>";
    const Case cases[] = {
        {"list", "b", {0, -1}, "2", 0, true},
        {"list played whole", full, {0, -1}, "2", 0, true},
        {"other list", "b", {1, -1}, "13", 0, false},
        {"track", "b", {0, 1}, "12", 0, true},
        {"other track of the list", "b", {0, 0}, "23", 0, false},
        {"track of a list played whole", full, {0, 1}, "12", 0, false},
        {"last track of a list", "b", {1, 0}, "13", -1, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Project project = smallProject();
        setPlayers(project, "Rock", c.playedTrack);
        const EditResult deleted = c.removed.track < 0 ? deleteMusicList(project, c.removed.list)
                                                       : deleteMusicTrack(project, c.removed);
        EXPECT_EQ(deleted.row, c.row);
        QString left;
        for (const TrackRecord& record : project.TrackTable)
            left += isMusic(record) ? record.sourcePath.text() : QString();
        EXPECT_EQ(left, c.left);
        const QString played = (c.isFreed ? "empty Rock/" : "music Rock/") + c.playedTrack;
        EXPECT_EQ(players(project), (QStringList{played, played}));
    }
    // The last list leaves an empty track box behind.
    Project project = smallProject();
    deleteMusicList(project, 1);
    EXPECT_EQ(deleteMusicList(project, 0).row, -1);
    EXPECT_TRUE(project.lstMuTrack[project.currentMusicList].isEmpty());
    EXPECT_EQ(project.MusicListNames, (QStringList{"", "", ""}));
}

TEST(MusicEditor, MovingATrackSwapsItsRecordWithTheNext) {
    struct Case {
        const char* what;
        const char* records;  // of lists A and B, "A/a2" with another file; in brackets: deleted
        const char* lines;    // of list A
        int track;
        Direction direction;
        const char* recordsAfter;  // without the files; nullptr: nothing moves
        const char* linesAfter;
    };
    const Direction up = Direction::Up, down = Direction::Down;
    const Case cases[] = {
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

TEST(MusicEditor, WithoutItsSelectionAnOperationOnlyMarksTheProject) {
    using Operation = std::function<EditResult(Project&)>;
    const Operation edits[] = {
        [](Project& p) { return addNewMusicList(p, ""); },
        [](Project& p) {
            return addNewMusicTrack(p, {-1, 0}, "x");
        },
        [](Project& p) {
            return chooseMusicFile(p, {0, -1}, "x");
        },
        [](Project& p) {
            return chooseMusicFile(p, {-1, 0}, "x");
        },
        [](Project& p) { return renameMusicList(p, -1, "x"); },
        [](Project& p) { return renameMusicList(p, 0, ""); },
        [](Project& p) {
            return renameMusicTrack(p, {0, 2}, "x");
        },
        [](Project& p) {
            return renameMusicTrack(p, {-1, 0}, "x");
        },
        [](Project& p) { return deleteMusicList(p, 2); },
        [](Project& p) {
            return deleteMusicTrack(p, {0, -1});
        },
        [](Project& p) {
            return deleteMusicTrack(p, {-1, 0});
        },
    };
    for (const Operation& edit : edits) {
        Project project = smallProject(), expected = project;
        EXPECT_FALSE(edit(project).isDone);
        expected.unsavedChanges = true;
        EXPECT_TRUE(project == expected) << &edit - edits;
    }
    Project project = smallProject();
    const Project before = project;
    EXPECT_EQ(moveMusicList(project, 0, Direction::Up).row, 0);
    EXPECT_EQ(moveMusicList(project, 1, Direction::Down).row, 1);
    EXPECT_EQ(moveMusicList(project, -1, Direction::Down).row, -1);
    EXPECT_TRUE(project == before);
    EXPECT_EQ(moveMusicList(project, 0, Direction::Down).row, 1);
    EXPECT_EQ(project.lstMuList, (QStringList{"Rock 2", "Rock"}));
    EXPECT_EQ(project.MusicListNames, before.MusicListNames);
    EXPECT_FALSE(project.unsavedChanges);
}

}  // namespace tessaly
