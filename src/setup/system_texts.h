#pragma once

#include <QString>
#include <array>

#include "model/project.h"

// The window "Change System Text": its text boxes hold their own texts, which only Save and Restore
// put into the project.

namespace tessaly {

/// The texts in the boxes txtSystemText(0) to (17).
using SystemTextBoxes = std::array<QString, SystemTextsUsed>;

/// The boxes as the project has them: when the window is made and whenever New or Open replaced the
/// project. No edit.
SystemTextBoxes systemTextBoxes(const Project& project);

/// buttAdvancedSettings shows the window as it was hidden. Sets `unsavedChanges`.
void openSystemTexts(Project& project);

/// buttSystemTextSave: the boxes go into the project; the window is to be hidden. Sets
/// `unsavedChanges`.
void saveSystemTexts(Project& project, const SystemTextBoxes& boxes);

/// buttSystemTextCancel: the window is to be hidden. The boxes keep their texts, for the next Save
/// to store. Sets `unsavedChanges`.
void cancelSystemTexts(Project& project);

/// buttSystemTextRestore: the player's own words go into the boxes and, without Save, into the
/// project; the window stays. Sets `unsavedChanges`.
void restoreOriginalTexts(Project& project, SystemTextBoxes& boxes);

}  // namespace tessaly
