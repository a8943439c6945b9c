#include "card/card_guards.h"

#include <QFile>

#include "card/card_writer.h"
#include "platform/system_folders.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;

namespace {

int numberOf(const std::function<void()>& guard) {
    try {
        guard();
        return 0;
    } catch (const TessalyError& error) {
        return error.number;
    }
}

}  // namespace

// Each guard through a real run: its number, its step, and not one file less on the card. Those of
// step 310 are in wrong_targets_test.cpp.
TEST(CardGuards, EachEndsTheRunBeforeTheFirstDeletion) {
    const struct {
        const char* what;
        int number, step;
        std::function<void(CardBench&)> arrange;
    } cases[] = {
        {"the program's folder", error_number::SystemFolder, 311,
         [](CardBench& b) {
             b.job.folders = supportFoldersIn(b.scratch.makeFolder("card/prog"));
             b.scratch.write("card/prog/files/9998.mp3", "x");
             b.scratch.write("card/prog/firmware/0000.hex", "x");
         }},
        {"the work folder", error_number::SystemFolder, 311,
         [](CardBench& b) { b.job.workFolder = b.scratch.makeFolder("card/work"); }},
        {"the project file", error_number::SystemFolder, 311,
         [](CardBench& b) { b.job.projectFile = b.scratch.write("card/my.crd2", ""); }},
        {"what is kept", error_number::SystemFolder, 311,
         [](CardBench& b) { b.job.protectedPaths = {b.scratch.makeFolder("card/mine")}; }},
        {"a source", error_number::HoldsSource, 312,
         [](CardBench& b) {
             b.project.TrackTable[2].sourcePath = b.scratch.write("card/deep/in/a.mp3", "x");
         }},
        {"a source behind a link", error_number::HoldsSource, 312,
         [](CardBench& b) {
             b.scratch.write("card/music/a.mp3", "x");
             const bool isLinked = b.scratch.link(b.scratch.path("card/music"), "linked");
             b.project.TrackTable[2].sourcePath =
                 b.scratch.path(isLinked ? "linked/a.mp3" : "src/../card/music/a.mp3");
         }},
        {"the chime", error_number::HoldsSource, 312,
         [](CardBench& b) {
             b.useChime();
             b.project.txtChimeFileName = b.scratch.write("card/bell.mp3", "x");
         }},
        {"a write-protected card", error_number::WriteProtected, 313,
         [](CardBench& b) { b.drives.volume.isReadOnly = true; }},
        {"too little space", error_number::DoesNotFit, 314,
         [](CardBench& b) { b.drives.volume.freeBytes = 7 * 4096; }},
        {"too few entries", error_number::TooManyRootEntries, 315,
         [](CardBench& b) { b.drives.volume.rootEntries = 8; }},
    };
    for (const auto& [what, number, step, arrange] : cases) {
        SCOPED_TRACE(what);
        CardBench bench;
        bench.scratch.write("card/precious.txt", "precious");
        arrange(bench);
        const auto before = bench.card();
        const CardRunReport report = bench.create();
        ASSERT_EQ(report.outcome, CardRunReport::Outcome::Failed);
        EXPECT_EQ(report.error->number, number) << report.error->what();
        EXPECT_EQ(bench.observer.title, "Tessaly Error " + QString::number(step));
        auto after = bench.card();
        for (const char* temporary : {"work/tmp.bin", "work/tmp.hex", "work/tmp.crd"})
            after.remove(temporary);
        EXPECT_EQ(after, before);
    }
}

TEST(CardGuards, SystemAndPersonalFoldersAreNoCards) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const SupportFolders folders =
        supportFoldersIn(scratch.makeFolder("program"), scratch.makeFolder("user/own"));
    scratch.write("user/own/firmware/0000.hex", "x");
    const auto refused = [&](const QString& root) {
        return numberOf([&] { refuseSystemFolder(files, root, folders, {}); }) ==
               error_number::SystemFolder;
    };
    for (const QString& folder : systemFolders() + personalFolders())
        if (files.isFolder(folder)) {
            EXPECT_TRUE(refused(folder)) << folder.toStdString();
        }
#ifdef Q_OS_WIN
    const QString system = qEnvironmentVariable("SystemRoot"), inner = system + "/system32";
    EXPECT_TRUE(refused(system.toLower()));
