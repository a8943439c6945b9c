// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/music_files.h"

#include <QUrl>
#include <algorithm>
#include <random>

#include "editor/folder_tree.h"
#include "editor/speech_matching.h"
#include "editor/standard_playlist.h"
#include "model/music_lists.h"
#include "model/text_codec.h"
#include "support/fake_tags.h"
#include "support/faulty_file_system.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

// A folder of files and folders drawn at random, and what a plain reading of it expects.
class RandomTree {
 public:
    RandomTree(std::mt19937& random, const ScratchFolder& scratch) : random_(random) {
        for (int i = 0; i < 3; ++i)
            given.append(fill(scratch, QStringLiteral("Box %1").arg(12 - i), 3));
        std::shuffle(given.begin(), given.end(), random);
    }

    QStringList given;
    FakeTags tags;
    int others = 0;  // files that are no MP3

    // The MP3 files of a folder list by list, its own first.
    static QList<QStringList> listsOf(const QString& folder) {
        QStringList own, folders;
        for (const QFileInfo& info :
             QDir(folder).entryInfoList(QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot))
            if (info.isDir())
                folders.append(QDir::toNativeSeparators(info.filePath()));
            else if (info.fileName().toLower().endsWith(".mp3"))
                own.append(QDir::toNativeSeparators(info.filePath()));
        sortByName(own);
        sortByName(folders);
        QList<QStringList> lists;
        if (!own.isEmpty())
            lists.append(own);
        for (const QString& inside : folders)
            lists += listsOf(inside);
        return lists;
    }

 private:
    int draw(int below) { return int(random_() % unsigned(below)); }

    QString fill(const ScratchFolder& scratch, const QString& folder, int depth) {
        const QStringList endings = {".mp3", ".MP3", ".mp3", ".jpg"};
        scratch.makeFolder(folder);
        for (int i = draw(5); i > 0; --i) {
            const QString name = QString::number(draw(20)) + " é" + endings[draw(4)];
            const QString path = folder + '/' + name;
            others += name.endsWith("jpg") && !QFile::exists(scratch.path(path)) ? 1 : 0;
            scratch.write(path, "x");
            if (draw(2) == 0)
                tags.blocks[name].first = titled(draw(2) == 0 ? "T" : "A title that is too long");
        }
        for (int i = depth > 0 ? draw(3) : 0; i > 0; --i)
            fill(scratch, folder + "/Disc " + QString::number(draw(12)), depth - 1);
        return scratch.path(folder);
    }

    std::mt19937& random_;
};

QStringList pathsOf(const Project& project, const QString& list) {
    QStringList paths;
    for (const QString& track : tracksOfMusicList(project, list))
        if (const TrackRecord* record = TrackIndex(project).music(list, track))
            paths.append(record->sourcePath.text());
    return paths;
}

}  // namespace

TEST(MusicFiles, WholeFoldersComeInAndNothingIsSilent) {
    std::mt19937 random(1);
    for (int run = 0; run < 40; ++run) {
        const ScratchFolder scratch;
        const RandomTree tree(random, scratch);
        QList<QStringList> expected;
        QStringList ordered = tree.given;
        sortByName(ordered);
        for (const QString& folder : ordered)
            expected += RandomTree::listsOf(folder);
        QStringList all;
        for (const QStringList& list : expected)
            all += list;

        const Project before = crossNamedProject();
        for (const int target : {-1, 0}) {
            FaultyFileSystem files;
            Project project = before;
            int asked = 0;
            const AddSummary summary =
                addMusicFiles(project, files, tree.tags, tree.given, {target}, [&](int, int) {
                    ++asked;
                    return true;
                });
            EXPECT_EQ(summary.added, all.size());
            EXPECT_EQ(summary.leftOutInAll(), tree.others);
            EXPECT_EQ(project.unsavedChanges, before.unsavedChanges || !all.isEmpty());
            EXPECT_EQ(inconsistencies(project), QStringList());
            EXPECT_EQ(silentTracks(project, TrackIndex(project)).size(), 0);
            if (target < 0) {
                EXPECT_EQ(summary.lists, expected.size());
                EXPECT_EQ(project.lstMuList.size(), 2 + expected.size());
                for (qsizetype i = 0; i < expected.size(); ++i)
                    EXPECT_EQ(pathsOf(project, project.lstMuList[2 + i]), expected[i]);
            } else {
                EXPECT_EQ(project.lstMuList, before.lstMuList);
                EXPECT_EQ(pathsOf(project, "Rock"), pathsOf(before, "Rock") + all);
            }
            const QStringList tracks = project.lstMuTrack.value(project.currentMusicList);
            EXPECT_EQ(summary.trackRow, all.isEmpty() ? -1 : tracks.size() - 1);
            EXPECT_EQ(summary.listRow, all.isEmpty() ? -1
                                       : target < 0  ? project.lstMuList.size() - 1
                                                     : 0);

            Project cancelled = before;
            const int last = int(random() % unsigned(asked));
            EXPECT_TRUE(
                addMusicFiles(cancelled, files, tree.tags, tree.given, {target}, [&](int, int) {
                    return --asked > last;
                }).isCancelled);
            EXPECT_TRUE(cancelled == before);
        }
        // A folder that cannot be read is left out with all that is in it.
        FaultyFileSystem files;
        const QString bad = lastNameOf(ordered[1]);
        files.failWhen = [&](const QString& operation) { return operation == "list " + bad; };
        Project project = before;
        const AddSummary summary = addMusicFiles(project, files, tree.tags, tree.given);
        EXPECT_EQ(summary.leftOut[size_t(LeftOut::Unreadable)], 1);
        qsizetype kept = 0;
        for (const QString& path : all)
            kept += path.startsWith(withLastSeparator(ordered[1])) ? 0 : 1;
        EXPECT_EQ(summary.added, kept);
    }
}

