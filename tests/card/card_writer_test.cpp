// SPDX-License-Identifier: GPL-3.0-or-later
#include "card/card_writer.h"

#include "card/card_verifier.h"
#include "image/config_image_reader.h"
#include "image/intel_hex.h"
#include "model/card_file.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;
using Outcome = CardRunReport::Outcome;

namespace {

QStringList copyOf(const QString& from, const QString& to, int step) {
    QStringList list;
    for (const QString& operation : {"open " + from, "create " + to, "read " + from, "write " + to,
                                     "read " + from, "close " + to})
        list.append(operation + ':' + QString::number(step));
    return list;
}

QStringList writingOf(const QString& to, int step) {
    return copyOf({}, to, step).filter(' ' + to + ':');
}

// Whether this process keeps `folder` or anything inside it from being taken away.
bool isHeldOpen(const QString& folder) {
#ifdef Q_OS_WIN
    const QString elsewhere = folder + " elsewhere";
    return !QFile::rename(folder, elsewhere) || !QFile::rename(elsewhere, folder);
#else
    const auto open = QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System);
    return std::any_of(open.begin(), open.end(), [&](const QFileInfo& descriptor) {
        return descriptor.symLinkTarget().startsWith(folder);
    });
#endif
}

// What a run should do, one "operation:step" after the other.
QStringList operationsOf(bool settingsOnly) {
    const QStringList erasing = {"hold card:310",        "list card:314",      "list sub:314",
                                 "list card:10",         "remove old.mp3:100", "list sub:101",
                                 "remove inner.txt:101", "rmdir sub:101"};
    const QStringList updating = {"hold card:310",      "list card:314",      "open 0000.crd2:316",
                                  "read 0000.crd2:316", "read 0000.crd2:316", "remove 0000.crd2:12",
                                  "remove 0000.xd3:12", "remove 0000.hex:13", "remove 9998.mp3:14"};
    QStringList list = {"create tmp.bin:203", "write tmp.bin:213", "close tmp.bin:213",
                        "create tmp.hex:213", "write tmp.hex:213", "close tmp.hex:213",
                        "create tmp.crd:213", "write tmp.crd:213", "close tmp.crd:213"};
    QStringList written = {"0000.xd3", "0000.hex", "9998.mp3", "0007.cfg", "9999.mp3", "0000.crd2"};
    if (settingsOnly) {
        list += updating;
    } else {
        written = QStringList{"0001.mp3", "0002.mp3", "0003.mp3"} + written;
        list += erasing + copyOf("first.mp3", "0001.mp3", 11) +
                copyOf("second.MP3", "0002.mp3", 11) + copyOf("hello.mp3", "0003.mp3", 11);
    }
    list += writingOf("0000.xd3", 15) + copyOf("0000.hex", "0000.hex", 16) +
            copyOf("9998.mp3", "9998.mp3", 17) + copyOf("0007.cfg", "0007.cfg", 69) +
            copyOf("chime.mp3", "9999.mp3", 18) +
            QStringList{"create tmp.crd:19", "write tmp.crd:20", "close tmp.crd:21"} +
            writingOf("0000.crd2", 22);
    for (const QString& name : written)
        list += "settle " + name + ":320";
    list += "flush card:320";
    for (const QString& name : written)
        list += {"reopen " + name + ":321", "reread " + name + ":321", "reread " + name + ":321"};
    return list + QStringList{"remove tmp.bin:23", "remove tmp.hex:24", "remove tmp.crd:25"};
}

void fillWithOldFiles(CardBench& bench) {
    bench.scratch.write("card/old.mp3", "old");
    bench.scratch.write("card/sub/inner.txt", "inner");
}

// A bench with everything in it, before a run of this kind.
std::unique_ptr<CardBench> benchFor(bool settingsOnly) {
    auto bench = std::make_unique<CardBench>();
    bench->files.toDevice = false;
    bench->useChime();
    if (settingsOnly) {
        EXPECT_EQ(bench->create().outcome, Outcome::Done);
    } else {
        fillWithOldFiles(*bench);
    }
    bench->files.operations.clear();
    return bench;
}

