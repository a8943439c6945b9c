// The command line as a user meets it: the program itself is run.
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <csignal>

#include "image/intel_hex.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

struct CliRun {
    int exitCode = -1;
    QString out, err;

    QJsonObject json() const { return QJsonDocument::fromJson(out.toUtf8()).object(); }

    /// A value inside the JSON: "lists/0/name".
    QJsonValue at(const QString& path) const {
        QJsonValue value = json();
        for (const QString& step : path.split('/'))
            value = value.isArray() ? value[step.toInt()] : value[step];
        return value;
    }
};

class CommandLine : public testing::Test {
 protected:
    CliRun run(const QStringList& arguments) const {
        QProcess process;
        process.setStandardInputFile(QProcess::nullDevice());
        process.setWorkingDirectory(scratch.path());
        process.start(TESSALY_CLI, arguments);
        EXPECT_TRUE(process.waitForFinished(60000));
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        const auto text = [](const QByteArray& bytes) {
            return QString::fromUtf8(bytes).replace("\r\n", "\n");
        };
        return {process.exitCode(), text(process.readAllStandardOutput()),
                text(process.readAllStandardError())};
    }

    void importTour() const {
        const CliRun done = run({"import", TESSALY_SAMPLES "/tour", "--output", "tour.crd2"});
        ASSERT_EQ(done.exitCode, 0) << done.err.toStdString();
    }

    // The music records of a project: "list/track <- path".
    QStringList tracksOf(const QString& project) const {
        QStringList tracks;
        for (const QJsonValue& value : run({"show", project, "--json"}).at("records").toArray())
            if (value["kind"] == "music")
                tracks.append(value["groupName"].toString() + '/' + value["itemName"].toString() +
                              " <- " + value["sourcePath"].toString());
        return tracks;
    }

    // Expects a command to fail with one line on standard error that holds `part`, beside warnings
    // and the note that the firmware is a stand-in.
    void expectFailure(const QStringList& arguments, int exitCode, const QString& part) const {
        const CliRun failed = run(arguments);
        EXPECT_EQ(failed.exitCode, exitCode) << arguments.join(' ').toStdString();
        QStringList lines = failed.err.split('\n', Qt::SkipEmptyParts);
        lines.removeIf([](const QString& line) {
            return line.contains("is a stand-in") || line.contains(" warning: ");
        });
        EXPECT_EQ(lines.size(), 1) << failed.err.toStdString();
        EXPECT_TRUE(lines.value(0).contains(part)) << failed.err.toStdString();
        EXPECT_TRUE(lines.value(0).startsWith("tessaly-cli: "));
    }

    ScratchFolder scratch;
};

}  // namespace

// What --help says is compared with completion and man page by another test.
TEST_F(CommandLine, ExplainsItself) {
    EXPECT_EQ(run({"--version"}).out, "1.13\n");
    EXPECT_TRUE(run({"show", "--help"}).out.contains("Example:\n  tessaly-cli show"));
    const QStringList image = {"image", "p.crd2", "-o", "f.bin", "--identifier"};
    const QStringList wrong[] = {{},
                                 {"bake"},
                                 {"check"},
                                 {"import", "tour"},
                                 image + QStringList("0"),
                                 image + QStringList("65536"),
                                 image + QStringList("0xZZ"),
                                 {"create", "p.crd2", "--card", "c", "--fast"},
                                 {"show", "a", "b"}};
    for (const QStringList& arguments : wrong)
        expectFailure(arguments, 2, "--help tells more");
}

