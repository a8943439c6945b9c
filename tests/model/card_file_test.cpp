// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/card_file.h"

#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "platform/local_file_system.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

QByteArray bytesOf(const TrackRecord& record) {
    QByteArray bytes;
    encodeRecord(bytes, record);
    return bytes;
}

TrackRecord recordOf(const char* kind, Variant item, Variant group, Variant path,
                     QByteArray tag = {}) {
    TrackRecord record;
    record.kind = kind;
    record.itemName = std::move(item);
    record.groupName = std::move(group);
    record.sourcePath = std::move(path);
    if (!tag.isEmpty())
        setTypeTag(record, tag);
    return record;
}

QStringList kindsOf(const QList<TrackRecord>& records) {
    QStringList kinds;
    for (const TrackRecord& record : records)
        kinds.append(record.kind.text());
    return kinds;
}

Project projectFrom(const QList<TrackRecord>& records) {
    Project project;
    reset(project);
    applyRecords(records, project);
    return project;
}

}  // namespace

TEST(CardFile, ARecordIsTheBytesOfTheFormat) {
    TrackRecord track = recordOf("music", "Intro", "Tour", "C:\\a.mp3");
    track.loudVolume = Boolean16::of(true);
    EXPECT_EQ(bytesOf(track),
              QByteArray::fromHex("08000500 6D75736963 08000500 496E74726F 08000400 546F7572"
                                  "08000800 433A5C612E6D7033 0000 0000 FFFF 00000000"));
    EXPECT_EQ(bytesOf({}), QByteArray(18, '\0'));
    EXPECT_EQ(bytesOf(recordOf("stext", qint16(-2), Boolean16::of(true), "", "3")),
              QByteArray::fromHex("08000500 7374657874 0200FEFF 0B00FFFF 08000000"
                                  "0000 0000 0000 33202020"));
}

TEST(CardFile, AnEmptyProjectIsTheKnownSequenceOfRecords) {
    const QList<TrackRecord> records = projectRecords(Project());
    QStringList expected = {"", ""};
    expected << QStringList(18, "stext") << QStringList(9, "setup") << QStringList(7, "dtrig");
    EXPECT_EQ(kindsOf(records), expected);
    const char* keys[] = {"title1",   "title2",       "chimealways", "chimeonce", "extchime",
                          "intchime", "disablechime", "chimefile",   "cfdrive"};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(records[20 + i].groupName.text(), keys[i]);
    EXPECT_EQ(records[22].sourcePath, Variant(Boolean16::of(true)));
    EXPECT_EQ(records[28].sourcePath, Variant(""));
    EXPECT_EQ(records[35].typeTag, (std::array<char, 4>{'6', ' ', ' ', ' '}));
    EXPECT_EQ(encodeProject(Project()), encodeProject(Project()));
}

TEST(CardFile, RandomProjectsAreUnchangedByWriteReadWrite) {
    std::mt19937 random(740);
    for (int round = 0; round < 60; ++round) {
        const Project project = randomProject(random, 200);
        const QByteArray bytes = encodeProject(project);
        const ParsedRecords parsed = parseRecords(bytes);
        ASSERT_TRUE(parsed.isComplete);
        const Project read = projectFrom(parsed.records);
        EXPECT_EQ(encodeProject(read), bytes) << "round " << round;
        EXPECT_EQ(read.lstMuList, project.lstMuList);
        EXPECT_EQ(read.lstSpTitles, project.lstSpTitles);
        for (const QString& list : project.lstMuList)
            EXPECT_EQ(tracksOfMusicList(read, list), tracksOfMusicList(project, list));
    }
}

TEST(CardFile, MusicFollowsTheListBox) {
    Project project;
    addTrack(project, "B", "two", "2");
    addTrack(project, "A", "x", "3");
    addTrack(project, "B", "one", "1");
    addTrack(project, "B", "stray", "9");
    addTrack(project, "B", "one", "1b");  // two records of one name stay together
    addTrack(project, "Gone", "y", "4");
    project.lstMuList = {"A", "B"};
    project.lstMuTrack[slotOfMusicList(project, "B")] = {"one", "without file", "01 one", "two"};
    QStringList paths;
    for (const TrackRecord& record : projectRecords(project))
        if (isMusic(record))
            paths.append(record.sourcePath.text());
    EXPECT_EQ(paths, (QStringList{"3", "1", "1b", "2", "9"}));
    // The second record of "one" brings a line of its own back.
    EXPECT_EQ(silentTracks(project, TrackIndex(project)).size(), 2);
    EXPECT_EQ(tracksWithoutFile(project), QStringList("B / without file"));
    addMusicList(project, "New");
    EXPECT_EQ(listsWithoutFile(project), QStringList("New"));
}

