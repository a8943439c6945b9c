// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_guards.h"

#include <QFile>

#include "platform/paths.h"
#include "support/card_bench.h"
#include "support/file_questions.h"

namespace tessaly {

using namespace test;
using namespace error_number;

namespace {

using B = CardBench&;

void remove(B b, const QString& name) {
    QFile::remove(b.scratch.path(name));
}

void growSource(B b, qint64 bytes) {
    QFile::resize(b.scratch.path("src/second.MP3"), bytes);
}

// A folder and a file of somebody's on the card.
QString folder(B b) {
    return b.scratch.makeFolder("card/deep");
}
QString file(B b) {
    return b.scratch.write("card/deep/a.mp3", "x");
}

void exchange(B b) {
    QDir().rename(b.scratch.path("card"), b.scratch.path("pulled"));
    b.scratch.write("card/other.txt", "x");
}

void moveProgram(B b) {
    b.job.folders = supportFoldersIn(b.scratch.makeFolder("card/prog"));
    b.scratch.write("card/prog/files/9998.mp3", "x");
    b.scratch.write("card/prog/firmware/0000.hex", "x");
}

}  // namespace

// Each guard through a real run: its number, its step, what it says, and not one byte less on the
// card. Drives that are not ready change while the question stands.
TEST(CardGuards, EachEndsTheRunBeforeTheFirstDeletion) {
    constexpr int NoSuchFile = FaultyFileSystem::NoSuchFile;
    const struct {
        const char* what;
        int number, step;
        std::function<void(B)> arrange;
        QString text{};  // a part of it
    } cases[] = {
        {"no source", SourceMissing, 200, [](B b) { remove(b, "src/first.mp3"); },
         "Cannot find file "},
        {"no firmware", FirmwareMissing, 201, [](B b) { remove(b, "app/firmware/0000.hex"); },
         "Cannot find firmware file "},
        {"no calibration", CalibrationMissing, 202, [](B b) { remove(b, "app/files/9998.mp3"); },
         "Cannot find calibration file "},
        {"17 languages", TooManyLanguages, 301,
         [](B b) { b.project.lstLangs = QString("a").repeated(17).split("", Qt::SkipEmptyParts); },
         "has 17 languages, the card can hold 16"},
        {"what FAT cannot count", SourceTooLarge, 305, [](B b) { growSource(b, 4294967296); },
         "second.MP3 has 4,294,967,296 bytes, a file on a card can have 4,294,967,295: "},
        {"one byte less", DoesNotFit, 314, [](B b) { growSource(b, 4294967295); }},
        {"a fixed disk", NotRemovable, 310, [](B b) { b.drives.driveType = DriveType::Fixed; }},
        {"a share", NotRemovable, 310, [](B b) { b.drives.driveType = DriveType::Network; }},
        {"a RAM disk", NotRemovable, 310, [](B b) { b.drives.driveType = DriveType::RamDisk; }},
        {"another card", DriveNotReady, 310, [](B b) { b.drives.inserted = "card B"; }},
        {"another folder", DriveNotReady, 310, [](B b) { exchange(b); }},
        {"no card", DriveNotReady, 310, [](B b) { b.drives.isReady = false; }},
        {"drives inside", SystemFolder, 311, [](B b) { b.drives.mounted = {"/media/me/CARD"}; }},
        {"the program's folder", SystemFolder, 311, [](B b) { moveProgram(b); }},
        {"the work folder", SystemFolder, 311, [](B b) { b.job.workFolder = folder(b); }},
        {"the project file", SystemFolder, 311, [](B b) { b.job.projectFile = file(b); }},
        {"a protected path", SystemFolder, 311, [](B b) { b.job.protectedPaths = {folder(b)}; }},
        {"a source", HoldsSource, 312, [](B b) { b.project.TrackTable[2].sourcePath = file(b); }},
        {"a source behind a link", HoldsSource, 312,
         [](B b) {
             const bool isLinked = b.scratch.link(folder(b), "linked");
             b.project.TrackTable[2].sourcePath = file(b).replace(
                 isLinked ? "card/deep" : "card", isLinked ? "linked" : "src/../card");
         }},
        {"the chime", HoldsSource, 312, [](B b) { b.project.txtChimeFileName = file(b); }},
        {"write-protected", WriteProtected, 313, [](B b) { b.drives.volume.isReadOnly = true; }},
        {"too little space", DoesNotFit, 314, [](B b) { b.drives.volume.freeBytes = 8 * 4096; }},
        {"few entries", TooManyRootEntries, 315, [](B b) { b.drives.volume.rootEntries = 9; }},
        // These two have no check of their own: their copies fail.
        {"no configuration", NoSuchFile, 69, [](B b) { remove(b, "app/files/0007.cfg"); }},
        {"no chime", NoSuchFile, 18, [](B b) { remove(b, "chime.mp3"); }, "chime.mp3"}};
    for (const auto& [what, number, step, arrange, text] : cases) {
        for (const bool settingsOnly : {false, true}) {
            if (settingsOnly && (step < 310 || step > 313))
                continue;
            SCOPED_TRACE(what);
            CardBench bench;
            bench.useChime();
            bench.scratch.write("card/precious.txt", "precious");
            bench.job.mustBeRemovableRoot = true;
            NotingObserver& observer = bench.observer;
            QMap<QString, QByteArray> before;
            const bool isMeanwhile = number == DriveNotReady;
            observer.onQuestion = [&, act = arrange] {
                if (isMeanwhile)
                    act(bench);
                before = bench.card();
            };
            if (!isMeanwhile)
                arrange(bench);
            const CardRunReport report = bench.run(settingsOnly);
            ASSERT_TRUE(report.error);
            EXPECT_EQ(report.error->number, number) << report.error->what();
            EXPECT_EQ(observer.title, QString("Tessaly Error %1").arg(step));
            EXPECT_TRUE(observer.text.startsWith(
                QString("Error # %1 was generated by Tessaly\r").arg(number)));
            EXPECT_TRUE(observer.text.contains(text)) << observer.text.toStdString();
            auto after = bench.card();
            for (const char* temporary : {"deep/tmp.bin", "deep/tmp.hex", "deep/tmp.crd"})
                after.remove(temporary);
            EXPECT_EQ(after == before, number != NoSuchFile);
        }
    }
}

TEST(CardGuards, SystemAndPersonalFoldersAreNoCards) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const SupportFolders folders =
        supportFoldersIn(scratch.makeFolder("program"), scratch.makeFolder("user/own"));
    scratch.write("user/own/firmware/0000.hex", "x");
    const auto refused = [&](const QString& root) {
        return errorOf([&] { refuseSystemFolder(files, root, folders, {}); }).number ==
               error_number::SystemFolder;
    };
    for (const QString& folder : systemFolders() + personalFolders())
        if (files.isFolder(folder)) {
            EXPECT_TRUE(refused(folder)) << folder.toStdString();
        }
#ifdef Q_OS_WIN
    EXPECT_TRUE(refused(qEnvironmentVariable("SystemRoot").toLower() + "/system32"));
#else
    EXPECT_TRUE(scratch.link("/usr", "link to system") && refused(scratch.path("link to system")));
    EXPECT_TRUE(refused("/usr/share"));
#endif
    for (const char* held : {"program", "user", "user/own", "user/own/firmware"})
        EXPECT_TRUE(refused(scratch.path(held))) << held;
    EXPECT_FALSE(refused(scratch.makeFolder("card")));
}