TEST_F(CommandLine, TurnsAFolderIntoAVerifiedCard) {
    importTour();
    scratch.makeFolder("card");
    const CliRun check = run({"check", "tour.crd2", "--card", "card"});
    EXPECT_EQ(check.exitCode, 0);
    EXPECT_TRUE(check.out.contains("Rope Walk - French"));

    const CliRun create = run({"create", "tour.crd2", "--card", "card", "--yes"});
    ASSERT_EQ(create.exitCode, 0) << create.err.toStdString();
    EXPECT_TRUE(create.out.contains("Card successfully created!"));
    EXPECT_EQ(create.err.count("stand-in"), 1) << create.err.toStdString();
    EXPECT_EQ(scratch.content("card").size(), 32 + 5);
    EXPECT_EQ(run({"verify", "card"}).exitCode, 0);

    // The project on the card is the one that was saved but for its file numbers, and the settings
    // are what image makes of it.
    EXPECT_EQ(run({"image", "card/0000.crd2", "-o", "a.bin", "--hex", "a.xd3"}).exitCode, 0);
    EXPECT_EQ(decodeHexFile(scratch.read("a.xd3")).image.mid(2),
              decodeHexFile(scratch.read("card/0000.xd3")).image.mid(2));

    // A half-written card, and one that is full, need no --erase.
    QFile::remove(scratch.path("card/0007.cfg"));
    EXPECT_EQ(run({"create", "tour.crd2", "--card", "card", "--yes", "--no-verify"}).exitCode, 0);
    EXPECT_EQ(run({"create", "tour.crd2", "--card", "card", "--settings-only", "--yes"}).exitCode,
              0);
    QFile::remove(scratch.path("card/0005.mp3"));
    EXPECT_EQ(run({"verify", "card"}).exitCode, 1);
    expectFailure({"create", "tour.crd2", "--card", "card", "--settings-only", "--yes"}, 1,
                  "create the card anew (error 536, step 316)");
}

TEST_F(CommandLine, ErasesNothingThatItWasNotToldTo) {
    importTour();
    const QStringList create = {"create", "tour.crd2", "--card", "card", "--yes"};
    expectFailure(create, 1, "there is no such folder");
    scratch.write("card/holiday.jpg", "precious");
    expectFailure(create, 1, "holds \"holiday.jpg\", which is no file of a card: say --erase");
    scratch.makeFolder("card2/0001.mp3");  // a folder is no card's file, whatever its name
    expectFailure({"create", "tour.crd2", "--card", "card2", "--yes"}, 1, "say --erase");
    scratch.makeFolder("empty");
    expectFailure({"create", "tour.crd2", "--card", "empty"}, 1, "say --yes");
    EXPECT_TRUE(scratch.content("empty").isEmpty());

    // --erase takes other files, but not the project (wrong_targets_test.cpp has the others).
    const auto before = scratch.content(".");
    expectFailure({"create", "tour.crd2", "--card", ".", "--erase", "--yes"}, 1, "step 311");
    EXPECT_EQ(scratch.content("."), before);
    EXPECT_EQ(run(create + QStringList("--erase")).exitCode, 0);
    EXPECT_FALSE(scratch.content("card").contains("holiday.jpg"));
}

TEST_F(CommandLine, SaysWhatBlocks) {
    const QString track = scratch.write("tour/Music/Rock/a.mp3", "music");
    ASSERT_EQ(run({"import", "tour", "-o", "p.crd2"}).exitCode, 0);
    const CliRun good = run({"check", "p.crd2", "--json"});
    EXPECT_EQ(good.exitCode, 0);
    EXPECT_EQ(good.at("totalCardBytes"), 5);
    EXPECT_EQ(good.at("blocked"), false);
    EXPECT_EQ(good.at("checks/musicLists/verdict"), "green");
    EXPECT_EQ(good.at("checks/driveSelected/verdict"), "red");

    QFile::remove(track);
    scratch.makeFolder("card");
    const CliRun blocked = run({"check", "p.crd2", "--json", "--card", "card"});
    EXPECT_EQ(blocked.exitCode, 3);
    EXPECT_EQ(blocked.at("blocked"), true);
    EXPECT_EQ(blocked.at("missingFiles/0"), track);
    expectFailure({"create", "p.crd2", "--card", "card", "--yes"}, 3, "Cannot find file " + track);
    scratch.write("empty.crd2", "");
    for (const QStringList& command :
         {QStringList{"check"}, {"image", "-o", "x.bin"}, {"create", "--card", "card", "--yes"}})
        expectFailure(command + QStringList("empty.crd2"), 1,
                      "was read up to byte 0 only (0 records): the records that every project");
    EXPECT_TRUE(scratch.content("card").isEmpty());
}

