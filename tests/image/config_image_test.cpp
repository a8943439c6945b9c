// SPDX-License-Identifier: GPL-3.0-or-later
#include "image/config_image.h"

#include <QtEndian>
#include <functional>

#include "image/config_image_reader.h"
#include "image/image_layout.h"
#include "image/image_limits.h"
#include "image/intel_hex.h"
#include "model/music_lists.h"
#include "platform/error.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

quint16 wordAt(const QByteArray& image, int offset) {
    return qFromBigEndian<quint16>(image.constData() + offset);
}

// A project of one language and `titles` titles with one list of `tracks` tracks, none with a file.
Project plainProject(int titles, int tracks) {
    Project project;
    project.lstLangs = {"English"};
    for (int i = 1; i <= titles; ++i)
        project.lstSpTitles.append(QString("T%1").arg(i));
    if (tracks > 0)
        addMusicList(project, "L1");
    for (int i = 1; i <= tracks; ++i)
        project.lstMuTrack[project.currentMusicList].append(QString("S%1").arg(i));
    return project;
}

int errorOf(const QList<LimitViolation>& violations) {
    return violations.isEmpty() ? 0 : violations.first().errorNumber;
}

}  // namespace

TEST(ConfigImage, TheWorkedExampleByteForByte) {
    const QByteArray invalid16 = "Invalid Data    ";
    const QByteArray none = QByteArray::fromHex("FFFF");
    const QByteArray expected =
        QByteArray::fromHex("3A07 0002") + QByteArray("WELCOME").leftJustified(16) + '\xFF' +
        QByteArray(15, ' ') + none + '\xC0' + QByteArray(25, '\0') +
        QByteArray::fromHex("0090 00A8 00C8 00E8 0132 0136 013A") + QByteArray(28, '\0') +
        QByteArray::fromHex("02 0001 01 013E") + QByteArray(32, '\0') + "Invalid English German  " +
        invalid16 + "Welcome         " + invalid16 + "Rock            " +
        QByteArray::fromHex("0002") + invalid16 + none + invalid16 + none + "Song A          " +
        QByteArray::fromHex("0001") + "Song B          " + QByteArray::fromHex("0002") + none +
        none + none + QByteArray::fromHex("2003") + none + QByteArray::fromHex("2004") +
        QByteArray(272, ' ') + none.repeated(7);
    Project project = exampleProject();
    EXPECT_EQ(expected.size(), 604);
    EXPECT_EQ(BuildConfigImage(project, 0x3A07), expected);
    EXPECT_EQ(typeTagText(project.TrackTable[4]), "0004");
}

TEST(ConfigImage, TwoImagesDifferInTheirIdentifierOnly) {
    Project project = exampleProject();
    EXPECT_EQ(BuildConfigImage(project, 1).mid(2), BuildConfigImage(project, 65535).mid(2));
    for (int i = 0; i < 1000; ++i)
        EXPECT_NE(randomIdentifier(), 0);
}

TEST(ConfigImage, ReferencesNameItemsByPosition) {
    Project project = plainProject(2, 2);
    addMusicList(project, "L2");
    project.lstMuTrack[project.currentMusicList] = {"x", "y", "z"};
    const struct {
        QString kind, list, item;
        int expected;
    } cases[] = {
        {"speech", "anything", "T1", 0xFE01},
        {"speech", "", "T2", 0xFE02},
        {"speech", "", "T3", 0xFFFF},
        {"music", "<Continuous Mix>", "", 0},
        {"music", "L1", "<Play Full List>", 512 + 1},
        {"music", "L2", "<Play Full List>", 1024 + 1},
        {"music", "L1", "S1", 512 + 2},
        {"music", "L2", "z", 1024 + 4},
        {"music", "L2", "S1", 0xFFFF},
        {"music", "gone", "S1", 0xFFFF},
        {"music", "gone", "<Play Full List>", 0xFFFF},
    };
    for (const auto& [kind, list, item, expected] : cases)
        EXPECT_EQ(ItemReference(project, kind, list, item), expected)
            << (kind + ' ' + list + ' ' + item).toStdString();
}

