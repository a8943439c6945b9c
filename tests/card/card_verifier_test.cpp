#include "card/card_verifier.h"

#include <random>

#include "image/config_image.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "model/music_lists.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;

TEST(CardVerifier, FindsWhatIsWrongWithACard) {
    const auto rewrite = [](CardBench& b, const std::function<void(Project&)>& change) {
        Project project = b.project;
        change(project);
        b.scratch.write("card/0000.xd3", EncodeImageAsHex(composeConfigImage(project, 5)));
    };
    const struct {
        const char* what;
        std::function<void(CardBench&)> damage;
        QString problem;  // part of the first one; empty: the card is good
    } cases[] = {
        {"nothing", [](CardBench&) {}, ""},
        {"another identifier", [&](CardBench& b) { rewrite(b, [](Project&) {}); }, ""},
        {"a missing track", [](CardBench& b) { QFile::remove(b.scratch.path("card/0002.mp3")); },
         "0002.mp3 is missing"},
        {"an empty track", [](CardBench& b) { b.scratch.write("card/0003.mp3", ""); },
         "0003.mp3 is empty"},
        {"an empty track without its source",
         [](CardBench& b) {
             b.scratch.write("card/0003.mp3", "");
             QFile::remove(b.scratch.path("src/hello.mp3"));
         },
         "0003.mp3 is empty"},
        {"an empty track as its source is",
         [](CardBench& b) {
             for (const char* file : {"card/0003.mp3", "src/hello.mp3"})
                 b.scratch.write(file, "");
         },
         ""},
        {"no settings", [](CardBench& b) { QFile::remove(b.scratch.path("card/0000.xd3")); },
         "0000.xd3: "},
        {"a cut project",
         [](CardBench& b) {
             b.scratch.write("card/0000.crd2", b.scratch.read("card/0000.crd2").chopped(1));
         },
         "0000.crd2 is damaged at byte"},
        {"a project cut between two records",
         [](CardBench& b) {
             auto records = parseRecords(b.scratch.read("card/0000.crd2")).records;
             records.removeLast();
             QByteArray bytes;
             for (const TrackRecord& record : records)
                 encodeRecord(bytes, record);
             b.scratch.write("card/0000.crd2", bytes);
         },
         "the records that every project ends with are missing"},
        {"a wrong checksum",
         [](CardBench& b) {
             b.scratch.write("card/0000.xd3", b.scratch.read("card/0000.xd3").replace("FF", "FE"));
         },
         "0000.xd3: Line "},
        {"LF line ends",
         [](CardBench& b) {
             b.scratch.write("card/0000.xd3", b.scratch.read("card/0000.xd3").replace("\r", ""));
         },
         "not laid out as the player expects"},
        {"numbers swapped",
         [&](CardBench& b) {
             rewrite(b, [](Project& p) {
                 std::swap(p.TrackTable[1].typeTag, p.TrackTable[2].typeTag);
             });
         },
         "differ: music list 1 (\"L\")"},
        {"tracks in another order",
         [&](CardBench& b) { rewrite(b, [](Project& p) { p.lstMuTrack[0].swapItemsAt(0, 1); }); },
         "differ: music list 1 (\"L\")"},
        {"another title",
         [&](CardBench& b) { rewrite(b, [](Project& p) { p.txtCardTitle2 = "x"; }); },
         "differ: the card title"},
        {"a speech file of another number",
         [&](CardBench& b) { rewrite(b, [](Project& p) { setTypeTag(p.TrackTable[3], "0009"); }); },
         "differ: the files of the speech titles"},
        {"firmware that is cut",
         [](CardBench& b) {
             b.scratch.write("card/0000.hex", b.scratch.read("card/0000.hex").chopped(12));
         },
         "0000.hex is damaged: "},
        {"the calibration sound",
         [](CardBench& b) { QFile::remove(b.scratch.path("card/9998.mp3")); },
         "9998.mp3 is missing"},
    };
    for (const auto& [what, damage, problem] : cases) {
        SCOPED_TRACE(what);
        CardBench bench;
        ASSERT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
        damage(bench);
        const CardVerification result = verifyCard(bench.files, bench.job.root);
        EXPECT_EQ(result.isGood(), problem.isEmpty()) << result.problems.join('\n').toStdString();
        EXPECT_TRUE(result.problems.value(0).contains(problem))
            << result.problems.join('\n').toStdString();
    }
}

// Whatever a creation takes, the card that it makes of it is a good one, and no other settings are
// good on it.
TEST(CardVerifier, EveryCreatedCardIsGood) {
    std::mt19937 random(1612);
    int created = 0;
    for (int round = 0; round < 45; ++round) {
        SCOPED_TRACE(round);
        CardBench bench;
        bench.files.toDevice = false;
        const bool isPlain = round % 3 == 0;
        bench.project = randomProject(random, 40, isPlain ? Names::Plain : Names::Any);
        for (qsizetype i = 0; i < bench.project.TrackTable.size(); ++i)
            bench.project.TrackTable[i].sourcePath =
                bench.scratch.write(QString("src/%1.mp3").arg(i), QByteArray::number(i));
        bench.project.buttPlayIntChime = false;
        if (bench.create().outcome != CardRunReport::Outcome::Done)
            continue;  // a limit
        ++created;
        const auto problems = [&] { return verifyCard(bench.files, bench.job.root).problems; };
        EXPECT_EQ(problems(), QStringList());

        const QByteArray settings = bench.card()["0000.xd3"];
        QByteArray changed = settings;
        changed[qsizetype(random() % size_t(changed.size()))] ^= char(1 + random() % 255);
        bench.scratch.write("card/0000.xd3", changed);
        EXPECT_NE(problems(), QStringList());
        // The same with a right checksum. The identifier and lines without a file are in the
        // settings alone.
        if (!isPlain)
            continue;
        const QByteArray image = decodeHexFile(settings).image;
        changed = image;
        changed[2 + qsizetype(random() % size_t(image.size() - 2))] ^= char(1 + random() % 255);
        bench.scratch.write("card/0000.xd3", EncodeImageAsHex(changed));
        EXPECT_NE(problems(), QStringList());
    }
    EXPECT_GT(created, 35);
}

TEST(CardVerifier, NotesWhatNothingRefersTo) {
    CardBench bench;
    ASSERT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
    bench.scratch.write("card/holiday.jpg", "x");
    for (const char* file : {"card/0001.mp3", "src/first.mp3"})
        bench.scratch.write(file, "");
    const CardVerification result = verifyCard(bench.files, bench.job.root);
    EXPECT_EQ(result.notes, QStringList("holiday.jpg is on the card, but nothing refers to it."));
    EXPECT_EQ(result.warnings,
              QStringList("0001.mp3 is empty, as " + bench.scratch.path("src/first.mp3") +
                          " is: it plays nothing."));
    EXPECT_EQ(result.trackFiles, 3);
    EXPECT_THROW(verifyCard(bench.files, bench.scratch.path("nowhere")), TessalyError);
}

}  // namespace tessaly
