#include "card/card_checks.h"

#include "card/firmware.h"
#include "model/format_limits.h"
#include "model/music_lists.h"
#include "model/numbers.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;

namespace {

CardChecks check(CardBench& bench, const QString& drive = "E:\\") {
    const SourceFiles sources = measureSources(bench.project, bench.files);
    return runCardChecks(bench.project, sources, drive, bench.drives,
                         updateSummary(sources).totalCardBytes);
}

}  // namespace

TEST(CardSummary, SizesAreShownInMegabytes) {
    const std::pair<qint64, const char*> cases[] = {{0, "0.0 MB"},
                                                    {49999, "0.0 MB"},
                                                    {50000, "0.1 MB"},
                                                    {123456789, "123.5 MB"},
                                                    {12345678901, "12345.7 MB"}};
    for (const auto& [bytes, text] : cases)
        EXPECT_EQ(megabytes(bytes), text);
}

TEST(CardSummary, AMissingFileCountsAndIsFlagged) {
    CardBench bench;
    EXPECT_EQ(updateSummary(bench.project, bench.files), (CardTotals{5008, 3, false}));
    EXPECT_FALSE(check(bench).blocked);
    QFile::remove(bench.scratch.path("src/first.mp3"));
    bench.scratch.makeFolder("src/first.mp3");  // a folder is no file
    EXPECT_EQ(updateSummary(bench.project, bench.files), (CardTotals{8, 3, true}));
    EXPECT_TRUE(check(bench).blocked);
    bench.project = Project();
    EXPECT_EQ(updateSummary(bench.project, bench.files), CardTotals());
    EXPECT_FALSE(check(bench).hasItems);
}

// The Create Card page's test has the drive in all its states.
TEST(CardChecks, ACardMustHoldMoreThanTheFiles) {
    CardBench bench;
    EXPECT_TRUE(check(bench, "").blocked && !check(bench, "").projectBlocked);
    for (const bool oneMore : {false, true}) {
        bench.drives.volume.totalBytes = 5008 + 500000 + (oneMore ? 1 : 0);
        const CardChecks checks = check(bench);
        EXPECT_EQ(checks.cardBigEnough.verdict, oneMore ? Verdict::Green : Verdict::Red);
        EXPECT_EQ(checks.blocked, !oneMore);
    }
    // The capacity is compared with the total as it stood before the check measured anew.
    const SourceFiles sources = measureSources(bench.project, bench.files);
    const CardChecks checks = runCardChecks(bench.project, sources, "E:\\", bench.drives, 10000000);
    EXPECT_TRUE(checks.blocked);
    EXPECT_EQ(checks.totals.totalCardBytes, 5008);
}

TEST(CardChecks, WarnWithoutBlocking) {
    CardBench bench;
    bench.useChime();
    EXPECT_TRUE(warningsOf(check(bench)).isEmpty());
    bench.project.lstMuTrack[0].append({"01 one", "hand-made"});
    for (const char* file : {"src/second.MP3", "chime.mp3"})
        bench.scratch.write(file, "");
    const TrackRecord track = bench.project.TrackTable[1];
    bench.project.TrackTable.append(QList<TrackRecord>(4096 - 3, track));
    const CardChecks checks = check(bench);
    EXPECT_FALSE(checks.blocked);
    EXPECT_EQ(checks.silentTracks.offenders, (QStringList{"L / 01 one", "L / hand-made"}));
    EXPECT_EQ(checks.emptyFiles.offenders,
              (QStringList{bench.scratch.path("src/second.MP3"), bench.scratch.path("chime.mp3")}));
    EXPECT_EQ(warningsOf(checks).size(), 3);
}

TEST(CardChecks, LimitsBlockToo) {
    CardBench bench;
    const TrackRecord track = bench.project.TrackTable[1];
    bench.project.TrackTable.append(QList<TrackRecord>(9995 - 3, track));
    EXPECT_EQ(check(bench).trackCount.verdict, Verdict::Green);
    EXPECT_FALSE(check(bench).blocked);
    bench.project.TrackTable.append(track);
    EXPECT_EQ(check(bench).trackCount.text, "Too many tracks, limit is 9995");
    EXPECT_TRUE(check(bench).blocked);

    bench.project.TrackTable.resize(4);
    bench.useChime();
    for (const char* file : {"src/first.mp3", "chime.mp3"}) {
        const QString path = bench.scratch.path(file);
        QFile::resize(path, limits::CardFileBytes);
        EXPECT_TRUE(check(bench).exceededLimits.isEmpty());
        QFile::resize(path, limits::CardFileBytes + 1);
        EXPECT_EQ(check(bench).exceededLimits, QStringList(tooLargeForCard(path, qint64(1) << 32)));
        EXPECT_TRUE(check(bench).projectBlocked);
        QFile::resize(path, 3);
    }
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
    const auto update = [&] { updateFirmware(bench.files, bench.job.root, bench.job.folders); };
    bench.scratch.write("card/0000.hex", ":00old");
    bench.files.failWhen = [](const QString& operation) { return operation == "replace 0000.hex"; };
    EXPECT_THROW(update(), TessalyError);
    EXPECT_EQ(bench.card()["0000.hex"], ":00old");
    bench.files.failWhen = [](const QString&) { return false; };
    update();
    const QByteArray updated = bench.scratch.read("app/firmware/0000.hex");
    EXPECT_EQ(bench.card(), (QMap<QString, QByteArray>{{"0000.hex", updated}}));
    bench.scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    EXPECT_THROW(update(), TessalyError) << "a stand-in went onto the card";
    EXPECT_EQ(bench.card()["0000.hex"], updated);
}

}  // namespace tessaly
