#include "triggers/playback_attributes.h"

#include "triggers/play_item.h"

namespace tessaly {

namespace {

bool matches(const TrackRecord& record, const TriggerSelection& selection) {
    switch (selection.item) {
        case SelectedItem::Track:
            return isMusic(record) && record.groupName.is(*selection.left) &&
                   record.itemName.is(*selection.right);
        case SelectedItem::Title:
            return isSpeech(record) && record.itemName.is(*selection.left);
        case SelectedItem::None:
        case SelectedItem::ContinuousMix:
        case SelectedItem::WholeList:
            break;
    }
    return false;
}

void setFlag(Project& project, const TriggerSelection& selection, Boolean16 TrackRecord::*flag,
             bool value) {
    for (TrackRecord& record : project.TrackTable)
        if (matches(record, selection))
            record.*flag = Boolean16::of(value);
}

bool sameAttributes(const TrackRecord& a, const TrackRecord& b) {
    return a.loudVolume.isTrue() == b.loudVolume.isTrue() &&
           a.cancelOnInterrupt.isTrue() == b.cancelOnInterrupt.isTrue() &&
           a.endlessLoop.isTrue() == b.endlessLoop.isTrue();
}

bool isPowerUpItem(const Project& project, const TriggerSelection& selection) {
    return namesSelection(project.PowerUpRecord, project.PowerUpRecord.kind, selection);
}

}  // namespace

AttributeControls enabledControls(const TriggerSelection& selection) {
    AttributeControls controls;
    const SelectedItem item = selection.item;
    const bool isPlayable = item != SelectedItem::None;
    const bool isTrack = item == SelectedItem::Track;
    const bool hasAttributes = isTrack || item == SelectedItem::Title;
    controls.chkEndlessLoop = isTrack;
    controls.buttPlayNormVolume = controls.buttPlayLoudVolume = hasAttributes;
    controls.buttResumeOnInt = controls.buttCancelOnInt = hasAttributes;
    controls.chkPowerUp = isPlayable;
    controls.triggerRows = isPlayable;
    return controls;
}

AttributeDisplay displayedAttributes(const Project& project, const TriggerSelection& selection) {
    AttributeDisplay display;
    display.chkPowerUp = isPowerUpItem(project, selection);
    const TrackRecord* first = nullptr;
    for (const TrackRecord& record : project.TrackTable) {
        if (!matches(record, selection))
            continue;
        if (!first)
            first = &record;
        else if (!sameAttributes(*first, record))
            display.differs = true;
    }
    if (!first)
        return display;
    display.hasRecord = true;
    display.buttPlayLoudVolume = first->loudVolume.isTrue();
    display.buttPlayNormVolume = !display.buttPlayLoudVolume;
    display.buttCancelOnInt = first->cancelOnInterrupt.isTrue();
    display.buttResumeOnInt = !display.buttCancelOnInt;
    display.chkEndlessLoop = first->endlessLoop.isTrue();
    return display;
}

void setLoudVolume(Project& project, const TriggerSelection& selection, bool loud) {
    project.unsavedChanges = true;
    setFlag(project, selection, &TrackRecord::loudVolume, loud);
}

void setCancelOnInterrupt(Project& project, const TriggerSelection& selection, bool cancel) {
    project.unsavedChanges = true;
    setFlag(project, selection, &TrackRecord::cancelOnInterrupt, cancel);
}

void setEndlessLoop(Project& project, const TriggerSelection& selection, bool loop) {
    if (selection.mode == TriggerMode::Music)
        setFlag(project, selection, &TrackRecord::endlessLoop, loop);
}

void setPowerUpItem(Project& project, const TriggerSelection& selection, bool checked) {
    TrackRecord& item = project.PowerUpRecord;
    if (!checked) {
        if (isPowerUpItem(project, selection))
            item.kind = "empty";
        return;
    }
    if (selection.item == SelectedItem::None)
        return;
    const bool isTitle = selection.item == SelectedItem::Title;
    item.kind = isTitle ? "speech" : "music";
    item.groupName = isTitle ? QString() : *selection.left;
    item.itemName = isTitle ? *selection.left : selection.right.value_or(QString());
}

PowerUpItem powerUpItem(const Project& project) {
    const QString caption = "At power-up: ";
    if (!hasPowerUpItem(project))
        return {caption + "nothing", false};
    const TrackRecord& item = project.PowerUpRecord;
    return {caption + itemInWords(project, item, item.kind),
            itemState(project, item, item.kind) != ItemState::Present};
}

void clearPowerUpItem(Project& project) {
    project.unsavedChanges = true;
    project.PowerUpRecord.kind = "empty";
}

}  // namespace tessaly
