// Start-up, the File menu and recovery, through the real window.
#include <QProcess>
#include <QStatusBar>
#include <QTimer>

#include "app/program.h"
#include "model/project_snapshot.h"
#include "platform/paths.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

const QString LoseChanges = "You will lose any unsaved changes!  Continue? ";
const QString ReallyExit = "Changes will be lost unless the card file was saved.  Really exit?";

// The program without the user's own files; `folder` is its place for them.
void startProgram(QProcess& program, const ScratchFolder& folder, const QStringList& arguments) {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("XDG_DATA_HOME", folder.path());
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    program.setProcessEnvironment(environment);
    program.start(TESSALY_PROGRAM, arguments);
}

// A run that ended without a word and left a copy of a project of one language.
void crash(WindowBench& bench, const QString& language) {
    const QString mark = bench.scratch.path("user/recovery/running"), aside = mark + ".aside";
    Project work;
    work.lstLangs = {language};
    {
        RecoveryFolder crashed(bench.files, bench.scratch.path("user/recovery"));
        crashed.keep(work);
        EXPECT_TRUE(QFile::rename(mark, aside));
    }
    EXPECT_TRUE(QFile::rename(aside, mark));
}

}  // namespace

TEST(StartUp, ASecondInstanceEndsAtOnce) {
    WindowBench bench;
    bench.instance.isFirst = false;
    EXPECT_FALSE(bench.start());
    EXPECT_TRUE(bench.prompts.takeTexts().value(0).startsWith("A previous instance of Tessaly"));
}

TEST(StartUp, FirmwareIsReadOrMissed) {
    const std::pair<const char*, const char*> cases[] = {{":10110000AA\r\nsecond line", "0110"},
                                                         {":1", ""}};
    for (const auto& [firmware, version] : cases) {
        WindowBench bench;
        bench.scratch.write("app/firmware/0000.hex", firmware);
        ASSERT_TRUE(bench.start());
        EXPECT_TRUE(bench.prompts.shown.isEmpty());
        EXPECT_TRUE(bench.status().endsWith(QString("TRL740 firmware version: ") + version));
        EXPECT_EQ(bench.current, Project());
    }
    WindowBench bare;
    QFile::remove(bare.scratch.path("app/firmware/0000.hex"));
    ASSERT_TRUE(bare.start());
    EXPECT_TRUE(
        bare.prompts.takeTexts().value(0).contains(bare.scratch.path("app/firmware/0000.hex")));
}

