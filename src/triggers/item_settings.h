// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <array>
#include <optional>

#include "model/project.h"
#include "triggers/trigger_selector.h"

// How the selected item of the trigger page is played, and what plays it: the power-up item and the
// player's discrete triggers.

namespace tessaly {

/// What can be set for the selected item.
struct AttributeControls {
    bool attributes = false;   ///< volume, and what an interruption does
    bool endlessLoop = false;  ///< chkEndlessLoop
    bool play = false;         ///< chkPowerUp, and a trigger that is free
};

/// The one rule for it: a track can have everything, a title everything but the endless loop, the
/// continuous mix and a whole list only be played. Several tracks or titles cannot be played at
/// once, but have their attributes set together.
AttributeControls enabledControls(const TriggerSelection& selection);

/// What the option buttons and check boxes show for the selected item. An item without attributes
/// of its own shows those of a new track.
struct AttributeDisplay {
    bool loud = false;    ///< buttPlayLoudVolume, else buttPlayNormVolume
    bool cancel = false;  ///< buttCancelOnInt, else buttResumeOnInt
    bool loop = false;    ///< chkEndlessLoop
    bool powerUp = false;
    bool hasRecord = false;  ///< false: no file was chosen yet, so that no attribute would be kept
    bool differs = false;    ///< the item's records differ; the first one is shown
    bool loudDiffers = false, cancelDiffers = false, loopDiffers = false;  ///< in what

    bool operator==(const AttributeDisplay&) const = default;
};

AttributeDisplay displayedAttributes(const Project& project, const TriggerSelection& selection);

/// buttPlayLoudVolume or buttPlayNormVolume: sets every record of the selected tracks, or of the
/// selected titles in all languages. Sets `unsavedChanges`, whatever is selected.
void setLoudVolume(Project& project, const TriggerSelection& selection, bool loud);

/// The same for buttCancelOnInt or buttResumeOnInt.
void setCancelOnInterrupt(Project& project, const TriggerSelection& selection, bool cancel);

/// chkEndlessLoop: sets every record of the selected tracks; titles do not loop. Leaves
/// `unsavedChanges` as it is.
void setEndlessLoop(Project& project, const TriggerSelection& selection, bool loop);

/// chkPowerUp: makes the selected item the power-up item in place of any other, or, not `checked`,
/// takes that away from it if it has it. Leaves `unsavedChanges` as it is.
void setPowerUpItem(Project& project, const TriggerSelection& selection, bool checked);

/// The power-up item of the project, whatever is selected.
struct PowerUpItem {
    QString words;        ///< "At power-up: Rock / Song A", "At power-up: nothing"
    bool isGone = false;  ///< no selection leads to it: offer clearPowerUpItem()
};

PowerUpItem powerUpItem(const Project& project);

/// Leaves the project without a power-up item. Sets `unsavedChanges`.
void clearPowerUpItem(Project& project);

constexpr int TriggerRows = 3;  ///< slots 0 to 2; no control reaches the others

/// One row of the frame frmDtrigs.
struct TriggerRow {
    bool isAssigned = false;  ///< buttTrig is checked
    bool isEnabled = false;  ///< buttTrig and lblTrig; an assigned one that is not has View instead
    QString words;           ///< "Trigger 2: Rock / Song A", "Trigger 2: free"
};

/// The rows for a selection. A trigger that holds another item is checked and greyed, and View
/// leads to its item; one whose item is gone stays enabled, so that it can be cleared right there.
std::array<TriggerRow, TriggerRows> triggerRows(const Project& project,
                                                const TriggerSelection& selection);

/// buttTrig(slot) was checked: the trigger gets the selected item; without one it stays as it is.
/// Sets `unsavedChanges`. Does nothing while `suppressTriggerEvents` is set.
void assignTrigger(Project& project, const TriggerSelection& selection, int slot);

/// buttTrig(slot) was cleared: the trigger is free and keeps the names of its last item. Sets
/// `unsavedChanges`. Does nothing while `suppressTriggerEvents` is set.
void clearTrigger(Project& project, int slot);

/// buttViewTrig(slot): the selector with the item of that trigger selected, as far as there are
/// lines for it; nothing when the trigger is free. Sets `unsavedChanges`, also when it is free.
std::optional<TriggerSelector> viewTrigger(Project& project, int slot);

}  // namespace tessaly