// Runs once for every operation of a clean run, which fails that time.
void failEachOperation(const QStringList& expected, bool settingsOnly) {
    const auto whole = benchFor(true)->card();
    for (int at = 0; at < expected.size(); ++at) {
        const auto kept = benchFor(settingsOnly);
        CardBench& bench = *kept;
        const auto cardBefore = bench.card();
        const auto sourcesBefore = bench.scratch.content("src");
        const QString step = expected[at].section(':', 1);
        bench.files.failAt = at;
        const CardRunReport report = bench.run(settingsOnly);
        SCOPED_TRACE(expected[at].toStdString());
        EXPECT_EQ(bench.scratch.content("src"), sourcesBefore);
        EXPECT_FALSE(bench.observer.isShown);
        const int number = step.toInt();
        // Tidying up is no matter of the card, and without its project sizes still tell.
        if ((number >= 23 && number <= 25) || number == 316) {
            EXPECT_EQ(report.outcome, Outcome::Done);
            continue;
        }
        EXPECT_EQ(report.outcome, Outcome::Failed);
        EXPECT_EQ(bench.observer.title, "Tessaly Error " + step);
        EXPECT_TRUE(bench.observer.text.startsWith("Error # 5 was generated by Tessaly\r"));
        EXPECT_EQ(bench.observer.messages.last(), "Card has NOT been created");
        EXPECT_EQ(bench.writer.updateSettingsOnly, settingsOnly);
        if (number >= 200 && number < 320) {
            EXPECT_EQ(bench.card(), cardBefore) << "something on the card changed too early";
        }
        const auto cardNow = bench.card();
        for (auto file = cardNow.begin(); file != cardNow.end(); ++file)
            if (whole.contains(file.key()) && file.key() != "0000.crd2") {
                EXPECT_EQ(file.value(), whole[file.key()]) << file.key().toStdString();
            }
        EXPECT_EQ(verifyCard(bench.files, bench.job.root).isGood(), cardNow.size() == whole.size());
        // The project is whole, and the half-written card is one that a second run completes.
        EXPECT_EQ(bench.project.lstMuTrack[0], (QStringList{"one", "two"}));
        EXPECT_EQ(typeTagText(bench.project.TrackTable[3]), "0003");
        bench.files.failAt = -1;
        EXPECT_EQ(bench.run(settingsOnly).outcome, Outcome::Done);
        EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
    }
}

}  // namespace

TEST(CardWriter, AFullCreationLeavesExactlyTheCardsFiles) {
    CardBench bench;
    bench.useChime();
    fillWithOldFiles(bench);
    // Another program shares the work folder.
    bench.files.onOperation = [&] {
        for (const char* file : {"work/tmp.hex", "work/tmp.crd"})
            if (bench.files.operations.last().startsWith("create 0"))
                bench.scratch.write(file, "another project's");
    };
    bool isHeldAtTheEnd = true;
    bench.observer.onSuccess = [&] { isHeldAtTheEnd = isHeldOpen(bench.scratch.path("card")); };
    const CardRunReport report = bench.create();
    ASSERT_EQ(report.outcome, Outcome::Done) << bench.observer.text.toStdString();
    EXPECT_FALSE(isHeldAtTheEnd) << "the operator cannot eject the card";
    for (const char* source : {"src/first.mp3", "src/hello.mp3", "chime.mp3"})
        EXPECT_EQ(bench.files.sizesAsked[bench.scratch.path(source)], 1) << source;
    const auto card = bench.card();
    EXPECT_EQ(card.keys(), (QStringList{"0000.crd2", "0000.hex", "0000.xd3", "0001.mp3", "0002.mp3",
                                        "0003.mp3", "0007.cfg", "9998.mp3", "9999.mp3"}));
    EXPECT_EQ(card["0001.mp3"], QByteArray(5000, '1'));
    EXPECT_EQ(card["0003.mp3"], "hello");
    EXPECT_EQ(card["9998.mp3"], "calibration");
    EXPECT_EQ(card["9999.mp3"], "ding");
    EXPECT_EQ(card["0000.crd2"], encodeProject(bench.project));
    EXPECT_EQ(decodeConfigImage(decodeHexFile(card["0000.xd3"]).image).identifier, 0x3A07);

    EXPECT_EQ(bench.observer.questions,
              QStringList("This will erase the contents of the CF card.  Continue?"));
    EXPECT_EQ(bench.observer.captions,
              (QStringList{"Preparing to create card...", "1 of 3 files transferred",
                           "2 of 3 files transferred"}));
    EXPECT_EQ(bench.observer.files, (QList<int>{0, 1, 2, 3}));
    EXPECT_EQ(bench.observer.progress.trackFileCount, 3);
    EXPECT_EQ(bench.observer.progress.fileName, "0000.crd2");
    EXPECT_EQ(bench.observer.messages, QStringList("Card successfully created!"));
    EXPECT_TRUE(report.isVerified);
    EXPECT_TRUE(bench.scratch.content("work").isEmpty());
    EXPECT_FALSE(bench.project.unsavedChanges);
    EXPECT_EQ(QFileInfo(bench.scratch.path("card/0001.mp3")).lastModified().toSecsSinceEpoch(),
              QFileInfo(bench.scratch.path("src/first.mp3")).lastModified().toSecsSinceEpoch());
    EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());

    // Done again, the settings go first: a player does not start on a card that is being erased.
    bench.files.operations.clear();
    ASSERT_EQ(bench.create().outcome, Outcome::Done);
    EXPECT_EQ(bench.files.operations.filter("remove ").value(0), "remove 0000.xd3");

    // An update leaves the music alone, and whatever else is there.
    bench.scratch.write("card/extra.txt", "extra");
    auto expected = bench.card();
    bench.project.txtCardTitle1 = "NEW TITLE";
    ASSERT_EQ(bench.update().outcome, Outcome::Done) << bench.observer.text.toStdString();
    auto updated = bench.card();
    for (const char* name : {"0000.xd3", "0000.crd2"})
        EXPECT_NE(updated.take(name), expected.take(name));
    EXPECT_EQ(updated, expected);
    EXPECT_FALSE(bench.writer.updateSettingsOnly);
}

