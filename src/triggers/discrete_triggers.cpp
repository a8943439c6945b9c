#include "triggers/discrete_triggers.h"

#include "triggers/play_item.h"
#include "triggers/playback_attributes.h"

namespace tessaly {

namespace {

TriggerRow triggerRow(const Project& project, const TriggerSelection& selection, int slot) {
    const TrackRecord& trigger = project.TriggerTable.at(size_t(slot));
    TriggerRow row;
    row.lblTrig = QString("Trigger %1").arg(slot + 1);
    if (!isAssigned(trigger)) {
        row.buttTrigEnabled = row.lblTrigEnabled = enabledControls(selection).triggerRows;
        row.words = row.lblTrig + ": free";
        return row;
    }
    const Variant& plays = trigger.sourcePath;
    row.isGone = itemState(project, trigger, plays) != ItemState::Present;
    const bool isOnView = namesSelection(trigger, plays, selection);
    row.buttTrigChecked = true;
    row.buttTrigEnabled = row.lblTrigEnabled = isOnView || row.isGone;
    row.buttViewTrigEnabled = !row.buttTrigEnabled;
    row.words = row.lblTrig + ": " + itemInWords(project, trigger, plays);
    return row;
}

}  // namespace

std::array<TriggerRow, TriggerRows> triggerRows(const Project& project,
                                                const TriggerSelection& selection) {
    std::array<TriggerRow, TriggerRows> rows;
    for (int slot = 0; slot < TriggerRows; ++slot)
        rows[size_t(slot)] = triggerRow(project, selection, slot);
    return rows;
}

void assignTrigger(Project& project, const TriggerSelection& selection, int slot) {
    if (project.suppressTriggerEvents)
        return;
    project.unsavedChanges = true;
    if (selection.item == SelectedItem::None)
        return;
    TrackRecord& trigger = project.TriggerTable.at(size_t(slot));
    trigger.kind = "dtrig";
    if (selection.item == SelectedItem::Title) {
        trigger.itemName = *selection.left;
        trigger.sourcePath = "speech";
    } else {
        trigger.itemName = selection.right.value_or(QString());
        trigger.groupName = *selection.left;
        trigger.sourcePath = "music";
    }
}

void clearTrigger(Project& project, int slot) {
    if (project.suppressTriggerEvents)
        return;
    project.unsavedChanges = true;
    project.TriggerTable.at(size_t(slot)).sourcePath = "empty";
}

std::optional<TriggerSelector> viewTrigger(Project& project, int slot) {
    project.unsavedChanges = true;
    const TrackRecord& trigger = project.TriggerTable.at(size_t(slot));
    if (!isAssigned(trigger))
        return {};
    const bool isTitle = trigger.sourcePath.is(u"speech");
    TriggerSelector selector =
        selectTriggerMode(project, isTitle ? TriggerMode::Speech : TriggerMode::Music);
    const Variant& left = isTitle ? trigger.itemName : trigger.groupName;
    const int leftRow = int(selector.lstTrigLeft.indexOf(left.text()));
    if (leftRow < 0)
        return selector;
    selectTriggerLeft(project, selector, leftRow);
    if (!isTitle)
        selectTriggerRight(selector, int(selector.lstTrigRight.indexOf(trigger.itemName.text())));
    return selector;
}

}  // namespace tessaly