// What a record does to a project that is being read.
TEST(CardFile, RecordsAreAppliedOneByOne) {
    const Project project = projectFrom({
        recordOf("lstLangs", {}, {}, "English"),
        recordOf("speech", "", "English", "no title.mp3"),
        recordOf("speech", {}, "English", "no title either.mp3"),
        recordOf("speech", "Hello", "English", "hello.mp3"),
        recordOf("music", "T", "Rock", "1.mp3"),
        recordOf("music", "T", "Rock", "2.mp3"),
        recordOf("music", "Z", "Pop", "3.mp3"),
        recordOf("music", "T", "Rock", "4.mp3"),  // not contiguous: a second list
        recordOf("setup", {}, "title1", "Hi"),
        recordOf("setup", {}, "chimeonce", Boolean16{1}),
        recordOf("setup", {}, "intchime", Boolean16::of(true)),
        recordOf("setup", {}, "jogmode", "nonsense"),
        recordOf("powerup", "Hello", "", {}, "spee"),
        recordOf("dtrig", "Hello", {}, "speech", "2"),
        recordOf("stext", "4", "four", {}),
        recordOf("gtrigs", "ignored", {}, {}),
        recordOf("empty", "ignored", {}, {}),
    });
    EXPECT_EQ(project.lstMuList, (QStringList{"Rock", "Pop", "01 Rock"}));
    EXPECT_EQ(tracksOfMusicList(project, "Rock"), (QStringList{"T", "01 T"}));
    EXPECT_EQ(project.TrackTable.size(), 1 + 5);
    EXPECT_EQ(project.txtCardTitle1, "Hi");
    EXPECT_TRUE(project.buttChimeOnce && !project.buttChimeAlways);
    EXPECT_TRUE(project.buttPlayIntChime && !project.buttDisableChime);
    EXPECT_TRUE(hasPowerUpItem(project));
    EXPECT_TRUE(isAssigned(project.TriggerTable[2]));
    EXPECT_FALSE(isAssigned(project.TriggerTable[1]));
    EXPECT_EQ(systemText(project, 4), "four");

    // An empty list name is no new list, be it an empty value or an empty text.
    for (const Variant& none : {Variant(), Variant("")})
        EXPECT_TRUE(projectFrom({recordOf("music", "T", none, "1.mp3")}).lstMuList.isEmpty());

    const Project odd = projectFrom({recordOf("powerup", "Hello", "", {}, "what")});
    EXPECT_FALSE(hasPowerUpItem(odd));
    EXPECT_EQ(odd.PowerUpRecord.kind.text(), "powerup");
}

TEST(CardFile, AnUnusableRecordEndsTheReading) {
    const TrackRecord title = recordOf("lstSpTitles", {}, {}, "kept");
    const TrackRecord cases[] = {
        recordOf("stext", qint16(19), "x", {}), recordOf("stext", qint16(-1), "x", {}),
        recordOf("stext", "two", "x", {}),      recordOf("dtrig", {}, {}, "music", "7"),
        recordOf("dtrig", {}, {}, "music"),     recordOf("setup", {}, "intchime", "maybe"),
    };
    for (const TrackRecord& record : cases) {
        Project project;
        const AppliedRecords applied = applyRecords({title, record, title}, project);
        EXPECT_EQ(applied.applied, 1);
        EXPECT_FALSE(applied.stopReason.isEmpty());
        EXPECT_EQ(project.lstSpTitles, QStringList("kept"));
    }
}

TEST(CardFile, OddValuesAreKeptAsTheyCame) {
    TrackRecord record = recordOf("music", qint16(7), Boolean16{2}, {}, "0001");
    record.endlessLoop.raw = 1;
    record.loudVolume.raw = -2;
    const QByteArray bytes = bytesOf(record);
    const ParsedRecords parsed = parseRecords(bytes);
    ASSERT_EQ(parsed.records, QList<TrackRecord>{record});
    EXPECT_EQ(bytesOf(parsed.records.first()), bytes);
    EXPECT_TRUE(record.endlessLoop.isTrue() && record.loudVolume.isTrue());
    EXPECT_TRUE(Variant().is(u"") && Variant("").is(u"") && Variant() != Variant(""));
    EXPECT_TRUE(Variant(qint16(7)).is(u"7"));
}

