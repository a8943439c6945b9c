// The Create Card page through the real window: checks, drive, runs, firmware.
#include <QComboBox>
#include <QProgressBar>
#include <QTreeWidget>

#include "app/qt_prompts.h"
#include "app/small_widgets.h"
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

/// A window with the tour open on the Create Card page.
struct PageBench : OpenedBench {
    PageBench() { showPage("Create Card"); }
    Verdict verdict(const QString& circle) const { return find<StatusCircle>(circle)->verdict(); }
    void checkAgain() const { click("buttCFCheckAgain"); }

    /// Creates the card; while its second file is written, the operator does `act`.
    void createCardAnd(const std::function<void()>& act) {
        bool acted = false;
        files.onOperation = [&] {
            if (!acted && files.operations.last() == "create 0002.mp3") {
                acted = true;
                QTimer::singleShot(0, window.get(), act);
            }
        };
        prompts.answers.prepend(true);
        click("buttCreateCard");
        QTest::qWait(1);  // what waited for the end of the run
        files.onOperation = [] {};
        EXPECT_TRUE(acted);
    }
};

}  // namespace

TEST(CreateCardPage, AGoodProjectMayBeWritten) {
    const PageBench bench;
    for (const char* circle : {"crcMuListCheck", "crcLangCheck", "crcSpTitleCheck", "crcSelectCF",
                               "crcCFCardPresent", "crcCFCardBigEnough", "crcCheckTrackCount"})
        EXPECT_EQ(bench.verdict(circle), Verdict::Green) << circle;
    EXPECT_EQ(bench.text("lblSelectCF"), "CF Card Drive is " + bench.scratch.path("card/"));
    for (const char* button : {"buttCreateCard", "buttCreateXD3", "buttUpdateFirmware"})
        EXPECT_TRUE(bench.isEnabled(button) && bench.isShown(button)) << button;
    for (const char* hidden : {"fraCCnone", "fraCC7", "fraFirmware", "Bar1", "lstBadMuLists",
                               "fraSilentTracks", "fraEmptyFiles", "lblFileNumbers"})
        EXPECT_FALSE(bench.isShown(hidden)) << hidden;
}

TEST(CreateCardPage, EveryPanelShowsItsOffendersInOrder) {
    PageBench bench;
    addMusicList(bench.current, "Empty B");
    addMusicList(bench.current, "Empty A");
    addSpeech(bench.current, "Bye", "German", bench.scratch.path("src/gone.mp3"));
    bench.current.lstLangs.append("French");
    bench.checkAgain();
    EXPECT_TRUE(bench.current.unsavedChanges);
    EXPECT_EQ(bench.verdict("crcMuListCheck"), Verdict::Red);
    EXPECT_EQ(bench.items("lstBadMuLists"), (QStringList{"Empty B", "Empty A"}));
    EXPECT_EQ(bench.verdict("crcLangCheck"), Verdict::Red);
    EXPECT_EQ(bench.items("lstBadLangs"), QStringList("French"));
    EXPECT_EQ(bench.verdict("crcSpTitleCheck"), Verdict::Yellow);
    EXPECT_EQ(bench.items("lstBadSpTitles"),
              (QStringList{"Hello - German", "Hello - French", "Bye - English", "Bye - French"}));
    EXPECT_EQ(bench.items("lstProblems"),
              QStringList("Cannot find file " + bench.scratch.path("src/gone.mp3")));
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

    // A missing pair only warns, as do tracks and files that play nothing.
    bench.open(bench.tourFile);
    bench.scratch.write("src/hello.mp3", "");
    bench.current.lstMuTrack[0].append("01 one");
    bench.checkAgain();
    EXPECT_TRUE(bench.isShown("fraSilentTracks") && !bench.isEnabled("buttGiveFiles"));
    bench.current.TrackTable[3].itemName = "one";  // the first is speech
    bench.checkAgain();
    EXPECT_EQ(bench.items("lstSilentTracks"), (QStringList{"L / two", "L / 01 one"}));
    EXPECT_EQ(bench.items("lstEmptyFiles"), QStringList(bench.scratch.path("src/hello.mp3")));
    bench.current.unsavedChanges = false;
    bench.click("buttGiveFiles");
    EXPECT_EQ(bench.items("lstSilentTracks"), QStringList("L / two"));
    EXPECT_TRUE(bench.window->isWindowModified());
    bench.current.lstSpTitles.append("Bye");
    addSpeech(bench.current, "Bye", "German", bench.scratch.path("src/hello.mp3"));
    bench.checkAgain();
    EXPECT_EQ(bench.verdict("crcSpTitleCheck"), Verdict::Yellow);
    EXPECT_TRUE(bench.isEnabled("buttCreateCard"));
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
    EXPECT_FALSE(bench.isEnabled("buttUpdateFirmware")) << "no card was seen yet";
    bench.open(bench.tourFile);
    bench.showPage("Create Card");
    EXPECT_EQ(bench.text("lblCFCardBigEnough"), "CF card too small - delete tracks");
    EXPECT_FALSE(bench.isEnabled("buttCreateCard"));
}

