// Triggers, attributes, setup and system texts through the real window.
#include <QLineEdit>

#include "app/display_preview.h"
#include "app/system_text_window.h"
#include "image/config_image.h"
#include "image/config_image_reader.h"
#include "support/window_bench.h"

namespace tessaly {

using namespace test;

namespace {

/// A window with list L (one, two), title Hello in English and German, and hands to work it with.
struct SetupBench : WindowBench {
    SetupBench() {
        addSpeech(project, "Hello", "German", scratch.path("src/hello.mp3"));
        addSpeech(project, "Bye", "German", scratch.path("src/hello.mp3"));
        saveProject(files, tourFile, project);
        start();
        open(tourFile);
    }
};

}  // namespace

// The random operator of reliability/monkey compares all controls with the core after every event.
TEST(TriggersPage, ASessionEndsInTheExpectedImage) {
    SetupBench bench;
    bench.showPage("Triggers && Attributes");
    bench.click("buttTrigSpeech");
    bench.select("lstTrigLeft", "Hello");
    bench.click("buttPlayLoudVolume");
    EXPECT_TRUE(bench.current.unsavedChanges);
    bench.click("buttCancelOnInt");
    bench.click("buttTrig_0");
    EXPECT_EQ(bench.text("lblTrig_0"), "Trigger 1: Hello");
    bench.select("lstTrigLeft", "Bye");
    EXPECT_FALSE(bench.isEnabled("buttTrig_0")) << "another item's trigger can be viewed only";

    bench.click("buttTrigMusic");
    bench.select("lstTrigLeft", "L");
    bench.select("lstTrigRight", "two");
    bench.current.unsavedChanges = false;
    bench.click("chkEndlessLoop");
    bench.click("chkPowerUp");
    EXPECT_FALSE(bench.current.unsavedChanges) << "these two do not mark the project";
    bench.click("buttTrig_1");
    bench.select("lstTrigRight", "<Play Full List>");
    EXPECT_FALSE(bench.isChecked("chkPowerUp"));
    bench.click("buttTrig_2");
    EXPECT_EQ(bench.text("lblTrig_2"), "Trigger 3: L / <Play Full List>");
    bench.current.unsavedChanges = false;
    bench.click("buttViewTrig_0");
    EXPECT_TRUE(bench.current.unsavedChanges) << "a view does";
    EXPECT_EQ(bench.selected("lstTrigLeft"), "Hello");
    EXPECT_TRUE(bench.isChecked("buttTrigSpeech") && bench.isChecked("buttPlayLoudVolume"));
    bench.click("buttViewTrig_1");
    EXPECT_EQ(bench.selected("lstTrigRight"), "two");
    EXPECT_TRUE(bench.isChecked("chkPowerUp") && bench.isChecked("chkEndlessLoop"));

    bench.choose("mnuFileSave");
    bench.open(bench.tourFile);
    const DecodedImage image = decodeConfigImage(BuildConfigImage(bench.current, 1));
    using Kind = DecodedReference::Kind;
    EXPECT_EQ(image.triggers[0], (DecodedReference{0xFE01, Kind::SpeechTitle, 0, 0, 1}));
    EXPECT_EQ(image.triggers[1], (DecodedReference{512 + 3, Kind::Track, 1, 1, 0}));
    EXPECT_EQ(image.triggers[2], (DecodedReference{512 + 1, Kind::WholeList, 1, 0, 0}));
    EXPECT_EQ(image.powerUp, image.triggers[1]);
    EXPECT_TRUE(image.lists[0].tracks[1].word.endlessLoop);
    for (const QList<DecodedWord>& language : image.speech) {
        EXPECT_TRUE(language[0].loudVolume && language[0].cancelOnInterrupt);
        EXPECT_FALSE(language[1].hasFile && language[1].loudVolume);
    }
}

TEST(TriggersPage, ItemsThatAreGoneCanBeCleared) {
    SetupBench bench;
    bench.current.TriggerTable[1] = makeRecord("dtrig", "x", "Gone", "music");
    bench.current.PowerUpRecord = makeRecord("music", "x", "Gone", {});
    bench.showPage("Triggers && Attributes");
    bench.click("buttTrig_1");
    EXPECT_FALSE(isAssigned(bench.current.TriggerTable[1]));
    bench.click("buttClearPowerUp");
    EXPECT_FALSE(hasPowerUpItem(bench.current));
    EXPECT_FALSE(bench.isShown("buttClearPowerUp"));
}

TEST(SetupPage, TitlesAreLimitedAndPreviewed) {
    SetupBench bench;
    bench.showPage("Setup Items");
    bench.type("txtCardTitle1", "1234567890abcdef");
    EXPECT_EQ(bench.current.txtCardTitle1, "1234567890abcdef");
    EXPECT_EQ(bench.text("lblTitleLength1"), "16 / 16");
    EXPECT_EQ(bench.find<DisplayPreview>("previewTitle")->line(0), "1234567890abcdef");
    bench.current.unsavedChanges = false;
    QTest::keyClicks(bench.find<QLineEdit>("txtCardTitle1"), "g");
    EXPECT_EQ(bench.prompts.beeps, 1);
    EXPECT_TRUE(bench.current.unsavedChanges) << "a refused key marks the project, too";

    // A longer text from a file is kept and shown.
    bench.current.txtCardTitle2 = "a title of more than sixteen characters";
    bench.choose("mnuFileSave");
    bench.open(bench.tourFile);
    EXPECT_EQ(bench.field("txtCardTitle2"), "a title of more than sixteen characters");
}

TEST(SetupPage, AChimesFileStaysWithTheProject) {
    SetupBench bench;
    bench.showPage("Setup Items");
    bench.click("buttPlayIntChime");
    const QString chime = bench.scratch.path("chime.mp3");
    bench.browse("buttGetChimeFile", chime);
    EXPECT_EQ(bench.prompts.files.last().folder, bench.scratch.path("app/Chimes"));
    bench.browse("buttGetChimeFile", "");  // cancelled
    bench.click("buttPlayExtChime");
    EXPECT_EQ(bench.current.txtChimeFileName, chime);
}

TEST(SetupPage, KeysStayWithinAChoice) {
    SetupBench bench;
    bench.current.buttChimeAlways = bench.current.buttChimeOnce = false;
    bench.choose("mnuFileSave");
    bench.open(bench.tourFile);
    bench.showPage("Setup Items");
    EXPECT_FALSE(bench.isChecked("buttChimeAlways") || bench.isChecked("buttChimeOnce"));
    bench.window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(bench.window.get()));
    bench.find<QWidget>("buttDisableChime")->setFocus();
    const auto press = [&](std::initializer_list<Qt::Key> keys) {
        for (const Qt::Key key : keys)
            QTest::keyClick(bench.window->windowHandle(), key);
        return QApplication::focusWidget()->objectName();
    };
    EXPECT_EQ(press({Qt::Key_Down, Qt::Key_Down}), "buttPlayExtChime");
    EXPECT_EQ(press({Qt::Key_Down}), "buttPlayExtChime") << "the last of its choice";
    EXPECT_FALSE(bench.current.buttChimeAlways || bench.current.buttChimeOnce);
    EXPECT_EQ(press({Qt::Key_Tab}).left(9), "buttChime");
    EXPECT_EQ(press({Qt::Key_Up, Qt::Key_Space, Qt::Key_Down}), "buttChimeOnce");
    bench.choose("mnuFileSave");
    Project saved;
    readProject(bench.files, bench.tourFile, saved);
    EXPECT_TRUE(saved.buttChimeOnce && saved.buttPlayExtChime);
    EXPECT_FALSE(saved.buttChimeAlways || saved.buttDisableChime || saved.buttPlayIntChime);
}

