#pragma once

#include <QString>

#include "model/project.h"
#include "triggers/trigger_selector.h"

// The item that a trigger or the power-up record names. `plays` is "music" or "speech": the
// `sourcePath` of a trigger, the `kind` of the power-up record.

namespace tessaly {

/// Whether the project still has an item, so that its line of the selector can be selected.
enum class ItemState {
    Present,
    NoTitle,
    NoList,
    NoTrack,
    EmptyList,  ///< a whole list without tracks: there is no line for it
    NoLists     ///< the continuous mix without any list: there is no line for it
};

/// Whether `record` names the selected item. The continuous mix is one whatever its track is said
/// to be.
bool namesSelection(const TrackRecord& record, const Variant& plays,
                    const TriggerSelection& selection);

ItemState itemState(const Project& project, const TrackRecord& record, const Variant& plays);

/// The item in words: "Rock / Song A", "Welcome", "<Continuous Mix>", "Rock / <Play Full List>";
/// with the reason where its line is gone: "Rock / Song A (the track is gone)".
QString itemInWords(const Project& project, const TrackRecord& record, const Variant& plays);

}  // namespace tessaly
