// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <QFile>
#include <algorithm>
#include <random>

#include "card/sound_checks.h"
#include "platform/local_file_system.h"
#include "sound/sound_book.h"
#include "sound/sound_words.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

const auto ToTheEnd = [](double) { return true; };

FileStamp stampOf(const QString& path) {
    return LocalFileSystem().stamp(path).value_or(FileStamp());
}

}  // namespace

// What each of the odd files is called says what the two looks must find.
TEST(Sound, LooksFindWhatIsWrongWithOddFiles) {
    const QString folder = TESSALY_ODD_SOUNDS "/";
    const struct {
        const char *name, *format, *quick, *whole;
    } files[] = {
        {"100 silent seconds", "44.1 kHz, stereo, 64 kbit/s", "",
         "silent from its beginning to its end"},
        {"3 silent seconds at both ends", "44.1 kHz, stereo, 64 kbit/s", "", ""},
        {"AAC", "", "no MPEG sound: this looks like AAC", ""},
        {"APE tag at the end", "44.1 kHz, stereo, 64 kbit/s", "", ""},
        {"HTML page", "", "no MPEG sound: this looks like HTML", ""},
        {"ID3 longer than the file", "", "no MPEG sound", ""},
        {"ID3 of 10 MB", "44.1 kHz, stereo, 64 kbit/s", "", ""},
        {"MPEG-1 mono", "44.1 kHz, mono, 64 kbit/s", "", ""},
        {"MPEG-2 stereo", "22.05 kHz, stereo, 64 kbit/s", "", ""},
        {"MPEG-2.5 mono", "8 kHz, mono, 16 kbit/s", "", ""},
        {"VBR", "44.1 kHz, stereo, about 85 kbit/s", "", ""},
        {"VBRI counts 613", "44.1 kHz, stereo, 65 kbit/s", "ends at 0:02 of 0:16", ""},
        {"WAV", "", "no MPEG sound: this looks like WAV", ""},
        {"Xing counts 10 of 77", "44.1 kHz, stereo, 65 kbit/s", "", ""},
        {"broken frame", "44.1 kHz, stereo, 64 kbit/s", "", "broken at 0:00"},
        {"clipped", "44.1 kHz, stereo, 64 kbit/s", "", "clipped: its peaks reach +6.8 dBTP"},
        {"cut at a frame, Info counts 613", "44.1 kHz, stereo, 65 kbit/s", "ends at 0:02 of 0:16",
         ""},
        {"cut in a frame", "44.1 kHz, stereo, 64 kbit/s",
         "cut off in the middle of a frame, after 0:01", "broken at 0:01"},
        {"empty", "", "an empty file", ""},
        {"free format", "44.1 kHz, stereo, 92 kbit/s", "", ""},
        {"junk between frames", "44.1 kHz, stereo, 67 kbit/s", "", "broken at 0:00"},
        {"layer II", "44.1 kHz, stereo, 128 kbit/s", "MPEG sound of layer II, not of layer III",
         "silent from its beginning to its end"},
        {"one frame", "", "no MPEG sound", ""},
        {"picture only", "", "no MPEG sound", ""},
        {"random bytes", "", "no MPEG sound", ""},
        {"rate and channels change", "32 kHz, mono, 64 kbit/s", "",
         "its sample rate or channels change at 0:02"},
        {"text", "", "no MPEG sound: this looks like text", ""},
        {"gone", "", "", ""}};
    for (const auto& [name, format, quick, whole] : files) {
        const QString path = folder + name + ".mp3";
        const QuickLook look = quickLook(path);
        EXPECT_EQ(formatInWords(look), format) << name;
        EXPECT_EQ(problemInWords(look), quick) << name;
        EXPECT_EQ(problemInWords(wholeLook(path, ToTheEnd)), whole) << name;
    }
    EXPECT_EQ(quickLook(folder + "gone.mp3").finding, QuickLook::Finding::Missing);
    const WholeLook ends = wholeLook(folder + "3 silent seconds at both ends.mp3", ToTheEnd);
    EXPECT_NEAR(double(ends.silenceAtStart), 3000, 30);
    EXPECT_NEAR(double(ends.silenceAtEnd), 3000, 30);
    EXPECT_NEAR(ends.loudness, -20.8, 0.2);
    EXPECT_NEAR(ends.truePeak, -11.7, 0.2);
    EXPECT_EQ(inMinutes(quickLook(folder + "100 silent seconds.mp3").milliseconds), "1:40");
}

// Both looks agree on how long a file plays, wherever it is cut, and never find a cut file whole.
TEST(Sound, TheEndOfACutFileIsFound) {
    const ScratchFolder scratch;
    QFile sample(TESSALY_SAMPLES "/tour/Music/Harbour Morning/01 Morning Bell.mp3");
    ASSERT_TRUE(sample.open(QIODevice::ReadOnly));
    const QByteArray bytes = sample.readAll();
    std::mt19937 random(7);
    for (int i = 0; i < 60; ++i) {
        const qsizetype length = 3000 + qsizetype(random() % unsigned(bytes.size() - 6000));
        const QString path = scratch.write("cut.mp3", bytes.first(length));
        const QuickLook quick = quickLook(path);
        const WholeLook whole = wholeLook(path, ToTheEnd);
        EXPECT_EQ(quick.finding == QuickLook::Finding::EndsInFrame, whole.breakCount == 1)
            << length;
        EXPECT_NEAR(double(quick.milliseconds), double(whole.milliseconds), 60) << length;
    }
}