#else
    const QString system = "/usr", inner = "/usr/share";
#endif
    if (scratch.link(system, "link to system")) {
        EXPECT_TRUE(refused(scratch.path("link to system")));
    }
    EXPECT_TRUE(refused(inner));
    EXPECT_TRUE(refused(inner + "/.."));
    EXPECT_TRUE(refused(scratch.path()));  // holds the program
    for (const char* held : {"program", "user", "user/own", "user/own/firmware"})
        EXPECT_TRUE(refused(scratch.path(held))) << held;
    EXPECT_FALSE(refused(scratch.makeFolder("card")));
}

TEST(CardGuards, SpaceIsCountedInWholeClusters) {
    VolumeGeometry volume{.clusterBytes = 512, .totalBytes = 0, .freeBytes = 1024};
    const auto fits = [&](const QList<qint64>& sizes, qint64 freed = 0) {
        SpacePlan plan{.newFiles = {}, .freedBytes = freed};
        for (const qint64 size : sizes)
            plan.newFiles.append({{}, size, {}});
        return numberOf([&] { requireSpace(plan, volume); }) == 0;
    };
    EXPECT_TRUE(fits({1, 1}));
    EXPECT_FALSE(fits({1, 1, 1}));
    EXPECT_TRUE(fits({1, 1, 1}, 512));
    EXPECT_TRUE(fits({0, 0, 0, 1024}));
    EXPECT_FALSE(fits({513, 512}));
    // On FAT32 the folder takes clusters too: 16 entries of 32 bytes, one of them the label's.
    volume.isFat = true;
    const auto growsInto = [&](int entries, qint64 freeBytes) {
        volume.freeBytes = freeBytes;
        return numberOf([&] { requireSpace({.newFiles = {}, .newEntries = entries}, volume); }) ==
               0;
    };
    EXPECT_TRUE(growsInto(15, 0));
    EXPECT_FALSE(growsInto(16, 0));
    EXPECT_TRUE(growsInto(31, 512));
    EXPECT_FALSE(growsInto(32, 512));
    volume.folderBytes = 1024;
    EXPECT_TRUE(growsInto(31, 0));
}

TEST(CardGuards, NamesTakeEntriesOfTheirFolder) {
    const struct {
        const char* name;
        int oneCase, upperCase;
    } cases[] = {
        {"0001.mp3", 1, 2},      {"0000.XD3", 1, 1},   {"README", 1, 1},
        {"Readme.txt", 2, 2},    {"0000.crd2", 2, 2},  {"two words", 2, 2},
        {"nine-long.mp3", 2, 2}, {"dots.in.it", 2, 2}, {"fourteen-chars", 3, 3},
        {"\u00E4.mp3", 2, 2},    {"lower.TXT", 1, 2},  {"System Volume Information", 3, 3}};
    for (const auto& [name, oneCase, upperCase] : cases) {
        EXPECT_EQ(fatEntriesOf(name, FatNames::OneCase), oneCase) << name;
        EXPECT_EQ(fatEntriesOf(name, FatNames::UpperCase), upperCase) << name;
        EXPECT_EQ(fatEntriesOf(name, FatNames::All), 1) << name;
    }
}

// The eight files of a card, one of them "0000.crd2", and the entry of the label.
TEST(CardGuards, RootEntriesAreCountedByName) {
    const auto least = [](FatNames names, const std::function<void(CardBench&)>& arrange,
                          bool settingsOnly = false) {
        CardBench bench;
        if (settingsOnly) {
            EXPECT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
        }
        bench.drives.volume.isFat = true;
        bench.drives.volume.fatNames = names;
        arrange(bench);
        for (int& entries = bench.drives.volume.rootEntries.emplace(1); entries < 40; ++entries)
            if ((settingsOnly ? bench.update() : bench.create()).outcome ==
                CardRunReport::Outcome::Done)
                return entries;
        return 40;
    };
    const auto asItIs = [](CardBench&) {};
    EXPECT_EQ(least(FatNames::OneCase, asItIs), 1 + 9);
    EXPECT_EQ(least(FatNames::UpperCase, asItIs), 1 + 16);
    EXPECT_EQ(least(FatNames::All, asItIs), 1 + 8);
    const auto used = [](CardBench& bench) {
        bench.scratch.write("card/An old file.txt", "old");
        bench.scratch.write("card/System Volume Information/WPSettings.dat", "kept");
    };
    EXPECT_EQ(least(FatNames::OneCase, used), 1 + 9 + 3);

    // An update writes over names that are there; Linux needs more for a name than Windows left.
    EXPECT_EQ(least(FatNames::OneCase, asItIs, true), 1 + 9);
    EXPECT_EQ(least(FatNames::UpperCase, asItIs, true), 1 + 16);
    const auto byWindows = [](CardBench& bench) {
        for (const QString& name : bench.card().keys())
            bench.drives.volume.entriesByName[name] = fatEntriesOf(name, FatNames::OneCase);
    };
    EXPECT_EQ(least(FatNames::UpperCase, byWindows, true), 1 + 9 + 3 * 2);
    const auto newChime = [](CardBench& bench) { bench.useChime(); };
    EXPECT_EQ(least(FatNames::OneCase, newChime, true), 1 + 9 + 1);
}

