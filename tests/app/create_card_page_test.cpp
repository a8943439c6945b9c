// The Create Card page through the real window: checks, drive, runs, firmware.
#include <QComboBox>
#include <QProgressBar>

#include "app/drive_dialog.h"
#include "app/status_circle.h"
#include "card/card_verifier.h"
#include "model/music_lists.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

const QString EraseQuestion = "This will erase the contents of the CF card.  Continue?";
const QString UpdateQuestion =
    "This will only update card settings, attributes, triggers, and TRL-740 firmware.  DO NOT "
    "continue if you have added or deleted MP3 tracks.  Continue?";
const QString StopQuestion = "Stop writing the card?";
const QString NotCreated = "Card has NOT been created";

/// A window with the tour open on the Create Card page.
struct PageBench : WindowBench {
    PageBench() {
        start();
        open(tourFile);
        showPage("Create Card");
    }
    Verdict verdict(const QString& circle) const { return find<StatusCircle>(circle)->verdict(); }
    void checkAgain() const { click("buttCFCheckAgain"); }
};

}  // namespace

TEST(CreateCardPage, AGoodProjectMayBeWritten) {
    const PageBench bench;
    for (const char* circle : {"crcMuListCheck", "crcLangCheck", "crcSpTitleCheck", "crcSelectCF",
                               "crcCFCardPresent", "crcCFCardBigEnough", "crcCheckTrackCount"})
        EXPECT_EQ(bench.verdict(circle), Verdict::Green) << circle;
    EXPECT_EQ(bench.text("lblSelectCF"), "CF Card Drive is " + bench.scratch.path("card/"));
    EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card detected");
    for (const char* button : {"buttCreateCard", "buttCreateXD3", "buttUpdateFirmware"})
        EXPECT_TRUE(bench.isEnabled(button) && bench.isShown(button)) << button;
    for (const char* hidden : {"fraCCnone", "fraCC7", "fraFirmware", "Bar1", "lblCopyProgress",
                               "lstBadMuLists", "lstBadLangs", "lstBadSpTitles"})
        EXPECT_FALSE(bench.isShown(hidden)) << hidden;
    EXPECT_EQ(bench.find<StatusCircle>("crcLangCheck")->accessibleName(), "passed");
}

TEST(CreateCardPage, EveryPanelShowsItsOffenders) {
    PageBench bench;
    addMusicList(bench.current, "Empty");
    bench.current.lstLangs.append("German");
    QFile::remove(bench.scratch.path("src/hello.mp3"));
    bench.checkAgain();
    EXPECT_TRUE(bench.current.unsavedChanges);
    EXPECT_TRUE(bench.window->isWindowModified());
    EXPECT_EQ(bench.verdict("crcMuListCheck"), Verdict::Red);
    EXPECT_EQ(bench.items("lstBadMuLists"), QStringList("Empty"));
    EXPECT_EQ(bench.find<QListWidget>("lstBadMuLists")->currentRow(), 0);
    EXPECT_EQ(bench.verdict("crcLangCheck"), Verdict::Red);
    EXPECT_EQ(bench.items("lstBadLangs"), QStringList("German"));
    EXPECT_EQ(bench.verdict("crcSpTitleCheck"), Verdict::Yellow);
    EXPECT_EQ(bench.items("lstBadSpTitles"), QStringList("Hello - German"));
    EXPECT_EQ(bench.items("lstProblems"),
              QStringList("Cannot find file " + bench.scratch.path("src/hello.mp3")));
    EXPECT_TRUE(bench.isShown("lstBadMuLists") && bench.isShown("fraCC7"));
    EXPECT_FALSE(bench.isEnabled("buttCreateCard") || bench.isEnabled("buttCreateXD3"));

    // A limit stands before the files, and its sentence can be read to its end.
    bench.current.lstMuTrack[0].append(QStringList(4000, "x"));
    bench.checkAgain();
    QCoreApplication::processEvents();
    EXPECT_EQ(bench.items("lstProblems").size(), 2);
    EXPECT_TRUE(bench.items("lstProblems").first().startsWith("The settings of this project take"));
    const auto* problems = bench.find<QListWidget>("lstProblems");
    EXPECT_LT(problems->visualItemRect(problems->item(0)).right(), problems->viewport()->width());
}

