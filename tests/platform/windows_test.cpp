// SPDX-License-Identifier: GPL-3.0-or-later
// What is different on Windows: names, attributes, drive letters. A removable drive is needed for
// some of it; its root stands in TESSALY_CARD_DRIVE, and everything on it will be erased.
#include <QFile>
#include <functional>

#include "card/card_verifier.h"
#include "card/file_copier.h"
#include "editor/list_import.h"
#include "platform/drives.h"
#include "platform/mp3_tags.h"
#include "platform/windows/files.h"
#include "support/card_bench.h"
#include "support/fake_tags.h"
#include "support/file_questions.h"

namespace tessaly {

using namespace test;

namespace {

const QString OutsideCodePage = QStringLiteral("Łódź Песня 音楽 🎵.mp3");
constexpr DWORD Protected = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;

const wchar_t* wide(const QString& path) {
    return reinterpret_cast<const wchar_t*>(path.utf16());
}

void protect(const QString& path) {
    ASSERT_TRUE(::SetFileAttributesW(wide(path), Protected));
}

QByteArray contentOf(LocalFileSystem& files, const QString& path) {
    return readWholeFile(files, path, 1 << 20);
}

// Holds a file as the system holds its own: nobody else may open or delete it.
class HeldFile {
 public:
    explicit HeldFile(const QString& path)
        : handle_(::CreateFileW(wide(path), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, nullptr)) {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
    }
    ~HeldFile() { ::CloseHandle(handle_); }

 private:
    HANDLE handle_;
};

class RemovableDrive : public testing::Test {
 protected:
    void SetUp() override {
        if (root.isEmpty())
            GTEST_SKIP() << "TESSALY_CARD_DRIVE names no drive";
        empty();
    }
    void TearDown() override {
        if (!root.isEmpty())
            empty();
    }
    void empty() {
        for (const FolderEntry& entry : files.entries(root))
            entry.isFolder ? void(QDir(root + entry.name).removeRecursively())
                           : files.removeFile(root + entry.name);
    }

    const QString root = qEnvironmentVariable("TESSALY_CARD_DRIVE");
    LocalFileSystem files;
    LocalDrives drives;
};

}  // namespace

TEST(WindowsFiles, NamesMayBeLongAndOfAnyLettersAndCase) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString upper = scratch.write("Card/Über.mp3", "x");
    EXPECT_EQ(files.identity(upper), files.identity(scratch.path("cARD/üBER.MP3")));
    EXPECT_EQ(files.identity(upper), files.identity(QDir::fromNativeSeparators(upper)));
    QString folder = scratch.makeFolder("long");
    while (folder.size() < 400)
        folder = pathIn(folder, QString(60, QChar(u'ö')));
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString sample = TESSALY_SAMPLES "/tour/Music/Harbour Morning/01 Morning Bell.mp3";
    const QString file = pathIn(folder, OutsideCodePage);
    const auto inside = files.openFolder(folder);
    const WrittenFile written = copyFile(files, sample, *inside, OutsideCodePage, [](qint64) {});
    EXPECT_EQ(files.fileSize(file), written.size);
    EXPECT_EQ(readBack(files, file, [](qint64) {}).hash, written.hash);
    EXPECT_EQ(LocalMp3Tags().read(file).first.title, "Morning Bell");
    ASSERT_EQ(files.entries(folder).size(), 1);
    EXPECT_EQ(files.entries(folder)[0].name, OutsideCodePage);
    EXPECT_TRUE(files.isWritableFolder(folder));
    EXPECT_EQ(files.identity(file), files.identity(files.canonicalPath(file)));
    files.replaceFile(file, "short");
    EXPECT_EQ(contentOf(files, file), "short");
    inside->removeFile(OutsideCodePage);
    EXPECT_TRUE(inside->entries().isEmpty());
}

// Such names come onto a card on other systems. Explorer cannot delete them.
TEST(WindowsFiles, NamesThatWindowsReservesAreListedAndRemoved) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString folder = scratch.path();
    const QStringList names = {"NUL", "aux.mp3", "con", "dot.", "blank "};
    for (const QString& name : names)
        files.create(pathIn(folder, name))->close();
    EXPECT_EQ(files.entries(folder).size(), names.size());
    for (const FolderEntry& entry : files.entries(folder)) {
        EXPECT_TRUE(names.contains(entry.name)) << entry.name.toStdString();
        files.removeFile(pathIn(folder, entry.name));
    }
    EXPECT_TRUE(files.entries(folder).isEmpty());
}

TEST(WindowsFiles, ProtectedOnesAreSeenOverwrittenAndRemoved) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString file = scratch.write("0001.mp3", "the old and longer one");
    protect(file);
    EXPECT_EQ(files.entries(scratch.path()).size(), 1);
    const auto out = files.create(file);
    out->write("new");
    out->close();
    EXPECT_EQ(contentOf(files, file), "new");
    EXPECT_FALSE(::GetFileAttributesW(wide(file)) & Protected);
    protect(file);
    files.removeFile(file);
    const QString folder = scratch.makeFolder("hidden");
    protect(folder);
    files.openFolder(scratch.path())->removeFolder("hidden");
    EXPECT_TRUE(files.entries(scratch.path()).isEmpty());
}