TEST(CardFile, ReadingStopsAtTheFirstByteThatMakesNoSense) {
    std::mt19937 random(5);
    const QByteArray bytes = encodeProject(randomProject(random, 40));
    const qsizetype records = parseRecords(bytes).records.size();
    for (qsizetype length = 0; length < bytes.size(); length += 7) {
        const ParsedRecords parsed = parseRecords(bytes.first(length));
        EXPECT_LE(parsed.stoppedAt, length);
        EXPECT_EQ(parsed.isComplete, parsed.stoppedAt == length);
        EXPECT_LT(parsed.records.size(), records);
        EXPECT_EQ(parsed.isComplete, parsed.stopReason.isEmpty());
    }
    const ParsedRecords odd = parseRecords(bytesOf({}) + QByteArray::fromHex("0300"));
    EXPECT_EQ(odd.stoppedAt, 18);
    EXPECT_TRUE(odd.stopReason.contains("unknown type 3")) << odd.stopReason.toStdString();
}

TEST(CardFile, AnyBytesCanBeReadAndApplied) {
    std::mt19937 random(11);
    const QByteArray good = encodeProject(randomProject(random, 30));
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes = good;
        for (int change = 0; change < 4; ++change)
            bytes[qsizetype(random() % size_t(bytes.size()))] = char(random());
        Project project;
        applyRecords(parseRecords(bytes).records, project);
        encodeProject(project);
    }
}

TEST(CardFile, SavingAndOpeningReportsWhatHappened) {
    const ScratchFolder scratch;
    LocalFileSystem files;
    std::mt19937 random(3);
    Project project = randomProject(random, 50);
    project.unsavedChanges = true;
    const QString path = scratch.path("tour.crd2");
    saveProject(files, path, project);
    EXPECT_FALSE(project.unsavedChanges);

    Project read;
    EXPECT_TRUE(readProject(files, path, read).isComplete);
    EXPECT_EQ(encodeProject(read), encodeProject(project));

    const QByteArray bytes = scratch.read("tour.crd2");
    scratch.write("cut.crd2", bytes.chopped(3));
    const ReadReport cut = readProject(files, scratch.path("cut.crd2"), read);
    EXPECT_FALSE(cut.isComplete);
    EXPECT_EQ(cut.records, parseRecords(bytes).records.size() - 1);

    // Cut between two records, and with nothing in it: every byte can be read.
    for (const TrackRecord& last : {parseRecords(bytes).records.last(), TrackRecord()}) {
        const qsizetype length = last == TrackRecord() ? 0 : bytes.size() - bytesOf(last).size();
        scratch.write("short.crd2", bytes.first(length));
        const ReadReport report = readProject(files, scratch.path("short.crd2"), read);
        EXPECT_FALSE(report.isComplete);
        EXPECT_EQ(report.stoppedAt, length);
        EXPECT_EQ(report.stopReason, "the records that every project ends with are missing");
    }
    // Saved after Open was cancelled, triggers are "empty". Other programs may add to a project.
    reset(project);
    scratch.write("new.crd2", encodeProject(project) + bytesOf(recordOf("gtrigs", {}, {}, {})));
    EXPECT_TRUE(readProject(files, scratch.path("new.crd2"), read).isComplete);
    scratch.write("odd.crd2", bytesOf({}) + bytesOf(recordOf("stext", "x", {}, {})));
    EXPECT_EQ(readProject(files, scratch.path("odd.crd2"), read).stoppedAt, 18);

    EXPECT_THROW(readProject(files, scratch.path("none.crd2"), read), TessalyError);
    project.unsavedChanges = true;
    EXPECT_THROW(saveProject(files, scratch.path("no folder/t.crd2"), project), TessalyError);
    EXPECT_TRUE(project.unsavedChanges);
}

TEST(CardFile, WhatAFileCannotHoldIsNamed) {
    Project project;
    addTrack(project, "Łódź", "fine", "/music/ok.mp3");
    addTrack(project, "Rock", "Песня", "/music/Песня.mp3");
    project.txtCardTitle1 = "Grüße €";
    EXPECT_EQ(textsOutsideCodePage(project), (QStringList{"Łódź", "Песня"}));
    EXPECT_EQ(pathsOutsideCodePage(project), QStringList("/music/Песня.mp3"));
    project.txtCardTitle2 = QString(70000, 'x');
    try {
        encodeProject(project);
        FAIL() << "a text of 70,000 characters was written";
    } catch (const TessalyError& error) {
        EXPECT_EQ(error.number, error_number::TextTooLong);
    }
}

