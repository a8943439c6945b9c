// tests/app/setup_pages_test.cpp clicks through these; here is what no click shows.
#include "setup/setup_items.h"

#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(DefaultLanguages, AreKeptWhenThePageIsShownAgain) {
    Project project;
    project.lstLangs = {"English", "German", "French"};
    setDefaultLanguages(project, {project.lstLangs, {true, false, false}});
    setDefaultLanguages(project, {project.lstLangs, {false, true, true}});
    const auto expectTable = [&](const QStringList& languages, const char* what) {
        Project expected;
        for (const QString& language : languages)
            addDefaultLanguage(expected, language);
        EXPECT_EQ(project.DefaultLanguageTable, expected.DefaultLanguageTable) << what;
    };
    const struct {
        const char* edit;
        QStringList languages;
        QList<bool> selected;
        QStringList table;
    } cases[] = {
        {"none", {"English", "German", "French"}, {false, true, true}, {"German", "French"}},
        {"added",
         {"English", "German", "French", "x"},
         {false, true, true, false},
         {"German", "French"}},
        {"moved", {"French", "English", "German"}, {true, false, true}, {"French", "German"}},
        {"deleted", {"English", "German", "x"}, {false, true, false}, {"German"}},
        {"all defaults deleted", {"English"}, {false}, {"German"}},
        {"back again", {"English", "German"}, {false, true}, {"German"}},
    };
    for (const auto& [edit, languages, selected, table] : cases) {
        const auto before = project.DefaultLanguageTable;
        project.lstLangs = languages;
        EXPECT_EQ(showDefaultLanguages(project), (DefaultLanguageList{languages, selected}))
            << edit;
        expectTable(table, edit);
        EXPECT_EQ(project.DefaultLanguageCopy, before) << edit;
    }
    // A name that came twice from a file is one default language.
    project.DefaultLanguageTable.append(project.DefaultLanguageTable.last());
    showDefaultLanguages(project);
    expectTable({"German"}, "twice");
    EXPECT_FALSE(project.unsavedChanges) << "these do not mark the project";
}

TEST(Chime, ControlsFollowTheOption) {
    Project project;
    const std::pair<bool Project::*, ChimeControls> cases[] = {
        {&Project::buttPlayIntChime, {.file = true, .repetition = true}},
        {&Project::buttPlayExtChime, {.file = false, .repetition = true}},
        {&Project::buttChimeOnce, {.file = false, .repetition = true}},
        {&Project::buttDisableChime, {}}};
    for (const auto& [option, controls] : cases) {
        clickChimeOption(project, option);
        EXPECT_EQ(chimeControls(project), controls);
        EXPECT_TRUE(project.*option);
        EXPECT_EQ(inconsistencies(project), QStringList());
    }
}

TEST(SystemTexts, ASlotThatAFileLeftBlankGetsItsNumber) {
    Project project;
    SystemTextBoxes boxes = systemTextBoxes(project);
    boxes[2] = "(Sprachen)";
    project.SystemTextTable[2] = {};
    saveSystemTexts(project, boxes);
    EXPECT_EQ(systemTextBoxes(project), boxes);
    EXPECT_EQ(project.SystemTextTable[2].itemName, Variant(qint16(2)));
}

}  // namespace tessaly
