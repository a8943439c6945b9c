// SPDX-License-Identifier: GPL-3.0-or-later
// How long the page of music lists keeps an operator waiting, on a project as large as a card
// takes.
#include <benchmark/benchmark.h>
#include <id3v2framefactory.h>
#include <id3v2tag.h>
#include <mpegfile.h>

#include <QFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <filesystem>
#include <stdexcept>

#include "editor/list_import.h"
#include "editor/missing_match.h"
#include "editor/music_editor.h"
#include "model/music_lists.h"
#include "platform/local_file_system.h"
#include "platform/mp3_tags.h"
#include "platform/paths.h"
#include "platform/seekable_file.h"
#include "sound/sound_book.h"
#include "sound/whole_look.h"

using namespace tessaly;

namespace {

// Two lists, half of the tracks in each; or one with all of them.
Project project(int lists, int tracks) {
    Project made;
    for (int list = 0; list < lists; ++list) {
        addMusicList(made, QString("List %1").arg(list));
        UniqueNames names;
        for (int i = 0; i < tracks / lists; ++i) {
            TrackRecord record;
            record.kind = "music";
            record.itemName = addMusicTrack(made, QString("Track number %1").arg(i), names);
            record.groupName = made.lstMuList.last();
            record.sourcePath = QString("C:\\Users\\Somebody\\Music\\%1.mp3").arg(i);
            made.TrackTable.append(record);
        }
    }
    return made;
}

void addTrack(benchmark::State& state) {
    const int before = int(state.range(0)) - 1;
    Project edited = project(1, before);
    for (auto _ : state) {
        addNewMusicTrack(edited, {.list = 0}, "Track number 7");
        chooseMusicFile(edited, {0, before}, "C:\\new.mp3");
        edited.lstMuTrack[0].removeLast();
        edited.TrackTable.removeLast();
    }
}
BENCHMARK(addTrack)->Arg(9995);

void renameList(benchmark::State& state) {
    Project edited = project(2, 2 * int(state.range(0)));
    for (auto _ : state)
        renameMusicList(edited, 0, edited.lstMuList[0] == "Folk" ? "Rock" : "Folk");
}
BENCHMARK(renameList)->Arg(5000);

// A tree of five times as many files, of which every fifth was the project's; the names of a folder
// are those of the next.
void findMissing(benchmark::State& state) {
    const int tracks = int(state.range(0));
    Project made;
    SearchedFolder found;
    for (int i = 0; i < 5 * tracks; ++i) {
        const QString end = QString("Album %1\\%2 Track.mp3").arg(i / 20).arg(i % 20);
        found.paths.append("/media/somebody/Music/" + QString(end).replace('\\', '/'));
        found.sizes.append(i);
        if (i % 5 != 0)
            continue;
        TrackRecord record;
        record.kind = "music";
        record.sourcePath = "C:\\Users\\Somebody\\Music\\" + end;
        made.TrackTable.append(record);
    }
    const QStringList missing = missingFiles(made, LocalFileSystem());
    for (auto _ : state)
        if (planRelink(made, missing, found, playingSeconds).taken() != tracks)
            state.SkipWithError("not all were found");
}
BENCHMARK(findMissing)->Arg(9995);

// 9,000 files with both tags, each with a title of its own.
class TaggedFolder {
 public:
    TaggedFolder() {
        const QString name = pathIn(folder_.path(), "00000.mp3");
        QFile sample(TESSALY_SAMPLES "/tour/Music/Harbour Morning/01 Morning Bell.mp3");
        if (!sample.copy(name))
            throw std::runtime_error("there is no sample to copy");
        {
            // One byte a letter, so that titles can be told apart by their bytes below.
            TagLib::ID3v2::FrameFactory::instance()->setDefaultTextEncoding(TagLib::String::Latin1);
            TagLib::MPEG::File file(QFile::encodeName(name).constData(), false);
            for (const char* frame : {"TIT2", "TPE1", "TALB"})
                file.ID3v2Tag()->removeFrames(frame);
            file.tag()->setTitle("Title 00000");
            file.tag()->setArtist("Somebody");
            file.tag()->setAlbum("Something");
            file.save(TagLib::MPEG::File::AllTags);
        }
        QFile written(name);
        if (!written.open(QIODevice::ReadOnly))
            throw std::runtime_error("the tagged file cannot be read");
        const QByteArray whole = written.readAll();
        // The sound between the tags is not looked at: a little of it will do.
        const QByteArray bytes = whole.left(12'000) + whole.right(1'200);
        for (int i = 0; i < 9000; ++i) {
            const QByteArray number = QByteArray::number(i).rightJustified(5, '0');
            QFile file(pathIn(folder_.path(), number + ".mp3"));
            if (file.open(QIODevice::WriteOnly))
                file.write(QByteArray(bytes).replace("Title 00000", "Title " + number));
        }
    }
    QString path() const { return folder_.path(); }

