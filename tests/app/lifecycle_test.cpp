// Start-up, the File menu and recovery, through the real window.
#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

#include "app/about_window.h"
#include "app/splash_window.h"
#include "app/start_arguments.h"
#include "platform/native_path.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

const QString LoseChanges = "You will lose any unsaved changes!  Continue? ";
const QString ReallyExit = "Changes will be lost unless the card file was saved.  Really exit?";

QString emptySummary(const QString& version) {
    return "Total card size: 0.0 MB        Total number of Tracks: 0" + QString(40, ' ') +
           "TRL740 firmware version: " + version;
}

// A run that ended without a word and left a copy of a project of one language.
void crash(WindowBench& bench, const QString& language) {
    RecoveryFolder crashed(bench.files, bench.scratch.path("user/recovery"));
    Project work;
    work.lstLangs = {language};
    crashed.keep(work);
    crashed.forgetMark();
}

}  // namespace

TEST(StartUp, ASecondInstanceEndsAtOnce) {
    WindowBench bench;
    bench.instance.isFirst = false;
    EXPECT_FALSE(bench.start());
    ASSERT_EQ(bench.prompts.shown.size(), 1);
    EXPECT_EQ(bench.prompts.shown[0].text,
              "A previous instance of Tessaly is still running.  Use CTRL-ALT-DEL to stop the "
              "previous task, and run the program again.");
    EXPECT_EQ(bench.prompts.shown[0].title, "Tessaly Error ");
    EXPECT_EQ(bench.prompts.shown[0].icon, Message::Icon::Exclamation);
}

TEST(StartUp, FirmwareIsReadOrMissed) {
    WindowBench bench;
    bench.scratch.write("app/firmware/0000.hex", ":10110000AA\r\nsecond line");
    ASSERT_TRUE(bench.start());
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
    EXPECT_TRUE(bench.status().endsWith("TRL740 firmware version: 0110"))
        << bench.status().toStdString();
    EXPECT_EQ(bench.window->windowTitle(), "TRL740 Card Preparation[*]");
    EXPECT_EQ(bench.current, Project());

    WindowBench bare;
    QFile::remove(bare.scratch.path("app/firmware/0000.hex"));
    ASSERT_TRUE(bare.start());
    ASSERT_EQ(bare.prompts.shown.size(), 1);
    EXPECT_EQ(bare.prompts.shown[0].text, "Cannot find TRL740 firmware file " +
                                              bare.scratch.path("app/firmware/0000.hex") +
                                              ". Please reinstall Tessaly.");
    EXPECT_EQ(bare.prompts.shown[0].icon, Message::Icon::Critical);

    WindowBench brief;
    brief.scratch.write("app/firmware/0000.hex", ":1");
    ASSERT_TRUE(brief.start());
    EXPECT_TRUE(brief.status().endsWith("TRL740 firmware version: "));
}

TEST(StartUp, TheSplashLoadsTheWindowOnce) {
    int loads = 0;
    bool wasClosed = false;
    SplashWindow* shown = nullptr;
    SplashWindow splash(
        [&] {
            ++loads;
            return true;
        },
        [&] { wasClosed = !shown->isVisible(); });
    shown = &splash;
    splash.show();
    auto* timer = splash.findChild<QTimer*>("Timer1");
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->interval(), 2000);
    EXPECT_EQ(splash.findChild<QLabel*>("lblProductName")->text(), "TRL740");
    EXPECT_EQ(splash.findChild<QLabel*>("lblVersion")->text(), "Card Preparation Tool");
    timer->start(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return wasClosed; }));
    EXPECT_EQ(loads, 1);
}

TEST(StartUp, AKilledRunLeavesNoLockBehind) {
    const ScratchFolder scratch;
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", scratch.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(TESSALY_PROGRAM, QStringList());
    const QString folder = scratch.path("Tessaly");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return QFile::exists(folder + "/recovery/running"); }, 20000));
    EXPECT_FALSE(LocalSingleInstance(folder).isOnlyOne());
    program.kill();
    ASSERT_TRUE(program.waitForFinished());
    EXPECT_TRUE(QFile::exists(folder + "/tessaly.lock"));
    EXPECT_TRUE(LocalSingleInstance(folder).isOnlyOne());
}