TEST(CreateCardPage, OnlyRemovableDrivesAreTaken) {
    PageBench bench;
    const QString before = bench.current.cfDrive;
    for (const auto type : {DriveType::Fixed, DriveType::Network, DriveType::CdRom,
                            DriveType::RamDisk, DriveType::Unknown}) {
        bench.drives.driveType = type;
        bench.browse("buttSelectCF", "/media/other");
        EXPECT_EQ(bench.current.cfDrive, before);
        EXPECT_EQ(bench.prompts.offered, QStringList(before));
        EXPECT_TRUE(bench.prompts.takeTexts().value(0).startsWith("Sorry, that is a"));
    }
    bench.drives.driveType = DriveType::Removable;
    bench.browse("buttSelectCF", "");
    EXPECT_EQ(bench.current.cfDrive, before) << "cancelled";
    bench.drives.isReady = false;
    bench.browse("buttSelectCF", "/media/other");
    EXPECT_EQ(bench.current.cfDrive, "/media/other/");
    EXPECT_EQ(bench.text("lblCFCardPresent"), "CF Card not inserted");
    EXPECT_TRUE(bench.prompts.shown.isEmpty());
}

TEST(DriveDialog, OffersTheCardThatIsMeant) {
    const QList<Volume> others = {{"/", "disk", DriveType::Fixed, 9, 1},
                                  {"/empty", "e", DriveType::Removable, -1, -1, false},
                                  {"/net", "n", DriveType::Network}};
    const Volume big{"/big", "b", DriveType::Removable, 64, 1};
    const Volume small{"/cf", "c", DriveType::Removable, 2, 1};
    const struct {
        QList<Volume> volumes;
        QString current, roots, chosen;
    } cases[] = {{others, "/gone", "/empty /net /", ""},
                 {others + QList{big}, "/gone", "/big /empty /net /", "/big"},
                 {others + QList{big, small}, "", "/cf /big /empty /net /", ""},
                 {others + QList{big, small}, "/big", "/cf /big /empty /net /", "/big"}};
    for (const auto& [volumes, current, roots, chosen] : cases) {
        FakeDrives drives;
        drives.list = volumes;
        DriveDialog dialog(drives, current);
        dialog.show();
        auto* list = dialog.findChild<QTreeWidget*>("lstDrives");
        QStringList shown;
        for (int row = 0; row < list->topLevelItemCount(); ++row)
            shown.append(list->topLevelItem(row)->text(0));
        EXPECT_EQ(shown.join(' '), roots);
        QTest::keyClick(list, Qt::Key_Return);
        EXPECT_EQ(dialog.selectedRoot(), chosen);
        EXPECT_EQ(dialog.isVisible(), chosen.isEmpty()) << "Enter without a selection";
    }
}

TEST(CreateCardPage, ACardIsCreated) {
    PageBench bench;
    QList<int> bar;
    bench.files.onOperation = [&] {
        if (bench.files.operations.last().startsWith("create 000") && bench.isShown("Bar1") &&
            bench.isShown("lblCopyProgress") && bench.window->isWindowModified())
            bar.append(bench.find<QProgressBar>("Bar1")->value());
    };
    bench.prompts.answers = {true};
    bench.click("buttCreateCard");
    EXPECT_EQ(bench.prompts.takeTexts(),
              (QStringList{EraseQuestion, "Card successfully created!"}));
    EXPECT_EQ(bar.mid(0, 3), (QList<int>{1, 2, 3}));
    EXPECT_EQ(bench.find<QProgressBar>("Bar1")->maximum(), 4);
    EXPECT_FALSE(bench.isShown("Bar1"));
    EXPECT_FALSE(bench.current.unsavedChanges);
    EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
    EXPECT_FALSE(QFile::exists(bench.scratch.path("app/files/tmp.bin")));

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
    EXPECT_FALSE(bench.isShown("fraUpdateBegun"));
    bench.prompts.answers = {false, false, true};
    bench.click("buttCreateXD3");
    EXPECT_TRUE(bench.isShown("fraUpdateBegun"));
    bench.click("buttCreateCard");
    EXPECT_EQ(bench.prompts.takeTexts(), (QStringList{UpdateQuestion, UpdateQuestion}));
    EXPECT_TRUE(bench.card().isEmpty());
    EXPECT_TRUE(bench.current.unsavedChanges);
    bench.click("buttCreateCard");  // an update again: this card holds no music, and is left alone
    EXPECT_TRUE(bench.prompts.takeTexts()[1].contains("create the card anew."));
    const auto expectWholeCreation = [&] {
        EXPECT_FALSE(bench.isShown("fraUpdateBegun"));
        bench.prompts.answers = {false};
        bench.click("buttCreateCard");
        EXPECT_EQ(bench.prompts.takeTexts(), QStringList(EraseQuestion));
    };
    expectWholeCreation();  // which can be done now
    for (const bool byNew : {false, true}) {
        bench.prompts.answers = {false};
        bench.click("buttCreateXD3");
        bench.open(bench.tourFile);
        bench.showPage("Create Card");
        EXPECT_TRUE(bench.isShown("fraUpdateBegun")) << "Open leaves it";
        bench.prompts.answers = {true};
        if (byNew) {
            bench.choose("mnuFileNew");
            bench.open(bench.tourFile);
        } else {
            bench.click("buttEndUpdate");
        }
        bench.prompts.takeTexts();
        expectWholeCreation();
    }
    // The project that the card itself holds is no project to update it from.
    bench.prompts.answers = {true, true};
    bench.click("buttCreateCard");
    bench.open(bench.scratch.path("card/0000.crd2"));
    bench.click("buttCreateXD3");
    EXPECT_TRUE(bench.prompts.takeTexts().join(QChar(32)).contains("to another folder first"));
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
            bench.prompts.answers = {stop};
            bench.prompts.paths = {""};
            for (qsizetype i = 0; stop && i < extraAnswers.size(); ++i)
                bench.prompts.answers.append(false);
            bench.createCardAnd([&, act = act] { act(bench); });
            const QStringList texts = bench.prompts.takeTexts();
            EXPECT_EQ(texts.value(1), StopQuestion);
            if (!stop) {
                EXPECT_EQ(texts.value(2), "Card successfully created!");
                EXPECT_TRUE(verifyCard(bench.files, bench.job.root).isGood());
                continue;
            }
            EXPECT_TRUE(texts.value(2).startsWith("Error # 538 was generated by Tessaly\r"));
            EXPECT_EQ(texts.value(3), "Card has NOT been created");
            for (const QString& question : extraAnswers)
                EXPECT_TRUE(texts.last().contains(question)) << texts.last().toStdString();
            EXPECT_TRUE(bench.window->isVisible());
        }
    }
}

