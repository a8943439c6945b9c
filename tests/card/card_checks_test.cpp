// SPDX-License-Identifier: GPL-3.0-or-later
// What stands before a card run and the command line does not show.
#include "card/card_checks.h"

#include "card/firmware.h"
#include "platform/local_file_system.h"
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

// The sessions at the window have the drive in all its states.
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

TEST(CardChecks, DecideWhatThePageOffers) {
    CardBench bench;
    EXPECT_EQ(cardControls(check(bench, ""), true, true), CardControls());
    // The state of the firmware button stays while the drive is empty.
    bench.drives.isReady = false;
    for (const bool before : {false, true})
        EXPECT_EQ(cardControls(check(bench), before, true).buttUpdateFirmware, before);
    QFile::remove(bench.scratch.path("src/first.mp3"));
    bench.project.TrackTable.append(QList<TrackRecord>(200, bench.project.TrackTable[1]));
    EXPECT_TRUE(cardControls(check(bench), true, true).buttFindMissing);
    const CheckResult problems = problemsOf(check(bench));
    EXPECT_EQ(problems.offenders.size(), 201);
    EXPECT_EQ(problems.offenders.last(), "... and 1 more");
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

TEST(SupportFolders, AreWhereDialogsStart) {
    const ScratchFolder scratch;
    const LocalFileSystem files;
    scratch.makeFolder("usr/share/tessaly");
    EXPECT_EQ(foldersOfProgram(scratch.makeFolder("usr/bin"), {}).manualFile,
              scratch.path("usr/share/tessaly/manual/manual.html"));
    const SupportFolders folders = supportFoldersIn(scratch.makeFolder("app"), scratch.path("own"));
    EXPECT_EQ(folders.chimesStart(), scratch.path("app/Chimes"));
    scratch.makeFolder("own/Chimes");
    EXPECT_EQ(folders.chimesStart(), scratch.path("own/Chimes"));
    EXPECT_EQ(folders.projectsStart(files), scratch.path("app"));
    EXPECT_NE(supportFoldersIn(scratch.path("gone")).projectsStart(files), scratch.path("gone"));
}

}  // namespace tessaly
