// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/missing_match.h"

#include <algorithm>
#include <random>

#include "editor/edit_words.h"
#include "model/text_codec.h"
#include "platform/local_file_system.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

Project projectOf(const QStringList& paths) {
    Project project;
    for (const QString& path : paths)
        addTrack(project, "L", path, path);
    return project;
}

// For each path the new one where it is ticked, else why it is not.
QStringList answers(const RelinkPlan& plan, const QStringList& paths) {
    QStringList found;
    for (const QString& path : paths)
        for (const RelinkLine& line : plan.lines)
            if (line.oldPath == path)
                found.append(line.taken ? line.newPath : line.inWords());
    return found;
}

}  // namespace

TEST(MissingFiles, AreFoundByTheEndsOfTheirPathsOrNotAtAll) {
    const QString many = "2 files fit equally well", shared = "fits another missing file, too",
                  inUse = "only the name fits: another item's file";
    const struct {
        QStringList missing, there, expected;
    } cases[] = {
        {{"C:\\Music\\ROCK\\Song.MP3", "/x/gone.mp3"},
         {"/m/pop/song.mp3", "/m/rock/song.mp3"},
         {"/m/rock/song.mp3", "not found"}},
        {{"/a/Café/1.mp3"}, {"/b/Cafe\u0301/1.mp3", "/b/x/1.mp3"}, {"/b/Cafe\u0301/1.mp3"}},
        {{"/a/x/1.mp3"}, {"/b/y/1.mp3"}, {"/b/y/1.mp3"}},
        {{"/a/x/1.mp3"}, {"/b/y/1.mp3", "/b/z/1.mp3"}, {many}},
        {{"/a/ock/1.mp3"}, {"/b/Rock/1.mp3", "/b/Sock/1.mp3"}, {many}},
        // A file is one missing file, however often that is spelled, and never two.
        {{"/a/x/1.mp3", "/a/y/1.mp3"}, {"/b/1.mp3"}, {shared, shared}},
        {{"/a/x/1.mp3", "/a/y/1.mp3"}, {"/b/x/1.mp3"}, {"/b/x/1.mp3", shared}},
        {{"/a/x/1.mp3", "\\A\\x\\1.mp3"}, {"/b/x/1.mp3"}, {"/b/x/1.mp3", "/b/x/1.mp3"}},
        {{"/a/x/1.mp3", "/a/old/x/1.mp3"},
         {"/b/x/1.mp3", "/b/old/x/1.mp3"},
         {"/b/x/1.mp3", "/b/old/x/1.mp3"}},
        {{"/a/x/1.mp3", "/a/y/1.mp3", "/a/z/1.mp3"},
         {"/b/x/1.mp3", "/b/y/1.mp3"},
         {"/b/x/1.mp3", "/b/y/1.mp3", "fits other missing files, too"}},
        {{"/a/x/1.mp3"}, {"/used/1.mp3"}, {inUse}},
        {{"/a/y/1.mp3"}, {"/used/y/1.mp3"}, {"/used/y/1.mp3"}},
        // "?" stands for what the project file could not hold.
        {{"/a/?????"
          "/???? 1.mp3"},
         {"/b/Город/Утро 2.mp3", "/b/Город/Утро 1.mp3", "/b/Море/Утро 1.mp3"},
         {"/b/Город/Утро 1.mp3"}},
        {{"/a/J?n.mp3"}, {"/b/Jan.mp3", "/b/Jon.mp3"}, {many}},
        {{"/a/? 1.mp3", "/a/Caf e?.mp3"},
         {"/b/\U0001F3B5 1.mp3", "/b/Caf e\u0301.mp3"},
         {"/b/\U0001F3B5 1.mp3", "/b/Caf e\u0301.mp3"}},
        {{"/a/Why?.mp3", "/a/B.MP3"},
         {"/b/Whyx.mp3", "/b/Why?.mp3", "/b/b.mp3", "/b/B.MP3"},
         {"/b/Why?.mp3", "/b/B.MP3"}},
    };
    for (const auto& [missing, there, expected] : cases) {
        const Project project = projectOf(missing + QStringList{"/used/1.mp3", "/used/y/1.mp3"});
        const SearchedFolder found{there, QList<qint64>(there.size(), 5), {}};
        const RelinkPlan plan = planRelink(project, missing, found, playingSeconds);
        EXPECT_EQ(answers(plan, missing), expected) << missing[0].toStdString();
        EXPECT_TRUE(std::ranges::is_partitioned(
            plan.lines, [](const RelinkLine& line) { return !line.taken; }));
    }
}

TEST(MissingFiles, SizeAndLengthSettleWhatNamesLeaveOpen) {
    const QStringList missing{"/a/1.mp3"};
    const struct {
        QStringList there;
        QList<qint64> sizes;
        QList<int> seconds;
        QString expected;
    } cases[] = {{{"/b/1.mp3", "/c/1.mp3"}, {20, 10}, {7, 8}, "/c/1.mp3"},
                 {{"/b/1.mp3", "/c/1.mp3"}, {20, 30}, {7, 8}, "/b/1.mp3"},
                 {{"/b/1.mp3", "/c/1.mp3"}, {10, 10}, {8, 7}, "/c/1.mp3"},
                 {{"/b/1.mp3", "/c/1.mp3"}, {10, 10}, {7, 7}, "2 files fit equally well"},
                 {{"/b/1.mp3", "/c/1.mp3"}, {20, 30}, {8, 9}, "2 files fit equally well"},
                 {{"/b/1.mp3"}, {20}, {8}, "only the name fits: another size and length"},
                 {{"/b/1.mp3"}, {20}, {7}, "/b/1.mp3"},
                 {{"/b/1.mp3"}, {10}, {8}, "/b/1.mp3"},
                 {{"/b/a/1.mp3"}, {20}, {8}, "/b/a/1.mp3"}};
    for (const auto& [there, sizes, seconds, expected] : cases) {
        const auto secondsOf = [&](const QString& path) { return seconds[there.indexOf(path)]; };
        const RelinkPlan plan =
            planRelink(projectOf(missing), missing, {there, sizes, {}}, secondsOf,
                       [](const QString&) { return KnownFile{.size = 10, .seconds = 7}; });
        EXPECT_EQ(answers(plan, missing), QStringList{expected});
    }
}

