// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/local_file_system.h"

#include <QtEndian>
#include <algorithm>

#include "platform/drives.h"
#include "platform/error.h"
#include "platform/mp3_tags.h"
#include "platform/paths.h"
#include "support/file_questions.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

// The systems' own codes.
constexpr int NotFound = 2;
#ifdef Q_OS_WIN
constexpr int IsFolder = 5;  // "access denied"
#else
constexpr int IsFolder = 21;
#endif

QByteArray frame(const QByteArray& id, const QByteArray& content) {
    QByteArray size(4, '\0');
    qToBigEndian(quint32(content.size()), size.data());
    return id + size + QByteArray(2, '\0') + content;
}

// An ID3v2 tag of some 50,000 bytes: a picture, and behind it a title.
QByteArray largeTag(const QByteArray& title) {
    const QByteArray frames =
        frame("APIC", QByteArray(50000, 'p')) + frame("TIT2", QByteArray(1, '\0') + title);
    const auto size = frames.size();
    return QByteArray("ID3\3\0\0\0", 7) + char(size >> 14) + char(size >> 7 & 0x7F) +
           char(size & 0x7F) + frames;
}

}  // namespace

TEST(Paths, LongTextsShowTheirTwoEnds) {
    const QString fits(300, 'x');
    EXPECT_EQ(elided(fits), fits);
    EXPECT_EQ(elided(fits + "yz"), QString(149, 'x') + QChar(0x2026) + QString(148, 'x') + "yz");
    // A character outside the plane of 16 bits is cut off whole.
    for (const int before : {147, 148, 149, 150}) {
        const QString text = elided(QString(before, 'x') + QString::fromUtf8("🎵") + fits);
        EXPECT_EQ(text.toUtf8().count("?"), 0);
        EXPECT_EQ(QString::fromUtf8(text.toUtf8()), text) << before;
    }
    const QString end = elided(fits + QString::fromUtf8("🎵") + QString(149, 'x'));
    EXPECT_EQ(QString::fromUtf8(end.toUtf8()), end);
}

TEST(LocalFileSystem, ListsAndRemovesEverythingButFollowsNoLink) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    scratch.write("outside/precious.txt", "precious");
    scratch.write("card/.hidden", "x");
    scratch.write("card/read only.txt", "x");
    QFile::setPermissions(scratch.path("card/read only.txt"), QFile::ReadOwner);
    const bool dangles = scratch.link(scratch.path("nowhere"), "card/dangling");
    const int links = scratch.link(scratch.path("outside"), "card/link to folder") + dangles;
#ifdef Q_OS_WIN
    const QString odd = "bäd name.mp3";
#else
    const QString odd = fromNativePath(
        "b\xE4"
        "d name.mp3");  // Latin-1 bytes, no UTF-8
#endif
    files.create(pathIn(scratch.path("card"), "plain"))->close();
    files.create(pathIn(scratch.path("card"), odd))->close();

    QList<FolderEntry> entries = files.entries(scratch.path("card"));
    EXPECT_EQ(entries.size(), 4 + links);
    EXPECT_TRUE(std::none_of(entries.begin(), entries.end(),
                             [](const FolderEntry& entry) { return entry.isFolder; }));
    // Held open, it is worked on wherever its name leads to, and links are no way out of it.
    const auto card = files.openFolder(scratch.path("card"));
#ifdef Q_OS_WIN
    const QString place = scratch.path("card");
    EXPECT_FALSE(QFile::rename(place, scratch.path("moved")));
#else
    const QString place = scratch.path("moved");
    ASSERT_TRUE(QFile::rename(scratch.path("card"), place));
    QFile::link(scratch.path("outside"), scratch.path("card"));
#endif
    for (const QString way : {"link to folder", "link to folder/precious.txt", "../outside"}) {
        EXPECT_THROW(card->entries(way), TessalyError);
        EXPECT_THROW(card->removeFile(way + "/precious.txt"), TessalyError);
        EXPECT_THROW(card->removeFolder(way + "/precious.txt"), TessalyError);
    }
    if (dangles) {
        EXPECT_THROW(card->create("dangling"), TessalyError);
    }
    for (const FolderEntry& entry : entries)
        card->removeFile(entry.name);
    EXPECT_TRUE(card->entries().isEmpty());
    card->create("new")->close();
    EXPECT_EQ(namesIn(files, place), QStringList("new"));
    EXPECT_EQ(card->identity(), files.identity(place));
    EXPECT_EQ(scratch.content("outside").size(), 1);

    const TessalyError missing = errorOf([&] { files.removeFile(scratch.path("gone")); });
    EXPECT_EQ(missing.number, NotFound);
    EXPECT_TRUE(missing.description.startsWith(scratch.path("gone") + ": "));
}

TEST(LocalFileSystem, ReadsTheSamePastTheCache) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    for (const qsizetype size : {0, 1, 4095, 4096, 1 << 20, (1 << 20) + 17}) {
        QByteArray bytes(size, '\0');
        for (qsizetype i = 0; i < size; ++i)
            bytes[i] = char(i * 31 + i / 4096);
        scratch.write("f", bytes);
        for (const auto mode : {FileSystem::ReadMode::Normal, FileSystem::ReadMode::PastCache}) {
            const auto file = files.openForReading(scratch.path("f"), mode);
            QByteArray read;
            for (auto block = file->nextBlock(); !block.isEmpty(); block = file->nextBlock())
                read += block;
            EXPECT_EQ(read, bytes);
        }
    }
    EXPECT_EQ(errorOf([&] { files.openForReading(scratch.path(), {}); }).number, IsFolder);
}

