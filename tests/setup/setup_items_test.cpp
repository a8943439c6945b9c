#include <functional>

#include "image/config_image.h"
#include "image/config_image_reader.h"
#include "model/card_file.h"
#include "setup/card_title.h"
#include "setup/chime.h"
#include "setup/default_languages.h"
#include "setup/system_texts.h"
#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

namespace {

QStringList defaultsOf(const QList<TrackRecord>& table) {
    QStringList languages;
    EXPECT_EQ(table.value(0), TrackRecord{});
    for (qsizetype i = 1; i < table.size(); ++i)
        languages.append(table[i].groupName.text());
    return languages;
}

}  // namespace

TEST(DefaultLanguages, FollowTheSelectionInListOrder) {
    Project project;
    project.lstLangs = {"English", "German", "French"};
    setDefaultLanguages(project, {project.lstLangs, {true, false, true}});
    EXPECT_EQ(defaultsOf(project.DefaultLanguageTable), QStringList({"English", "French"}));
    TrackRecord expected;
    expected.kind = "lstDefaultLangs";
    expected.groupName = "French";
    EXPECT_EQ(project.DefaultLanguageTable[2], expected);
    EXPECT_EQ(decodeConfigImage(BuildConfigImage(project, 1)).defaultLanguageMask, 0b101);
    setDefaultLanguages(project, {project.lstLangs, {false, false, false}});
    EXPECT_EQ(defaultsOf(project.DefaultLanguageTable), QStringList());
}

TEST(DefaultLanguages, AreKeptWhenThePageIsShownAgain) {
    Project project;
    project.lstLangs = {"English", "German", "French"};
    setDefaultLanguages(project, {project.lstLangs, {false, true, true}});
    project.unsavedChanges = false;
    const struct {
        const char* edit;
        QStringList languages;
        QList<bool> selected;
        QStringList table;
    } cases[] = {
        {"none", {"English", "German", "French"}, {false, true, true}, {"German", "French"}},
        {"added",
         {"English", "German", "French", "Danish"},
         {false, true, true, false},
         {"German", "French"}},
        {"moved",
         {"French", "English", "German", "Danish"},
         {true, false, true, false},
         {"French", "German"}},
        {"deleted", {"English", "German", "Danish"}, {false, true, false}, {"German"}},
        {"all defaults deleted", {"English"}, {false}, {"German"}},
        {"back again", {"English", "German"}, {false, true}, {"German"}},
    };
    for (const auto& [edit, languages, selected, table] : cases) {
        const auto before = project.DefaultLanguageTable;
        project.lstLangs = languages;
        EXPECT_EQ(showDefaultLanguages(project), (DefaultLanguageList{languages, selected}))
            << edit;
        EXPECT_EQ(defaultsOf(project.DefaultLanguageTable), table) << edit;
        EXPECT_EQ(project.DefaultLanguageCopy, before) << edit;
    }
    EXPECT_FALSE(project.unsavedChanges);
    // A name that came twice from a file would count twice in the image.
    project.DefaultLanguageTable.append(project.DefaultLanguageTable.last());
    showDefaultLanguages(project);
    EXPECT_EQ(defaultsOf(project.DefaultLanguageTable), QStringList("German"));
}

TEST(Chime, ControlsFollowTheOption) {
    Project project;
    EXPECT_TRUE(project.buttDisableChime && project.buttChimeAlways);
    EXPECT_EQ(chimeControls(project), ChimeControls{});
    const ChimeControls repeats{.buttChimeAlways = true, .buttChimeOnce = true};
    ChimeControls all = repeats;
    all.Label24 = all.txtChimeFileName = all.buttGetChimeFile = true;
    clickChimeOption(project, &Project::buttPlayIntChime);
    chooseChimeFile(project, "C:\\gong.mp3");
    EXPECT_EQ(chimeControls(project), all);
    clickChimeOption(project, &Project::buttPlayExtChime);
    clickChimeOption(project, &Project::buttChimeOnce);
    EXPECT_EQ(chimeControls(project), repeats);
    EXPECT_FALSE(project.buttPlayIntChime || project.buttDisableChime || project.buttChimeAlways);
    chooseChimeFile(project, std::nullopt);
    EXPECT_EQ(project.txtChimeFileName, "C:\\gong.mp3");
    clickChimeOption(project, &Project::buttDisableChime);
    EXPECT_EQ(chimeControls(project), ChimeControls{});
}

TEST(SystemTexts, BoxesAndProjectGoTheirOwnWays) {
    Project project;
    SystemTextBoxes boxes = systemTextBoxes(project);
    EXPECT_EQ(boxes[15], " (Hold to Stop) ");
    boxes[2] = "(Sprachen)";
    cancelSystemTexts(project);
    EXPECT_EQ(systemText(project, 2), "(Language Menu)");
    boxes[17] = "(Bitte warten...";
    project.SystemTextTable[2] = {};
    saveSystemTexts(project, boxes);  // what Cancel left in the boxes goes along
    EXPECT_EQ(systemTextBoxes(project), boxes);
    EXPECT_EQ(project.SystemTextTable[2].itemName, Variant(qint16(2)));

    Project read;
    reset(read);
    applyRecords(parseRecords(encodeProject(project)).records, read);
    EXPECT_EQ(systemTextBoxes(read), boxes);
    EXPECT_EQ(decodeConfigImage(BuildConfigImage(read, 1)).displayTexts[1], "(Sprachen)");

    boxes[5] = "edited";
    restoreOriginalTexts(read, boxes);  // without Save
    EXPECT_EQ(boxes, systemTextBoxes(Project()));
    EXPECT_EQ(systemTextBoxes(read), boxes);
}

TEST(SetupItems, EachHandlerMarksTheProjectAsItDoes) {
    Project project;
    project.lstLangs = {"English"};
    SystemTextBoxes boxes = systemTextBoxes(project);
    const auto line = &Project::txtCardTitle1;
    const struct {
        const char* handler;
        std::function<void(Project&)> run;
        bool marks;
    } cases[] = {
        {"title", [&](Project& p) { setCardTitle(p, line, "0123456789abcdef"); }, true},
        {"a key in a title", [](Project& p) { typeInCardTitle(p); }, true},
        {"default language",
         [](Project& p) {
             setDefaultLanguages(p, {{"English"}, {true}});
         },
         false},
        {"the page shown", [](Project& p) { showDefaultLanguages(p); }, false},
        {"chime option", [](Project& p) { clickChimeOption(p, &Project::buttChimeAlways); }, true},
        {"Browse cancelled", [](Project& p) { chooseChimeFile(p, std::nullopt); }, true},
        {"chime file", [](Project& p) { setChimeFileName(p, "a.mp3"); }, true},
        {"texts shown", [](Project& p) { openSystemTexts(p); }, true},
        {"texts first filled", [](Project& p) { systemTextBoxes(p); }, false},
        {"texts saved", [&](Project& p) { saveSystemTexts(p, boxes); }, true},
        {"texts cancelled", [](Project& p) { cancelSystemTexts(p); }, true},
        {"texts restored", [&](Project& p) { restoreOriginalTexts(p, boxes); }, true},
    };
    for (const auto& [handler, run, marks] : cases) {
        project.unsavedChanges = false;
        run(project);
        EXPECT_EQ(project.unsavedChanges, marks) << handler;
    }
    EXPECT_EQ(project.txtCardTitle1, "0123456789abcdef");
    EXPECT_TRUE(project.txtCardTitle2.isEmpty());
}

}  // namespace tessaly