TEST(StartUp, TakesOneProjectFileAndNothingElse) {
    const QString odd = fromNativePath("Grüße b\xE4.crd2");
    EXPECT_EQ(startArguments({}).projectFile, "");
    EXPECT_EQ(startArguments({"/a b/" + odd}).projectFile, "/a b/" + odd);
    EXPECT_EQ(startArguments({odd}).projectFile, QDir::currentPath() + '/' + odd);
    EXPECT_EQ(startArguments({odd}).problem, "");

    const ScratchFolder scratch;
    const struct {
        QStringList arguments;
        QString said;
    } wrong[] = {{{"a.crd2", "b.crd2"}, "There are 2 files, but only one can be opened."},
                 {{"--version"}, "There is no option --version."},
                 {{"a.crd2", "-x"}, "There is no option -x."}};
    for (const auto& [arguments, said] : wrong) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_DATA_HOME", scratch.path());
        program.setProcessEnvironment(environment);
        program.start(TESSALY_PROGRAM, arguments);
        ASSERT_TRUE(program.waitForFinished());
        EXPECT_EQ(program.exitCode(), 2);
        EXPECT_EQ(program.readAllStandardOutput(), "");
        EXPECT_TRUE(program.readAllStandardError().contains("tessaly: " + said.toUtf8()));
    }
    EXPECT_TRUE(scratch.content("").isEmpty());
}

TEST(StartUp, OpensTheFileThatItWasStartedWith) {
    WindowBench bench;
    const QString odd = pathIn(bench.scratch.path(), fromNativePath("my b\xE4.crd2"));
    saveProject(bench.files, odd, bench.project);
    bench.start();
    bench.window->openAtStart(odd);
    EXPECT_EQ(encodeProject(bench.current), encodeProject(bench.project));
    EXPECT_TRUE(
        bench.status().startsWith("Total card size: 0.0 MB        Total number of Tracks: 3"));
    bench.current.txtCardTitle1 = "SAVED";
    bench.current.unsavedChanges = true;
    bench.choose("mnuFileSave");
    EXPECT_EQ(readWholeFile(bench.files, odd, 1 << 20), encodeProject(bench.current));
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
    EXPECT_EQ(bench.recoveryCopies(), 0);
    bench.files.removeFile(odd);  // Qt, which cleans up, cannot name it

    const QByteArray whole = bench.scratch.read("tour.crd2");
    for (const auto& [name, said] :
         {std::pair(bench.scratch.write("damaged.crd2", whole.chopped(300)), "could be read up to"),
          std::pair(bench.scratch.path("gone.crd2"), ": No such file or directory")}) {
        WindowBench other;
        other.start();
        other.window->openAtStart(name);
        const QStringList texts = other.prompts.takeTexts();
        ASSERT_EQ(texts.size(), 1);
        EXPECT_TRUE(texts[0].startsWith(name) && texts[0].contains(said)) << qPrintable(texts[0]);
        EXPECT_EQ(other.session.fileName(), "");
    }
}

TEST(StartUp, ARecoveredProjectIsNotReplacedByTheFile) {
    for (const bool takesCopy : {true, false}) {
        WindowBench bench;
        crash(bench, "Danish");
        bench.start();
        bench.prompts.answers = {takesCopy};
        bench.window->offerRecovery();
        bench.prompts.shown.clear();
        bench.window->openAtStart(bench.tourFile);
        EXPECT_EQ(bench.session.fileName(), takesCopy ? "" : bench.tourFile);
        EXPECT_EQ(bench.current.lstLangs.contains("Danish"), takesCopy);
        EXPECT_EQ(bench.recoveryCopies(), 1);
        const QStringList texts = bench.prompts.takeTexts();
        ASSERT_EQ(texts.size(), takesCopy ? 1 : 0);
        EXPECT_TRUE(!takesCopy || texts[0].startsWith(bench.tourFile + " was not opened"));
    }
}