TEST(ConfigImage, OnlyAssignedTriggersAndRealPowerUpItemsCount) {
    Project project = plainProject(1, 1);
    project.TriggerTable[0] = makeRecord("dtrig", "T1", {}, "speech");
    project.TriggerTable[1] = makeRecord("empty", "T1", {}, "speech");  // left over after a reset
    project.TriggerTable[2] = makeRecord("dtrig", "T1", {}, "empty");
    project.TriggerTable[6] = makeRecord("dtrig", "T1", {}, "speech");
    // From a file that says neither music nor speech.
    project.PowerUpRecord = makeRecord("powerup", "T1", {}, {});
    const DecodedImage image = decodeConfigImage(BuildConfigImage(project, 1));
    QList<quint16> triggers;
    for (const DecodedReference& trigger : image.triggers)
        triggers.append(trigger.value);
    EXPECT_EQ(triggers, (QList<quint16>{0xFE01, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFE01}));
    EXPECT_EQ(image.powerUp.value, 0xFFFF);
}

TEST(ConfigImage, WordsCarryNumbersFlagsAndFirstMatches) {
    Project project;
    project.TrackTable.append(TrackRecord{});  // blank records get no number
    addTrack(project, "L", "twice", "1");
    addTrack(project, "L", "twice", "2");
    addTrack(project, "L", "odd", "3");
    project.lstMuTrack[project.currentMusicList].append("no file");
    project.TrackTable[2].loudVolume = Boolean16::of(true);
    project.TrackTable[3].endlessLoop = Boolean16::of(true);
    project.TrackTable[4].cancelOnInterrupt.raw = 1;  // neither 0 nor 0xFFFF: True
    const DecodedImage image = decodeConfigImage(BuildConfigImage(project, 1));
    QList<quint16> words;
    for (const DecodedTrack& track : image.lists[0].tracks)
        words.append(track.word.value);
    EXPECT_EQ(words, (QList<quint16>{0x8001, 0x4003, 0xFFFF}));

    TrackRecord record = project.TrackTable[2];
    setTypeTag(record, "4096");
    EXPECT_EQ(trackWord(record), 0x9000);
    setTypeTag(record, "9995");
    record.cancelOnInterrupt = Boolean16::of(true);
    EXPECT_EQ(trackWord(record), quint16(9995 + 0x8000 + 0x4000));
}

TEST(ConfigImage, EachMatchingDefaultLanguageIsOneBit) {
    Project project;
    project.lstLangs = {"English", "German", "French"};
    for (const char* name : {"German", "French", "German", "Danish"})
        addDefaultLanguage(project, name);
    EXPECT_EQ(wordAt(BuildConfigImage(project, 1), image_layout::DefaultLanguageMask), 2 + 4);
}

// What reliability/fuzz asks of images of any bytes is not asked again here.
TEST(ConfigImage, RandomProjectsDecodeToTheirContent) {
    std::mt19937 random(4095);
    for (int round = 0; round < 40; ++round) {
        Project project = randomProject(random, round == 0 ? 900 : 150);
        const QByteArray bytes = BuildConfigImage(project, quint16(round + 1));
        ASSERT_EQ(bytes.size(), configImageSize(project));
        const DecodedImage image = decodeConfigImage(bytes);
        const auto shown = [](const QString& text, int width) {
            QString cut = text.left(width);
            while (cut.endsWith(' '))
                cut.chop(1);
            return cut;
        };
        EXPECT_EQ(image.identifier, round + 1);
        ASSERT_EQ(image.languages.size(), project.lstLangs.size());
        ASSERT_EQ(image.titles.size(), project.lstSpTitles.size());
        ASSERT_EQ(image.lists.size(), project.lstMuList.size());
        const TrackIndex index(project);
        const auto expectWord = [](const DecodedWord& word, const TrackRecord* record) {
            ASSERT_EQ(word.hasFile, record != nullptr);
            if (!record)
                return;
            EXPECT_EQ(word.fileNumber, *typeTagNumber(*record));
            EXPECT_EQ(word.loudVolume, record->loudVolume.isTrue());
            EXPECT_EQ(word.cancelOnInterrupt, record->cancelOnInterrupt.isTrue());
            EXPECT_EQ(word.endlessLoop, record->endlessLoop.isTrue());
            EXPECT_EQ(word.isSpeech, isSpeech(*record));
        };
        for (qsizetype l = 0; l < image.lists.size(); ++l) {
            const QStringList tracks = tracksOfMusicList(project, project.lstMuList[l]);
            ASSERT_EQ(image.lists[l].tracks.size(), tracks.size());
            for (qsizetype t = 0; t < tracks.size(); ++t) {
                EXPECT_EQ(image.lists[l].tracks[t].name, shown(tracks[t], 16));
                expectWord(image.lists[l].tracks[t].word,
                           index.music(project.lstMuList[l], tracks[t]));
            }
        }
        for (qsizetype l = 0; l < image.languages.size(); ++l) {
            EXPECT_EQ(image.languages[l], shown(project.lstLangs[l], 8));
            for (qsizetype t = 0; t < image.titles.size(); ++t)
                expectWord(image.speech[l][t],
                           index.speech(project.lstSpTitles[t], project.lstLangs[l]));
        }
        for (int slot = 1; slot <= 17; ++slot)
            EXPECT_EQ(image.displayTexts[slot - 1], shown(systemText(project, slot), 16));
        for (int slot = 0; slot < TriggerSlots; ++slot)
            EXPECT_EQ(image.triggers[slot].kind == DecodedReference::Kind::None,
                      !isAssigned(project.TriggerTable[size_t(slot)]));
    }
}