TEST(StartUp, AKilledRunLeavesNoLockBehind) {
    const ScratchFolder scratch;
    QProcess program;
    startProgram(program, scratch, {});
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
        startProgram(program, scratch, arguments);
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

TEST(Help, TheManualOpensOrIsNamed) {
    StartedBench bench;
    const QString manual = bench.scratch.path("app/manual/manual.html");
    bench.choose("mnuHelpManual");
    EXPECT_TRUE(bench.prompts.documents.isEmpty());
    bench.scratch.write("app/manual/manual.html", "x");
    bench.prompts.hasViewer = false;
    bench.choose("mnuHelpManual");
    EXPECT_EQ(bench.prompts.documents, QStringList(manual));
    for (const QString& said : bench.prompts.takeTexts())
        EXPECT_TRUE(said.contains(manual)) << said.toStdString();
}

TEST(FileMenu, NewAlwaysAsksAndKeepsTitleAndChime) {
    OpenedBench bench;
    bench.current.txtCardTitle1 = "TITLE";
    bench.current.SystemTextTable[3].groupName = "changed";
    setChimeOption(bench.current, &Project::buttPlayExtChime, true);
    bench.current.TriggerTable[2].itemName = "of a customer";
    const Project before = bench.current;
    bench.prompts.answers = {false, true};
    bench.choose("mnuFileNew");
    EXPECT_EQ(bench.current, before);
    EXPECT_TRUE(bench.prompts.shown[0].defaultsToNo);
    bench.choose("mnuFileNew");
    EXPECT_EQ(bench.prompts.takeTexts(), (QStringList{LoseChanges, LoseChanges}));
    Project expected;
    expected.txtCardTitle1 = "TITLE";
    setChimeOption(expected, &Project::buttPlayExtChime, true);
    EXPECT_EQ(encodeProject(bench.current), encodeProject(expected));
    EXPECT_EQ(bench.status(), "Total card size: 0.0 MB        Total number of Tracks: 0" +
                                  QString(40, ' ') + "TRL740 firmware version: 4011");
    EXPECT_EQ(bench.recoveryCopies(), 1);

    bench.open(bench.tourFile);
    QFile::remove(bench.scratch.path("app/firmware/0000.hex"));
    bench.prompts.answers = {true};
    QStringList titles = {"none was shown"};
    bench.prompts.onShown = [&](const auto&) { titles = bench.items("lstSpTitles"); };
    bench.choose("mnuFileNew");
    EXPECT_EQ(titles, QStringList()) << "the message stood before the old project";
    EXPECT_TRUE(bench.status().endsWith("version: "));
}

TEST(FileMenu, CancelToOpenLeavesAnEmptyProject) {
    OpenedBench bench;
    EXPECT_EQ(bench.prompts.files[0].folder, bench.scratch.path("app"));
    EXPECT_EQ(encodeProject(bench.current), encodeProject(bench.project));
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.recoveryCopies(), 0);
    EXPECT_FALSE(bench.isShown("lblNotSaved"));
    bench.current.TriggerTable[2].itemName = "of a customer";
    bench.add("txtNewLang", "Danish", "buttAddLang");
    EXPECT_TRUE(bench.isShown("lblNotSaved"));
    const Project before = bench.current;
    bench.open("");
    EXPECT_EQ(bench.current.TrackTable.size(), 1);
    EXPECT_FALSE(encodeProject(bench.current).contains("customer"));
    EXPECT_EQ(bench.session.fileName(), "");
    EXPECT_EQ(bench.recoveryCopies(), 1);
    EXPECT_FALSE(bench.isShown("lblNotSaved"));

    // It comes back as it was, with what saves it; the next edit would have ended the offer.
    bench.click("buttBringBack");
    EXPECT_EQ(bench.current, before);
    EXPECT_EQ(bench.session.fileName(), bench.tourFile);
    EXPECT_EQ(bench.text("lblNotSaved"), "not saved in tour.crd2");
    EXPECT_TRUE(bench.window->isWindowModified() && bench.isShown("lblNotSaved"));
    EXPECT_FALSE(bench.isShown("buttBringBack"));
    bench.choose("mnuFileSave");
    EXPECT_EQ(bench.recoveryCopies(), 0);
    bench.open(bench.scratch.path("gone.crd2"));
    EXPECT_TRUE(bench.isShown("buttBringBack"));
    bench.type("txtNewLang", "Dutch");
    EXPECT_TRUE(bench.isShown("buttBringBack"));
    bench.click("buttAddLang");
    EXPECT_FALSE(bench.isShown("buttBringBack"));
    EXPECT_EQ(bench.prompts.takeTexts().size(), 1) << "about the file that is gone";
}

TEST(FileMenu, ADamagedFileIsReadAsFarAsItGoesAndIsSafeFromSave) {
    StartedBench bench;
    const QByteArray damaged = bench.scratch.read("tour.crd2").chopped(300);
    bench.open(bench.scratch.write("damaged.crd2", damaged));
    EXPECT_TRUE(bench.prompts.takeTexts().value(0).startsWith(bench.scratch.path("damaged.crd2") +
                                                              " could be read up to byte "));
    EXPECT_FALSE(bench.current.lstSpTitles.isEmpty());
    EXPECT_EQ(bench.session.fileName(), "");
    EXPECT_TRUE(bench.isShown("lblNotSaved") && bench.text("lblNotSaved") == "not saved");
    bench.prompts.paths = {""};
    bench.choose("mnuFileSave");  // asks for a name
    EXPECT_EQ(bench.prompts.files.size(), 2);
    EXPECT_EQ(bench.scratch.read("damaged.crd2"), damaged);
    bench.open(bench.scratch.path("gone.crd2"));
    EXPECT_TRUE(
        bench.prompts.takeTexts().value(0).startsWith(bench.scratch.path("gone.crd2") + ": "));
}