TEST(About, ShowsVersionsAndSystemInformation) {
    ScriptedPrompts prompts;
    int calls = 0;
    AboutWindow about(
        "0110", {"firmware: /own/0000.hex", "b"}, prompts, [&] { return ++calls == 1; }, nullptr);
    EXPECT_EQ(about.windowTitle(), "About Tessaly");
    EXPECT_EQ(about.findChild<QLabel*>("lblVersion")->text(), "Tessaly Version 1.13");
    EXPECT_EQ(about.findChild<QLabel*>("lblFirmwareVersion")->text(), "0110");
    EXPECT_EQ(about.findChild<QLabel*>("lblMakersFiles")->text(), "firmware: /own/0000.hex\nb");
    about.findChild<QAbstractButton*>("cmdSysInfo")->click();
    EXPECT_TRUE(prompts.shown.isEmpty());
    about.findChild<QAbstractButton*>("cmdSysInfo")->click();
    EXPECT_EQ(prompts.takeTexts(), QStringList("System Information Is Unavailable At This Time"));
}

TEST(Help, TheManualOpensOrIsNamed) {
    WindowBench bench;
    bench.start();
    const QString manual = bench.scratch.path("app/manual/manual.html");
    EXPECT_EQ(bench.find<QAction>("mnuHelpManual")->shortcut(), QKeySequence(Qt::Key_F1));
    bench.choose("mnuHelpManual");
    EXPECT_EQ(bench.prompts.takeTexts(), QStringList("Cannot find the manual " + manual + "."));
    EXPECT_TRUE(bench.prompts.documents.isEmpty());

    bench.scratch.write("app/manual/manual.html", "x");
    bench.choose("mnuHelpManual");
    EXPECT_EQ(bench.prompts.documents, QStringList(manual));
    EXPECT_TRUE(bench.prompts.shown.isEmpty());

    bench.prompts.hasViewer = false;
    bench.choose("mnuHelpManual");
    EXPECT_TRUE(bench.prompts.takeTexts().value(0).contains(manual));
}

TEST(FileMenu, NewAlwaysAsksAndKeepsTitleAndChime) {
    WindowBench bench;
    bench.start();
    bench.open(bench.tourFile);
    EXPECT_EQ(bench.window->windowTitle(), "TRL740 Card Preparation - tour.crd2[*]");
    bench.current.txtCardTitle1 = "TITLE";
    bench.current.SystemTextTable[3].groupName = "changed";
    setChimeOption(bench.current, &Project::buttPlayExtChime, true);
    const Project before = bench.current;

    bench.prompts.answers = {false};
    bench.choose("mnuFileNew");
    EXPECT_EQ(bench.current, before);
    ASSERT_EQ(bench.prompts.shown.size(), 1);
    EXPECT_EQ(bench.prompts.shown[0].text, LoseChanges);
    EXPECT_EQ(bench.prompts.shown[0].icon, Message::Icon::Exclamation);
    EXPECT_TRUE(bench.prompts.shown[0].defaultsToNo);

    bench.prompts.answers = {true};
    bench.choose("mnuFileNew");
    EXPECT_EQ(bench.current.TrackTable.size(), 1);
    EXPECT_TRUE(bench.current.lstMuList.isEmpty());
    EXPECT_EQ(bench.current.txtCardTitle1, "TITLE");
    EXPECT_TRUE(bench.current.buttPlayExtChime);
    EXPECT_EQ(systemText(bench.current, 3), "Continuous Mix");
    EXPECT_EQ(bench.status(), emptySummary("4011"));
    EXPECT_EQ(bench.window->windowTitle(), "TRL740 Card Preparation[*]");
    EXPECT_EQ(bench.recoveryCopies(), 1);
}

TEST(FileMenu, OpenReadsAProjectAndItsSummary) {
    WindowBench bench;
    bench.start();
    bench.open(bench.tourFile);
    EXPECT_EQ(bench.prompts.files[0].filter, "TRL-740 Card files (*.crd2)");
    EXPECT_EQ(bench.prompts.files[0].folder, bench.scratch.path("app"));
    EXPECT_EQ(encodeProject(bench.current), encodeProject(bench.project));
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_TRUE(
        bench.status().startsWith("Total card size: 0.0 MB        Total number of Tracks: 3"));
    EXPECT_EQ(bench.recoveryCopies(), 0);

    // Cancel leaves an empty project without a file; what was there went to the recovery folder.
    bench.current.lstLangs.append("Danish");
    bench.current.unsavedChanges = true;
    bench.open("");
    EXPECT_EQ(bench.current.TrackTable.size(), 1);
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.session.fileName(), "");
    EXPECT_EQ(bench.status(), emptySummary("4011"));
    EXPECT_EQ(bench.recoveryCopies(), 1);
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

