// SPDX-License-Identifier: GPL-3.0-or-later
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
    using Damage = std::function<void(CardBench&)>;
    using Bytes = std::function<QByteArray(QByteArray)>;
    using Change = std::function<void(Project&)>;
    const auto without = [](const char* file) -> Damage {
        return [=](CardBench& b) { QFile::remove(b.scratch.path(file)); };
    };
    const auto empty = [](const QStringList& files) -> Damage {
        return [=](CardBench& b) {
            for (const QString& file : files)
                b.scratch.write(file, "");
        };
    };
    const auto with = [](const char* file, const Bytes& change) -> Damage {
        return [=](CardBench& b) { b.scratch.write(file, change(b.scratch.read(file))); };
    };
    const auto withSettingsOf = [](const Change& change) -> Damage {
        return [=](CardBench& b) {
            Project project = b.project;
            change(project);
            b.scratch.write("card/0000.xd3", EncodeImageAsHex(composeConfigImage(project, 5)));
        };
    };
    const struct {
        Damage damage;
        QString problem;  // part of the first one; empty: the card is good
    } cases[] = {
        {withSettingsOf([](Project&) {}), ""},  // with another identifier
        {without("card/0002.mp3"), "0002.mp3 is missing"},
        {without("card/9998.mp3"), "9998.mp3 is missing"},
        {without("card/0000.xd3"), "0000.xd3: "},
        {empty({"card/0003.mp3"}), "0003.mp3 is empty"},
        {empty({"card/0003.mp3", "src/hello.mp3"}), ""},
        {[](CardBench& b) {
             b.scratch.write("card/0003.mp3", "");
             QFile::remove(b.scratch.path("src/hello.mp3"));
         },
         "0003.mp3 is empty"},
        {[](CardBench& b) {
             b.files.failWhen = [](const QString& what) { return what == "reread 0002.mp3"; };
         },
         "0002.mp3: failed on purpose."},
        {with("card/0000.crd2", [](QByteArray b) { return b.chopped(1); }),
         "0000.crd2 is damaged at byte"},
        {with("card/0000.crd2",
              [](QByteArray b) {
                  QByteArray bytes;  // cut between two records
                  for (const TrackRecord& record : parseRecords(b).records.mid(0, 4))
                      encodeRecord(bytes, record);
                  return bytes;
              }),
         "the records that every project ends with are missing"},
        {with("card/0000.xd3", [](QByteArray b) { return b.replace("FF", "FE"); }),
         "0000.xd3: Line "},
        {with("card/0000.xd3", [](QByteArray b) { return b.replace("\r", ""); }),
         "not laid out as the player expects"},
        {with("card/0000.hex", [](QByteArray b) { return b.chopped(12); }),
         "0000.hex is damaged: "},
        {withSettingsOf(
             [](Project& p) { std::swap(p.TrackTable[1].typeTag, p.TrackTable[2].typeTag); }),
         "differ: music list 1 (\"L\")"},
        {withSettingsOf([](Project& p) { p.lstMuTrack[0].swapItemsAt(0, 1); }),
         "differ: music list 1 (\"L\")"},
        {withSettingsOf([](Project& p) { addTrack(p, "New", "x", "x"); }),
         "differ: the number of music lists"},
        {withSettingsOf([](Project& p) { p.txtCardTitle2 = "x"; }), "differ: the card title"},
        {withSettingsOf([](Project& p) { p.lstSpTitles[0] = "Hallo"; }),
         "differ: the speech titles"},
        {withSettingsOf([](Project& p) { p.lstLangs[0] = "German"; }), "differ: the languages"},
        {withSettingsOf([](Project& p) { addDefaultLanguage(p, "English"); }),
         "differ: the default languages"},
        {withSettingsOf([](Project& p) { setChimeOption(p, &Project::buttChimeOnce, true); }),
         "differ: the chime"},
        {withSettingsOf([](Project& p) { setTypeTag(p.TrackTable[3], "0009"); }),
         "differ: the files of the speech titles"},
    };
    for (const auto& [damage, problem] : cases) {
        SCOPED_TRACE(problem.toStdString());
        CardBench bench;
        ASSERT_EQ(bench.create().outcome, CardRunReport::Outcome::Done);
        damage(bench);
        const QStringList problems = verifyCard(bench.files, bench.job.root).problems;
        EXPECT_EQ(problems.isEmpty(), problem.isEmpty());
        EXPECT_TRUE(problems.value(0).contains(problem)) << problems.join('\n').toStdString();
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

}  // namespace tessaly