TEST(CreateCardPage, TheDriveIsShownAsItIs) {
    PageBench bench;
    bench.drives.isReady = false;
    bench.checkAgain();
    EXPECT_EQ(bench.verdict("crcCFCardPresent"), Verdict::Red);
    EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card not inserted");
    EXPECT_EQ(bench.verdict("crcCFCardBigEnough"), Verdict::Grey);
    EXPECT_FALSE(bench.isEnabled("lblCFCardBigEnough") || bench.isEnabled("buttCreateCard"));
    EXPECT_TRUE(bench.isEnabled("buttUpdateFirmware")) << "its state stays as it was";
    bench.drives.isReady = true;
    bench.drives.volume.totalBytes = 1000;
    bench.checkAgain();
    EXPECT_EQ(bench.text("lblCFCardBigEnough"), "CF card too small - delete tracks");
    bench.current.cfDrive.clear();
    bench.checkAgain();
    EXPECT_EQ(bench.text("lblSelectCF"), "CF Card Drive is NOT SELECTED");
    EXPECT_FALSE(bench.isEnabled("buttUpdateFirmware"));

    // Without any track only the drive's panel is left.
    bench.prompts.answers = {true};
    bench.choose("mnuFileNew");
    for (const char* hidden :
         {"fraCC1", "fraCC2", "fraCC3", "fraCC5", "fraCC6", "buttCreateCard", "buttCreateXD3"})
        EXPECT_FALSE(bench.isShown(hidden)) << hidden;
    EXPECT_TRUE(bench.isShown("fraCC4") && bench.isShown("fraCCnone"));
    EXPECT_EQ(bench.text("lblEmpty"), "There are no Speech or Music files selected.");
}

TEST(CreateCardPage, ACardThatIsTooSmallIsSeenAtOnce) {
    WindowBench bench;
    bench.drives.volume.totalBytes = 500100;  // less than the files and the margin
    bench.start();
    bench.open(bench.tourFile);
    bench.showPage("Create Card");
    EXPECT_EQ(bench.text("lblCFCardBigEnough"), "CF card too small - delete tracks");
    EXPECT_FALSE(bench.find<QWidget>("buttCreateCard")->isEnabled());
}

