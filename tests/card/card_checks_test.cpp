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

TEST(CardSummary, AMissingFileCountsAndIsFlagged) {
    CardBench bench;
    EXPECT_EQ(megabytes(49999), "0.0 MB");
    EXPECT_EQ(megabytes(12345650000), "12345.7 MB");
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

TEST(CardChecks, DecideWhatThePageOffers) {
    CardBench bench;
    const CardControls good{
        .buttCreateCard = true, .buttCreateXD3 = true, .buttUpdateFirmware = true};
    EXPECT_EQ(cardControls(check(bench), false, true), good);
    EXPECT_EQ(cardControls(check(bench, ""), true, true), CardControls());
    // The state of the firmware button stays while the drive is empty.
    bench.drives.isReady = false;
    for (const bool before : {false, true})
        EXPECT_EQ(cardControls(check(bench), before, true).buttUpdateFirmware, before);
    bench.drives.isReady = true;
    bench.project.lstMuTrack[0].append("silent");
    bench.scratch.write("src/hello.mp3", "");
    QFile::remove(bench.scratch.path("src/first.mp3"));
    for (const bool canGive : {false, true})
        EXPECT_EQ(cardControls(check(bench), false, canGive),
                  (CardControls{.buttUpdateFirmware = true,
                                .buttGiveFiles = canGive,
                                .fraSilentTracks = true,
                                .fraEmptyFiles = true,
                                .fraCC7 = true}));
    bench.project.TrackTable.append(QList<TrackRecord>(200, bench.project.TrackTable[1]));
    const CheckResult problems = problemsOf(check(bench));
    EXPECT_EQ(problems.offenders.size(), 201);
    EXPECT_EQ(problems.offenders.last(), "... and 1 more");
}

TEST(CardChecks, OnlyARemovableDriveIsSelected) {
    const struct {
        DriveType type;
        bool isReady;
        const char *drive, *said;
    } cases[] = {{DriveType::Removable, true, "E:", ""},
                 {DriveType::Fixed, false, "E:", ""},  // it may become one with a card
                 {DriveType::Fixed, true, "D:", "Sorry, that is a Fixed drive!"},
                 {DriveType::CdRom, true, "D:", "Sorry, that is a CD-ROM drive!"}};
    for (const auto& [type, isReady, drive, said] : cases) {
        CardBench bench;
        bench.project.cfDrive = "D:";
        bench.drives.driveType = type;
        bench.drives.isReady = isReady;
        EXPECT_EQ(selectCardDrive(bench.project, bench.drives, "E:"), said);
        EXPECT_EQ(bench.project.cfDrive, drive);
    }
}

// The version starts at the third character: behind the colon and one digit.
TEST(Firmware, IsOfferedByItsVersionAsText) {
    using Outcome = FirmwareResult::Outcome;
    const struct {
        QByteArray card;
        Outcome outcome;  // after a yes
        QString said;
    } cases[] = {
        {"", Outcome::NoCard, "Card does not have a valid TRL740 format."},
        {":040110000102", Outcome::UpToDate,
         "Your card already contains TRL740 firmware version 4011.  No update has been done."},
        {":00999", Outcome::Updated,
         "Do you want to update your card from TRL740 firmware version 0999 to version 4011?"},
        {":04012\r\n:00", Outcome::Updated,
         "Your card  contains TRL740 firmware version 4012 but Tessaly is about to install version "
         "4011.  Do you really want to downgrade?"},
        {":0", Outcome::Updated,
         "Do you want to update your card from TRL740 firmware version  to version 4011?"}};
    for (const auto& [card, outcome, said] : cases) {
        for (const bool yes : {false, true}) {
            CardBench bench;
            if (!card.isEmpty())
                bench.scratch.write("card/0000.hex", card);
            QString asked;
            const auto ask = [&](const QString& question, bool isDowngrade) {
                EXPECT_EQ(isDowngrade, question.contains("downgrade"));
                asked = question;
                return yes;
            };
            const FirmwareResult result =
                offerFirmware(bench.files, bench.drives, bench.job.root, bench.job.folders, ask);
            EXPECT_EQ(asked.isEmpty() ? result.message : asked, said);
            EXPECT_EQ(result.outcome, yes || asked.isEmpty() ? outcome : Outcome::Declined);
            EXPECT_EQ(bench.card().value("0000.hex"),
                      result.outcome == Outcome::Updated
                          ? bench.scratch.read("app/firmware/0000.hex")
                          : card);
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
    for (const QByteArray& damaged : {updated.chopped(1), updated + '\n', updated.toLower()}) {
        bench.files.readsBackAs = [&](auto&, auto&) { return std::optional(damaged); };
        EXPECT_THROW(update(), TessalyError) << damaged.toStdString();
    }
    bench.scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    EXPECT_THROW(update(), TessalyError) << "a stand-in went onto the card";
    EXPECT_EQ(bench.card()["0000.hex"], updated);
}

}  // namespace tessaly