TEST(SoundBook, RemembersUntilAFileChangesAndTakesAnyBytes) {
    const ScratchFolder scratch;
    const QString file = scratch.path("cache/sounds");
    const QString path = scratch.write("a.mp3", silentMp3(40));
    const FileStamp stamp = stampOf(path);
    {
        SoundBook book(file);
        EXPECT_FALSE(book.known(path, stamp));
        EXPECT_TRUE(book.quick(path, stamp).hasSound());
        WholeLook whole = wholeLook(path, ToTheEnd);
        whole.breaks = {{1, 2}, {3, 4}};
        whole.breakCount = 2;
        book.keep(path, stamp, whole);
        EXPECT_FALSE(book.known(path, {stamp.bytes + 1, stamp.modified}));
        EXPECT_FALSE(book.known(path, {stamp.bytes, stamp.modified + 1}));
        const auto before = book.known(path, stamp);
        book.save();
        const auto after = SoundBook(file).known(path, stamp);
        ASSERT_TRUE(before && after && after->whole);
        EXPECT_EQ(after->quick, before->quick);
        EXPECT_EQ(*after->whole, whole);
    }
    QFile saved(file);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    const QByteArray bytes = saved.readAll();
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        QByteArray damaged = bytes.first(qsizetype(random() % unsigned(bytes.size())));
        if (!damaged.isEmpty() && i % 2)
            (damaged = bytes)[qsizetype(random() % unsigned(bytes.size()))] = char(random());
        SoundBook(scratch.write("damaged", damaged)).known(path, stamp);  // whatever it finds
    }
    EXPECT_FALSE(SoundBook(scratch.write("damaged", bytes.chopped(1))).known(path, stamp));
}

// Who is too loud is a matter of the others: tracks of their list, announcements of all.
TEST(SoundChecks, CompareWithTheOthersAndWarnOnce) {
    const ScratchFolder scratch;
    Project project;
    SoundBook book;
    const auto written = [&](const QString& name, double lufs) {
        const QString path = scratch.write(name + ".mp3", silentMp3());
        WholeLook whole;
        whole.milliseconds = 1000;
        whole.loudness = lufs;
        book.keep(path, stampOf(path), whole);
        return path;
    };
    const auto add = [&](const QString& list, double lufs) {
        const QString name = QString::number(lufs);
        addTrack(project, list, name, written(list + name, lufs));
    };
    for (const double lufs : {-20.0, -19.0, -18.0, -12.5, -25.5})
        add("Loud list", lufs);
    for (const double lufs : {-40.0, -41.0})  // too few to compare
        add("Short list", lufs);
    addSpeech(project, "Harbour", "Deutsch", written("de", -20));
    addSpeech(project, "Harbour", "English", written("en", -20.5));
    addSpeech(project, "Harbour", "French", written("fr", -24.6));
    addSpeech(project, "Harbour", "Silent", written("silent", WholeLook::Silent));
    const LocalFileSystem files;
    const CheckResult result = checkSound(soundsOf(project, measureSources(project, files), book));
    EXPECT_EQ(result.verdict, Verdict::Yellow);
    EXPECT_EQ(result.offenders, (QStringList{"-12.5 (Loud list): 7 dB louder than the others",
                                             "-25.5 (Loud list): 7 dB quieter than the others",
                                             "Harbour (French): 4 dB quieter than the others"}));
    scratch.write("Loud list-19.mp3", "<html>");  // another size: not looked at yet
    project.TrackTable.last().sourcePath = scratch.path("gone.mp3");
    setChimeOption(project, &Project::buttPlayIntChime, true);
    project.txtChimeFileName = scratch.write("gong.mp3", "<html>");
    const SourceFiles sources = measureSources(project, files);
    EXPECT_EQ(checkSound(soundsOf(project, sources, SoundBook())).text,
              "11 files not looked at yet");
    lookAtAll(sources, book);
    const QStringList looked = checkSound(soundsOf(project, sources, book)).offenders;
    EXPECT_TRUE(looked.contains("-19 (Loud list): no MPEG sound: this looks like HTML"));
    EXPECT_EQ(looked.last(), "Chime: no MPEG sound: this looks like HTML");
    SoundBook other;
    EXPECT_FALSE(decodeAll(sources, other, [](double) { return false; }) &&
                 !soundsOf(project, sources, other).first().sound->whole);
    EXPECT_TRUE(decodeAll(sources, other, ToTheEnd));
    for (const ItemSound& item : soundsOf(project, sources, other))
        EXPECT_EQ(item.sound && item.sound->whole, !item.isMissing && item.sound->quick.hasSound());
}

}  // namespace tessaly
