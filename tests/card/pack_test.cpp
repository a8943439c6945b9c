// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/pack.h"

#include <QRegularExpression>

#include "card/portable_names.h"
#include "model/files_beside.h"
#include "model/text_codec.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;

namespace {

struct PackBench : CardBench {
    PackTarget target{scratch.path("stick/tour"), scratch.path("harbour.crd2")};
    std::function<bool()> keepGoingNow = [] { return true; };

    PackBench() {
        scratch.makeFolder("stick");
        files.toDevice = false;
        useChime();
        project.TrackTable[2].sourcePath = project.TrackTable[1].sourcePath;
    }
    PackPlan plan() const { return planPack(project, target, files, drives); }
    void pack(const PackPlan& what) {
        packProject(files, what, [&](const RunProgress& progress) {
            EXPECT_LE(progress.bytesDone, progress.bytesTotal);
            return keepGoingNow();
        });
    }
    /// What the packing throws; nothing when it does not.
    std::optional<TessalyError> failure() {
        try {
            pack(plan());
        } catch (const TessalyError& error) {
            return error;
        }
        return std::nullopt;
    }
    QMap<QString, QByteArray> sources() const {
        auto found = scratch.content("src");
        found["chime"] = scratch.read("chime.mp3");
        return found;
    }
};

// What each item of a project plays.
QStringList sounds(const Project& project) {
    QStringList found;
    LocalFileSystem files;
    const auto add = [&](const QString& item, const QString& path) {
        found.append(item + " = " + readWholeFile(files, path, 1 << 20));
    };
    for (const TrackRecord& record : project.TrackTable)
        if (isTrackFile(record))
            add(record.groupName.text() + '/' + record.itemName.text(), record.sourcePath.text());
    add("chime", project.txtChimeFileName);
    return found;
}

// Whether Windows, Linux and macOS take a name, and a project file holds it.
bool isForEverybody(const QString& name) {
    static const QRegularExpression wrong(
        "[\\x00-\\x1F\\x7F-\\x9F<>:\"/\\\\|?*]|^[. ]|[. ]$|^(con|prn|aux|nul|com\\d|lpt\\d) "
        "*(\\.|$)",
        QRegularExpression::CaseInsensitiveOption);
    return !name.isEmpty() && name.toUtf8().size() <= 255 && fitsCodePage(name) &&
           !wrong.match(name).hasMatch();
}

}  // namespace

TEST(Pack, NamesAreForAllSystems) {
    const std::pair<QString, QString> cases[] = {
        {"Rock", "Rock"},
        {"What? 1/2: <a> \"b\" | c*d\\e", "What_ 1_2_ _a_ _b_ _ c_d_e"},
        {" . .hidden. ", "hidden"},
        {"...", {}},
        {"???", {}},
        {QStringLiteral("Песня"), {}},
        {QStringLiteral("Žlutý kůň №7"), QStringLiteral("Žlutý kun No7")},
        {QStringLiteral("e\u0301te\u0301 \uFB01n\u00A0\u200Eab"), QStringLiteral("été fin ab")},
        {QStringLiteral("tab\tbell\a\U0001F3B5 \U0001D400"), QStringLiteral("tab bell_ A")},
        {fromNativePath("caf\xE9"), QStringLiteral("café")},
        {QString(200, 'x'), QString(60, 'x')},
        {QString(59, 'x') + " y", QString(59, 'x')},
    };
    for (const auto& [text, name] : cases)
        EXPECT_EQ(portableName(text), name) << text.toStdString();

    PortableNames names;
    QStringList given;
    for (const char* text : {"Rock", "ROCK", "rock (2)", "Rock", "CON", "con", "nul.txt", "com1 ",
                             "", "???", "Comedy"})
        given.append(names.add({text}, ".mp3"));
    EXPECT_EQ(given, QStringList({"Rock.mp3", "ROCK (2).mp3", "rock (2) (2).mp3", "Rock (3).mp3",
                                  "_CON.mp3", "_con (2).mp3", "_nul.txt.mp3", "_com1.mp3",
                                  "unnamed.mp3", "unnamed (2).mp3", "Comedy.mp3"}));
    EXPECT_EQ(endingOf("a.b.MP3"), ".MP3");
    for (const char* name : {"a", ".mp3", "a.", "a.longer6", "a.m 3"})
        EXPECT_EQ(endingOf(name), "") << name;
}

