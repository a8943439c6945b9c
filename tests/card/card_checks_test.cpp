#include "card/card_checks.h"

#include "card/firmware.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "platform/numbers.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;

namespace {

CardChecks check(CardBench& bench, const QString& drive = "E:\\") {
    CardTotals totals = updateSummary(bench.project, bench.files);
    return runCardChecks(bench.project, drive, bench.files, bench.drives, totals);
}

}  // namespace

TEST(CardSummary, SizesAreShownInMegabytes) {
    const std::pair<qint64, const char*> cases[] = {
        {0, "0.0 MB"},       {49999, "0.0 MB"},       {50000, "0.1 MB"},
        {1049999, "1.0 MB"}, {123456789, "123.5 MB"}, {12345678901, "12345.7 MB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(megabytes(bytes), text);
    EXPECT_EQ(summaryLine({1049999, 12, false}, "0110"),
              "Total card size: 1.0 MB        Total number of Tracks: 12                        "
              "                TRL740 firmware version: 0110");
}

TEST(CardSummary, AMissingFileCountsAndIsFlagged) {
    CardBench bench;
    EXPECT_EQ(updateSummary(bench.project, bench.files), (CardTotals{5008, 3, false}));
    QFile::remove(bench.scratch.path("src/first.mp3"));
    bench.scratch.makeFolder("src/first.mp3");  // a folder is no file
    EXPECT_EQ(updateSummary(bench.project, bench.files), (CardTotals{8, 3, true}));
    EXPECT_EQ(updateSummary(Project(), bench.files), CardTotals());
    EXPECT_TRUE(check(bench).blocked);
}

TEST(CardChecks, AGoodProjectPassesAll) {
    CardBench bench;
    const CardChecks checks = check(bench);
    EXPECT_TRUE(checks.hasItems);
    EXPECT_FALSE(checks.blocked);
    EXPECT_EQ(checks.musicLists.text,
              "Music Lists OK - All Music Lists contain at least one track.");
    EXPECT_EQ(checks.languages.text,
              "Languages OK - All languages contain at least one speech title.");
    EXPECT_EQ(checks.speechTitles.text,
              "Speech Titles OK - All speech titles are present in all languages.");
    EXPECT_EQ(checks.driveSelected.text, "CF Card Drive is E:\\");
    EXPECT_EQ(checks.cardPresent.text, "CF Card detected");
    EXPECT_EQ(checks.cardBigEnough.text, "CF Card can hold selected tracks.");
    EXPECT_EQ(checks.trackCount.text, "Number of tracks is within limit");
    EXPECT_EQ(checks.updateFirmwareEnabled, true);
}

TEST(CardChecks, OffendersAreListedInOrder) {
    CardBench bench;
    addMusicList(bench.project, "Empty B");
    addMusicList(bench.project, "Empty A");
    bench.project.lstLangs << "German"
                           << "French";
    bench.project.lstSpTitles << "Bye";
    addSpeech(bench.project, "Bye", "German", bench.scratch.path("src/hello.mp3"));
    CardChecks checks = check(bench);
    EXPECT_EQ(checks.musicLists.verdict, Verdict::Red);
    EXPECT_EQ(checks.musicLists.offenders, (QStringList{"Empty B", "Empty A"}));
    EXPECT_EQ(checks.languages.offenders, QStringList("French"));
    EXPECT_EQ(checks.speechTitles.verdict, Verdict::Yellow);
    EXPECT_EQ(checks.speechTitles.offenders,
              (QStringList{"Hello - German", "Hello - French", "Bye - English", "Bye - French"}));
    EXPECT_TRUE(checks.blocked);

    bench.project.lstMuList = {"L"};
    bench.project.lstLangs = {"English", "German"};
    checks = check(bench);
    EXPECT_EQ(checks.speechTitles.verdict, Verdict::Yellow);
    EXPECT_FALSE(checks.blocked) << "a missing pair only warns";
}

TEST(CardChecks, TheDriveIsJudged) {
    CardBench bench;
    CardChecks checks = check(bench, "");
    EXPECT_EQ(checks.driveSelected.text, "CF Card Drive is NOT SELECTED");
    EXPECT_EQ(checks.cardPresent.verdict, Verdict::Grey);
    EXPECT_FALSE(checks.cardPresent.isEnabled || checks.cardBigEnough.isEnabled);
    EXPECT_EQ(checks.updateFirmwareEnabled, false);
    EXPECT_TRUE(checks.blocked && !checks.projectBlocked);

    bench.drives.isReady = false;
    checks = check(bench);
    EXPECT_EQ(checks.cardPresent.verdict, Verdict::Red);
    EXPECT_EQ(checks.cardPresent.text, "CF Card not inserted");
    EXPECT_EQ(checks.cardBigEnough.verdict, Verdict::Grey);
    EXPECT_EQ(checks.updateFirmwareEnabled, std::nullopt);

    bench.drives.isReady = true;
    for (const bool oneMore : {false, true}) {
        bench.drives.volume.totalBytes = 5008 + 500000 + (oneMore ? 1 : 0);
        checks = check(bench);
        EXPECT_EQ(checks.cardBigEnough.verdict, oneMore ? Verdict::Green : Verdict::Red);
        EXPECT_EQ(checks.blocked, !oneMore);
    }
    // The capacity is compared with the total as it stood before the check measured anew.
    CardTotals stale{10000000, 0, false};
    EXPECT_TRUE(runCardChecks(bench.project, "E:\\", bench.files, bench.drives, stale).blocked);
    EXPECT_EQ(stale.totalCardBytes, 5008);
}

TEST(CardChecks, LimitsBlockToo) {
    CardBench bench;
    const TrackRecord track = bench.project.TrackTable[1];
    bench.project.TrackTable.append(QList<TrackRecord>(9995 - 3, track));
    EXPECT_EQ(check(bench).trackCount.verdict, Verdict::Green);
    EXPECT_FALSE(check(bench).blocked);
    bench.project.TrackTable.append(track);
    CardChecks checks = check(bench);
    EXPECT_EQ(checks.trackCount.text, "Too many tracks, limit is 9995");
    EXPECT_TRUE(checks.blocked);

    bench.project.TrackTable.resize(4);
    bench.project.lstMuTrack[0].append(QStringList(4000, "x"));
    checks = check(bench);
    ASSERT_EQ(checks.exceededLimits.size(), 1);
    EXPECT_TRUE(checks.exceededLimits[0].contains("the player can hold 65,527"));
    EXPECT_TRUE(checks.blocked);

    bench.project.lstMuTrack[0].resize(2);
    EXPECT_FALSE(check(bench).blocked);
    for (const char* file : {"src/first.mp3", "chime.mp3"}) {
        bench.useChime();
        const QString path = bench.scratch.path(file);
        QFile::resize(path, limits::CardFileBytes);
        EXPECT_TRUE(check(bench).exceededLimits.isEmpty());
        QFile::resize(path, limits::CardFileBytes + 1);
        checks = check(bench);
        EXPECT_EQ(checks.exceededLimits, QStringList(tooLargeForCard(path, qint64(1) << 32)));
        EXPECT_TRUE(checks.projectBlocked);
        QFile::resize(path, 3);
    }

    bench.project = Project();
    checks = check(bench);
    EXPECT_FALSE(checks.hasItems);
}

TEST(Firmware, VersionsAreComparedAsTexts) {
    using Relation = FirmwareComparison::Relation;
    const struct {
        const char* card;
        Relation relation;
        const char* message;
    } cases[] = {
        {":040110000102", Relation::SameAsCard,
         "Your card already contains TRL740 firmware version 4011.  No update has been done."},
        {":00999", Relation::CardOlder,
         "Do you want to update your card from TRL740 firmware version 0999 to version 4011?"},
        {":04012\r\n:00", Relation::CardNewer,
         "Your card  contains TRL740 firmware version 4012 but Tessaly is about to install version "
         "4011.  Do you really want to downgrade?"},
        {":0", Relation::CardOlder, nullptr},
    };
    CardBench bench;
    bench.scratch.write("app/firmware/0000.hex", ":04011000010203\r\n");
    EXPECT_EQ(compareFirmware(bench.files, bench.job.root, bench.job.folders).message,
              "Card does not have a valid TRL740 format.");
    for (auto [card, relation, message] : cases) {
        // The version starts at the third character: behind the colon and one digit.
        bench.scratch.write("card/0000.hex", card);
        const auto comparison = compareFirmware(bench.files, bench.job.root, bench.job.folders);
        EXPECT_EQ(comparison.relation, relation) << card;
        if (message) {
            EXPECT_EQ(comparison.message, message);
        }
    }
}

TEST(Firmware, AnUpdateReplacesOneFileOrNothing) {
    CardBench bench;
    bench.scratch.write("card/0000.hex", ":00old");
    bench.scratch.write("card/0001.mp3", "music");
    bench.files.failWhen = [](const QString& operation) { return operation == "replace 0000.hex"; };
    EXPECT_THROW(updateFirmware(bench.files, bench.job.root, bench.job.folders), TessalyError);
    EXPECT_EQ(bench.card()["0000.hex"], ":00old");
    bench.files.failWhen = [](const QString&) { return false; };
    updateFirmware(bench.files, bench.job.root, bench.job.folders);
    EXPECT_EQ(bench.card()["0000.hex"], bench.scratch.read("app/firmware/0000.hex"));
    EXPECT_EQ(bench.card().size(), 2);

    bench.scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    bench.scratch.write("card/0000.hex", ":00old");
    try {
        updateFirmware(bench.files, bench.job.root, bench.job.folders);
        FAIL() << "a stand-in went onto the card";
    } catch (const TessalyError& error) {
        EXPECT_EQ(error.number, error_number::NoFirmwareData);
        EXPECT_EQ(bench.card()["0000.hex"], ":00old");
    }
}

}  // namespace tessaly
