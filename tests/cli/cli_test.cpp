// SPDX-License-Identifier: GPL-3.0-or-later
// What differs from system to system or takes a terminal; transcripts/ has all else.
#include <QDir>
#include <QProcess>
#include <csignal>

#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

class CommandLine : public testing::Test {
 protected:
    /// Standard output and standard error of a run, which must end with `exitCode`.
    QString run(const QStringList& arguments, int exitCode = 0) const {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.setStandardInputFile(QProcess::nullDevice());
        process.setWorkingDirectory(scratch.path());
        process.start(TESSALY_CLI, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        const QString shown = QString::fromUtf8(process.readAll()).replace("\r\n", "\n");
        EXPECT_EQ(process.exitCode(), exitCode) << shown.toStdString();
        return shown;
    }

    void importTour() const {
        run({"import", TESSALY_SAMPLES "/tour", "--output", "tour.crd2"});
        scratch.makeFolder("card");
    }

    ScratchFolder scratch;
};

}  // namespace

TEST_F(CommandLine, TurnsAFolderIntoAVerifiedCard) {
    importTour();
    EXPECT_TRUE(
        run({"check", "tour.crd2", "--card", "card"}).contains("CF Card can hold selected tracks"));
    EXPECT_TRUE(run({"create", "tour.crd2", "--card", "card"}, 1).contains("say --yes"));
    run({"create", "tour.crd2", "--card", "card", "--yes"});
    EXPECT_EQ(scratch.content("card").size(), 32 + 5);
    EXPECT_TRUE(run({"verify", "card"}).contains("is a good card: 32 tracks"));
    EXPECT_TRUE(run({"show", "card/0000.xd3"}).contains("Café Römer"));
    const auto before = scratch.content(".");
    EXPECT_TRUE(run({"create", "tour.crd2", "--card", ".", "--erase", "--yes"}, 1)
                    .contains("(error 531, step 311)"));
    EXPECT_TRUE(run({"image", "tour.crd2", "-o", "./tour.crd2"}, 1).contains("for two things"));
    EXPECT_TRUE(run({"show", "gone"}, 1).startsWith("tessaly-cli: gone: "));
    EXPECT_TRUE(run({"bake"}, 2).contains("--help tells more"));
    EXPECT_EQ(scratch.content("."), before);
}

TEST_F(CommandLine, UpdatesFirmwareAlone) {
    const QByteArray older = ":0201100001A448\r\n:00000001FF\r\n";
    const QByteArray newer = ":0201200001A438\r\n:00000001FF\r\n";
    scratch.write("app/firmware/0000.hex", newer);
    scratch.write("card/0000.hex", older);
    run({"--app-folder", "app", "firmware", "card", "--yes"});
    EXPECT_EQ(scratch.read("card/0000.hex"), newer);
}

#ifndef Q_OS_WIN
TEST_F(CommandLine, CtrlCAnswersTheQuestion) {
    importTour();
    QProcess terminal;
    terminal.setWorkingDirectory(scratch.path());
    // A shell has its background jobs ignore it.
    terminal.setChildProcessModifier([] { std::signal(SIGINT, SIG_DFL); });
    terminal.start("script", {"-qefc", TESSALY_CLI " create tour.crd2 --card card", "/dev/null"});
    QByteArray shown;
    while (!shown.contains("Continue? [y/N]") && terminal.waitForReadyRead(60000))
        shown += terminal.readAll();
    terminal.write("\x03");
    EXPECT_TRUE(terminal.waitForFinished(60000)) << shown.toStdString();
    EXPECT_EQ(terminal.exitCode(), 128 + SIGINT) << shown.toStdString();
    EXPECT_TRUE(scratch.content("card").isEmpty());
}
#endif

}  // namespace tessaly