 private:
    QTemporaryDir folder_;
};

const TaggedFolder& tagged() {
    static const TaggedFolder folder;
    return folder;
}

// The three texts of every file, without the properties of its sound.
void tagLibAlone(benchmark::State& state) {
    std::vector<std::string> paths;
    for (const QString& name : mp3FilesIn(LocalFileSystem(), tagged().path()))
        paths.push_back(pathIn(tagged().path(), name).toStdString());
    for (auto _ : state)
        for (const std::string& path : paths) {
            TagLib::MPEG::File file(path.c_str(), /*readProperties=*/false);
            benchmark::DoNotOptimize(file.tag()->title());
            benchmark::DoNotOptimize(file.tag()->artist());
            benchmark::DoNotOptimize(file.tag()->album());
        }
}
BENCHMARK(tagLibAlone);

void importFolderOf9000(benchmark::State& state) {
    const LocalFileSystem files;
    const LocalMp3Tags tags;
    for (auto _ : state) {
        Project made;
        const ImportResult result = importMusicFolder(made, files, tags, tagged().path());
        if (result.tracks != 9000 || !made.TrackTable[9000].itemName.is(u"Title 08999"))
            state.SkipWithError("the import did not take the files");
    }
}
BENCHMARK(importFolderOf9000);

// ---- sound -------------------------------------------------------------------------------------

// 9,000 names of ten files of five minutes.
class LongFiles {
 public:
    LongFiles() {
        QFile two(TESSALY_ODD_SOUNDS "/MPEG-1 stereo.mp3");
        if (!two.open(QIODevice::ReadOnly))
            throw std::runtime_error("there is no sound to repeat");
        const QByteArray minutes = two.readAll().repeated(150);
        for (int i = 0; i < 9000; ++i) {
            paths.append(pathIn(folder_.path(), QString("%1.mp3").arg(i)));
            if (i >= 10) {
                std::filesystem::create_hard_link(paths[i % 10].toStdString(),
                                                  paths[i].toStdString());
                continue;
            }
            QFile file(paths[i]);
            if (file.open(QIODevice::WriteOnly))
                file.write(minutes);
        }
    }
    QStringList paths;

 private:
    QTemporaryDir folder_;
};

const LongFiles& longFiles() {
    static const LongFiles files;
    return files;
}

// The first and last 256 KiB of each, and nothing else.
void readEnds(benchmark::State& state) {
    constexpr qint64 Bytes = qint64(256) * 1024;
    for (auto _ : state)
        for (const QString& path : longFiles().paths) {
            SeekableFile file(path);
            benchmark::DoNotOptimize(file.read(0, Bytes));
            benchmark::DoNotOptimize(file.read(file.size() - Bytes, Bytes));
        }
}
BENCHMARK(readEnds);

void quickLooks(benchmark::State& state) {
    for (auto _ : state)
        for (const QString& path : longFiles().paths)
            if (!quickLook(path).hasSound())
                state.SkipWithError("a sound was not heard");
}
BENCHMARK(quickLooks);

void statAlone(benchmark::State& state) {
    const LocalFileSystem files;
    QStringList paths;
    for (const QString& name : mp3FilesIn(files, tagged().path()))
        paths.append(pathIn(tagged().path(), name));
    for (auto _ : state)
        for (const QString& path : paths)
            benchmark::DoNotOptimize(files.stamp(path));
}
BENCHMARK(statAlone);

void quickLooksAgain(benchmark::State& state) {
    const LocalFileSystem files;
    SoundBook book;
    QStringList paths;
    for (const QString& name : mp3FilesIn(files, tagged().path()))
        paths.append(pathIn(tagged().path(), name));
    for (const QString& path : paths)
        book.quick(path, *files.stamp(path));
    for (auto _ : state)
        for (const QString& path : paths)
            benchmark::DoNotOptimize(book.known(path, *files.stamp(path)));
}
BENCHMARK(quickLooksAgain);

// So many seconds of noise in 44.1 kHz and stereo.
void decodeSeconds(benchmark::State& state) {
    QFile two(TESSALY_ODD_SOUNDS "/MPEG-1 stereo.mp3");
    QTemporaryFile file;
    if (!two.open(QIODevice::ReadOnly) || !file.open())
        throw std::runtime_error("there is no sound to decode");
    file.write(two.readAll().repeated(state.range(0) / 2));
    file.flush();
    for (auto _ : state)
        if (wholeLook(file.fileName(), [](double) { return true; }).breakCount > 0)
            state.SkipWithError("the sound is broken");
}
BENCHMARK(decodeSeconds)->Arg(60)->Arg(120);

}  // namespace