TEST(FileMenu, ADamagedFileIsReadAsFarAsItGoesAndIsSafeFromSave) {
    WindowBench bench;
    bench.start();
    const QByteArray damaged = bench.scratch.read("tour.crd2").chopped(300);
    bench.open(bench.scratch.write("damaged.crd2", damaged));
    ASSERT_EQ(bench.prompts.shown.size(), 1);
    const QString said = bench.prompts.shown[0].text;
    EXPECT_TRUE(said.startsWith(bench.scratch.path("damaged.crd2") + " could be read up to byte "));
    EXPECT_TRUE(said.contains("records were read"));
    EXPECT_FALSE(bench.current.lstSpTitles.isEmpty());
    EXPECT_EQ(bench.session.fileName(), "");
    bench.prompts.paths = {""};
    bench.choose("mnuFileSave");  // asks for a name
    EXPECT_EQ(bench.prompts.files.size(), 2);
    EXPECT_EQ(bench.scratch.read("damaged.crd2"), damaged);

    bench.prompts.shown.clear();
    bench.open(bench.scratch.path("gone.crd2"));
    ASSERT_EQ(bench.prompts.shown.size(), 1);
    EXPECT_TRUE(bench.prompts.shown[0].text.startsWith(bench.scratch.path("gone.crd2") + ": "));
}

TEST(FileMenu, SaveWritesTheFileOrSaysWhyNot) {
    WindowBench bench;
    bench.start();
    bench.open(bench.tourFile);
    bench.current.txtCardTitle1 = "SAVED";
    bench.current.unsavedChanges = true;
    bench.choose("mnuFileSave");
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_FALSE(bench.window->isWindowModified());
    EXPECT_EQ(bench.scratch.read("tour.crd2"), encodeProject(bench.current));

    const QString other = bench.scratch.path("other.crd2");
    bench.prompts.paths = {other};
    bench.choose("mnuFileSaveAs");
    EXPECT_EQ(bench.window->windowTitle(), "TRL740 Card Preparation - other.crd2[*]");
    EXPECT_EQ(bench.session.fileName(), other);

    bench.files.failWhen = [](const QString& operation) {
        return operation == "replace other.crd2";
    };
    bench.type("txtCardTitle1", "LOST?");
    const QByteArray before = bench.scratch.read("other.crd2");
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.current.txtCardTitle1, "LOST?");
    EXPECT_TRUE(bench.session.differs());
    EXPECT_TRUE(bench.window->isWindowModified());
    EXPECT_EQ(bench.session.fileName(), other);
    EXPECT_EQ(bench.scratch.read("other.crd2"), before);
    EXPECT_EQ(bench.prompts.takeTexts(),
              QStringList("The project was not saved.\r" + other + ": failed on purpose"));
}

TEST(FileMenu, SaveSaysWhatAFileCannotHold) {
    WindowBench bench;
    bench.start();
    bench.open(bench.tourFile);
    bench.current.lstMuTrack[0].append("without file");
    bench.choose("mnuFileSave");
    ASSERT_EQ(bench.prompts.shown.size(), 1);
    EXPECT_TRUE(bench.prompts.takeTexts()[0].contains("L / without file"));
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.prompts.shown.isEmpty()) << "said again though nothing changed";
    bench.current.lstMuTrack[0].append("another");
    bench.choose("mnuFileSave");
    EXPECT_EQ(bench.prompts.takeTexts().size(), 1);

    bench.current.lstSpTitles.append("Добро");
    const QByteArray before = bench.scratch.read("tour.crd2");
    bench.prompts.answers = {false};
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.prompts.takeTexts()[0].contains("Добро"));
    EXPECT_EQ(bench.scratch.read("tour.crd2"), before);
    bench.prompts.answers = {true};
    bench.choose("mnuFileSave");
    EXPECT_NE(bench.scratch.read("tour.crd2"), before);
}

