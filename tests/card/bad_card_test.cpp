// Cards that do not keep what they are given: verification finds each and names the file.
#include <random>

#include "card/card_verifier.h"
#include "card/firmware.h"
#include "support/card_bench.h"

namespace tessaly {

using namespace test;
using Outcome = CardRunReport::Outcome;

namespace {

using Content = QMap<QString, QByteArray>;
using Damaged = std::optional<QByteArray>;  // nothing: the file is gone

constexpr qsizetype Block = InputFile::BlockBytes;

QString nameOf(const QString& path) {
    return QFileInfo(path).fileName();
}

QByteArray flipped(QByteArray bytes, qsizetype at, int bit = 0) {
    bytes[at] = char(bytes[at] ^ (1 << bit));
    return bytes;
}

QByteArray noise(qsizetype size, unsigned seed) {
    std::mt19937 random(seed);
    QByteArray bytes(size, '\0');
    for (char& c : bytes)
        c = char(random());
    return bytes;
}

/// A card that holds an earlier creation of the same project with other music of the same lengths;
/// the second and the third file are of one length.
struct BadCardBench : CardBench {
    Content earlier;

    explicit BadCardBench(qsizetype trackBytes = 2000) {
        files.toDevice = false;
        useChime();
        for (const unsigned seed : {1U, 2U}) {
            scratch.write("src/first.mp3", noise(trackBytes, seed));
            scratch.write("src/second.MP3", noise(3000, seed + 10));
            scratch.write("src/hello.mp3", noise(3000, seed + 20));
            project.txtCardTitle1 = QString::number(seed);
            if (seed == 1) {
                EXPECT_EQ(create().outcome, Outcome::Done) << observer.text.toStdString();
                earlier = card();
            }
        }
    }

    // Whether a creation on a card that reads back as `damage` says ends in the box for `victim`.
    void expectNamed(const QString& victim, const std::string& what, const Damaged& damaged) {
        SCOPED_TRACE(victim.toStdString() + ": " + what);
        files.readsBackAs = [&](const QString& path, const QByteArray& content) {
            return nameOf(path) == victim ? damaged : content;
        };
        expectFailure(victim, damaged ? error_number::VerifyFailed : FaultyFileSystem::NoSuchFile);
    }

