// SPDX-License-Identifier: GPL-3.0-or-later
#include "sound/player.h"

#include <mpg123.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QtEndian>
#include <random>

#include "sound/mp3_decoder.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;
using What = SoundReport::What;

// Plays into a WAV file, or to a device that plays to nobody, and keeps what is reported.
class PlayerTest : public testing::Test {
 protected:
    const ScratchFolder scratch;
    const QString lamps = sample("Music/Evening Lights/1 First Lamps.mp3");
    const QString welcome = sample("Speech/German/Welcome.mp3");
    const QString wav = scratch.path("heard.wav");
    QList<SoundReport> reports;
    const SoundPlayer::Report keep = [this](const SoundReport& report) { reports.append(report); };

    static QString sample(const QString& name) { return QString(TESSALY_SAMPLES "/tour/") + name; }
    static QByteArray content(const QString& file) {
        QFile in(file);
        EXPECT_TRUE(in.open(QIODevice::ReadOnly)) << file.toStdString();
        return in.readAll();
    }

    bool waitFor(const std::function<bool()>& isTrue) const {
        QElapsedTimer clock;
        QTimer alarm;  // wakes the loop where nothing else does
        alarm.start(1000);
        for (clock.start(); !isTrue() && clock.elapsed() < 20'000;)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return isTrue();
    }
    bool isOver() const {
        return !reports.isEmpty() &&
               (reports.last().what == What::Ended || reports.last().what == What::NoDevice);
    }

    /// The seconds that are heard of files.
    double secondsOf(const QStringList& files) {
        reports.clear();
        scratch.write("heard.wav", {});
        {
            LocalSoundPlayer player("wav", wav);
            player.play(files, keep);
            EXPECT_TRUE(waitFor([this] { return isOver(); }));
        }
        const QByteArray heard = content(wav);
        const auto number = [&](qsizetype at) {
            return double(qFromLittleEndian<quint32>(heard.constData() + at));
        };
        return heard.size() < 44 ? 0 : double(heard.size() - 44) / number(28);
    }

    /// What went wrong, one "file: reason" each.
    QStringList failures() const {
        QStringList all;
        for (const SoundReport& report : reports)
            if (!report.why.isEmpty())
                all.append(QString("%1: %2").arg(report.file).arg(report.why));
        return all;
    }
};

TEST_F(PlayerTest, FilesAreHeardOneAfterTheOtherAndTheTimeIsTold) {
    const QString odd = scratch.write("Müsik ☂ #1%20/a b.mp3", content(lamps));
    const double first = secondsOf({odd});
    ASSERT_GT(first, 3);
    EXPECT_NEAR(secondsOf({odd, lamps, odd}), 3 * first, 0.01);
    QList<SoundReport> expected;
    for (int file = 0; file < 3; ++file)
        for (int seconds = -1; seconds <= int(first); ++seconds)
            expected.append(
                {What::Plays, file, std::max(seconds, 0), seconds < 0 ? 0 : qRound(first)});
    ASSERT_EQ(reports.size(), expected.size() + 1);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), reports.begin()));
    EXPECT_EQ(reports.last().what, What::Ended);
}

TEST_F(PlayerTest, ADeviceOfOneFormatHearsEveryFile) {
    const SampleFormat only{.rate = 48000, .channels = 2, .encoding = MPG123_ENC_SIGNED_16};
    for (const QString& file : {lamps, welcome}) {
        Mp3Decoder decoder(file, {only}, [] { return true; });
        qsizetype bytes = 0;
        for (auto samples = decoder.next(); !samples.isEmpty(); samples = decoder.next())
            bytes += samples.size();
        EXPECT_EQ(decoder.format(), only);
        EXPECT_NEAR(double(bytes) / (48000 * 4), secondsOf({file}), 0.1);
        EXPECT_EQ(decoder.problem(), "");
    }
}