TEST(FileMenu, SaveWritesTheFileOrSaysWhyNot) {
    OpenedBench bench;
    bench.type("txtCardTitle1", "SAVED");
    bench.choose("mnuFileSave");
    EXPECT_FALSE(bench.window->isWindowModified());
    EXPECT_EQ(bench.scratch.read("tour.crd2"), encodeProject(bench.current));
    const QString other = bench.scratch.path("other.crd2");
    bench.prompts.paths = {other};
    bench.choose("mnuFileSaveAs");
    EXPECT_EQ(bench.session.fileName(), other);

    bench.files.failWhen = [](const QString& operation) {
        return operation == "replace other.crd2";
    };
    bench.type("txtCardTitle1", "LOST?");
    const QByteArray before = bench.scratch.read("other.crd2");
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.current.unsavedChanges && bench.window->isWindowModified());
    EXPECT_EQ(bench.current.txtCardTitle1, "LOST?");
    EXPECT_TRUE(bench.session.differs());
    EXPECT_EQ(bench.session.fileName(), other);
    EXPECT_EQ(bench.scratch.read("other.crd2"), before);
    EXPECT_EQ(bench.prompts.takeTexts(),
              QStringList("The project was not saved.\r" + other + ": failed on purpose"));
}

TEST(FileMenu, SaveSaysWhatAFileCannotHold) {
    OpenedBench bench;
    bench.current.lstMuTrack[0].append("without file");
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.prompts.takeTexts().value(0).contains("L / without file"));
    bench.choose("mnuFileSave");
    EXPECT_TRUE(bench.prompts.shown.isEmpty()) << "said again though nothing changed";
    bench.current.lstMuTrack[0].append("another");
    bench.choose("mnuFileSave");
    EXPECT_EQ(bench.prompts.takeTexts().size(), 1);

    // A file that is lost with its path is said at once, and apart from texts.
    const QString lost = bench.scratch.write("src/Песня.mp3", "x");
    bench.current.lstSpTitles.append("Добро");
    bench.showPage("Setup Items");
    bench.click("buttPlayIntChime");
    bench.browse("buttGetChimeFile", lost);
    bench.showPage("Music Files");
    bench.select("lstMuTrack", "without file");
    bench.browse("buttAddMuFile", lost);
    bench.browse("buttAddMuListDir", bench.scratch.path("src"));
    EXPECT_EQ(bench.prompts.takeTexts().filter(lost).size(), 3);
    const QByteArray before = bench.scratch.read("tour.crd2");
    bench.prompts.answers = {true, false};
    bench.choose("mnuFileSave");
    const QStringList asked = bench.prompts.takeTexts();
    EXPECT_TRUE(asked.value(0).contains(lost) && !asked.value(0).contains("Добро"));
    EXPECT_TRUE(asked.value(1).contains("Добро") && !asked.value(1).contains(lost));
    EXPECT_EQ(bench.scratch.read("tour.crd2"), before);
    bench.prompts.answers = {true, true};
    bench.choose("mnuFileSave");
    EXPECT_NE(bench.scratch.read("tour.crd2"), before);
}

TEST(FileMenu, ExitAndTheCloseBoxAskAboutChangesAndDifferences) {
    for (const bool byMenu : {true, false}) {
        for (const char* button : {"buttDelSpTitle", "imgMuTrackDn", ""}) {
            OpenedBench bench;
            const auto leave = [&] { byMenu ? bench.choose("mnuFileExit") : bench.closeBox(); };
            const bool differs = *button;
            bench.select("lstSpTitles", "Hello");
            bench.select("lstMuTrack", "one");
            if (differs) {
                bench.click(button);
                EXPECT_EQ(bench.isShown("lblNotSaved"), differs) << button;
                bench.prompts.answers = {false, true};
                leave();
                EXPECT_TRUE(bench.window->isVisible());
                EXPECT_EQ(bench.prompts.takeTexts(), QStringList(ReallyExit));
                EXPECT_EQ(bench.recoveryCopies(), 0);
            }
            leave();
            EXPECT_FALSE(bench.window->isVisible());
            EXPECT_EQ(bench.prompts.shown.size(), differs ? 1 : 0);
            EXPECT_EQ(bench.recoveryCopies(), differs ? 1 : 0);
        }
    }
}

TEST(Recovery, CopiesHoldEverythingAndCanBeOpened) {
    OpenedBench bench;
    bench.current.lstMuTrack[0].append("without file");
    bench.current.txtCardTitle1 = "Добро";
    bench.current.unsavedChanges = true;
    const Project edited = bench.current;
    bench.open("");
    bench.prompts.lines = {0};
    bench.choose("mnuFileRecover");
    EXPECT_TRUE(bench.prompts.offered.value(0).endsWith("1 list, 3 tracks, 1 title"));
    EXPECT_TRUE(sameContent(bench.current, edited));
    EXPECT_TRUE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.session.fileName(), "");
}

