#include "setup/system_texts.h"

namespace tessaly {

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
        record.kind = "stext";
        record.groupName = boxes[size_t(slot)];
        record.itemName = qint16(slot);
    }
}

void cancelSystemTexts(Project& project) {
    project.unsavedChanges = true;
}

void restoreOriginalTexts(Project& project, SystemTextBoxes& boxes) {
    project.unsavedChanges = true;
    restoreSystemTexts(project);
    boxes = systemTextBoxes(project);
}

}  // namespace tessaly