TEST(CreateCardPage, OnlyRemovableDrivesAreTaken) {
    PageBench bench;
    const QString before = bench.current.cfDrive;
    const std::pair<DriveType, const char*> refused[] = {{DriveType::Fixed, "Fixed"},
                                                         {DriveType::Network, "Network"},
                                                         {DriveType::CdRom, "CD-ROM"},
                                                         {DriveType::RamDisk, "RAM Disk"},
                                                         {DriveType::Unknown, "Unknown"}};
    for (const auto& [type, name] : refused) {
        bench.drives.driveType = type;
        bench.prompts.paths = {"/media/other"};
        bench.click("buttSelectCF");
        EXPECT_EQ(bench.current.cfDrive, before);
        EXPECT_EQ(bench.prompts.takeTexts(),
                  QStringList(QString("Sorry, that is a %1 drive!").arg(name)));
    }
    bench.drives.driveType = DriveType::Removable;
    bench.prompts.paths = {"", "/media/other"};
    bench.click("buttSelectCF");
    EXPECT_EQ(bench.current.cfDrive, before) << "cancelled";
    bench.click("buttSelectCF");
    EXPECT_EQ(bench.current.cfDrive, "/media/other/");
    bench.drives.isReady = false;
    bench.prompts.paths = {"/media/reader/"};
    bench.click("buttSelectCF");
    EXPECT_EQ(bench.current.cfDrive, "/media/reader/");
    EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card not inserted");
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

TEST(CreateCardPage, CardLikeDrivesComeFirst) {
    const QList<Volume> sorted = cardLikeFirst({{"/", "disk", DriveType::Fixed, "ext4", 9, 1},
                                                {"/big", "b", DriveType::Removable, "vfat", 64, 1},
                                                {"/net", "n", DriveType::Network, "nfs", 1, 1},
                                                {"/cf", "c", DriveType::Removable, "vfat", 2, 1}});
    QStringList roots;
    for (const Volume& volume : sorted)
        roots.append(volume.root);
    EXPECT_EQ(roots, (QStringList{"/cf", "/big", "/net", "/"}));
}

TEST(CreateCardPage, ACardIsCreated) {
    PageBench bench;
    QStringList captions;
    QList<int> bar;
    bool wasShown = false;
    bench.files.onOperation = [&] {
        if (!bench.files.operations.last().startsWith("create 000"))
            return;
        captions.append(bench.text("lblCopyProgress"));
        bar.append(bench.find<QProgressBar>("Bar1")->value());
        wasShown = bench.isShown("Bar1") && bench.isShown("lblCopyProgress");
    };
    bench.prompts.answers = {true};
    bench.click("buttCreateCard");
    EXPECT_EQ(bench.prompts.shown[0].icon, Message::Icon::Exclamation);
    EXPECT_EQ(bench.prompts.takeTexts(),
              (QStringList{EraseQuestion, "Card successfully created!"}));
    EXPECT_EQ(captions.mid(0, 3),
              (QStringList{"Preparing to create card...", "1 of 3 files transferred",
                           "2 of 3 files transferred"}));
    EXPECT_EQ(bar.mid(0, 3), (QList<int>{1, 2, 3}));
    EXPECT_EQ(bench.find<QProgressBar>("Bar1")->maximum(), 4);
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(bench.isShown("Bar1"));
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
    EXPECT_FALSE(QFile::exists(bench.scratch.path("app/files/tmp.bin")));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    EXPECT_TRUE(bench.files.operations.contains("reopen 0001.mp3"));
    bench.files.operations.clear();
    bench.click("chkVerify");
    bench.prompts.answers = {true};
    bench.click("buttCreateXD3");
    EXPECT_EQ(bench.prompts.takeTexts(),
              (QStringList{UpdateQuestion, "Card successfully created!"}));
    EXPECT_FALSE(bench.files.operations.contains("reopen 0000.xd3"));
}

TEST(CreateCardPage, NoToAnUpdateCarriesOver) {
    PageBench bench;
    bench.prompts.answers = {false, false, true};
    bench.click("buttCreateXD3");
    bench.click("buttCreateCard");
    EXPECT_EQ(bench.prompts.takeTexts(), (QStringList{UpdateQuestion, UpdateQuestion}));
    EXPECT_TRUE(bench.card().isEmpty());
    EXPECT_TRUE(bench.current.unsavedChanges);
    bench.click("buttCreateCard");  // an update again: this card holds no music, and is left alone
    EXPECT_TRUE(bench.prompts.takeTexts()[1].contains("create the card anew."));
    bench.prompts.answers = {false};
    bench.click("buttCreateCard");  // which can be done now
    EXPECT_EQ(bench.prompts.takeTexts(), QStringList(EraseQuestion));
}

TEST(CreateCardPage, FailuresEndInTheErrorBox) {
    const struct {
        const char *file, *title, *start;
    } cases[] = {
        {"src/second.MP3", "Tessaly Error 200", "Error # 513 was generated by Tessaly\rCannot "},
        {"app/firmware/0000.hex", "Tessaly Error 201", "Error # 514 was generated by Tessaly\r"},
        {"app/files/9998.mp3", "Tessaly Error 202", "Error # 515 was generated by Tessaly\r"},
        {"app/files/0007.cfg", "Tessaly Error 69", "Error # 2 was generated by Tessaly\r"}};
    for (const auto& [file, title, start] : cases) {
        PageBench bench;
        QFile::remove(bench.scratch.path(file));
        bench.prompts.answers = {true};
        bench.click("buttCreateCard");
        ASSERT_EQ(bench.prompts.shown.size(), 3);
        EXPECT_EQ(bench.prompts.shown[1].title, title);
        EXPECT_EQ(bench.prompts.shown[1].icon, Message::Icon::Exclamation);
        EXPECT_TRUE(bench.prompts.shown[1].text.startsWith(start))
            << bench.prompts.shown[1].text.toStdString();
        EXPECT_EQ(bench.prompts.shown[2].text, NotCreated);
        EXPECT_EQ(bench.prompts.shown[2].icon, Message::Icon::Information);
        EXPECT_FALSE(bench.isShown("Bar1"));
    }
}

// Whatever is clicked in the middle of a run: it asks first, or waits, and the run ends cleanly.
TEST(CreateCardPage, ARunIsStoppedOnlyOnRequest) {
    const struct {
        const char* what;
        std::function<void(PageBench&)> act;
        QStringList extraAnswers;  // what is asked once the run has ended
    } cases[] = {
        {"Cancel", [](PageBench& b) { b.click("buttCancelWrite"); }, {}},
        {"Exit", [](PageBench& b) { b.choose("mnuFileExit"); }, {"Really exit?"}},
        {"the close box", [](PageBench& b) { b.closeBox(); }, {"Really exit?"}},
        {"New", [](PageBench& b) { b.choose("mnuFileNew"); }, {"You will lose"}},
        {"Open", [](PageBench& b) { b.choose("mnuFileOpen"); }, {}},
        {"a second write", [](PageBench& b) { b.click("buttCreateCard"); }, {"This will erase"}},
        {"firmware", [](PageBench& b) { b.click("buttUpdateFirmware"); }, {}},
    };
    for (const auto& [what, act, extraAnswers] : cases) {
        for (const bool stop : {false, true}) {
            SCOPED_TRACE(std::string(what) + (stop ? ", stopped" : ", not stopped"));
            PageBench bench;
            bool acted = false;
            bench.files.onOperation = [&] {
                if (acted || bench.files.operations.last() != "create 0002.mp3")
                    return;
                acted = true;
                QTimer::singleShot(0, bench.window.get(), [&] { act(bench); });
            };
            bench.prompts.answers = {true, stop};
            bench.prompts.paths = {""};
            for (qsizetype i = 0; stop && i < extraAnswers.size(); ++i)
                bench.prompts.answers.append(false);
            bench.click("buttCreateCard");
            QTest::qWait(1);  // what waited for the end of the run
            EXPECT_TRUE(acted);
            const QStringList texts = bench.prompts.takeTexts();
            EXPECT_EQ(texts.value(1), StopQuestion);
            if (!stop) {
                EXPECT_EQ(texts.value(2), "Card successfully created!");
                EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
                continue;
            }
            EXPECT_TRUE(texts.value(2).startsWith("Error # 538 was generated by Tessaly\r"));
            EXPECT_EQ(texts.value(3), NotCreated);
            for (const QString& question : extraAnswers)
                EXPECT_TRUE(texts.last().contains(question)) << texts.last().toStdString();
            EXPECT_TRUE(bench.window->isVisible());
        }
    }
}

TEST(CreateCardPage, OtherHandlersLeaveARunAlone) {
    PageBench bench;
    bool acted = false;
    bench.files.onOperation = [&] {
        if (acted || bench.files.operations.last() != "create 0002.mp3")
            return;
        acted = true;
        QTimer::singleShot(0, bench.window.get(), [&] {
            QFile::remove(bench.scratch.path("src/first.mp3"));  // the checks would block now
            bench.checkAgain();
            bench.prompts.paths = {"/media/other/"};
            bench.click("buttSelectCF");
            auto* tabs = bench.find<QTabWidget>("Tabs");
            tabs->setCurrentIndex(0);
            bench.showPage("Create Card");
            EXPECT_TRUE(bench.isShown("Bar1") && bench.isShown("lblCopyProgress"));
            EXPECT_EQ(bench.verdict("crcSelectCF"), Verdict::Green);
        });
    };
    bench.prompts.answers = {true};
    bench.click("buttCreateCard");
    EXPECT_TRUE(acted);
    EXPECT_EQ(bench.prompts.takeTexts().last(), "Card successfully created!");
    EXPECT_EQ(bench.card()["0003.mp3"], "222");
    EXPECT_EQ(bench.text("lblSelectCF"), "CF Card Drive is /media/other/") << "checked afterwards";
    EXPECT_FALSE(bench.isEnabled("buttCreateCard"));
}

TEST(CreateCardPage, FirmwareAloneIsUpdatedAfterAQuestion) {
    PageBench bench;
    const QByteArray own = bench.scratch.read("app/firmware/0000.hex");
    const auto update = [&] {
        bench.click("buttUpdateFirmware");
        return std::exchange(bench.prompts.shown, {});
    };
    auto shown = update();
    EXPECT_EQ(shown[0].text, "Card does not have a valid TRL740 format.");
    EXPECT_EQ(shown[0].icon, Message::Icon::Critical);

    bench.scratch.write("card/0000.hex", own);
    shown = update();
    EXPECT_TRUE(
        shown[0].text.startsWith("Your card already contains TRL740 firmware version 4011"));

    bench.scratch.write("card/0000.hex", ":05555");
    bench.prompts.answers = {false};
    shown = update();
    EXPECT_EQ(shown[0].icon, Message::Icon::Question);
    EXPECT_TRUE(shown[0].text.contains("Do you really want to downgrade?"));
    EXPECT_EQ(bench.card()["0000.hex"], ":05555");

    // The drive of the project may be another one today.
    bench.drives.driveType = DriveType::Fixed;
    shown = update();
    EXPECT_TRUE(shown[0].text.contains("is a Fixed drive"));
    bench.drives.driveType = DriveType::Removable;

    // A card that is exchanged while the question stands is not the one that was compared.
    bench.scratch.write("card/0000.hex", ":00001");
    bench.prompts.onShown = [&](const auto&) { bench.drives.inserted = "card B"; };
    bench.prompts.answers = {true};
    shown = update();
    EXPECT_TRUE(shown[1].text.contains("no longer there or was changed"));
    EXPECT_EQ(bench.card()["0000.hex"], ":00001");
    bench.prompts.onShown = [](const auto&) {};

    bench.prompts.answers = {true};
    shown = update();
    EXPECT_EQ(shown[0].icon, Message::Icon::Information);
    EXPECT_EQ(shown[1].text, "Card successfully updated.");
    EXPECT_EQ(bench.card()["0000.hex"], own);

    // The stand-in is announced and goes onto no card by itself.
    bench.scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    bench.checkAgain();
    EXPECT_TRUE(bench.isShown("lblFirmwareStandIn"));
    EXPECT_EQ(bench.verdict("crcFirmware"), Verdict::Yellow);
    shown = update();
    EXPECT_TRUE(shown[0].text.contains("holds no firmware data"));
    EXPECT_EQ(bench.card()["0000.hex"], own);
}

TEST(StatusCircle, VerdictsDifferInColourAndSign) {
    QList<QImage> images;
    for (const Verdict verdict : {Verdict::Green, Verdict::Red, Verdict::Yellow, Verdict::Grey}) {
        StatusCircle circle;
        circle.setVerdict(verdict);
        circle.resize(32, 32);
        const QImage image = circle.grab().toImage();
        EXPECT_EQ(image.pixelColor(16, 4), StatusCircle::colour(verdict));
        EXPECT_NE(image.pixelColor(0, 0), StatusCircle::colour(verdict));
        images.append(image.convertToFormat(QImage::Format_Mono, Qt::ThresholdDither));
    }
    EXPECT_EQ(StatusCircle::colour(Verdict::Yellow), QColor(0xFF, 0xFF, 0));
    for (int a = 0; a < 4; ++a)
        for (int b = 0; b < a; ++b)
            EXPECT_NE(images[a], images[b]) << "without colour " << a << " looks like " << b;
}

}  // namespace tessaly