TEST(LocalFileSystem, AFileIsReplacedWholeOrNotAtAll) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    files.replaceFile(scratch.path("a"), "first, and rather long");
    files.replaceFile(scratch.path("a"), "second");
    EXPECT_EQ(scratch.read("a"), "second");
    EXPECT_EQ(namesIn(files, scratch.path()), QStringList("a"));
    scratch.makeFolder("folder");
    const TessalyError error = errorOf([&] { files.replaceFile(scratch.path("folder"), "x"); });
    EXPECT_TRUE(error.description.startsWith(scratch.path("folder")));
    // A link where a file belongs must not lead the bytes elsewhere.
    if (scratch.link(scratch.path("a"), "0007.cfg")) {
        EXPECT_THROW(files.create(scratch.path("0007.cfg")), TessalyError);
    }
    EXPECT_EQ(scratch.read("a"), "second");
    EXPECT_THROW(readWholeFile(files, scratch.path("a"), 5), TessalyError);
}

TEST(LocalFileSystem, PlacesAreKnownByIdentity) {
    const ScratchFolder scratch;
    const LocalFileSystem files;
    scratch.makeFolder("real/inner");
    EXPECT_EQ(files.identity(scratch.path("real/inner")),
              files.identity(scratch.path("real/inner/../inner")));
    if (scratch.link(scratch.path("real"), "link")) {
        EXPECT_EQ(files.identity(scratch.path("link/inner")),
                  files.identity(scratch.path("real/inner")));
    }
    EXPECT_NE(files.identity(scratch.path("real")), files.identity(scratch.path("real/inner")));
    EXPECT_FALSE(files.identity(scratch.path("gone")).has_value());
    EXPECT_EQ(files.fileSize(scratch.path("real")), std::nullopt);
    EXPECT_EQ(files.fileSize(scratch.write("f", "12345")), 5);
}

TEST(LocalDrives, AFolderThatIsNoMountPointIsNoDrive) {
    const ScratchFolder scratch;
    const LocalDrives drives;
    for (const auto& query : std::initializer_list<std::function<void()>>{
             [&] { drives.type(scratch.path()); }, [&] { drives.totalBytes(scratch.path()); },
             [&] { drives.type(scratch.path("gone/")); }})
        EXPECT_EQ(errorOf(query).number, error_number::DriveNotReady);
        // A drive wherever it is there at all; "/" is none in a chroot.
#ifdef Q_OS_WIN
    EXPECT_EQ(drives.type(qEnvironmentVariable("SystemDrive")), DriveType::Fixed);
#else
    EXPECT_NE(drives.medium(scratch.path()), "");
    EXPECT_EQ(drives.medium(scratch.path()), drives.medium(scratch.path()));
    if (QFileInfo::exists("/proc/self/mountinfo")) {
        EXPECT_NE(drives.type("/proc"), DriveType::Removable);
    }
#endif
    const VolumeGeometry geometry = drives.geometry(scratch.path());
    EXPECT_GT(geometry.clusterBytes, 0);
    EXPECT_GE(geometry.totalBytes, geometry.freeBytes);
    EXPECT_FALSE(geometry.isReadOnly);
}

TEST(Mp3Tags, BothBlocksAreReadAndNothingElseHasAny) {
    const QString tour = TESSALY_SAMPLES "/tour/Music/";
    const LocalMp3Tags tags;
    const TagBlocks both = tags.read(tour + "Harbour Morning/01 Morning Bell.mp3");
    EXPECT_EQ(both.first, (TagBlock{"Morning Bell", "Tessaly Samples", "Harbour Morning"}));
    EXPECT_EQ(both.second.title, "Morning Bell");
    const TagBlocks old = tags.read(tour + "Harbour Morning/03 Thin Fog.mp3");
    EXPECT_EQ(old.first, TagBlock());
    EXPECT_EQ(old.second.title, "Thin Fog");
    const ScratchFolder scratch;
    const QByteArray sound = QByteArray(60000, 's') + "TAG" + QByteArray("Old").leftJustified(125);
    for (const QByteArray& start : {QByteArray(), QByteArray(9000, 'x')}) {
        const QString path = scratch.write("large.mp3", start + largeTag("New") + sound);
        EXPECT_EQ(tags.read(path).first.title, "New");
        EXPECT_EQ(tags.read(path).second.title, "Old");
    }
    for (const QString& path : {tour + "Evening Lights/3 Pier Dance.mp3", scratch.path(),
                                scratch.path("gone.mp3"), scratch.write("empty.mp3", ""),
                                scratch.write("text.mp3", "This is no MP3 file at all.")}) {
        EXPECT_EQ(tags.read(path).first, TagBlock()) << path.toStdString();
        EXPECT_EQ(tags.read(path).second, TagBlock()) << path.toStdString();
    }
}

}  // namespace tessaly
