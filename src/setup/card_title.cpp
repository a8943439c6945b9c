#include "setup/card_title.h"

#include "model/display_text.h"

namespace tessaly {

void setCardTitle(Project& project, QString Project::*line, const QString& text) {
    project.unsavedChanges = true;
    project.*line = text;
}

bool typeInCardTitle(Project& project, QString Project::*line, QChar key) {
    project.unsavedChanges = true;
    return refusesKey(project.*line, key);
}

}  // namespace tessaly