TEST(MusicFiles, OneSentenceAndALineForEach) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    FakeTags tags;
    tags.blocks["2.mp3"].first = titled("A title that is too long");
    QStringList paths = {scratch.write("b/10.mp3", "x"), scratch.write("b/2.mp3", "x"),
                         scratch.path("gone.mp3"), scratch.write("b/cover.jpg", "x")};
    Project project;
    addTrack(project, "b", "10", "x.mp3");
    const AddSummary lists = addMusicFiles(project, files, tags, paths);
    EXPECT_EQ(project.lstMuList, (QStringList{"b", "01 b"}));
    EXPECT_EQ(tracksOfMusicList(project, "01 b"), (QStringList{"A title that is ", "10"}));
    EXPECT_EQ(lists.text(),
              "2 added in 1 new list, 1 name cut to 16 characters, 1 name numbered, 2 left out: 1 "
              "no MP3, 1 not found");
    EXPECT_EQ(lists.details(),
              paths[3] + " is no MP3 file and was left out.\n" + paths[2] +
                  " is not there and was left out.\nThe music list \"b\" became \"01 b\".\n" +
                  paths[1] + ": \"A title that is too long\" became \"A title that is \".");
    const AddSummary tracks = addMusicFiles(project, files, tags, paths.first(1), {0});
    EXPECT_EQ(tracks.text(), "1 added, 1 name numbered");
    EXPECT_EQ(tracksOfMusicList(project, "b"), (QStringList{"10", "01 10"}));
    project.unsavedChanges = false;
    const Project before = project;
    EXPECT_EQ(addMusicFiles(project, files, tags, paths.mid(3)).text(),
              "Nothing added, 1 left out: no MP3");
    EXPECT_TRUE(project == before);
    AddSummary many;
    for (int i = 0; i < 1234; ++i)
        many.leaveOut(LeftOut::NoMp3, QString::number(i));
    EXPECT_TRUE(
        many.details().endsWith("\n999 is no MP3 file and was left out.\n... and 234 more."));
}

// Folders of any number of files, which no disk needs to have.
class ManyFiles : public LocalFileSystem {
 public:
    explicit ManyFiles(int count) : count_(count) {}
    bool isFolder(const QString& path) const override { return !path.endsWith(".mp3"); }
    std::optional<FileStamp> stamp(const QString&) const override { return FileStamp{1, 1}; }
    QList<FolderEntry> entries(const QString&) const override {
        QList<FolderEntry> found;
        for (int i = 0; i < count_; ++i)
            found.append({.name = QString::number(i) + ".mp3"});
        return found;
    }

 private:
    int count_;
};