// On FAT32 the folder takes clusters too: 16 entries of 32 bytes, one of them the label's.
TEST(CardGuards, AFolderGrowsInWholeClusters) {
    VolumeGeometry volume{.clusterBytes = 512, .isFat = true};
    const auto fits = [&](int entries, qint64 freeBytes) {
        volume.freeBytes = freeBytes;
        return errorOf([&] {
                   requireSpace({.newFiles = {}, .newEntries = entries}, volume);
               }).number == 0;
    };
    EXPECT_TRUE(fits(15, 0) && fits(31, 512));
    EXPECT_FALSE(fits(16, 0) || fits(32, 512));
    volume.folderBytes = 1024;
    EXPECT_TRUE(fits(31, 0));
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
    const auto asItIs = [](B) {};
    const auto used = [](B b) {
        b.scratch.write("card/An old file.txt", "old");
        b.scratch.write("card/System Volume Information/WPSettings.dat", "kept");
    };
    const auto byWindows = [](B b) {
        for (const QString& name : b.card().keys())
            b.drives.volume.entriesByName[name] = fatEntriesOf(name, FatNames::OneCase);
    };
    const struct {
        FatNames names;
        bool settingsOnly;
        int least;
        std::function<void(B)> arrange;
    } cases[] = {
        {FatNames::OneCase, false, 1 + 9, asItIs},
        {FatNames::UpperCase, false, 1 + 16, asItIs},
        {FatNames::All, false, 1 + 8, asItIs},
        {FatNames::OneCase, false, 1 + 9 + 3, used},
        // An update writes over names that are there; Linux needs more for one than Windows left.
        {FatNames::OneCase, true, 1 + 9, asItIs},
        {FatNames::UpperCase, true, 1 + 16, asItIs},
        {FatNames::UpperCase, true, 1 + 9 + 3 * 2, byWindows},
        {FatNames::OneCase, true, 1 + 9 + 1, [](B b) { b.useChime(); }}};
    for (const auto& [names, settingsOnly, least, arrange] : cases) {
        CardBench bench;
        if (settingsOnly)
            bench.create();
        bench.drives.volume.isFat = true;
        bench.drives.volume.fatNames = names;
        arrange(bench);
        for (const int entries : {least - 1, least}) {
            bench.drives.volume.rootEntries = entries;
            EXPECT_EQ(bench.run(settingsOnly).outcome == CardRunReport::Outcome::Done,
                      entries == least)
                << entries;
        }
    }
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
        EXPECT_EQ(empty, 23);  // every file in whole clusters
        EXPECT_EQ(empty - least(isFat, {"a.txt"}), 1);
        EXPECT_EQ(empty - least(isFat, {"deep/er/a.txt"}), isFat ? 3 : 1);
        EXPECT_EQ(empty - least(isFat, wide), isFat ? 17 : 15);
        EXPECT_EQ(empty - least(isFat, {"System Volume Information/a"}), 0);
    }
}

