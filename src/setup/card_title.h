#pragma once

#include <QString>

#include "model/project.h"

namespace tessaly {

/// A title line got a text, by typing or pasting (see model/display_text.h for what may come in).
/// `line` is &Project::txtCardTitle1 or &Project::txtCardTitle2. Sets `unsavedChanges`.
void setCardTitle(Project& project, QString Project::*line, const QString& text);

/// A key was typed into a title line, be it one that the line then discards. Sets `unsavedChanges`.
void typeInCardTitle(Project& project);

}  // namespace tessaly