TEST_F(PlayerTest, AnyBytesComeToAnEndAndSayWhyNothingIsHeard) {
    const QString nothing = "there is no MPEG sound in this file";
    const QByteArray sound = content(welcome);
    QByteArray noise(300'000, Qt::Uninitialized), zeros(3'000'000, '\0');
    std::mt19937 dice(7);
    for (char& byte : noise)
        byte = char(dice());
    const double whole = secondsOf({welcome});
    const struct {
        const char* name;
        QByteArray bytes;
        QString why;
        double least, most;
    } cases[] = {
        {"empty", "", nothing, 0, 0},
        {"web page", QByteArray("<!doctype html><p>404 not found\n").repeated(999), nothing, 0, 0},
        {"zeros", zeros, nothing, 0, 0},
        {"a tag that claims 256 MB", QByteArray("ID3\4\0\0\x7F\x7F\x7F\x7F", 10) + sound, nothing,
         0, 0},
        {"one large tag", QByteArray("ID3\3\0\0\1\0\0\0", 10) + zeros.left(1 << 21) + sound, "",
         whole, whole},
        {"half a file", sound.left(sound.size() / 2), "", whole * 0.4, whole * 0.6},
        {"zeros inside", sound + zeros + sound, "", whole * 1.9, whole * 2.1},
        {"another format under way", sound + content(lamps), "", 0.1, 60},
        {"noise", noise, {}, 0, 60},
        {"noise inside", sound + noise + sound, {}, whole * 0.9, 60},
    };
    for (const auto& one : cases) {
        SCOPED_TRACE(one.name);
        const double heard = secondsOf({scratch.write("any.mp3", one.bytes)});
        EXPECT_GE(heard, one.least - 0.06);
        EXPECT_LE(heard, one.most + 0.06);
        const QString said = failures().join("");
        EXPECT_TRUE(one.why.isNull() || said == (one.why.isEmpty() ? "" : "0: " + one.why))
            << said.toStdString();
    }
    EXPECT_NEAR(secondsOf({scratch.path("gone.mp3"), scratch.path(), welcome}), whole, 0.06)
        << "the next one follows";
    EXPECT_EQ(failures(), QStringList({"0: the file was not found", "1: the file was not found"}));
}

TEST_F(PlayerTest, StopsAtOnceAndStartsAgain) {
    const int lengths[] = {qRound(secondsOf({lamps})), qRound(secondsOf({welcome}))};
    reports.clear();
    QElapsedTimer clock;
    {
        LocalSoundPlayer player("dummy");
        player.play({lamps, welcome}, keep);
        clock.start();
        ASSERT_TRUE(waitFor([this] { return !reports.isEmpty(); }));
        if (reports.first().what == What::NoDevice)
            GTEST_SKIP() << "the library has no such driver here";
        ASSERT_TRUE(waitFor([this] { return reports.last().seconds >= 1; }));
        EXPECT_GE(clock.elapsed(), 650) << "as it is heard, but for what the device has in advance";
        player.play({welcome}, keep);  // in its place
        reports.clear();
        ASSERT_TRUE(waitFor([this] { return reports.size() >= 2; }));
        EXPECT_EQ(reports.last().length, lengths[1]);
        player.play({lamps}, keep);
        reports.clear();
        ASSERT_TRUE(waitFor([this] { return reports.size() >= 2; }));
        EXPECT_EQ(reports.last().length, lengths[0]);
        clock.start();
        player.stop();
    }
    EXPECT_LE(clock.elapsed(), 100);
    reports.clear();
    QCoreApplication::processEvents();
    EXPECT_TRUE(reports.isEmpty());
}

TEST_F(PlayerTest, WithoutADeviceThatIsSaidAndNothingElse) {
    LocalSoundPlayer player("no such driver");
    player.play({lamps, welcome}, keep);
    ASSERT_TRUE(waitFor([this] { return isOver(); }));
    EXPECT_EQ(reports,
              QList<SoundReport>({{.what = What::NoDevice, .why = "there is no sound device"}}));
}

}  // namespace tessaly
