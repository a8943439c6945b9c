// SPDX-License-Identifier: GPL-3.0-or-later
#include "setup/setup_items.h"

#include <QDir>
#include <QSet>

namespace tessaly {

// ---- card title --------------------------------------------------------------------------------

void setCardTitle(Project& project, QString Project::*line, const QString& text) {
    Q_ASSERT(line == &Project::txtCardTitle1 || line == &Project::txtCardTitle2);
    project.unsavedChanges = true;
    project.*line = text;
}

void typeInCardTitle(Project& project) {
    project.unsavedChanges = true;
}

// ---- default languages -------------------------------------------------------------------------

DefaultLanguageList showDefaultLanguages(Project& project) {
    project.DefaultLanguageCopy = project.DefaultLanguageTable;
    QSet<QString> defaults;
    for (qsizetype i = 1; i < project.DefaultLanguageCopy.size(); ++i)
        defaults.insert(project.DefaultLanguageCopy[i].groupName.text());
    DefaultLanguageList list;
    list.items = project.lstLangs;
    for (const QString& language : list.items)
        list.selected.append(defaults.contains(language));
    // Selecting a line is a click in the list.
    if (list.selected.contains(true))
        setDefaultLanguages(project, list);
    return list;
}

void setDefaultLanguages(Project& project, const DefaultLanguageList& list) {
    Q_ASSERT(list.selected.size() == list.items.size());
    project.DefaultLanguageTable = {TrackRecord{}};
    for (qsizetype i = 0; i < list.items.size(); ++i) {
        if (!list.selected[i])
            continue;
        TrackRecord record;
        record.kind = kind::DefaultLanguage;
        record.groupName = list.items[i];
        project.DefaultLanguageTable.append(record);
    }
}

// ---- chime -------------------------------------------------------------------------------------

ChimeControls chimeControls(const Project& project) {
    return {.file = project.buttPlayIntChime,
            .repetition = project.buttPlayIntChime || project.buttPlayExtChime};
}

void clickChimeOption(Project& project, bool Project::*option) {
    project.unsavedChanges = true;
    setChimeOption(project, option, true);
}

void chooseChimeFile(Project& project, const std::optional<QString>& file) {
    project.unsavedChanges = true;
    if (file)
        project.txtChimeFileName = QDir::toNativeSeparators(*file);
}

void setChimeFileName(Project& project, const QString& text) {
    project.unsavedChanges = true;
    project.txtChimeFileName = text;
}

// ---- system texts ------------------------------------------------------------------------------

SystemTextBoxes systemTextBoxes(const Project& project) {
    SystemTextBoxes boxes;
    for (int slot = 0; slot < SystemTextsUsed; ++slot)
        boxes[size_t(slot)] = systemText(project, slot);
    return boxes;
}

void openSystemTexts(Project& project) {
    project.unsavedChanges = true;
}

void saveSystemTexts(Project& project, const SystemTextBoxes& boxes) {
    project.unsavedChanges = true;
    for (int slot = 0; slot < SystemTextsUsed; ++slot) {
        TrackRecord& record = project.SystemTextTable[size_t(slot)];
        record.kind = kind::SystemText;
        record.groupName = boxes[size_t(slot)];
        record.itemName = qint16(slot);
    }
}

void cancelSystemTexts(Project& project) {
    project.unsavedChanges = true;
}

SystemTextBoxes restoreOriginalTexts(Project& project) {
    project.unsavedChanges = true;
    restoreSystemTexts(project);
    return systemTextBoxes(project);
}

}  // namespace tessaly