TEST(CardFile, FloodsOfRecordsOrEqualNamesEndTheReading) {
    QList<TrackRecord> records(limits::ProjectRecords + 1);
    QByteArray bytes;
    for (const TrackRecord& record : records)
        encodeRecord(bytes, record);
    const ParsedRecords parsed = parseRecords(bytes);
    EXPECT_EQ(parsed.records.size(), limits::ProjectRecords);
    EXPECT_EQ(parsed.stoppedAt, bytes.size() * limits::ProjectRecords / records.size());
    EXPECT_EQ(parsed.stopReason, "the file has more than 250000 records");

    // As many as a card holds may be alike.
    Project project;
    records.fill(makeRecord("music", "Rock", "A", "a.mp3"), limits::TrackFiles);
    EXPECT_EQ(applyRecords(records, project).stopReason, "");
    EXPECT_EQ(project.lstMuTrack[0].size(), limits::TrackFiles);
    reset(project);
    records.resize(20000, records.last());
    const AppliedRecords applied = applyRecords(records, project);
    EXPECT_TRUE(applied.stopReason.startsWith("too many tracks of the music list \"A\""));
    EXPECT_EQ(project.lstMuTrack[0].size(), applied.applied);
    EXPECT_EQ(project.TrackTable.size(), applied.applied + 1);

    // What could not be read back is not written.
    project.TrackTable.resize(limits::ProjectRecords, makeRecord("speech", "a", "b", "c"));
    EXPECT_THROW(encodeProject(project), TessalyError);
}

TEST(CardFile, AListWithoutANameKeepsItsTracks) {
    Project project;
    const QList<TrackRecord> records = {
        makeRecord("music", "a", "Rock", "1"), makeRecord("music", "b", "", "2"),
        makeRecord("music", "c", "", "3"), makeRecord("music", "d", "Pop", "4")};
    EXPECT_EQ(applyRecords(records, project).applied, 4);
    EXPECT_EQ(project.lstMuList, (QStringList{"Rock", "", "Pop"}));
    EXPECT_EQ(tracksOfMusicList(project, ""), (QStringList{"b", "c"}));
    EXPECT_EQ(tracksOfMusicList(project, "Pop"), QStringList("d"));
    EXPECT_EQ(projectRecords(project).size(), projectRecords(Project()).size() + 4);
}

TEST(MusicLists, EqualNamesAreNumbered) {
    UniqueNames names;
    QStringList given;
    for (int i = 0; i < 103; ++i)
        given.append(names.add("Rock"));
    EXPECT_EQ(given.first(3), (QStringList{"Rock", "01 Rock", "02 Rock"}));
    // From 100 on a number of three digits takes the place of two characters.
    EXPECT_EQ(given.mid(99), (QStringList{"99 Rock", "100 Rock", "1010 Rock", "10210 Rock"}));
    EXPECT_EQ(uniqueName("rock", {"Rock"}), "rock");
    EXPECT_EQ(uniqueName("Rock", {"Rock", "01 Rock", "03 Rock"}), "02 Rock");
    EXPECT_EQ(uniqueName("01 Rock", {"Rock", "01 Rock"}), "01 01 Rock");
}

// Else the second one would come back numbered, while its record is not.
TEST(MusicLists, NamesThatAreSavedAlikeAreNumbered) {
    Project project;
    const QString list = addMusicList(project, "Песни");
    UniqueNames names;
    for (const char* title : {"Мечта", "Осень", "Весна 2", "?????"})
        project.TrackTable.append(
            recordOf("music", addMusicTrack(project, title, names), list, "a.mp3"));
    EXPECT_EQ(tracksOfMusicList(project, list),
              (QStringList{"Мечта", "01 Осень", "Весна 2", "02 ?????"}));
    const Project reopened = projectFrom(parseRecords(encodeProject(project)).records);
    const QStringList tracks = tracksOfMusicList(reopened, "?????");
    EXPECT_EQ(tracks, (QStringList{"?????", "01 ?????", "????? 2", "02 ?????"}));
    for (qsizetype i = 0; i < tracks.size(); ++i)
        EXPECT_TRUE(reopened.TrackTable.value(i + 1).itemName.is(tracks[i]));
}

}  // namespace tessaly