// Whatever a project is called, holds and shares: packed, moved away and opened without its sources
// it plays the same.
TEST(Pack, RandomProjectsTravel) {
    const QStringList names = {"a.mp3",    "A.MP3",     "con 1.mp3", QStringLiteral("Песня.mp3"),
                               "end .mp3", "no ending", ".mp3",      QStringLiteral("Größe.mp3")};
    std::mt19937 random(7);
    for (int round = 0; round < 25; ++round) {
        const ScratchFolder scratch;
        LocalFileSystem files;
        FakeDrives drives;
        Project project = randomProject(random, 12, Names::Any);
        QStringList paths = {scratch.write("chime/a.mp3", "ding")};
        for (TrackRecord& record : project.TrackTable) {
            if (!isTrackFile(record))
                continue;
            const int number = int(paths.size());
            if (random() % 4 != 0)
                paths.append(
                    scratch.write(QString("from/%1/%2").arg(number).arg(names[int(random() % 8)]),
                                  "sound " + QByteArray::number(number)));
            record.sourcePath = paths[int(random() % size_t(paths.size()))];
        }
        project.txtChimeFileName = paths[0];
        if (random() % 2)
            setChimeOption(project, &Project::buttDisableChime, true);
        Project expected;
        applyRecords(projectRecords(project), expected);
        const auto before = scratch.content("from");

        const QString folder = scratch.path(round % 2 ? "out" : QStringLiteral("Łódź/ö/out"));
        const PackPlan plan = planPack(project, {folder, "CON.crd2"}, files, drives);
        packProject(files, plan, [](const RunProgress&) { return true; });
        EXPECT_EQ(scratch.content("from"), before);
        for (const QString& name : scratch.content(round % 2 ? "out" : "Łódź/ö/out").keys())
            EXPECT_TRUE(isForEverybody(lastNameOf(name))) << name.toStdString();
        Project packed;
        openProjectFile(files, plan.projectFile, packed);
        EXPECT_EQ(sounds(packed), sounds(expected));

        const QStringList played = sounds(expected);
        ASSERT_TRUE(QDir().rename(folder, scratch.path("elsewhere")));
        ASSERT_TRUE(QDir(scratch.path("from")).removeRecursively());
        ASSERT_TRUE(openProjectFile(files, scratch.path("elsewhere/_CON.crd2"), packed).isComplete);
        EXPECT_EQ(sounds(packed), played);
        EXPECT_FALSE(packed.unsavedChanges);
    }
}

TEST(Pack, EachSourceIsCopiedOnce) {
    PackBench bench;
    const QString first = bench.scratch.path("src/first.mp3");
    const bool isLinked = bench.scratch.link(first, "link.mp3");
    addTrack(bench.project, "L", "three", isLinked ? bench.scratch.path("link.mp3") : first);
    addTrack(bench.project, "l", "one", bench.scratch.path("src/second.MP3"));
    bench.pack(bench.plan());
    EXPECT_EQ(bench.files.operations.mid(bench.files.operations.size() - 2),
              QStringList({"flush tour", "replace harbour.crd2"}))
        << "a project that is there has all its files on the device";
    const auto content = bench.scratch.content("stick/tour");
    EXPECT_EQ(content.keys(),
              QStringList({"Chime", "Chime/chime.mp3", "Music", "Music/L", "Music/L/first.mp3",
                           "Music/l (2)", "Music/l (2)/second.MP3", "Speech", "Speech/English",
                           "Speech/English/Hello.mp3", "harbour.crd2"}));
}

// Tails of paths from either system; never a file outside the project's folder.
TEST(Pack, FilesBesideAProject) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    for (const char* name : {"p/Music/Rock/a.mp3", "p/Rock/a.mp3", "p/a.mp3", "p/b.mp3", "c.mp3",
                             "Rock/a.mp3", "p/Speech/c.mp3"})
        scratch.write(name, name);
    const QString there = scratch.path("c.mp3"), here = scratch.path("p/");
    const std::pair<QString, QString> cases[] = {
        {"D:\\Tour\\Music\\Rock\\a.mp3", "Music/Rock/a.mp3"},
        {"/home/me/Music/Rock/a.mp3", "Music/Rock/a.mp3"},
        {"\\\\server\\share\\Rock\\a.mp3", "Rock/a.mp3"},
        {"C:/mixed\\Pop/a.mp3", "a.mp3"},
        {"gone/./Music//Rock/a.mp3", "Music/Rock/a.mp3"},
        {"C:b.mp3", {}},
        {"/gone/../c.mp3", {}},
        {"/gone/Speech/../c.mp3", {}},
        {"/gone/..", {}},
        {"/gone/Music", {}},
        {QString("x/").repeated(20000) + "Rock/a.mp3", "Rock/a.mp3"},
        {"", {}},
        {there, {}},
        {scratch.path("Rock/a.mp3"), {}},
    };
    for (const auto& [path, found] : cases) {
        Project project;
        addTrack(project, "L", "one", path);
        project.txtChimeFileName = path;
        const QString expected = found.isNull() ? path : QDir::toNativeSeparators(here + found);
        EXPECT_EQ(takeFilesBeside(files, here + "any.crd2", project), 0) << "no such project";
        scratch.write("p/tour.crd2", {});
        EXPECT_EQ(takeFilesBeside(files, here + "tour.crd2", project), found.isNull() ? 0 : 2);
        EXPECT_EQ(project.TrackTable[1].sourcePath.text(), expected);
        EXPECT_EQ(project.txtChimeFileName, expected);
        QFile::remove(here + "tour.crd2");
    }
}