TEST(SystemTextWindow, KeepsItsTextsThroughEverything) {
    SetupBench bench;
    bench.showPage("Setup Items");
    bench.click("buttAdvancedSettings");
    auto* window = bench.find<SystemTextWindow>("frmSystemText");
    auto* box = bench.find<QLineEdit>("txtSystemText_3");
    EXPECT_TRUE(window->isVisible() && !window->isModal());
    box->setText("Alles");
    bench.click("buttSystemTextCancel");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(systemText(bench.current, 3), "Continuous Mix");
    bench.click("buttAdvancedSettings");
    EXPECT_EQ(box->text(), "Alles") << "Cancel leaves the edit in the box";
    bench.click("buttSystemTextSave");
    EXPECT_EQ(systemText(bench.current, 3), "Alles");
    EXPECT_FALSE(window->isVisible());

    bench.click("buttAdvancedSettings");
    bench.current.unsavedChanges = false;
    bench.click("buttSystemTextRestore");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(systemText(bench.current, 3), "Continuous Mix") << "stored without Save";
    EXPECT_TRUE(bench.current.unsavedChanges);

    // Open and New bring their texts into the boxes, the window open or not.
    bench.project.SystemTextTable[3].groupName = "from a file";
    saveProject(bench.files, bench.tourFile, bench.project);
    bench.open(bench.tourFile);
    EXPECT_EQ(box->text(), "from a file");
    box->setText("not saved");
    bench.open("");  // cancelled: no file brought other texts
    EXPECT_EQ(box->text(), "not saved");
    bench.prompts.answers = {true};
    bench.choose("mnuFileNew");
    EXPECT_EQ(box->text(), "Continuous Mix");
}

}  // namespace tessaly