TEST_F(CommandLine, WarnsAlikeEverywhere) {
    for (const char* file : {"a/Piano Sonata No. 1.mp3", "a/Piano Sonata No. 2.mp3"})
        scratch.write(file, "x");
    scratch.makeFolder("card");
    const QStringList import = {"import", "a", "-o", "p.crd2"};
    const QString silent = "These tracks have no MP3 file and stay silent:";
    EXPECT_TRUE(
        run(import).err.contains("has the name of another: \"01 Piano Sonata No.\". A name"));
    EXPECT_EQ(run({"check", "p.crd2"}).exitCode, 0);
    const CliRun check = run({"check", "p.crd2", "--json", "--strict"});
    EXPECT_EQ(check.exitCode, 3);
    EXPECT_EQ(check.at("checks/silentTracks/offenders/0"), "a / 01 Piano Sonata No.");
    EXPECT_EQ(check.at("warnings/0"), silent + " a / 01 Piano Sonata No.");
    const QStringList create = {"create", "p.crd2", "--card", "card"};
    const CliRun unanswered = run(create);  // the warnings come before the question
    EXPECT_TRUE(unanswered.err.contains("warning: " + silent) &&
                unanswered.err.contains("say --yes"));
    const CliRun strict = run(create + QStringList{"--strict", "--yes"});
    EXPECT_EQ(strict.exitCode, 3);
    EXPECT_TRUE(strict.err.contains("warning: " + silent));
    EXPECT_TRUE(scratch.content("card").isEmpty());

    EXPECT_EQ(run(import + QStringList("--give-each-its-file")).exitCode, 0);
    EXPECT_EQ(run(create + QStringList{"--strict", "--yes"}).exitCode, 0);
    EXPECT_EQ(run({"verify", "card"}).exitCode, 0);
}

TEST_F(CommandLine, ImportsPlaylists) {
    scratch.write("lists/Summer Hits of the Sea.txt",
                  "Name\tLocation\r\nOne\t/m/1.mp3\r\nTwo\t/m/2.ogg\r\n\t/m/3.mp3\r\n");
    const CliRun first = run({"import", "lists/Summer Hits of the Sea.txt", "-o", "p.crd2"});
    EXPECT_EQ(first.exitCode, 0);
    EXPECT_EQ(first.err,
              "tessaly-cli: File type is not .MP3 or .mp3. Track not added: Two\n"
              "tessaly-cli: Track name missing, track not added. File name: /m/3.mp3\n");
    EXPECT_EQ(first.out, "p.crd2: the music list \"Summer Hits of t\" with 1 track.\n");

    // What stood in the project file is kept beside it.
    scratch.write("%1.m3u", "a.mp3\nb.mp3\nc.mp3\n");
    const QByteArray before = scratch.read("p.crd2");
    const CliRun second = run({"import", "%1.m3u", "-o", "p.crd2", "--append"});
    EXPECT_EQ(second.out, "p.crd2: the music list \"%1\" with 2 tracks.\n");
    EXPECT_EQ(second.err, "tessaly-cli: note: the earlier file is kept as p.crd2.bak.\n");
    EXPECT_EQ(scratch.read("p.crd2.bak"), before);
    EXPECT_EQ(tracksOf("p.crd2"),
              (QStringList{"Summer Hits of t/One <- /m/1.mp3", "%1/a <- a.mp3", "%1/b <- b.mp3"}));

    scratch.write("bad.m3u", "#EXTM3U\n#EXTINF:1,a\na.mp3\n");
    const auto files = scratch.content(".");
    for (const char* append : {"--append", "--titles-from-tags"})
        expectFailure({"import", "bad.m3u", "-o", "p.crd2", append}, 1,
                      "tessaly-cli: Invalid playlist format, cannot open");
    expectFailure({"import", "%1.m3u", "-o", "none.crd2", "--append"}, 1,
                  "tessaly-cli: none.crd2: ");
    scratch.write("cut.crd2", before.chopped(20));
    expectFailure({"import", "%1.m3u", "-o", "cut.crd2", "--append"}, 1, "was read up to byte");
    expectFailure({"import", "none.m3u", "-o", "p.crd2"}, 1, "there is no such folder or file");
    QFile::remove(scratch.path("cut.crd2"));
    EXPECT_EQ(scratch.content("."), files);
}

