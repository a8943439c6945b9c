// SPDX-License-Identifier: GPL-3.0-or-later
// Cards that do not keep what they are given: verification finds each and names the file.
#include <random>

#include "card/card_verifier.h"
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

    // Whether a creation on a card that reads back as `damaged` says ends in the box for `victim`.
    void expectNamed(const QString& victim, const Damaged& damaged) {
        files.readsBackAs = [&](const QString& path, const QByteArray& content) {
            return nameOf(path) == victim ? damaged : content;
        };
        const CardRunReport report = create();
        ASSERT_EQ(report.outcome, Outcome::Failed);
        EXPECT_EQ(report.error->number,
                  damaged ? error_number::VerifyFailed : FaultyFileSystem::NoSuchFile);
        EXPECT_EQ(observer.title, "Tessaly Error 321");
        EXPECT_TRUE(observer.text.contains(scratch.path("card/" + victim) + ": "))
            << observer.text.toStdString();
    }
};

// What a bad card may make of one file.
QMap<std::string, Damaged> damagesOf(const QString& name, const Content& written,
                                     const Content& earlier) {
    const QByteArray bytes = written[name];
    const qsizetype size = bytes.size();
    QMap<std::string, Damaged> damages = {
        {"the first byte", flipped(bytes, 0)},
        {"the last byte", flipped(bytes, size - 1, 7)},
        {"no last byte", bytes.chopped(1)},
        {"no second half", bytes.left(size / 2)},
        {"empty", QByteArray()},
        {"a byte more", bytes + '\0'},
        {"a block more", bytes + QByteArray(Block, '\0')},
        {"gone", std::nullopt},
        // A counterfeit has less room than it says: its end lands at its start.
        {"wrapped around", bytes.right(size / 3) + bytes.mid(size / 3)},
    };
    if (size > 2 * Block) {
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
            for (auto damage = damages.begin(); damage != damages.end(); ++damage) {
                SCOPED_TRACE(name.toStdString() + ": " + damage.key());
                bench.expectNamed(name, damage.value());
            }
        }
        bench.files.readsBackAs = nullptr;
        EXPECT_EQ(bench.create().outcome, Outcome::Done);
    }
}

#ifndef Q_OS_WIN  // there, a folder in use can neither be renamed nor exchanged

// The mount, or a folder of the card, is gone at any one moment of a run. What is then at its place
// is a link that leads to a folder of the disk: nothing happens to that.
TEST(BadCards, ACardMayBePulledOutAtAnyMoment) {
    const struct {
        QString victim;
        bool isVerified;
        QString from;
    } cases[] = {{"card", true, ""},
                 {"card", false, "settle 0000.crd2"},  // only the flush is left to notice
                 {"card/sub", true, ""},
                 {"card/sub/deep", true, ""}};
    for (const auto& [victim, isVerified, from] : cases) {
        bool isOver = false;
        for (qsizetype at = 0; !isOver; ++at) {
            bool isBegun = from.isEmpty();
            CardBench bench;
            bench.files.toDevice = false;
            bench.useChime();
            for (const char* folder : {"card/", "outside/", "outside/sub/"})
                for (const char* name : {"0001.mp3", "old.mp3", "deep/old.mp3", "sub/deep/old.mp3"})
                    bench.scratch.write(QString(folder) + name, "precious");
            const auto outside = bench.scratch.content("outside");
            bench.job.verify = isVerified;
            QString moment;
            bench.files.onOperation = [&] {
                isBegun |= bench.files.operations.last() == from;
                if (bench.files.operations.size() - 1 != at || !isBegun)
                    return;
                moment = bench.files.operations.last();
                const QString place = bench.scratch.path(victim);
                if (QFile::rename(place, bench.scratch.path("moved")))
                    QFile::link(bench.scratch.path("outside"), place);
            };
            const CardRunReport report = bench.create();
            SCOPED_TRACE((victim + ": " + moment).toStdString());
            isOver = at >= bench.files.operations.size();
            if (victim == "card" && !moment.isEmpty()) {
                EXPECT_EQ(report.outcome,
                          moment.startsWith("remove tmp.") ? Outcome::Done : Outcome::Failed);
            }
            EXPECT_EQ(bench.scratch.content("outside"), outside);
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
    EXPECT_THROW(verifyCard(bench.files, bench.job.root), TessalyError);
}

#endif

}  // namespace tessaly
