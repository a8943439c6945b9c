#include "setup/card_title.h"

namespace tessaly {

void setCardTitle(Project& project, QString Project::*line, const QString& text) {
    project.unsavedChanges = true;
    project.*line = text;
}

void typeInCardTitle(Project& project) {
    project.unsavedChanges = true;
}

}  // namespace tessaly
