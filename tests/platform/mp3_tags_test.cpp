#include "platform/mp3_tags.h"

#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

const LocalMp3Tags Tags;

QByteArray id3v1(const QByteArray& title, const QByteArray& artist, const QByteArray& album) {
    QByteArray block = "TAG";
    for (const QByteArray& text : {title, artist, album})
        block += text.leftJustified(30, '\0', true);
    return block.leftJustified(128, '\0');
}

QByteArray id3v2(const QByteArray& title) {
    const QByteArray frame =
        QByteArray("TIT2\0\0\0", 7) + char(title.size() + 1) + QByteArray("\0\0\3", 3) + title;
    return QByteArray("ID3\3\0\0\0\0\0", 9) + char(frame.size()) + frame;
}

void expectBlocks(const QString& path, const TagBlock& first, const TagBlock& second) {
    const TagBlocks blocks = Tags.read(path);
    EXPECT_EQ(blocks.first.title, first.title) << path.toStdString();
    EXPECT_TRUE(blocks.first == first) << path.toStdString();
    EXPECT_EQ(blocks.second.title, second.title) << path.toStdString();
    EXPECT_TRUE(blocks.second == second) << path.toStdString();
}

}  // namespace

TEST(Mp3Tags, ReadsBothBlocks) {
    const ScratchFolder scratch;
    QFile sample(TESSALY_SAMPLES "/tour/Music/Harbour Morning/01 Morning Bell.mp3");
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    QByteArray sound = sample.readAll();
    sound = sound.mid(sound.indexOf("\xFF\xF3")).chopped(128);  // without its own tags
    const QByteArray old = id3v1("Old title", "Old artist", "Old album");
    const TagBlock none, second{"Old title", "Old artist", "Old album"};
    const TagBlock first{.title = "Größe", .artist = {}, .album = {}};
    const QString gone = scratch.path("gone.mp3"), folder = scratch.makeFolder("folder.mp3");
    expectBlocks(scratch.write("both ä.mp3", id3v2("Größe") + sound + old), first, second);
    expectBlocks(scratch.write("v2.mp3", id3v2("Größe") + sound), first, none);
    expectBlocks(scratch.write("v1.mp3", sound + old), none, second);
    expectBlocks(scratch.write("neither.mp3", sound), none, none);
    expectBlocks(scratch.write("empty.mp3", ""), none, none);
    expectBlocks(scratch.write("text.mp3", "This is no music, it only says so."), none, none);
    expectBlocks(scratch.write("cut.mp3", id3v2("Größe").left(14)), none, none);
    expectBlocks(gone, none, none);
    expectBlocks(folder, none, none);
}

}  // namespace tessaly
