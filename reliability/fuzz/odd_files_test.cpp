// SPDX-License-Identifier: GPL-3.0-or-later
// What passes for a file but is none, is far too large, or claims to be.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QFile>
#include <QtEndian>

#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/mp3_tags.h"
#include "support/file_questions.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

QByteArray synchSafe(qsizetype size) {
    QByteArray four;
    for (const int shift : {21, 14, 7, 0})
        four += char((size >> shift) & 0x7F);
    return four;
}

QByteArray frame(const char* id, const QByteArray& content, const char* flags = "0000") {
    return id + synchSafe(content.size()) + QByteArray::fromHex(flags) + content;
}

QByteArray packed(const char* id, const QByteArray& content) {
    return frame(id, synchSafe(content.size()) + qCompress(content).mid(4), "0009");
}

QByteArray tagOf(const QByteArray& frames, qsizetype claimed = -1) {
    return QByteArray::fromHex("494433 0400 00") +
           synchSafe(claimed < 0 ? frames.size() : claimed) + frames;
}

}  // namespace

TEST(OddFiles, PipesAndDevicesAreRefusedWithoutWaiting) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    const QString pipe = scratch.path("pipe.crd2");
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QFile::link(scratch.path("gone"), scratch.path("dangling"));
    QFile::link(pipe, scratch.path("to pipe"));
    const struct {
        QString path;
        int expected;
    } cases[] = {{pipe, error_number::NotAFile},
                 {scratch.path("to pipe"), error_number::NotAFile},
                 {"/dev/zero", error_number::NotAFile},
                 {"/dev/null", error_number::NotAFile},
                 {scratch.path(), EISDIR},
                 {scratch.path("dangling"), ENOENT}};
    for (const auto& [path, expected] : cases) {
        for (const auto mode : {FileSystem::ReadMode::Normal, FileSystem::ReadMode::PastCache})
            EXPECT_EQ(errorOf([&] { files.openForReading(path, mode); }).number, expected)
                << path.toStdString();
        EXPECT_EQ(errorOf([&] { readWholeFile(files, path, 100); }).number, expected);
        EXPECT_EQ(LocalMp3Tags().read(path).first, TagBlock());
    }
    // Nothing takes the place of a device.
    EXPECT_EQ(errorOf([&] { files.replaceFile(pipe, "x"); }).number, error_number::NotAFile);
    EXPECT_NE(errorOf([&] { files.create(pipe); }).number, 0);
    struct stat status {};
    EXPECT_EQ(::stat(QFile::encodeName(pipe).constData(), &status), 0);
    EXPECT_TRUE(S_ISFIFO(status.st_mode));
}

TEST(OddFiles, TagsMayClaimGigabytes) {
    const ScratchFolder scratch;
    const QByteArray title = frame("TIT2", QByteArray(1, '\0') + "Tour");
    const QByteArray old = "TAG" + QByteArray("Old").leftJustified(125, '\0');
    const QByteArray most(4, '\x7F'), all(4, '\xFF');
    const auto titles = [&](const QByteArray& bytes, qint64 size = 0) {
        QFile file(scratch.write("a.mp3", bytes));
        EXPECT_TRUE(size == 0 || file.resize(size));
        if (size > 0) {
            EXPECT_TRUE(file.open(QIODevice::Append));
            file.write(old);
            file.close();
        }
        const TagBlocks blocks = LocalMp3Tags().read(file.fileName());
        return QStringList{blocks.first.title.left(50), blocks.second.title};
    };
    const QStringList both = {"Tour", "Old"}, second = {"", "Old"};
    constexpr qint64 Large = 4LL << 30;
    EXPECT_EQ(titles("", Large), second);
    EXPECT_EQ(titles(tagOf(title, 0x0FFFFFFF), Large), both);
    EXPECT_EQ(titles(tagOf(title + "APIC" + most + QByteArray(10, '\1'), 0x0FFFFFFF), Large), both);
    EXPECT_EQ(titles(tagOf(title) + tagOf("", 0x0FFFFFFF), Large), both);
    // An extended header, a footer of APE tags and one of lyrics that are larger than the file.
    titles(QByteArray::fromHex("494433 0300 40 0000007F") + all + all + title);
    titles(QByteArray::fromHex("494433 0400 50") + most + most + title);
    EXPECT_EQ(titles(tagOf(title) + "APETAGEX" + QByteArray::fromHex("D0070000") +
                     QByteArray(3, '\xFF') + "\x7F" + all + QByteArray(12, '\0') + old),
              both);
    EXPECT_EQ(titles(tagOf(title) + "LYRICSBEGIN999999LYRICS200" + old), both);
    // What is packed is unpacked as long as it is no bomb.
    EXPECT_EQ(titles(tagOf(packed("TIT2", QByteArray(1, '\0') + "Tour")) + old), both);
    const QByteArray bomb = packed("TXXX", QByteArray(20'000'000, '\0'));
    EXPECT_EQ(titles(tagOf(title + bomb.repeated(50)) + old), both);
    EXPECT_NE(titles(tagOf(packed("TIT2", QByteArray(80'000'000, 'A'))) + old)[0],
              QString(50, 'A'));
    // More frames than any tag has: what stands behind them is not looked for.
    const QByteArray small = frame("PRIV", "x");
    EXPECT_EQ(titles(tagOf(title + small.repeated(100'000)) + old), both);
    EXPECT_EQ(titles(tagOf(small.repeated(100'000) + title) + old), second);
}

}  // namespace tessaly