// What is erased makes room: a file its clusters, a folder on FAT its own too.
TEST(CardGuards, FoldersThatAreErasedFreeTheirClusters) {
    const auto least = [](bool isFat, const QStringList& onCard) {
        CardBench bench;
        bench.drives.volume = {.clusterBytes = 512, .isFat = isFat, .rootEntries = 512};
        for (const QString& name : onCard)
            bench.scratch.write("card/" + name, QByteArray(1, 'x'));
        while (bench.create().outcome != CardRunReport::Outcome::Done)
            bench.drives.volume.freeBytes += 512;
        return bench.drives.volume.freeBytes / 512;
    };
    QStringList wide = {"wide/first"};  // "." and ".." and 15 more are two clusters
    for (int i = 0; i < 14; ++i)
        wide.append(QString("wide/%1").arg(i));
    for (const bool isFat : {false, true}) {
        const qint64 empty = least(isFat, {});
        EXPECT_EQ(empty - least(isFat, {"a.txt"}), 1);
        EXPECT_EQ(empty - least(isFat, {"deep/er/a.txt"}), isFat ? 3 : 1);
        EXPECT_EQ(empty - least(isFat, wide), isFat ? 17 : 15);
        EXPECT_EQ(empty - least(isFat, {"System Volume Information/a"}), 0);
    }
}

TEST(CardGuards, SettingsMustNotPointAtOtherMusic) {
    const struct {
        const char* what;
        std::function<void(CardBench&)> arrange;
        bool passes;
    } cases[] = {
        {"the same project", [](CardBench&) {}, true},
        {"a track more",
         [](CardBench& b) { addTrack(b.project, "L", "x", b.scratch.write("src/x.mp3", "x")); },
         false},
        {"another size", [](CardBench& b) { b.scratch.write("src/hello.mp3", "hello!"); }, false},
        {"a missing file", [](CardBench& b) { QFile::remove(b.scratch.path("card/0002.mp3")); },
         false},
        {"two tracks swapped, of one size",
         [](CardBench& b) {
             b.scratch.write("src/third.mp3", QByteArray(5000, '3'));
             b.project.TrackTable[1].sourcePath = b.scratch.path("src/third.mp3");
         },
         false},
        {"no project on the card, sizes fit",
         [](CardBench& b) { QFile::remove(b.scratch.path("card/0000.crd2")); }, true},
        {"a damaged project on the card",
         [](CardBench& b) {
             b.scratch.write("card/0000.crd2", b.scratch.read("card/0000.crd2").left(700));
         },
         true},
    };
    for (const auto& [what, arrange, passes] : cases) {
        SCOPED_TRACE(what);
        CardBench bench;
        ASSERT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
        arrange(bench);
        const auto before = bench.card();
        const CardRunReport report = bench.update();
        EXPECT_EQ(report.outcome == CardRunReport::Outcome::Done, passes);
        if (!passes) {
            EXPECT_EQ(report.error->number, error_number::CardDiffers);
            EXPECT_TRUE(bench.observer.text.endsWith("create the card anew."));
            EXPECT_EQ(bench.observer.title, "Tessaly Error 316");
            EXPECT_EQ(bench.card(), before);
        }
    }
}

}  // namespace tessaly