TEST(FileMenu, ExitAndTheCloseBoxAskOnlyAboutChanges) {
    for (const bool byMenu : {true, false}) {
        WindowBench bench;
        bench.start();
        bench.open(bench.tourFile);
        const auto leave = [&] { byMenu ? bench.choose("mnuFileExit") : bench.closeBox(); };
        bench.current.txtCardTitle1 = "changed";
        bench.current.unsavedChanges = true;
        bench.prompts.answers = {false};
        leave();
        EXPECT_TRUE(bench.window->isVisible());
        EXPECT_EQ(bench.prompts.shown[0].icon, Message::Icon::Exclamation);
        EXPECT_EQ(bench.prompts.takeTexts(), QStringList(ReallyExit));
        EXPECT_EQ(bench.recoveryCopies(), 0);
        bench.prompts.answers = {true};
        leave();
        EXPECT_FALSE(bench.window->isVisible());
        EXPECT_EQ(bench.recoveryCopies(), 1);

        WindowBench saved;
        saved.start();
        saved.open(saved.tourFile);
        byMenu ? saved.choose("mnuFileExit") : saved.closeBox();
        EXPECT_FALSE(saved.window->isVisible());
        EXPECT_TRUE(saved.prompts.shown.isEmpty());
        EXPECT_EQ(saved.recoveryCopies(), 0);
    }
}

TEST(FileMenu, WhatCannotBeAProjectIsRefusedAtOnce) {
    WindowBench bench;
    ASSERT_TRUE(bench.start());
    QFile large(bench.scratch.write("large.crd2", "x"));
    ASSERT_TRUE(large.resize(2LL << 30));
    QFile::link(bench.scratch.path("gone"), bench.scratch.path("dangling.crd2"));
    QStringList paths = {large.fileName(), bench.scratch.path(),
                         bench.scratch.path("dangling.crd2")};
#ifndef Q_OS_WIN
    paths.append(bench.scratch.path("pipe.crd2"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(paths.last()).constData(), 0600), 0);
#endif
    bench.showPage("Music");
    for (const QString& path : paths) {
        bench.open(path);
        EXPECT_TRUE(bench.prompts.takeTexts().value(0).startsWith(path)) << path.toStdString();
        EXPECT_TRUE(bench.session.fileName().isEmpty());
        bench.browse("buttAddMuItunesPlaylist", path);
        EXPECT_TRUE(bench.prompts.takeTexts().value(0).contains(path)) << path.toStdString();
        EXPECT_TRUE(bench.current.lstMuList.isEmpty());
    }
}

TEST(Recovery, CopiesHoldEverythingAndCanBeOpened) {
    WindowBench bench;
    bench.start();
    bench.open(bench.tourFile);
    bench.current.lstMuTrack[0].append("without file");
    bench.current.txtCardTitle1 = "Добро";
    bench.current.unsavedChanges = true;
    const Project edited = bench.current;
    bench.open("");
    bench.prompts.lines = {0};
    bench.choose("mnuFileRecover");
    ASSERT_EQ(bench.prompts.offered.size(), 1);
    EXPECT_TRUE(bench.prompts.offered[0].endsWith("1 list, 3 tracks, 1 title"))
        << bench.prompts.offered[0].toStdString();
    EXPECT_EQ(bench.current.lstMuTrack, edited.lstMuTrack);
    EXPECT_EQ(bench.current.txtCardTitle1, "Добро");
    EXPECT_EQ(bench.current.TrackTable, edited.TrackTable);
    EXPECT_TRUE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.session.fileName(), "");
}