TEST(MissingFiles, AMovedTreeIsFoundAgainWhateverIsInIt) {
    const LocalFileSystem files;
    std::mt19937 random(7);
    const auto oneOf = [&](const QStringList& names) { return names[random() % names.size()]; };
    for (int round = 0; round < 8; ++round) {
        const ScratchFolder scratch;
        QMap<QString, QString> went;  // from where to where
        for (int i = 0; i < 60; ++i) {
            QString name = oneOf({"1", "2", "É", "Ж", "a b"}) + oneOf({".mp3", ".MP3"});
            for (int depth = int(random() % 4); depth > 0; --depth)
                name = oneOf({"A", "B", "Ä", "Дом"}) + '/' + name;
            if (!QFileInfo::exists(scratch.path("old/" + name)))  // where case does not count, too
                went[scratch.write("old/" + name, name.toUtf8())] = scratch.path("new/" + name);
        }
        Project project = projectOf(went.keys());
        EXPECT_EQ(missingFiles(project, files), QStringList());
        QDir(scratch.path()).rename("old", "new");
        scratch.link(scratch.path("new"), "new/A");
        scratch.link(scratch.path("new"), "new/circle");
        const auto plan = [&](const QString& folder) {
            const QStringList missing = missingFiles(project, files);
            return planRelink(project, missing, searchFolder(files, scratch.path(folder), missing),
                              playingSeconds);
        };
        const RelinkPlan found = plan("new");
        EXPECT_EQ(found.inWords(), QString("%1 of %1 found").arg(went.size()));
        EXPECT_EQ(answers(found, went.keys()), QStringList(went.values()));

        // As a project file brings the paths: perhaps not all are found, but none is wrong.
        const Project whole = project;
        QMultiMap<QString, QString> saved;
        for (TrackRecord& record : project.TrackTable)
            if (isTrackFile(record)) {
                const QString path = record.sourcePath.text();
                record.sourcePath = fromCodePage(toCodePage(path));
                saved.insert(record.sourcePath.text(), went[path]);
            }
        const RelinkPlan repaired = plan("new");
        EXPECT_GT(repaired.taken(), went.size() / 2);
        for (const RelinkLine& line : repaired.lines)
            EXPECT_TRUE(!line.taken || saved.contains(line.oldPath, line.newPath))
                << line.oldPath.toStdString() << " is no " << line.newPath.toStdString();

        // With a second copy of everything there is nothing but guesses.
        project = whole;
        for (const QString& path : went.values())
            scratch.write("copy/" + path.mid(scratch.path("new/").size()), "x");
        EXPECT_EQ(plan(".").taken(), 0);
        EXPECT_TRUE(searchFolder(files, scratch.path(), {"x.mp3"}, [](int, int) {
                        return false;
                    }).leftOut.isCancelled);
    }
}

TEST(MissingFiles, OneFoundByHandLeadsToTheOthers) {
    const LocalFileSystem files;
    const ScratchFolder scratch;
    const QStringList missing{"C:\\Old\\Rock\\one.mp3", "C:\\Old\\Rock\\two.mp3",
                              "C:\\Old\\Pop\\?in.mp3", "C:\\Old\\Pop\\gone.mp3",
                              "D:\\Old\\Rock\\two.mp3"};
    for (const char* name : {"new/rock/One.mp3", "new/rock/TWO.mp3", "new/Pop/Ein.mp3"})
        scratch.write(name, "x");
    Project project = projectOf(missing);
    project.buttPlayIntChime = true;
    project.txtChimeFileName = missing[1];
    const Project before = project;
    RelinkPlan plan = planRelink(project, missingFiles(project, files), {}, playingSeconds);
    EXPECT_EQ(plan.inWords(), "0 of 5 found");
    EXPECT_EQ(applyRelink(project, plan), 0);
    EXPECT_TRUE(project == before);
    EXPECT_EQ(chooseByHand(plan, 0, scratch.path("new/rock/One.mp3"), files), 2);
    const QString expectedAnswers =
        QStringList{scratch.path("new/rock/One.mp3"), scratch.path("new/rock/TWO.mp3"),
                    scratch.path("new/Pop/Ein.mp3"), "not found", "not found"}
            .join('|');
    // Where case does not count, a path may stay spelled as it was.
    EXPECT_EQ(answers(plan, missing).join('|').toLower(), expectedAnswers.toLower());

    plan.lines[2].taken = false;
    EXPECT_EQ(plan.inWords(), "3 of 5 found, 2 with a tick");
    EXPECT_EQ(applyRelink(project, plan), 2);
    Project expected = before;
    expected.TrackTable[1].sourcePath = plan.lines[0].newPath;
    expected.TrackTable[2].sourcePath = plan.lines[1].newPath;
    expected.txtChimeFileName = plan.lines[1].newPath;
    expected.unsavedChanges = true;
    EXPECT_TRUE(project == expected);
    EXPECT_EQ(editInWords(before, project), "Find 2 Files");
}

}  // namespace tessaly
