#pragma once

#include <QString>
#include <optional>

#include "model/project.h"

namespace tessaly {

/// Which chime controls can be used.
struct ChimeControls {
    bool Label24 = false, txtChimeFileName = false, buttGetChimeFile = false;
    bool buttChimeAlways = false, buttChimeOnce = false;

    bool operator==(const ChimeControls&) const = default;
};

/// The file belongs to the internal chime, the repetition to both chimes.
ChimeControls chimeControls(const Project& project);

/// One of the five option buttons was clicked; `option` is a member of `project`. Sets
/// `unsavedChanges`.
void clickChimeOption(Project& project, bool Project::*option);

/// buttGetChimeFile: takes over the file that the operator chose; without one the old stays. Sets
/// `unsavedChanges`, also without one. The summary is to be computed anew after a choice.
void chooseChimeFile(Project& project, const std::optional<QString>& file);

/// The operator changed the file name by hand. Sets `unsavedChanges`.
void setChimeFileName(Project& project, const QString& text);

}  // namespace tessaly
