// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>
#include <optional>

#include "model/project.h"

// The selector of the page "Triggers & Attributes": two list boxes that together name an item; and
// the item that a trigger or the power-up record names. `plays` says what it is, music or speech:
// the `sourcePath` of a trigger, the `kind` of the power-up record.

namespace tessaly {

enum class TriggerMode { Music, Speech };

/// What the selector shows. Rows count from 0; -1 where no line is selected.
struct TriggerSelector {
    TriggerMode mode = TriggerMode::Music;  ///< buttTrigMusic or buttTrigSpeech
    QString lblTrigSpTitles;                ///< caption above the left list
    QStringList lstTrigLeft;
    int leftRow = -1;
    QStringList lstTrigRight;
    int rightRow = -1;
    bool rightVisible = false;  ///< lstTrigRight and lblTrigMuTitles
    QList<int> several = {};    ///< rows of tracks or titles if more than one is selected

    bool operator==(const TriggerSelector&) const = default;
};

/// What kind of item is selected; None while a music list waits for a choice on the right.
enum class SelectedItem { None, ContinuousMix, WholeList, Track, Title };

/// What a selector's rows come to.
struct TriggerSelection {
    std::optional<QString> left;   ///< music list, "<Continuous Mix>" or title
    std::optional<QString> right;  ///< track or "<Play Full List>"
    SelectedItem item = SelectedItem::None;
    QSet<QString> several = {};  ///< tracks of the list or titles, if it is more than one
};

/// The selector right after a click on buttTrigMusic or buttTrigSpeech, and whenever the page comes
/// to the front: filled from the project, the first line selected.
TriggerSelector selectTriggerMode(const Project& project, TriggerMode mode);

/// Selects a line of lstTrigLeft and fills lstTrigRight; a row that does not exist selects none. A
/// music list becomes the editor's current one.
void selectTriggerLeft(Project& project, TriggerSelector& selector, int row);

/// Selects a line of lstTrigRight; a row that does not exist selects none.
void selectTriggerRight(TriggerSelector& selector, int row);

/// Selects several lines of the list box of tracks or of titles, so that their attributes can be
/// set together: which of them makes no difference. "<Play Full List>" is none of them.
void selectSeveral(TriggerSelector& selector, const QList<int>& rows);

TriggerSelection selectionOf(const TriggerSelector& selector);

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
