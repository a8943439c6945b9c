// SPDX-License-Identifier: GPL-3.0-or-later
// What the window alone learns of an import. tests/cli/transcripts has all else; reliability/fuzz
// imports any bytes and cancels them half-way.
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

TEST(Imports, WithoutAListTheLastTrackOfTheLastListIsSelected) {
    const ScratchFolder scratch;
    const LocalFileSystem files;
    Project project;
    addMusicList(project, QStringLiteral("Rock"));
    addTrack(project, "Folk", "a", "1");
    Project expected = project;
    expected.unsavedChanges = true;
    selectMusicList(project, QStringLiteral("Rock"));
    const ImportResult none = importMusicFolder(project, files, FakeTags(), scratch.path());
    EXPECT_EQ(none.outcome, ImportResult::Outcome::NoFiles);
    EXPECT_EQ(none.listRow, 1);
    EXPECT_EQ(none.trackRow, 0);
    EXPECT_THROW(importMusicFolder(project, files, FakeTags(), scratch.path("gone")), TessalyError);
    for (const QByteArray& bytes : {"Name\tLocation\n" + QByteArray("N\ta.mp3\n").repeated(20000),
                                    QByteArray(MostPlaylistBytes + 1, ' ')})
        EXPECT_THROW(importPlaylist(project, bytes, FakeTags(), "/p.txt"), TessalyError);
    EXPECT_TRUE(project == expected);
}

TEST(Imports, TenBoxesSayWhatWasLeftOutAndOneHowMuchMore) {
    for (const int more : {0, 1, 91}) {
        Project project;
        const QByteArray bytes = "Name\tLocation\nN\t\n\ta.mp3\n\nN\ta.wav\n" +
                                 QByteArray("N\tb.wav\n").repeated(6 + more);
        QStringList titles, texts;
        for (const ImportMessage& box :
             boxesOf(importPlaylist(project, bytes, FakeTags(), "/p.txt"))) {
            titles.append(box.title);
            texts.append(box.text);
        }
        EXPECT_EQ(titles.first(4),
                  (QStringList{"File location missing", "Track name missing",
                               "Track Name and File location missing", "File type not MP3"}));
        EXPECT_EQ(titles.size(), more == 0 ? 10 : 11);
        EXPECT_EQ(titles.last(), more == 0 ? "File type not MP3" : "Tracks not added");
        EXPECT_EQ(texts.contains("1 more entry was left out."), more == 1);
        EXPECT_EQ(texts.contains("91 more entries were left out."), more == 91);
    }
}

// Triggers go on playing what they played, also between the lines that an operator has changed.
TEST(Imports, TracksOfOneNameCanGetTheirFiles) {
    const struct {
        QStringList titles;       // of the files 0, 1, 2, ...
        QStringList files;        // of all lines in the end
        QStringList gone = {};    // lines that the operator removed meanwhile
        QStringList chosen = {};  // lines that got the file "x" by hand
    } cases[] = {
        {{"a", "b"}, {"0", "1"}},
        {{"T", "T", "01 T", "01 T"}, {"0", "1", "2", "3"}},
        {{"T", "T", "T"}, {"0", "2"}, {"01 T"}},
        {{"T", "T", "T"}, {"0", "x", "2"}, {}, {"01 T"}},
    };
    for (const auto& [titles, wanted, gone, chosen] : cases) {
        QList<ImportedTrack> tracks;
        for (const QString& title : titles)
            tracks.append({title, QString::number(tracks.size())});
        Project project;
        addImportedList(project, "L", tracks, RecordNames::AsFound);
        const auto fileOf = [&](const QString& line) {
            const TrackRecord* record = TrackIndex(project).music("L", line);
            return record ? record->sourcePath.text() : QString();
        };
        QStringList& lines = project.lstMuTrack[0];
        for (const QString& line : gone)
            lines.removeOne(line);
        for (const QString& line : chosen)
            chooseMusicFile(project, {0, int(lines.indexOf(line))}, "x");
        QStringList played, files;
        for (const QString& line : lines) {
            project.TriggerTable[size_t(played.size())] = makeRecord("dtrig", line, "L", "music");
            played.append(fileOf(line));
        }
        EXPECT_EQ(canGiveEachItsFile(project, {"L"}), titles.first() == "T");
        EXPECT_TRUE(isMarkedBy(project, [&] { giveEachItsFile(project, {"L"}); }));
        for (qsizetype i = 0; i < lines.size(); ++i) {
            files.append(fileOf(lines[i]));
            const QString now = fileOf(project.TriggerTable[size_t(i)].itemName.text());
            EXPECT_TRUE(played[i].isEmpty() || played[i] == now);
        }
        EXPECT_EQ(files, wanted);
        EXPECT_FALSE(canGiveEachItsFile(project, {"L"}));
    }
}

}  // namespace tessaly
