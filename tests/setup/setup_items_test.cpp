// SPDX-License-Identifier: GPL-3.0-or-later
// tests/app/setup_pages_test.cpp clicks through these; here is what no click shows.
#include "setup/setup_items.h"

#include "support/projects.h"
#include "support/scratch_folder.h"

namespace tessaly {

using namespace test;

TEST(DefaultLanguages, AreKeptWhenThePageIsShownAgain) {
    Project project;
    project.lstLangs = {"E", "G", "F"};
    setDefaultLanguages(project, {project.lstLangs, {true, false, false}});
    setDefaultLanguages(project, {project.lstLangs, {false, true, true}});
    const struct {
        const char *what, *languages, *selected, *table;
    } cases[] = {
        {"nothing changed", "E G F", "G F", "G F"}, {"added", "E G F x", "G F", "G F"},
        {"moved", "F E G", "F G", "F G"},           {"deleted", "E G x", "G", "G"},
        {"all defaults deleted", "E", "", "G"},     {"back again", "E G", "G", "G"},
        {"twice in a file", "E G", "G", "G"},
    };
    for (const auto& [what, languages, selected, table] : cases) {
        if (what == QString("twice in a file"))
            project.DefaultLanguageTable.append(project.DefaultLanguageTable.last());
        const auto before = project.DefaultLanguageTable;
        project.lstLangs = QString(languages).split(' ');
        const DefaultLanguageList list = showDefaultLanguages(project);
        QStringList shown;
        for (qsizetype row = 0; row < list.items.size(); ++row)
            if (list.selected[row])
                shown.append(list.items[row]);
        Project expected;
        for (const QString& language : QString(table).split(' '))
            addDefaultLanguage(expected, language);
        EXPECT_EQ(list.items, project.lstLangs) << what;
        EXPECT_EQ(shown.join(' '), selected) << what;
        EXPECT_EQ(project.DefaultLanguageTable, expected.DefaultLanguageTable) << what;
        EXPECT_EQ(project.DefaultLanguageCopy, before) << what;
    }
    EXPECT_FALSE(project.unsavedChanges) << "these do not mark the project";
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