TEST(Recovery, ACopyIsKeptEveryMinuteWhileSomethingDiffers) {
    StartedBench bench;
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
    EXPECT_EQ(bench.recoveryCopies(), 2) << "the state before was not kept";
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
    StartedBench bench;
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

TEST(Recovery, SaveRemovesEveryCopyThatLedUpToWhatItSaved) {
    OpenedBench bench;
    const auto edit = [&](const char* language) {
        bench.add("txtNewLang", language, "buttAddLang");
        QMetaObject::invokeMethod(bench.find<QTimer>("tmrRecovery"), "timeout");
    };
    const auto recover = [&](int line) {
        bench.prompts.lines = {line};
        bench.choose("mnuFileRecover");
    };
    edit("Danish");
    ASSERT_TRUE(QMetaObject::invokeMethod(bench.window.get(), "Form_SessionEnds"));
    recover(-1);
    bench.prompts.answers = {false};
    bench.choose("mnuFileNew");
    edit("Dutch");
    EXPECT_EQ(bench.recoveryCopies(), 2);
    bench.choose("mnuFileSave");
    EXPECT_EQ(bench.recoveryCopies(), 0);

    edit("Finnish");
    edit("French");
    recover(1);  // from before the last edit, which stays on offer
    EXPECT_TRUE(bench.prompts.offered[1].endsWith("(earlier)"));
    EXPECT_EQ(bench.current.lstLangs.last(), "Finnish");
    bench.prompts.paths = {bench.tourFile};
    bench.choose("mnuFileSave");
    EXPECT_EQ(bench.recoveryCopies(), 1);
    recover(0);
    EXPECT_EQ(bench.current.lstLangs.last(), "French");
}

TEST(Recovery, EarlierCopiesThinOutWithAge) {
    WindowBench bench;
    QDateTime now(QDate(2026, 3, 1), QTime(8, 0), Qt::UTC);
    RecoveryFolder folder(bench.files, bench.scratch.path("user/recovery"), [&] { return now; });
    const auto work = [&](int minutes) {
        for (int minute = 0; minute < minutes; ++minute) {
            now = now.addSecs(60);
            folder.keep({});
        }
    };
    for (int stretch = 0; stretch < 12; ++stretch) {
        work(2);
        folder.leave();
    }
    const QDateTime begin = now.addSecs(60);
    for (int minutes = 0; minutes < 300; minutes += 7) {
        work(7);
        QList<qint64> ages;  // of this stretch, in minutes
        const auto copies = folder.copies();
        for (const RecoveryCopy& copy : copies)
            if (copy.time >= begin)
                ages.append(copy.time.secsTo(now) / 60);
        for (qsizetype i = 1; i < ages.size(); ++i)
            ASSERT_LE(ages[i], 4 * ages[i - 1] + 2) << "after " << minutes << " minutes";
        ASSERT_TRUE(ages.first() == 0 && ages.last() == begin.secsTo(now) / 60);
        ASSERT_LE(ages.size(), 10);
        ASSERT_EQ(copies.size(), ages.size() + 2 + 8) << "two of the last stretch, one of others";
    }
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
    StartedBench bench;
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
    for (const char* language : {"German", "English"})
        addDefaultLanguage(bench.project, language);
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
    StartedBench bench;
    bench.current.lstLangs.append("Danish");
    bench.files.failWhen = [](const QString& operation) {
        return operation.startsWith("replace ");
    };
    bench.prompts.answers = {true, false};
    bench.choose("mnuFileNew");
    EXPECT_TRUE(bench.prompts.takeTexts().last().contains("could not be kept for recovery"));
    EXPECT_EQ(bench.current.lstLangs, QStringList("Danish"));
}

TEST(Recovery, AFailingCopyIsSaidOnceUntilOneWorked) {
    StartedBench bench;
    auto* bar = bench.find<QStatusBar>("sbStatusBar");
    const auto said = [&](bool fails) {
        bench.current.lstLangs.append("Danish");
        bench.files.failWhen = [fails](const QString&) { return fails; };
        bar->clearMessage();
        QMetaObject::invokeMethod(bench.find<QTimer>("tmrRecovery"), "timeout");
        return bar->currentMessage().contains("could not be kept for recovery: ");
    };
    EXPECT_TRUE(said(true));
    EXPECT_FALSE(said(true));
    EXPECT_FALSE(said(false));
    EXPECT_TRUE(said(true));
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

}  // namespace tessaly
