#pragma once

#include <QString>
#include <array>
#include <optional>

#include "model/project.h"
#include "triggers/trigger_selector.h"

// The rows of the player's discrete triggers on the trigger page.

namespace tessaly {

constexpr int TriggerRows = 3;  ///< slots 0 to 2; no control reaches the others

/// One row of the frame frmDtrigs.
struct TriggerRow {
    bool buttTrigChecked = false;
    bool buttTrigEnabled = false;
    bool lblTrigEnabled = false;
    bool buttViewTrigEnabled = false;
    QString lblTrig;      ///< "Trigger 2"
    QString words;        ///< "Trigger 2: Rock / Song A", "Trigger 2: free"
    bool isGone = false;  ///< it holds an item that no selection leads to

    bool operator==(const TriggerRow&) const = default;
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
