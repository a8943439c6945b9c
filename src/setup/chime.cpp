#include "setup/chime.h"

#include <QDir>

namespace tessaly {

ChimeControls chimeControls(const Project& project) {
    ChimeControls controls;
    const bool hasFile = project.buttPlayIntChime;
    const bool repeats = project.buttPlayIntChime || project.buttPlayExtChime;
    controls.Label24 = controls.txtChimeFileName = controls.buttGetChimeFile = hasFile;
    controls.buttChimeAlways = controls.buttChimeOnce = repeats;
    return controls;
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

}  // namespace tessaly
