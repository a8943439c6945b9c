// Triggers, attributes, setup and system texts through the real window.
#include <QButtonGroup>
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

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

    /// The attribute controls that are enabled.
    QString controls() const {
        QStringList names;
        const std::pair<const char*, const char*> all[] = {{"buttPlayLoudVolume", "volume"},
                                                           {"buttCancelOnInt", "interrupt"},
                                                           {"chkEndlessLoop", "loop"},
                                                           {"chkPowerUp", "powerup"}};
        for (const auto& [control, name] : all)
            if (isEnabled(control))
                names.append(name);
        return names.join(' ');
    }
    /// Rows of the triggers: checked (x), box enabled (b), View enabled (v).
    QString rows() const {
        QStringList states;
        for (const char* slot : {"0", "1", "2"}) {
            QString state;
            if (isChecked(QString("buttTrig_") + slot))
                state += 'x';
            if (isEnabled(QString("buttTrig_") + slot))
                state += 'b';
            if (isEnabled(QString("buttViewTrig_") + slot))
                state += 'v';
            states.append(state);
        }
        return states.join('/');
    }
};

}  // namespace

TEST(TriggersPage, EverySelectionHasItsControls) {
    SetupBench bench;
    bench.showPage("Triggers && Attributes");
    const struct {
        const char *mode, *left, *right;
        const char *controls, *rows;
    } cases[] = {
        {"buttTrigMusic", "<Continuous Mix>", nullptr, "powerup", "b/b/b"},
        {"buttTrigMusic", "L", nullptr, "", "//"},
        {"buttTrigMusic", "L", "<Play Full List>", "powerup", "b/b/b"},
        {"buttTrigMusic", "L", "two", "volume interrupt loop powerup", "b/b/b"},
        {"buttTrigSpeech", "Hello", nullptr, "volume interrupt powerup", "b/b/b"},
        {"buttTrigSpeech", "Bye", nullptr, "volume interrupt powerup", "b/b/b"},
    };
    for (const auto& [mode, left, right, controls, rows] : cases) {
        SCOPED_TRACE(std::string(left) + (right ? right : ""));
        bench.click(mode);
        bench.select("lstTrigLeft", left);
        if (right)
            bench.select("lstTrigRight", right);
        EXPECT_EQ(bench.controls(), controls);
        EXPECT_EQ(bench.rows(), rows);
    }
    EXPECT_FALSE(bench.find<QWidget>("lstTrigRight")->isVisible());
    EXPECT_EQ(bench.text("lblTrigSpTitles"), "Speech Titles");
    bench.click("buttTrigMusic");
    EXPECT_EQ(bench.text("lblTrigSpTitles"), "Music List Names");
    EXPECT_EQ(bench.selected("lstTrigLeft"), "<Continuous Mix>");
    EXPECT_TRUE(bench.items("lstTrigRight").isEmpty());
    EXPECT_FALSE(bench.current.unsavedChanges) << "looking is no edit";
}

TEST(TriggersPage, ASessionEndsInTheExpectedImage) {
    SetupBench bench;
    bench.showPage("Triggers && Attributes");
    bench.click("buttTrigSpeech");
    bench.select("lstTrigLeft", "Hello");
    bench.click("buttPlayLoudVolume");
    EXPECT_TRUE(bench.current.unsavedChanges);
    bench.click("buttCancelOnInt");
    bench.click("buttTrig_0");
    EXPECT_EQ(bench.rows(), "xb/b/b");
    EXPECT_EQ(bench.text("lblTrig_0"), "Trigger 1: Hello");
    bench.select("lstTrigLeft", "Bye");
    EXPECT_EQ(bench.rows(), "xv/b/b") << "another item's trigger is greyed, and can be viewed";
    EXPECT_FALSE(bench.isChecked("buttPlayLoudVolume"));

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
    EXPECT_EQ(bench.rows(), "xb/xv/xv");
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

    // Released from its own item, it is free for another.
    bench.showPage("Triggers && Attributes");
    bench.click("buttViewTrig_2");
    bench.click("buttTrig_2");
    EXPECT_EQ(bench.rows(), "xv/xv/b");
    EXPECT_EQ(bench.current.TriggerTable[2].itemName.text(), "<Play Full List>");
}

TEST(TriggersPage, ItemsThatAreGoneCanBeCleared) {
    SetupBench bench;
    TrackRecord& trigger = bench.current.TriggerTable[1];
    trigger.kind = "dtrig";
    trigger.sourcePath = "music";
    trigger.groupName = "Gone";
    trigger.itemName = "x";
    bench.current.PowerUpRecord = trigger;
    bench.current.PowerUpRecord.kind = "music";
    bench.showPage("Triggers && Attributes");
    EXPECT_TRUE(bench.text("lblTrig_1").contains("gone")) << bench.text("lblTrig_1").toStdString();
    bench.click("buttTrig_1");
    EXPECT_FALSE(isAssigned(bench.current.TriggerTable[1]));
    bench.click("buttClearPowerUp");
    EXPECT_FALSE(hasPowerUpItem(bench.current));
    EXPECT_FALSE(bench.find<QWidget>("buttClearPowerUp")->isVisible());
}