TEST(Recovery, ACopyIsKeptEveryMinuteWhileSomethingDiffers) {
    WindowBench bench;
    bench.start();
    auto* timer = bench.find<QTimer>("tmrRecovery");
    EXPECT_EQ(timer->interval(), 60000);
    timer->setInterval(1);
    QTest::qWait(20);
    EXPECT_EQ(bench.recoveryCopies(), 0);
    bench.current.lstSpTitles.append("one");
    ASSERT_TRUE(QTest::qWaitFor([&] { return bench.recoveryCopies() == 1; }));
    bench.files.operations.clear();
    bench.current.lstSpTitles.append("two");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !bench.files.operations.isEmpty(); }));
    timer->stop();
    EXPECT_EQ(bench.recoveryCopies(), 1) << "one project is one copy, the newest";
    for (int i = 0; i < 14; ++i) {
        bench.open("");
        bench.current.lstSpTitles = {QString("title %1").arg(i)};
    }
    EXPECT_EQ(bench.recoveryCopies(), 10);
    bench.prompts.lines = {-1};
    bench.choose("mnuFileRecover");
    EXPECT_EQ(bench.prompts.offered.size(), 10);
}

TEST(Recovery, TheSessionsEndAsksNothingAndLosesNothing) {
    WindowBench bench;
    bench.start();
    bench.current.lstLangs.append("Danish");
    bench.current.unsavedChanges = true;
    ASSERT_TRUE(QMetaObject::invokeMethod(bench.window.get(), "Form_SessionEnds"));
    EXPECT_EQ(bench.recoveryCopies(), 1);
    // Somebody kept the session from ending, and the work went on.
    bench.current.lstLangs.append("Dutch");
    EXPECT_TRUE(bench.window->close());
    EXPECT_EQ(bench.recoveryCopies(), 2);
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

TEST(Recovery, AClockThatWentBackLosesNoCopy) {
    WindowBench bench;
    for (int i = 0; i < 10; ++i)
        bench.scratch.write(QString("user/recovery/2099010%1-000000-000.recovery").arg(i % 9 + 1),
                            "x");
    for (int i = 0; i < 10; ++i)
        bench.scratch.write(QString("user/recovery/209902%1-000000-000.recovery").arg(10 + i), "x");
    bench.start();
    bench.current.lstLangs.append("Danish");
    bench.open("");
    bench.prompts.lines = {0};
    bench.choose("mnuFileRecover");
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
}

TEST(Recovery, ARecoveredProjectBecomesTheNewestCopyAgain) {
    WindowBench bench;
    bench.start();
    for (const char* language : {"Danish", "Dutch"}) {
        bench.current.lstLangs = {language};
        bench.open("");
    }
    const auto recover = [&](int line) {
        bench.prompts.lines = {line};
        bench.choose("mnuFileRecover");
    };
    recover(1);
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
    bench.open("");  // without an edit, or the tenth copy after this one would push it out
    recover(0);
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
}

TEST(Recovery, LookingIsNoDifference) {
    WindowBench bench;
    bench.project.lstLangs = {"English", "German"};
    for (const char* language : {"German", "English"}) {
        TrackRecord record;
        record.kind = "lstDefaultLangs";
        record.groupName = language;
        bench.project.DefaultLanguageTable.append(record);
    }
    saveProject(bench.files, bench.tourFile, bench.project);
    bench.start();
    bench.open(bench.tourFile);
    for (const char* page : {"Setup Items", "Triggers && Attributes", "Create Card"})
        bench.showPage(page);
    EXPECT_FALSE(bench.session.differs());
    bench.open("");
    EXPECT_EQ(bench.recoveryCopies(), 0);
}

TEST(Recovery, AfterACrashTheNewestCopyIsOfferedOnce) {
    WindowBench bench;
    crash(bench, "Danish");
    bench.start();
    bench.prompts.answers = {true};
    bench.window->offerRecovery();
    EXPECT_TRUE(bench.prompts.takeTexts()[0].contains("0 lists, 0 tracks, 0 titles"));
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
    bench.window->offerRecovery();
    bench.window.reset();  // an end that is no crash
    bench.start();
    bench.window->offerRecovery();
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

TEST(Recovery, WhenNoCopyCanBeKeptTheOperatorDecides) {
    WindowBench bench;
    bench.start();
    bench.current.lstLangs.append("Danish");
    bench.files.failWhen = [](const QString& operation) {
        return operation.startsWith("replace ");
    };
    bench.prompts.answers = {true, false};
    bench.choose("mnuFileNew");
    EXPECT_TRUE(bench.prompts.takeTexts().last().contains("could not be kept for recovery"));
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
}

}  // namespace tessaly