TEST_F(CommandLine, ImportsAFolderThatHoldsMp3Files) {
    const QString folder = TESSALY_SAMPLES "/tour/Music/Harbour Morning";
    EXPECT_EQ(run({"import", folder, "-o", "p.crd2"}).out,
              "p.crd2: the music list \"Harbour Morning\" with 4 tracks.\n");
    EXPECT_EQ(run({"import", folder, "-o", "p.crd2", "--append"}).exitCode, 0);
    const QStringList tracks = tracksOf("p.crd2");
    EXPECT_EQ(tracks.size(), 8);
    EXPECT_TRUE(tracks.last().startsWith("01 Harbour Morning/Market Boats <- "));
    scratch.makeFolder("empty");
    expectFailure({"import", "empty", "-o", "p.crd2"}, 1, "holds neither MP3 files nor a Music");
    expectFailure({"import", TESSALY_SAMPLES "/tour", "-o", "p.crd2", "--append"}, 1,
                  "only one music list can be added");
}

TEST_F(CommandLine, ShowsEveryKindOfFile) {
    importTour();
    const CliRun shown = run({"show", "tour.crd2", "--json"});
    EXPECT_EQ(shown.at("complete"), true);
    EXPECT_EQ(shown.at("stoppedAt"), scratch.read("tour.crd2").size());
    const QJsonArray records = shown.at("records").toArray();
    EXPECT_EQ(records[0].toObject(), (QJsonObject{{"kind", QJsonValue::Null},
                                                  {"itemName", QJsonValue::Null},
                                                  {"groupName", QJsonValue::Null},
                                                  {"sourcePath", QJsonValue::Null},
                                                  {"endlessLoop", false},
                                                  {"cancelOnInterrupt", false},
                                                  {"loudVolume", false},
                                                  {"typeTag", QString(4, QChar(0))}}));
    EXPECT_EQ(records[13].toObject()["itemName"], 0);
    EXPECT_EQ(records.last().toObject()["typeTag"], "6   ");

    scratch.write("cut.crd2", scratch.read("tour.crd2").chopped(30));
    const CliRun cut = run({"show", "cut.crd2", "--json"});
    EXPECT_FALSE(cut.at("complete").toBool(true));
    EXPECT_EQ(cut.at("records").toArray().size(), records.size() - 1);
    EXPECT_TRUE(cut.err.contains("in the middle of record"));
    scratch.makeFolder("card");
    expectFailure({"create", "cut.crd2", "--card", "card", "--yes"}, 1, "was read up to byte");

    ASSERT_EQ(run({"image", "tour.crd2", "-o", "t.bin", "--hex", "t.xd3", "--identifier", "0x3A07"})
                  .exitCode,
              0);
    for (const char* name : {"t.bin", "t.xd3"}) {
        const CliRun image = run({"show", name, "--json"});
        EXPECT_EQ(image.at("identifier"), 0x3A07);
        EXPECT_EQ(image.at("titles/1"), "Fish Market");
        EXPECT_EQ(image.at("lists/1/tracks/3/word/fileNumber"), 32);
        EXPECT_TRUE(run({"show", name}).out.contains("Morning Bell"));
    }
    EXPECT_EQ(scratch.read("t.xd3"), EncodeImageAsHex(scratch.read("t.bin")));
    const QByteArray project = scratch.read("tour.crd2");
    expectFailure({"image", "tour.crd2", "-o", "./tour.crd2"}, 1, "cannot be used for two things");
    expectFailure({"image", "tour.crd2", "-o", "x.bin", "--hex", "x.bin"}, 1, "for two things");
    EXPECT_EQ(scratch.read("tour.crd2"), project);
    scratch.write("t.xd3", scratch.read("t.xd3").replace(60, 1, "?"));
    expectFailure({"show", "t.xd3"}, 1, "Line 3 of the HEX file");
    scratch.write("bad.bin", scratch.read("t.bin").chopped(1));
    expectFailure({"show", "bad.bin"}, 1, "the image ends too early");
    scratch.write("photo.jpg", "\xFF\xD8\xFF no card file");
    expectFailure({"show", "photo.jpg"}, 1, "this is no project file, no image and no HEX file");
    expectFailure({"show", "gone"}, 1, "tessaly-cli: gone: ");
}