TEST(CardWriter, EveryOperationMayFail) {
    for (const bool settingsOnly : {false, true}) {
        const QStringList expected = operationsOf(settingsOnly);
        const auto bench = benchFor(settingsOnly);
        QStringList noted;
        bench->files.onOperation = [&] {
            noted.append(QString("%1:%2")
                             .arg(bench->files.operations.last())
                             .arg(bench->observer.progress.stepCode));
        };
        EXPECT_EQ(bench->run(settingsOnly).outcome, Outcome::Done);
        EXPECT_EQ(noted, expected);
        failEachOperation(expected, settingsOnly);
    }
}

// Killed at every operation, in the midst of a write too: what is left is called good only when it
// is whole, and a second run makes it so. The settings themselves stay as they were: what tells a
// half-written card must not be them alone.
TEST(CardWriter, AKilledRunLeavesNoCardThatLooksGood) {
    for (const bool settingsOnly : {false, true}) {
        bool wasKilled = true;
        for (int at = 0; wasKilled; ++at) {
            const auto kept = benchFor(true);
            CardBench& bench = *kept;
            bench.job.verify = false;
            const auto before = bench.card();
            for (const char* file : {"app/files/9998.mp3", "app/files/0007.cfg", "chime.mp3"})
                bench.scratch.write(file, "another one, and longer");
            const auto run = [&] { return bench.run(settingsOnly); };
            bench.files.failAt = at;
            bench.files.isKill = true;
            wasKilled = false;
            try {
                run();
            } catch (const Killed&) {
                wasKilled = true;
            }
            SCOPED_TRACE(bench.files.operations.value(at).toStdString());
            bench.files.failAt = -1;
            const auto left = bench.card();
            const bool looksGood = verifyCard(bench.files, bench.job.root).isGood();
            EXPECT_EQ(run().outcome, Outcome::Done) << bench.observer.text.toStdString();
            EXPECT_EQ(looksGood, left == before || left == bench.card());
            EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
        }
    }
}

TEST(CardWriter, AStoppedRunEndsInTheErrorBox) {
    for (int calls = 0; calls < 12; ++calls) {
        CardBench bench;
        int left = calls;
        bench.observer.keepGoingNow = [&] { return left-- > 0; };
        const CardRunReport report = bench.create();
        EXPECT_EQ(report.outcome, Outcome::Failed);
        EXPECT_EQ(report.error->number, error_number::Stopped);
        EXPECT_EQ(bench.observer.messages, QStringList("Card has NOT been created"));
        bench.observer.keepGoingNow = [] { return true; };
        EXPECT_EQ(bench.create().outcome, Outcome::Done);
    }
}

// Whatever is done to the project while a card is written, the card is that of the beginning.
TEST(CardWriter, ARunWorksOnItsOwnSnapshot) {
    CardBench bench;
    EXPECT_EQ(bench.create().outcome, Outcome::Done);
    const auto card = bench.card();
    bench.observer.keepGoingNow = [&] {
        EXPECT_TRUE(bench.writer.isRunning());
        EXPECT_EQ(bench.update().outcome, Outcome::Busy);
        reset(bench.project);
        bench.project.unsavedChanges = true;
        return true;
    };
    EXPECT_EQ(bench.create().outcome, Outcome::Done);
    EXPECT_TRUE(bench.project.unsavedChanges) << "the edit would be lost without a word";
    EXPECT_FALSE(bench.writer.updateSettingsOnly);
    EXPECT_EQ(bench.card(), card);
}

TEST(CardWriter, AFolderThatWindowsKeepsIsLeftAlone) {
    for (const bool isReadable : {false, true}) {
        CardBench bench;
        const QString kept =
            bench.scratch.write("card/System Volume Information/tracking.log", "x");
        bench.files.failWhen = [&](const QString& operation) {
            return operation == "remove tracking.log" ||
                   (!isReadable && operation == "list System Volume Information");
        };
        EXPECT_EQ(bench.create().outcome, Outcome::Done) << bench.observer.text.toStdString();
        EXPECT_TRUE(bench.files.fileSize(kept).has_value());
        EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
    }
}

}  // namespace tessaly