    void expectFailure(const QString& victim, int number) {
        observer.messages.clear();
        const CardRunReport report = create();
        ASSERT_EQ(report.outcome, Outcome::Failed);
        EXPECT_EQ(report.error->number, number);
        EXPECT_EQ(observer.title, "Tessaly Error 321");
        EXPECT_TRUE(observer.text.contains(scratch.path("card/" + victim) + ": "))
            << observer.text.toStdString();
        EXPECT_EQ(observer.messages, QStringList("Card has NOT been created"));
    }
};

// What a bad card may make of one file.
QMap<std::string, Damaged> damagesOf(const QString& name, const Content& written,
                                     const Content& earlier) {
    const QByteArray bytes = written[name];
    const qsizetype size = bytes.size(), middle = size / 2;
    QMap<std::string, Damaged> damages = {
        {"the first byte", flipped(bytes, 0)},
        {"the middle byte", flipped(bytes, middle, 3)},
        {"the last byte", flipped(bytes, size - 1, 7)},
        {"no last byte", bytes.chopped(1)},
        {"no second half", bytes.left(middle)},
        {"nothing but the first byte", size > 1 ? bytes.left(1) : QByteArray("?")},
        {"empty", QByteArray()},
        {"a byte more", bytes + '\0'},
        {"a block more", bytes + QByteArray(Block, '\0')},
        {"gone", std::nullopt},
        {"zeros", QByteArray(size, '\0')},
    };
    if (size > 2 * Block) {
        damages["no last block"] = bytes.chopped(Block);
        damages["cut to one block"] = bytes.left(Block);
        for (const qsizetype at : {qsizetype(0), Block, size - Block}) {
            const std::string where = std::to_string(at);
            damages["the earlier block at " + where] =
                QByteArray(bytes).replace(at, Block, earlier[name].mid(at, Block));
            damages["the neighbour's block at " + where] =
                QByteArray(bytes).replace(at, Block, bytes.mid((at + Block) % (2 * Block), Block));
        }
    }
    if (earlier[name] != bytes)
        damages["the earlier file"] = earlier[name];
    for (auto other = written.begin(); other != written.end(); ++other)
        if (other.value() != bytes)
            damages["the content of " + other.key().toStdString()] = other.value();
    return damages;
}

}  // namespace

TEST(BadCards, EveryDamageToEveryFileIsFoundAndNamed) {
    for (const bool isLong : {true, false}) {
        BadCardBench bench(isLong ? 2 * Block + 5000 : 2000);
        ASSERT_EQ(bench.create().outcome, Outcome::Done);
        const Content written = bench.card();
        ASSERT_EQ(written.size(), 9);
        // What happens to blocks, to the long file; everything else, to each.
        for (const QString& name : isLong ? QStringList("0001.mp3") : written.keys()) {
            const auto damages = damagesOf(name, written, bench.earlier);
            for (auto damage = damages.begin(); damage != damages.end(); ++damage)
                bench.expectNamed(name, damage.key(), damage.value());
        }
        bench.files.readsBackAs = nullptr;
        EXPECT_EQ(bench.create().outcome, Outcome::Done);
    }
}

// A counterfeit reports more room than it has: what is written beyond its end lands at its start.
TEST(BadCards, ACardThatIsSmallerThanItSaysIsFound) {
    BadCardBench bench;
    QByteArray chip;
    QMap<QString, std::pair<qsizetype, qsizetype>> places;  // where a file starts, and its size
    qsizetype end = 0;
    bench.files.onWrite = [&](const QString& name, QByteArrayView block) {
        if (name.startsWith("tmp."))
            return;
        if (!places.contains(name))
            places[name] = {end, 0};
        for (const char c : block)
            chip[end++ % chip.size()] = c;
        places[name].second += block.size();
    };
    const auto readFromChip = [&](const QString& path) {
        const auto [start, size] = places[nameOf(path)];
        QByteArray bytes;
        for (qsizetype at = start; at < start + size; ++at)
            bytes += chip[at % chip.size()];
        return bytes;
    };
    bench.files.readsBackAs = [&](const QString& path, const QByteArray&) -> Damaged {
        return readFromChip(path);
    };
    const auto run = [&](qsizetype realBytes) {
        chip = QByteArray(realBytes, '\0');
        places.clear();
        end = 0;
        return bench.create();
    };
    ASSERT_EQ(run(1 << 20).outcome, Outcome::Done) << bench.observer.text.toStdString();
    const qsizetype all = end;
    EXPECT_EQ(run(all).outcome, Outcome::Done);
    for (const qsizetype real : {all - 1, all - 512, all / 2, all / 3, qsizetype(512)}) {
        ASSERT_EQ(run(real).outcome, Outcome::Failed) << real << " of " << all;
        EXPECT_EQ(bench.observer.title, "Tessaly Error 321");
        const QString victim = nameOf(
            QDir::fromNativeSeparators(bench.observer.text.section(": ", 0, 0).section('\r', 1)));
        EXPECT_NE(readFromChip(victim), bench.card()[victim]) << victim.toStdString();
    }
}

TEST(BadCards, FirmwareAloneIsComparedToo) {
    BadCardBench bench;
    ASSERT_EQ(bench.create().outcome, Outcome::Done);
    const QString target = bench.scratch.path("card/0000.hex");
    const QByteArray own = bench.scratch.read("app/firmware/0000.hex");
    for (const QByteArray& damaged : {flipped(own, 0), flipped(own, own.size() - 1), own.chopped(1),
                                      own + '\n', QByteArray()}) {
        bench.files.readsBackAs = [&](const QString& path, const QByteArray& content) -> Damaged {
            return path == target ? damaged : content;
        };
        try {
            updateFirmware(bench.files, bench.job.root, bench.job.folders);
            ADD_FAILURE() << damaged.toStdString();
        } catch (const TessalyError& error) {
            EXPECT_EQ(error.number, error_number::VerifyFailed);
            EXPECT_TRUE(error.description.startsWith(target + ": "));
        }
    }
}

#ifndef Q_OS_WIN  // there, a folder in use can neither be renamed nor exchanged

// The mount is gone at any one moment of a run. What is then at its place is a folder of the disk,
// or a link that leads to one: nothing happens to that.
TEST(BadCards, ACardMayBePulledOutAtAnyMoment) {
    CardBench clean;
    clean.files.toDevice = false;
    clean.useChime();
    clean.scratch.write("card/sub/old.mp3", "old");
    ASSERT_EQ(clean.create().outcome, Outcome::Done);
    const QStringList operations = clean.files.operations;
    for (const bool verify : {true, false}) {
        // Without reading back only the flush is left to notice.
        const auto first = verify ? 0 : operations.indexOf("settle 0000.crd2");
        for (auto at = first; at < operations.size(); ++at) {
            SCOPED_TRACE(operations[at].toStdString() + (verify ? "" : ", not verified"));
            CardBench bench;
            bench.files.toDevice = false;
            bench.useChime();
            bench.scratch.write("card/sub/old.mp3", "old");
            bench.job.verify = verify;
            bench.files.onOperation = [&] {
                if (bench.files.operations.size() - 1 != at)
                    return;
                QFile::rename(bench.scratch.path("card"), bench.scratch.path("pulled"));
                QFile::link(bench.scratch.path("disk"), bench.scratch.path("card"));
            };
            bench.scratch.write("disk/sub/old.mp3", "precious");
            bench.scratch.write("disk/0001.mp3", "precious");
            const auto disk = bench.scratch.content("disk");
            const CardRunReport report = bench.create();
            const bool isTidyingUp = bench.files.operations.value(at).startsWith("remove tmp.");
            const bool wasPulled = at < bench.files.operations.size() && !isTidyingUp;
            EXPECT_EQ(report.outcome, wasPulled ? Outcome::Failed : Outcome::Done);
            EXPECT_EQ(bench.observer.messages.last(),
                      wasPulled ? "Card has NOT been created" : "Card successfully created!");
            EXPECT_EQ(bench.scratch.content("disk"), disk);
        }
    }
}

TEST(BadCards, ACardPulledOutWhileItIsJudgedIsSaidToBeGone) {
    BadCardBench bench;
    ASSERT_EQ(bench.create().outcome, Outcome::Done);
    bench.files.onOperation = [&] {
        if (bench.files.operations.last() == "reopen 0002.mp3")
            QFile::rename(bench.scratch.path("card"), bench.scratch.path("pulled"));
    };
    try {
        verifyCard(bench.files, bench.job.root);
        ADD_FAILURE() << "it should be missed";
    } catch (const TessalyError& error) {
        EXPECT_EQ(error.number, error_number::DriveNotReady);
        EXPECT_TRUE(error.description.startsWith(bench.scratch.path("card")));
    }
}

#endif

}  // namespace tessaly
