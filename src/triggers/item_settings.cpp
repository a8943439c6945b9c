// SPDX-License-Identifier: GPL-3.0-or-later
#include "triggers/item_settings.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

bool matches(const TrackRecord& record, const TriggerSelection& selection) {
    const auto isNamed = [&](const QString& name) {
        return selection.several.isEmpty() ? record.itemName.is(name)
                                           : selection.several.contains(record.itemName.text());
    };
    switch (selection.item) {
        case SelectedItem::Track:
            return isMusic(record) && record.groupName.is(*selection.left) &&
                   isNamed(*selection.right);
        case SelectedItem::Title:
            return isSpeech(record) && isNamed(*selection.left);
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

bool isPowerUpItem(const Project& project, const TriggerSelection& selection) {
    return namesSelection(project.PowerUpRecord, project.PowerUpRecord.kind, selection);
}

TrackRecord& triggerAt(Project& project, int slot) {
    Q_ASSERT(slot >= 0 && slot < TriggerSlots);
    return project.TriggerTable[size_t(slot)];
}

TriggerRow triggerRow(const Project& project, const TriggerSelection& selection, int slot) {
    const TrackRecord& trigger = project.TriggerTable[size_t(slot)];
    const QString caption = u"Trigger %1: "_s.arg(slot + 1);
    if (!isAssigned(trigger))
        return {.isEnabled = enabledControls(selection).play, .words = caption + u"free"_s};
    const Variant& plays = trigger.sourcePath;
    return {.isAssigned = true,
            .isEnabled = namesSelection(trigger, plays, selection) ||
                         itemState(project, trigger, plays) != ItemState::Present,
            .words = caption + itemInWords(project, trigger, plays)};
}

}  // namespace

AttributeControls enabledControls(const TriggerSelection& selection) {
    const bool isTrack = selection.item == SelectedItem::Track;
    return {.attributes = isTrack || selection.item == SelectedItem::Title,
            .endlessLoop = isTrack,
            .play = selection.item != SelectedItem::None && selection.several.isEmpty()};
}

AttributeDisplay displayedAttributes(const Project& project, const TriggerSelection& selection) {
    AttributeDisplay display;
    display.powerUp = isPowerUpItem(project, selection);
    const TrackRecord* first = nullptr;
    for (const TrackRecord& record : project.TrackTable) {
        if (!matches(record, selection))
            continue;
        if (!first)
            first = &record;
        display.loudDiffers |= record.loudVolume.isTrue() != first->loudVolume.isTrue();
        display.cancelDiffers |=
            record.cancelOnInterrupt.isTrue() != first->cancelOnInterrupt.isTrue();
        display.loopDiffers |= record.endlessLoop.isTrue() != first->endlessLoop.isTrue();
    }
    display.differs = display.loudDiffers || display.cancelDiffers || display.loopDiffers;
    if (!first)
        return display;
    display.hasRecord = true;
    display.loud = first->loudVolume.isTrue();
    display.cancel = first->cancelOnInterrupt.isTrue();
    display.loop = first->endlessLoop.isTrue();
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
    if (selection.item == SelectedItem::Track)
        setFlag(project, selection, &TrackRecord::endlessLoop, loop);
}

void setPowerUpItem(Project& project, const TriggerSelection& selection, bool checked) {
    TrackRecord& item = project.PowerUpRecord;
    if (!checked) {
        if (isPowerUpItem(project, selection))
            item.kind = kind::Empty;
        return;
    }
    if (!enabledControls(selection).play)
        return;
    Q_ASSERT(selection.left);
    const bool isTitle = selection.item == SelectedItem::Title;
    item.kind = isTitle ? kind::Speech : kind::Music;
    item.groupName = isTitle ? QString() : *selection.left;
    item.itemName = isTitle ? *selection.left : selection.right.value_or(QString());
}

PowerUpItem powerUpItem(const Project& project) {
    const QString caption = u"At power-up: "_s;
    if (!hasPowerUpItem(project))
        return {caption + u"nothing"_s, false};
    const TrackRecord& item = project.PowerUpRecord;
    return {caption + itemInWords(project, item, item.kind),
            itemState(project, item, item.kind) != ItemState::Present};
}

void clearPowerUpItem(Project& project) {
    project.unsavedChanges = true;
    project.PowerUpRecord.kind = kind::Empty;
}

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
    if (!enabledControls(selection).play)
        return;
    Q_ASSERT(selection.left);
    TrackRecord& trigger = triggerAt(project, slot);
    trigger.kind = kind::Trigger;
    if (selection.item == SelectedItem::Title) {
        trigger.itemName = *selection.left;
        trigger.sourcePath = kind::Speech;
    } else {
        trigger.itemName = selection.right.value_or(QString());
        trigger.groupName = *selection.left;
        trigger.sourcePath = kind::Music;
    }
}

void clearTrigger(Project& project, int slot) {
    if (project.suppressTriggerEvents)
        return;
    project.unsavedChanges = true;
    triggerAt(project, slot).sourcePath = kind::Empty;
}

std::optional<TriggerSelector> viewTrigger(Project& project, int slot) {
    project.unsavedChanges = true;
    const TrackRecord& trigger = triggerAt(project, slot);
    if (!isAssigned(trigger))
        return {};
    const bool isTitle = trigger.sourcePath.is(kind::Speech);
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
