#pragma once

#include <QString>

#include "model/project.h"
#include "triggers/trigger_selector.h"

// How the selected item of the trigger page is played, and the one item that plays at power-up.

namespace tessaly {

/// Which controls of the page can be used.
struct AttributeControls {
    bool chkEndlessLoop = false;
    bool buttPlayNormVolume = false, buttPlayLoudVolume = false;
    bool buttResumeOnInt = false, buttCancelOnInt = false;
    bool chkPowerUp = false;
    bool triggerRows = false;  ///< whether a free trigger is on offer

    bool operator==(const AttributeControls&) const = default;
};

/// The one rule for them: a track can have everything, a title everything but the endless loop, the
/// continuous mix and a whole list only be played.
AttributeControls enabledControls(const TriggerSelection& selection);

/// What the option buttons and check boxes show for the selected item. An item without attributes
/// of its own shows those of a new track.
struct AttributeDisplay {
    bool buttPlayNormVolume = true, buttPlayLoudVolume = false;
    bool buttResumeOnInt = true, buttCancelOnInt = false;
    bool chkEndlessLoop = false;
    bool chkPowerUp = false;
    bool hasRecord = false;  ///< false: no file was chosen yet, so that no attribute would be kept
    bool differs = false;    ///< the item's records differ; the first one is shown

    bool operator==(const AttributeDisplay&) const = default;
};

AttributeDisplay displayedAttributes(const Project& project, const TriggerSelection& selection);

/// buttPlayLoudVolume or buttPlayNormVolume: sets every record of the selected track, or of the
/// selected title in all languages. Sets `unsavedChanges`, whatever is selected.
void setLoudVolume(Project& project, const TriggerSelection& selection, bool loud);

/// The same for buttCancelOnInt or buttResumeOnInt.
void setCancelOnInterrupt(Project& project, const TriggerSelection& selection, bool cancel);

/// chkEndlessLoop: sets every record of the selected track; titles do not loop. Leaves
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

}  // namespace tessaly