TEST(MusicFiles, NoMemoryIsFilled) {
    ManyFiles most(MostImportedTracks), half(MostImportedTracks / 2 + 1);
    Project project;
    EXPECT_EQ(addMusicFiles(project, most, FakeTags(), {"/m"}).added, MostImportedTracks);
    const Project before = project;
    for (const QStringList& paths : {QStringList{"/a", "/b"}, QStringList{"/a", "/b.mp3", "/c"}}) {
        EXPECT_THROW(addMusicFiles(project, half, FakeTags(), paths), TessalyError);
        EXPECT_THROW(planSpeech(project, half, paths), TessalyError);
    }
    EXPECT_THROW(addMusicFiles(project, most, FakeTags(), {"/m", "/n.mp3"}), TessalyError);
    ManyFiles tooMany(MostImportedTracks + 1);
    EXPECT_THROW(addMusicFiles(project, tooMany, FakeTags(), {"/m"}), TessalyError);
    EXPECT_TRUE(project == before);

    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString list = scratch.write(
        "l.m3u", QByteArray("a\0b.mp3\n", 8) + QByteArray(70000, 'x') + ".mp3\nc.mp3");
    const AddSummary summary = addMusicFiles(project, files, FakeTags(), {list});
    EXPECT_EQ(summary.text(),
              "1 added in 1 new list, 1 file not found, 2 left out: cannot be read");
}

// Playlists drawn at random, as different players write them.
TEST(StandardPlaylist, EveryLineCounts) {
    std::mt19937 random(2);
    const auto draw = [&](int below) { return int(random() % unsigned(below)); };
    const QString folder = QDir::toNativeSeparators(QDir::tempPath() + "/Lists é");
    for (int run = 0; run < 2000; ++run) {
        const bool isPls = draw(2) == 0;
        const QString end = QStringList{"\n", "\r\n", "\r"}[draw(3)];
        QString text = isPls ? "[playlist]" + end : draw(2) == 0 ? "#EXTM3U" + end : QString();
        QList<StandardEntry> expected;
        QStringList lines;
        const int count = draw(6);
        for (int i = 0; i < count; ++i) {
            const QString name = QStringList{"Größe", "100% a, b", "x#y", "a=b"}[draw(4)] +
                                 QString::number(draw(30)) + ".mp3";
            const QString whole = QDir::toNativeSeparators(folder + "/Ünter 1/" + name);
            const struct {
                QString written, location;
                bool isStream = false;
            } kinds[] = {{"Ünter 1/" + name, whole},
                         {"Ünter 1\\" + name, whole},
                         {"./x/..\\Ünter 1//" + name, whole},
                         {whole, whole},
                         {"file://" + QString(whole.startsWith('/') ? "" : "/") +
                              QString::fromLatin1(QUrl::toPercentEncoding(
                                  QDir::fromNativeSeparators(whole), "/:,=#")),
                          whole},
                         {"Op. 7://" + name, QDir::toNativeSeparators(folder + "/Op. 7:/" + name)},
                         {"https://host/" + name, "https://host/" + name, true}};
            const auto& [written, location, isStream] = kinds[draw(7)];
            const QString title = draw(2) == 0 ? QString() : "Title, é " + QString::number(i);
            expected.append({title, location, isStream});
            if (isPls) {
                const QString number = QString::number(i + 9);
                lines.append((draw(2) == 0 ? "File" : "FILE ") + number + '=' + written);
                if (!title.isEmpty())
                    lines.append("Title" + number + " = " + title);
                continue;
            }
            if (!title.isEmpty())
                lines.append("#EXTINF:" + QString::number(draw(300) - 1) + ',' + title);
            if (draw(4) == 0)
                lines.append(QStringList{"", "  ", "# by hand"}[draw(3)]);
            lines.append(draw(4) == 0 ? ' ' + written + '\t' : written);
        }
        if (isPls)
            std::shuffle(lines.begin(), lines.end(), random);
        text += lines.join(end) + (draw(2) == 0 ? QString() : end);
        const QByteArray bytes = draw(3) == 0   ? toCodePage(text)
                                 : draw(2) == 0 ? "\xEF\xBB\xBF" + text.toUtf8()
                                                : text.toUtf8();
        const auto found = parseStandardPlaylist(
            bytes, folder + QDir::separator() + (isPls ? "l.PLS" : "l.m3u8"), 1000);
        ASSERT_EQ(found.size(), expected.size()) << text.toStdString();
        for (qsizetype i = 0; i < found.size(); ++i) {
            EXPECT_EQ(found[i].title, expected[i].title) << text.toStdString();
            EXPECT_EQ(found[i].location, expected[i].location) << text.toStdString();
            EXPECT_EQ(found[i].isStream, expected[i].isStream);
        }
        EXPECT_LE(parseStandardPlaylist(bytes, "/l.m3u", 1).size(), 1);
    }
}

}  // namespace tessaly
