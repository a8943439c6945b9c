#pragma once

#include <QChar>
#include <QString>

#include "model/project.h"

namespace tessaly {

/// A title line got a text, by typing or pasting (see model/display_text.h for what may come in).
/// `line` is &Project::txtCardTitle1 or &Project::txtCardTitle2. Sets `unsavedChanges`.
void setCardTitle(Project& project, QString Project::*line, const QString& text);

/// A key was typed into a title line. Returns whether the line discards it, with a beep. Sets
/// `unsavedChanges`, also for a key that is discarded.
bool typeInCardTitle(Project& project, QString Project::*line, QChar key);

}  // namespace tessaly
