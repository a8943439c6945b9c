// fuzz-seeds FOLDER: writes the first inputs of every target, made of the sample tour, the worked
// example and small projects drawn at random.
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QStringEncoder>
#include <cstdio>

#include "editor/tour_import.h"
#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/project_snapshot.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "platform/mp3_tags.h"
#include "support/projects.h"

using namespace tessaly;

namespace {

class Seeds {
 public:
    explicit Seeds(const QString& folder) : folder_(folder) {}

    void write(const char* target, const QByteArray& bytes) {
        const QDir folder(folder_ + '/' + target);
        QDir().mkpath(folder.path());
        QFile file(folder.filePath(QString("seed-%1").arg(++number_, 3, 10, QChar('0'))));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            throw TessalyError(1, file.fileName() + ": " + file.errorString());
    }

    // Inputs are small, so that many can be tried.
    void write(Project project) {
        QByteArray records;
        int texts = 0;
        for (const TrackRecord& record : projectRecords(project))
            if (!record.kind.is(u"stext") || ++texts % 6 == 0)
                encodeRecord(records, record);
        write("project", records);
        const QByteArray image = BuildConfigImage(project, 0x3A07);
        write("image", image);
        write("hex", EncodeImageAsHex(image.left(2 + 11 * number_ % 70)));
        constexpr int MagicAndChecksum = 19 + 8;
        write("snapshot", encodeSnapshot(project).mid(MagicAndChecksum));
        for (const QByteArray& list : playlists(project))
            write("playlist", list);
    }

 private:
    // The music of a project in every format of a playlist.
    static QList<QByteArray> playlists(const Project& project) {
        QString tabbed = "Album\tArtist\tc\td\te\tTitle\tg\th\tPath\r\n";
        QString itunes = "Location\tArtist\tName\r\n", other = "Name\tArtist\tLocation\n";
        QString extended = "#EXTM3U\t\n", plain;
        for (const TrackRecord& record : project.TrackTable) {
            if (!isMusic(record))
                continue;
            const QString name = record.itemName.text();
            const QString path = record.sourcePath.text() + ".mp3";
            tabbed += QString("a\tb\tc\td\te\t%1\tg\th\t%2\r\n").arg(name, path);
            itunes += QString("%2\tb\t%1\r\n").arg(name, path);
            other += QString("%1\tb\t%2\n").arg(name, path);
            extended += QString("#EXTINF:12,%1\n%2\n").arg(name, path);
            plain += path + '\r';
        }
        QList<QByteArray> lists;
        for (const QString& text : {tabbed, itunes, other, extended, plain}) {
            lists << text.toUtf8() << text.toLatin1() << "\xEF\xBB\xBF" + text.left(300).toUtf8();
            for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE})
                lists << QByteArray(
                    QStringEncoder(encoding, QStringConverter::Flag::WriteBom)(text.left(200)));
        }
        return lists;
    }

    QString folder_;
    int number_ = 0;
};

// Of an MP3 file only its tags count, which stand at its ends.
void writeTags(Seeds& seeds) {
    QDirIterator files(TESSALY_SAMPLES "/tour", {"*.mp3"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QByteArray bytes = file.readAll();
        if (bytes.startsWith("ID3") || bytes.last(128).startsWith("TAG"))
            seeds.write("tags", bytes.left(600) + bytes.right(200));
    }
    const QByteArray text3 = QByteArray::fromHex("54495432 00000005 0000 00") + "Tour";
    const QByteArray text2 = QByteArray::fromHex("545432 000005 00") + "Tour";
    const auto tag = [](char version, char flags, const QByteArray& frames) {
        return QByteArray("ID3") + version + '\0' + flags + QByteArray(3, '\0') +
               char(frames.size()) + frames;
    };
    seeds.write("tags", tag(2, 0, text2));
    seeds.write("tags", tag(3, 0, text3));
    seeds.write("tags", tag(4, 0, text3) + tag(4, 0, text3));
    seeds.write("tags", tag(3, 0x40, QByteArray::fromHex("00000006 0000 00000000") + text3));
    seeds.write("tags", tag(4, 0x50, QByteArray::fromHex("00000006 0100") + text3) + "3DI");
    seeds.write("tags", tag(3, char(0x80), text3));
    seeds.write("tags", QByteArray("LYRICSBEGINLYR00005tourn000020LYRICS200") + "TAG" +
                            QByteArray(125, ' '));
    seeds.write("tags", "APETAGEX" + QByteArray::fromHex("D0070000 20000000 01000000 00000080") +
                            QByteArray(8, '\0') + "TAG" + QByteArray(125, 'x'));
}

void writeMounts(Seeds& seeds) {
    QFile own("/proc/self/mountinfo");
    if (own.open(QIODevice::ReadOnly))
        seeds.write("mounts", own.readAll().left(300));
    for (const char* line :
         {"28 1 8:2 / / rw,relatime shared:1 - ext4 /dev/sda2 rw,errors=remount-ro\n",
          "97 28 8:17 / /media/ann/TOUR\\040CARD rw shared:52 master:2 - vfat /dev/sdb1 "
          "rw,uid=1000,shortname=winnt,utf8\n",
          "101 28 0:52 / /mnt/m\xC3\xBCsic rw,relatime - cifs //server/music rw,vers=3.0",
          "103 28 0:54 /sub /mnt/\xFF\\134bound rw - tmpfs tmpfs\n104 28 11:0 / /media/D ro - "
          "iso9660 /dev/sr0 ro\n"})
        seeds.write("mounts", line);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    try {
        Seeds seeds(QString::fromLocal8Bit(argv[1]));
        LocalFileSystem files;
        Project tour;
        importFolder(files, LocalMp3Tags(), TESSALY_SAMPLES "/tour", true, tour);
        for (TrackRecord& record : tour.TrackTable)  // the paths of no machine
            if (isTrackFile(record))
                record.sourcePath = record.sourcePath.text().section("samples/", -1);
        seeds.write(tour);
        seeds.write(test::exampleProject());
        seeds.write(test::crossNamedProject());
        seeds.write(Project());
        std::mt19937 random(6);
        for (int i = 0; i < 6; ++i)
            seeds.write(test::randomProject(random, 2));
        writeTags(seeds);
        writeMounts(seeds);
        return 0;
    } catch (const TessalyError& error) {
        std::fprintf(stderr, "fuzz-seeds: %s\n", error.what());
        return 1;
    }
}