// Each operation fails in turn, or the operator cancels there: what was made is gone again, and
// nothing else is.
TEST(Pack, WhatFailsIsTakenBack) {
    const QByteArray large(200000, 'x');
    for (const bool isThere : {false, true})
        for (const bool isCancelled : {false, true}) {
            bool isDone = false;
            for (int at = 0; !isDone; ++at) {
                PackBench bench;
                bench.scratch.write("src/second.MP3", large);
                bench.project.TrackTable[3].sourcePath = bench.scratch.path("src/second.MP3");
                if (isThere)
                    bench.scratch.makeFolder("stick/tour");
                const auto sources = bench.sources();
                const PackPlan plan = bench.plan();
                bench.files.operations.clear();
                if (!isCancelled)
                    bench.files.failAt = at;
                int calls = 0;
                bench.keepGoingNow = [&] { return !isCancelled || calls++ != at; };
                try {
                    bench.pack(plan);
                    isDone = true;
                } catch (const TessalyError& error) {
                    EXPECT_EQ(error.number, isCancelled ? int(error_number::Stopped)
                                                        : FaultyFileSystem::ErrorNumber);
                    EXPECT_TRUE(
                        error.description.endsWith(". What had been copied was removed again."))
                        << error.description.toStdString();
                    EXPECT_EQ(bench.scratch.content("stick").keys(),
                              isThere ? QStringList("tour") : QStringList())
                        << at << ' ' << bench.files.operations.value(at).toStdString();
                }
                EXPECT_EQ(bench.sources(), sources);
                EXPECT_LT(at, 100);
            }
        }
}

TEST(Pack, RefusesBeforeAnythingIsWritten) {
    const auto refused = [](const auto& prepare) {
        PackBench bench;
        prepare(bench);
        const auto before = bench.scratch.content("stick");
        const auto error = bench.failure();
        EXPECT_EQ(bench.scratch.content("stick"), before);
        return error ? error->number : 0;
    };
    using namespace error_number;
    EXPECT_EQ(refused([](auto& bench) { bench.scratch.write("stick/tour/notes.txt", "mine"); }),
              BadTarget);
    EXPECT_EQ(refused([](auto& bench) { bench.scratch.write("stick/tour", "a file"); }), BadTarget);
    EXPECT_EQ(refused([](auto& bench) { bench.drives.volume.freeBytes = 10000; }), DoesNotFit);
    EXPECT_EQ(refused([](auto& bench) { bench.drives.volume.isReadOnly = true; }), WriteProtected);
    EXPECT_EQ(refused([](auto& bench) {
                  bench.drives.volume.isFat = true;
                  bench.drives.volume.freeBytes = qint64(1) << 40;
                  QFile::resize(bench.scratch.path("src/first.mp3"), qint64(5) << 30);
              }),
              SourceTooLarge);
    EXPECT_EQ(
        refused([](auto& bench) { bench.project.TrackTable[1].itemName = QString(70000, 'x'); }),
        TextTooLong);

    PackBench bench;
    QFile::remove(bench.scratch.path("src/first.mp3"));
    QFile::remove(bench.scratch.path("chime.mp3"));
    EXPECT_EQ(bench.plan().missing,
              QStringList({bench.scratch.path("src/first.mp3"), bench.scratch.path("chime.mp3")}));
    setChimeOption(bench.project, &Project::buttDisableChime, true);
    EXPECT_EQ(bench.plan().missing, QStringList(bench.scratch.path("src/first.mp3")))
        << "a chime that is not played";

    // What systems put on an empty stick is in nobody's way, and stays.
    PackBench stick;
    stick.scratch.write("stick/tour/System Volume Information/IndexerVolumeGuid", "x");
    stick.scratch.write("stick/tour/.Trash-1000/info", "x");
    EXPECT_FALSE(stick.failure());
    EXPECT_TRUE(stick.scratch.content("stick/tour").contains(".Trash-1000/info"));
    EXPECT_EQ(newFolderIn(stick.files, {stick.target.folder, "/x/music.crd2"}),
              pathIn(stick.target.folder, "music (2)"));
}

// Somebody else writes into the folder meanwhile.
TEST(Pack, WritesOverNothing) {
    for (const char* name : {"stick/tour/harbour.crd2", "stick/tour/Speech/English/Hello.mp3"}) {
        PackBench bench;
        bench.target.projectFile = "harbour.crd2";
        bench.project.TrackTable[3].sourcePath = bench.scratch.write("src/other.mp3", "other");
        bench.files.onOperation = [&] {
            if (bench.files.operations.last() == "close first.mp3")
                bench.scratch.write(name, "theirs");
        };
        const auto error = bench.failure();
        ASSERT_TRUE(error);
        EXPECT_EQ(error->number, error_number::BadTarget);
        EXPECT_TRUE(error->description.contains("could not all be removed"));
        EXPECT_EQ(bench.scratch.read(name), "theirs");
    }
}

}  // namespace tessaly