#ifndef Q_OS_WIN
// What is too large for its place is an error like every other, never the end by a signal.
TEST_F(CommandLine, AFullPlaceIsAnErrorThatNamesIt) {
    importTour();
    const QByteArray before = scratch.read("tour.crd2");
    const auto runInShell = [&](const QString& script) {
        QProcess shell;
        shell.setWorkingDirectory(scratch.path());
        shell.start("/bin/sh", {"-c", "export LC_ALL=C LANGUAGE=; " + script, TESSALY_CLI,
                                TESSALY_SAMPLES "/tour"});
        EXPECT_TRUE(shell.waitForFinished(60000));
        EXPECT_EQ(shell.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(shell.exitCode(), 1);
        return QString::fromUtf8(shell.readAllStandardError());
    };
    const QString saved = runInShell("ulimit -f 2; exec \"$0\" import \"$1\" -o tour.crd2");
    EXPECT_TRUE(saved.contains("tour.crd2.bak: File too large (error 27)")) << saved.toStdString();
    EXPECT_EQ(scratch.read("tour.crd2"), before);
    EXPECT_EQ(scratch.content(".").keys(), QStringList("tour.crd2"));
    EXPECT_EQ(runInShell("exec \"$0\" show tour.crd2 >/dev/full"),
              "tessaly-cli: standard output: No space left on device\n");
}

TEST_F(CommandLine, CtrlCAnswersTheQuestion) {
    importTour();
    scratch.makeFolder("card");
    QProcess terminal;
    terminal.setWorkingDirectory(scratch.path());
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

TEST_F(CommandLine, UpdatesFirmwareAlone) {
    const QStringList firmware = {"--app-folder", "app", "firmware", "card", "--yes"};
    scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    scratch.makeFolder("card");
    expectFailure(firmware, 1, "Card does not have a valid TRL740 format.");
    scratch.write("card/0000.hex", ":0201100001A448\r\n:00000001FF\r\n");
    expectFailure(firmware, 1, "holds no firmware data");
    const QByteArray newer = ":0201200001A438\r\n:00000001FF\r\n";
    scratch.write("app/firmware/0000.hex", newer);
    expectFailure(firmware.mid(0, firmware.size() - 1), 1, "say --yes");
    EXPECT_TRUE(run(firmware).out.contains("Card successfully updated."));
    EXPECT_EQ(scratch.read("card/0000.hex"), newer);
    EXPECT_TRUE(run(firmware).out.contains("No update has been done."));
    // A link does not lead it out of the card.
    scratch.write("outside.hex", ":0201100001A448\r\n:00000001FF\r\n");
    QFile::remove(scratch.path("card/0000.hex"));
    if (scratch.link(scratch.path("outside.hex"), "card/0000.hex")) {
        expectFailure(firmware, 1, "0000.hex: a link stands in the place of the file");
        EXPECT_NE(scratch.read("outside.hex"), newer);
    }
}

}  // namespace tessaly