TEST(ImageLimits, StandExactlyWhereTheFormatsEnd) {
    using namespace error_number;
    const struct {
        int error;
        int most;
        std::function<void(Project&)> addOne;
    } cases[] = {
        {TooManyLanguages, 15, [](Project& p) { p.lstLangs.append("x"); }},  // and English
        {TooManyLists, 255, [](Project& p) { addMusicList(p, uniqueName("l", p.lstMuList)); }},
        {TooManyFiles, 9995,
         [](Project& p) { p.TrackTable.append(makeRecord("music", {}, {}, {})); }},
    };
    for (const auto& [error, most, addOne] : cases) {
        Project project = plainProject(0, 0);
        for (int i = 0; i < most; ++i)
            addOne(project);
        EXPECT_EQ(errorOf(limitViolations(project)), 0) << error;
        addOne(project);
        EXPECT_EQ(errorOf(limitViolations(project)), error);
        EXPECT_THROW(BuildConfigImage(project), TessalyError) << error;
    }
    // A track takes 18 bytes: the last that fits.
    const int most = (65527 - int(configImageSize(plainProject(0, 1))) + 18) / 18;
    Project project = plainProject(0, most);
    EXPECT_EQ(errorOf(limitViolations(project)), 0);
    EXPECT_EQ(Hex3(headerRecordCount(BuildConfigImage(project, 1).size())).size(), 3);
    project.lstMuTrack[project.currentMusicList].append("one more");
    EXPECT_EQ(errorOf(limitViolations(project)), ImageTooLarge);
    EXPECT_THROW(BuildConfigImage(project), TessalyError);
    EXPECT_EQ(limitViolations(project).first().text,
              "The settings of this project take 65,534 bytes, the player can hold 65,527: 7 too "
              "many. Remove 1 music track.");

    // A title takes 16 bytes, and 2 a language and column.
    EXPECT_EQ(limitViolations(plainProject(2000, 2000)).first().text,
              "The settings of this project take 76,536 bytes, the player can hold 65,527: 11,009 "
              "too many. Remove 612 music tracks or 551 speech titles.");
    EXPECT_TRUE(limitViolations(plainProject(4000, 4000))
                    .first()
                    .text.endsWith("Remove music tracks and speech titles."));
}

TEST(ImageLimits, ReferencesReachOnlySoFar) {
    Project project = plainProject(511, 511);
    for (int i = 2; i <= 127; ++i) {
        addMusicList(project, QString("L%1").arg(i));
        project.lstMuTrack[project.currentMusicList] = {"x"};
    }
    const struct {
        const char *path, *list, *item;
        bool reachable;
    } cases[] = {
        {"speech", "", "T510", true},
        {"speech", "", "T511", false},
        {"music", "L1", "S510", true},
        {"music", "L1", "S511", false},
        {"music", "L1", "<Play Full List>", true},
        {"music", "L126", "x", true},
        {"music", "L126", "<Play Full List>", true},
        {"music", "L127", "<Play Full List>", false},
        {"music", "<Continuous Mix>", "", true},
        {"music", "gone", "x", true},
    };
    for (const auto& [path, list, item, reachable] : cases) {
        TrackRecord& trigger = project.TriggerTable[3];
        trigger.sourcePath = path;
        trigger.groupName = list;
        trigger.itemName = item;
        EXPECT_EQ(errorOf(limitViolations(project)), reachable ? 0 : error_number::ReferenceTooHigh)
            << path << ' ' << list << ' ' << item;
        for (const LimitViolation& violation : limitViolations(project))
            EXPECT_TRUE(violation.text.startsWith("Trigger 4 ")) << violation.text.toStdString();
        trigger.sourcePath = "empty";
        project.PowerUpRecord = trigger;
        project.PowerUpRecord.kind = path;
        EXPECT_EQ(limitViolations(project).isEmpty(), reachable);
        project.PowerUpRecord.kind = "empty";
    }
}

}  // namespace tessaly