TEST(SetupPage, TitlesAreLimitedAndPreviewed) {
    SetupBench bench;
    bench.showPage("Setup Items");
    auto* line = bench.find<QLineEdit>("txtCardTitle1");
    auto* preview = bench.find<DisplayPreview>("previewTitle");
    QTest::keyClicks(line, "1234567890abcdef");
    EXPECT_EQ(bench.current.txtCardTitle1, "1234567890abcdef");
    EXPECT_EQ(bench.text("lblTitleLength1"), "16 / 16");
    bench.current.unsavedChanges = false;
    QTest::keyClicks(line, "g");
    EXPECT_EQ(bench.prompts.beeps, 1);
    EXPECT_TRUE(bench.current.unsavedChanges) << "a refused key marks the project, too";
    QTest::keyClick(line, Qt::Key_Backspace);
    EXPECT_EQ(bench.current.txtCardTitle1, "1234567890abcde");
    EXPECT_EQ(preview->line(0), "1234567890abcde");

    // A longer text from a file is kept and shown.
    bench.current.txtCardTitle2 = "a title of more than sixteen characters";
    bench.choose("mnuFileSave");
    bench.open(bench.tourFile);
    EXPECT_EQ(bench.find<QLineEdit>("txtCardTitle2")->text(), bench.current.txtCardTitle2);
}

TEST(SetupPage, DefaultLanguagesFollowTheProject) {
    SetupBench bench;
    const auto chosen = [&] {
        QStringList names;
        for (const TrackRecord& record : bench.current.DefaultLanguageTable.mid(1))
            names.append(record.groupName.text());
        return names;
    };
    const auto shown = [&] {
        QStringList names;
        for (const QListWidgetItem* item :
             bench.find<QListWidget>("lstDefaultLangs")->selectedItems())
            names.append(item->text());
        return names;
    };
    bench.showPage("Setup Items");
    EXPECT_EQ(bench.items("lstDefaultLangs"), (QStringList{"English", "German"}));
    bench.find<QListWidget>("lstDefaultLangs")->item(1)->setSelected(true);
    EXPECT_EQ(chosen(), QStringList("German"));
    EXPECT_FALSE(bench.current.unsavedChanges);

    bench.showPage("Speech Files");
    bench.select("lstLangs", "German");
    bench.prompts.inputs = {"Deutsch"};
    bench.click("buttEditLang");
    QTest::keyClicks(bench.find<QLineEdit>("txtNewLang"), "Danish");
    bench.click("buttAddLang");
    bench.showPage("Setup Items");
    EXPECT_EQ(bench.items("lstDefaultLangs"), (QStringList{"English", "Deutsch", "Danish"}));
    EXPECT_EQ(shown(), QStringList("Deutsch"));
    bench.choose("mnuFileSave");
    bench.open("");
    EXPECT_TRUE(bench.items("lstDefaultLangs").isEmpty());
    bench.open(bench.tourFile);
    EXPECT_EQ(shown(), QStringList("Deutsch"));
}

TEST(SetupPage, ChimeControlsFollowTheOption) {
    SetupBench bench;
    bench.showPage("Setup Items");
    const struct {
        const char* option;
        bool file, repeat;
    } cases[] = {{"buttDisableChime", false, false},
                 {"buttPlayExtChime", false, true},
                 {"buttPlayIntChime", true, true}};
    for (const auto& [option, file, repeat] : cases) {
        bench.click(option);
        for (const char* control : {"Label24", "txtChimeFileName", "buttGetChimeFile"})
            EXPECT_EQ(bench.isEnabled(control), file) << option << ' ' << control;
        for (const char* control : {"buttChimeAlways", "buttChimeOnce"})
            EXPECT_EQ(bench.isEnabled(control), repeat) << option << ' ' << control;
    }
    const QString chime = bench.scratch.path("chime.mp3");
    bench.prompts.paths = {chime, ""};
    bench.click("buttGetChimeFile");
    EXPECT_EQ(bench.prompts.files.last().folder, bench.scratch.path("app/Chimes"));
    bench.click("buttGetChimeFile");  // cancelled
    EXPECT_EQ(bench.current.txtChimeFileName, chime);
    bench.click("buttChimeOnce");
    EXPECT_TRUE(bench.current.buttChimeOnce && !bench.current.buttChimeAlways);
    bench.click("buttPlayExtChime");
    EXPECT_EQ(bench.find<QLineEdit>("txtChimeFileName")->text(), chime) << "the name stays";
}

TEST(SystemTextWindow, KeepsItsTextsThroughEverything) {
    SetupBench bench;
    bench.showPage("Setup Items");
    bench.click("buttAdvancedSettings");
    auto* window = bench.find<SystemTextWindow>("frmSystemText");
    EXPECT_TRUE(window->isVisible());
    EXPECT_FALSE(window->isModal());
    auto* box = window->findChild<QLineEdit*>("txtSystemText_3");
    EXPECT_EQ(window->findChild<QLabel*>("lblSystemText_15")->text(), " (Hold to Stop) ");
    EXPECT_EQ(box->text(), "Continuous Mix");

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
    QTest::keyClicks(window->findChild<QLineEdit*>("txtSystemText_0"), "x");
    EXPECT_EQ(bench.prompts.beeps, 1);
    EXPECT_EQ(window->findChild<QLabel*>("lblLength")->text(), "16 / 16");

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