TEST(WindowsFiles, AFileThatAnotherProgramHoldsIsNamed) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString path = scratch.path("held.mp3");
    const HeldFile held(path);
    const std::function<void()> attempts[] = {[&] { files.openForReading(path, {}); },
                                              [&] { files.create(path); },
                                              [&] { files.removeFile(path); }};
    for (const auto& attempt : attempts) {
        const TessalyError error = errorOf(attempt);
        EXPECT_EQ(error.number, ERROR_SHARING_VIOLATION);
        EXPECT_TRUE(error.description.startsWith(path + ": "));
    }
}

TEST(WindowsFiles, WhatWasWrittenIsFlushedAndReadPastTheCache) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    QByteArray bytes;
    for (int i = 0; i < 700000; ++i)  // two blocks and an odd rest
        bytes.append("abc");
    const QString from = scratch.write("from.mp3", bytes + 'x');
    const auto folder = files.openFolder(scratch.path());
    const WrittenFile written = copyFile(files, from, *folder, "to.mp3", [](qint64) {});
    files.settle(scratch.path("to.mp3"));
    files.flushVolume(scratch.path());
    const ReadBack back = readBack(files, scratch.path("to.mp3"), [](qint64) {});
    EXPECT_TRUE(back.isPastCache);
    EXPECT_EQ(back.size, bytes.size() + 1);
    EXPECT_EQ(back.hash, written.hash);
}

// A player that stands on the drive itself leaves the letter out.
TEST(WindowsPlaylists, PathsFromARootStayOnThePlaylistsDrive) {
    Project project;
    importPlaylist(project,
                   "#EXTM3U\t\r\n#EXTINF:1,a\r\n\\Music\\a.mp3\r\n#EXTINF:1,b\r\n/Music/b.mp3\r\n"
                   "#EXTINF:1,c\r\n\\\\server\\music\\c.mp3\r\n"
                   "#EXTINF:1,d\r\nd.mp3\r\n",
                   FakeTags(), "F:\\lists\\l.m3u");
    QStringList paths;
    for (const TrackRecord& record : project.TrackTable.mid(1))
        paths.append(record.sourcePath.text());
    EXPECT_EQ(paths, (QStringList{"F:\\Music\\a.mp3", "F:/Music/b.mp3", "\\\\server\\music\\c.mp3",
                                  "F:\\lists\\d.mp3"}));
}

TEST_F(RemovableDrive, IsKnownByItsLetterHoweverThatIsWritten) {
    const QString letter = root.left(2);
    for (const QString& written : {root, letter, root.toLower(), letter.toLower() + '/'}) {
        EXPECT_EQ(drives.type(written), DriveType::Removable) << written.toStdString();
        EXPECT_GT(drives.totalBytes(written), 0);
    }
    QDir(root).mkdir("folder");
    for (const QString& noRoot : {root + "folder", root + "folder\\", QString("B:\\"), QString()})
        EXPECT_THROW(drives.type(noRoot), TessalyError) << noRoot.toStdString();
    bool isListed = false, isSystemListed = false;
    for (const Volume& volume : drives.volumes()) {
        isListed |= volume.root == root && volume.type == DriveType::Removable && volume.isReady;
        isSystemListed |= volume.root == "C:\\" && volume.type == DriveType::Fixed;
    }
    EXPECT_TRUE(isListed && isSystemListed);
    // A bare letter is the drive's root, whatever folder of it is the current one.
    const QString before = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(root + "folder"));
    files.create(pathIn(letter, "0001.mp3"))->close();
    EXPECT_EQ(files.identity(letter), files.identity(root));
    EXPECT_TRUE(files.fileSize(root + "0001.mp3").has_value());
    QDir::setCurrent(before);
}

TEST_F(RemovableDrive, TakesACardWhateverStoodThere) {
    CardBench bench;
    CardWriter writer(files, drives);
    bench.job.root = root;
    bench.job.mustBeRemovableRoot = true;
    bench.scratch.write("elsewhere", "");
    protect(files.create(root + "0001.mp3") ? root + "0001.mp3" : QString());
    QDir(root).mkpath("deep/er");
    files.create(root + "deep/er/" + OutsideCodePage)->close();
    protect(root + "deep");
    QDir(root).mkdir("System Volume Information");
    {
        const HeldFile held(root + "System Volume Information\\tracking.log");
        EXPECT_EQ(writer.createCard(bench.project, bench.job, bench.observer).outcome,
                  CardRunReport::Outcome::Done)
            << bench.observer.text.toStdString();
        EXPECT_TRUE(files.fileSize(root + "System Volume Information\\tracking.log"));
    }
    EXPECT_FALSE(files.isFolder(root + "deep"));
    EXPECT_EQ(contentOf(files, root + "0001.mp3"), QByteArray(5000, '1'));
    EXPECT_TRUE(verifyCard(files, root).isGood());

    // Any other folder that cannot be deleted ends the run.
    QDir(root).mkdir("others");
    const HeldFile held(root + "others\\open.doc");
    EXPECT_EQ(writer.createCard(bench.project, bench.job, bench.observer).outcome,
              CardRunReport::Outcome::Failed);
    EXPECT_EQ(bench.observer.title, "Tessaly Error 101");
    EXPECT_TRUE(bench.observer.text.contains(root + "others\\open.doc: "));
}

TEST(WindowsGuards, AFixedDriveIsNoCard) {
    CardBench bench;
    const LocalDrives drives;
    bench.job.root = QDir::toNativeSeparators(QDir::rootPath());
    bench.job.mustBeRemovableRoot = true;
    const auto report =
        CardWriter(bench.files, drives).createCard(bench.project, bench.job, bench.observer);
    EXPECT_TRUE(report.error && report.error->number == error_number::NotRemovable);
}

}  // namespace tessaly