TEST(CardGuards, SettingsMustNotPointAtOtherMusic) {
    const struct {
        bool passes;
        std::function<void(B)> arrange;
    } cases[] = {
        {true, [](B) {}},
        {false, [](B b) { addTrack(b.project, "L", "x", b.scratch.write("src/x.mp3", "x")); }},
        {false, [](B b) { b.scratch.write("src/hello.mp3", "hello!"); }},
        {false, [](B b) { remove(b, "card/0002.mp3"); }},
        {false,  // another file of the same size
         [](B b) {
             const QString other = b.scratch.write("src/third.mp3", QByteArray(5000, '3'));
             b.project.TrackTable[1].sourcePath = other;
         }},
        // Without the card's own project, sizes alone decide.
        {true, [](B b) { remove(b, "card/0000.crd2"); }},
        {true, [](B b) { QFile::resize(b.scratch.path("card/0000.crd2"), 700); }}};
    for (const auto& [passes, arrange] : cases) {
        CardBench bench;
        ASSERT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
        arrange(bench);
        const auto before = bench.card();
        EXPECT_EQ(bench.update().outcome == CardRunReport::Outcome::Done, passes);
        if (!passes) {
            EXPECT_TRUE(bench.observer.text.startsWith("Error # 536 ") &&
                        bench.observer.text.endsWith("create the card anew."));
            EXPECT_EQ(bench.observer.title, "Tessaly Error 316");
            EXPECT_FALSE(bench.writer.updateSettingsOnly);
            EXPECT_EQ(bench.card(), before);
        }
    }
}

}  // namespace tessaly