TEST(CreateCardPage, OtherHandlersLeaveARunAlone) {
    PageBench bench;
    bench.createCardAnd([&] {
        QFile::remove(bench.scratch.path("src/first.mp3"));  // the checks would block now
        bench.checkAgain();
        bench.browse("buttSelectCF", "/media/other/");
        bench.find<QTabWidget>("Tabs")->setCurrentIndex(0);
        bench.showPage("Create Card");
        EXPECT_TRUE(bench.isShown("Bar1") && bench.isShown("lblCopyProgress"));
        EXPECT_EQ(bench.verdict("crcSelectCF"), Verdict::Green);
    });
    EXPECT_EQ(bench.prompts.takeTexts().last(), "Card successfully created!");
    EXPECT_EQ(bench.card()["0003.mp3"], "222");
    EXPECT_EQ(bench.text("lblSelectCF"), "CF Card Drive is /media/other/") << "checked afterwards";
    EXPECT_FALSE(bench.isEnabled("buttCreateCard"));
}

TEST(CreateCardPage, FirmwareAloneIsUpdatedAfterAQuestion) {
    PageBench bench;
    const QByteArray own = bench.scratch.read("app/firmware/0000.hex");
    // Updates a card with that firmware: is it taken over, and what is said last?
    const auto update = [&](const QByteArray& before, QList<bool> answers, const QString& said) {
        SCOPED_TRACE(said.toStdString());
        if (!before.isEmpty())
            bench.scratch.write("card/0000.hex", before);
        bench.prompts.answers = answers;
        bench.click("buttUpdateFirmware");
        EXPECT_TRUE(bench.prompts.answers.isEmpty());
        EXPECT_TRUE(bench.prompts.takeTexts().last().contains(said));
        const QByteArray after = bench.card().value("0000.hex");
        EXPECT_TRUE(after == before || after == own);
        return after != before;
    };
    EXPECT_FALSE(update({}, {}, "Card does not have a valid TRL740 format."));
    EXPECT_FALSE(update(own, {}, "Your card already contains TRL740 firmware version 4011"));
    EXPECT_FALSE(update(":05555", {false}, "Do you really want to downgrade?"));
    // The drive of the project may be another one today.
    bench.drives.driveType = DriveType::Fixed;
    EXPECT_FALSE(update(":00001", {}, "is a Fixed drive"));
    bench.drives.driveType = DriveType::Removable;
    // A card that is exchanged while the question stands is not the one that was compared.
    bench.prompts.onShown = [&](const auto&) { bench.drives.inserted = "card B"; };
    EXPECT_FALSE(update(":00001", {true}, "no longer there or was changed"));
    bench.prompts.onShown = [](const auto&) {};
    EXPECT_TRUE(update(":00001", {true}, "Card successfully updated."));

    // The stand-in is announced and goes onto no card by itself.
    bench.scratch.write("app/firmware/0000.hex", ":00000001FF\r\n");
    bench.checkAgain();
    EXPECT_TRUE(bench.isShown("lblFirmwareStandIn"));
    EXPECT_EQ(bench.verdict("crcFirmware"), Verdict::Yellow);
    EXPECT_FALSE(update(":00001", {}, "holds no firmware data"));
}

}  // namespace tessaly
