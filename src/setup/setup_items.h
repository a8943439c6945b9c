// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <array>
#include <optional>

#include "model/project.h"

// What applies to the whole card: title, default languages, chime, and the player's own words. All
// of it sets `unsavedChanges`, but the default languages.

namespace tessaly {

/// A title line got a text, by typing or pasting (see model/display_text.h for what may come in).
/// `line` is &Project::txtCardTitle1 or &Project::txtCardTitle2.
void setCardTitle(Project& project, QString Project::*line, const QString& text);

/// A key was typed into a title line, be it one that the line then discards.
void typeInCardTitle(Project& project);

/// What the multi-select list lstDefaultLangs shows.
struct DefaultLanguageList {
    QStringList items;
    QList<bool> selected;  ///< one an item
};

/// The list as the Setup page has to show it: every language of the project, those selected that
/// the table holds. To be called when the page comes to the front and after New and Open, before a
/// click can write back an older list. Keeps the table as it was in `DefaultLanguageCopy` and, if
/// any language is selected, takes those out of it that the project no longer has.
DefaultLanguageList showDefaultLanguages(Project& project);

/// A click in the list: rebuilds `DefaultLanguageTable` from what is selected now.
void setDefaultLanguages(Project& project, const DefaultLanguageList& list);

/// Which chime controls can be used.
struct ChimeControls {
    bool file = false;        ///< its name and the button beside it: the internal chime's
    bool repetition = false;  ///< always or once: both chimes have it

    bool operator==(const ChimeControls&) const = default;
};

ChimeControls chimeControls(const Project& project);

/// One of the five option buttons was clicked; `option` is a member of `project`.
void clickChimeOption(Project& project, bool Project::*option);

/// buttGetChimeFile: takes over the file that the operator chose; without one the old stays. The
/// summary is to be computed anew after a choice.
void chooseChimeFile(Project& project, const std::optional<QString>& file);

/// The operator changed the file name by hand.
void setChimeFileName(Project& project, const QString& text);

/// The texts in the boxes txtSystemText(0) to (17) of the window "Change System Text": its own,
/// which only Save and Restore put into the project.
using SystemTextBoxes = std::array<QString, SystemTextsUsed>;

/// The boxes as the project has them: when the window is made and whenever New or Open replaced the
/// project. No edit.
SystemTextBoxes systemTextBoxes(const Project& project);

/// buttAdvancedSettings shows the window as it was hidden.
void openSystemTexts(Project& project);

/// buttSystemTextSave: the boxes go into the project; the window is to be hidden.
void saveSystemTexts(Project& project, const SystemTextBoxes& boxes);

/// buttSystemTextCancel: the window is to be hidden. The boxes keep their texts, for the next Save
/// to store.
void cancelSystemTexts(Project& project);

/// buttSystemTextRestore: the player's own words go into the project, without Save, and into the
/// boxes, which are returned; the window stays.
SystemTextBoxes restoreOriginalTexts(Project& project);

}  // namespace tessaly
