// SPDX-License-Identifier: GPL-3.0-or-later
#include "triggers/trigger_selector.h"

#include "model/music_lists.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

// Why an item cannot be selected, in the order of ItemState.
constexpr QStringView Reasons[] = {u"",
                                   u" (the title is gone)",
                                   u" (the list is gone)",
                                   u" (the track is gone)",
                                   u" (the list has no tracks)",
                                   u" (there is no music list)"};

int existingRow(const QStringList& lines, int row) {
    return row >= 0 && row < lines.size() ? row : -1;
}

}  // namespace

TriggerSelector selectTriggerMode(const Project& project, TriggerMode mode) {
    TriggerSelector selector;
    selector.mode = mode;
    if (mode == TriggerMode::Speech) {
        selector.lblTrigSpTitles = u"Speech Titles"_s;
        selector.lstTrigLeft = project.lstSpTitles;
    } else {
        selector.lblTrigSpTitles = u"Music List Names"_s;
        selector.rightVisible = !project.lstMuList.isEmpty();
        if (selector.rightVisible)
            selector.lstTrigLeft = QStringList(ContinuousMixName.toString()) + project.lstMuList;
    }
    selector.leftRow = existingRow(selector.lstTrigLeft, 0);
    return selector;
}

void selectTriggerLeft(Project& project, TriggerSelector& selector, int row) {
    selector.several.clear();
    selector.leftRow = existingRow(selector.lstTrigLeft, row);
    selector.lstTrigRight.clear();
    selector.rightRow = -1;
    const auto list = lineAt(selector.lstTrigLeft, selector.leftRow);
    if (selector.mode == TriggerMode::Speech || !list || *list == ContinuousMixName)
        return;
    selectMusicList(project, *list);
    const QStringList tracks = tracksOfMusicList(project, *list);
    if (!tracks.isEmpty())
        selector.lstTrigRight = QStringList(PlayFullListName.toString()) + tracks;
}

void selectTriggerRight(TriggerSelector& selector, int row) {
    selector.several.clear();
    selector.rightRow = existingRow(selector.lstTrigRight, row);
}

void selectSeveral(TriggerSelector& selector, const QList<int>& rows) {
    const bool isMusic = selector.mode == TriggerMode::Music;
    const QStringList& lines = isMusic ? selector.lstTrigRight : selector.lstTrigLeft;
    selector.several.clear();
    for (const int row : rows)
        if (existingRow(lines, row) >= (isMusic ? 1 : 0))
            selector.several.append(row);
    int& row = isMusic ? selector.rightRow : selector.leftRow;
    row = selector.several.value(0, -1);
    if (selector.several.size() < 2)
        selector.several.clear();
}

TriggerSelection selectionOf(const TriggerSelector& selector) {
    TriggerSelection selection;
    selection.left = lineAt(selector.lstTrigLeft, selector.leftRow);
    selection.right = lineAt(selector.lstTrigRight, selector.rightRow);
    if (!selection.left)
        return selection;
    if (selector.mode == TriggerMode::Speech)
        selection.item = SelectedItem::Title;
    else if (*selection.left == ContinuousMixName)
        selection.item = SelectedItem::ContinuousMix;
    else if (selection.right)
        selection.item = selector.rightRow == 0 ? SelectedItem::WholeList : SelectedItem::Track;
    const bool isTitle = selection.item == SelectedItem::Title;
    for (const int row : selector.several)
        selection.several.insert((isTitle ? selector.lstTrigLeft : selector.lstTrigRight)[row]);
    return selection;
}

bool namesSelection(const TrackRecord& record, const Variant& plays,
                    const TriggerSelection& selection) {
    if (!selection.several.isEmpty())
        return false;
    switch (selection.item) {
        case SelectedItem::None:
            return false;
        case SelectedItem::Title:
            return plays.is(kind::Speech) && record.itemName.is(*selection.left);
        case SelectedItem::ContinuousMix:
            return plays.is(kind::Music) && record.groupName.is(ContinuousMixName);
        case SelectedItem::WholeList:
        case SelectedItem::Track:
            break;
    }
    Q_ASSERT(selection.left && selection.right);
    return plays.is(kind::Music) && record.groupName.is(*selection.left) &&
           record.itemName.is(*selection.right);
}

ItemState itemState(const Project& project, const TrackRecord& record, const Variant& plays) {
    if (plays.is(kind::Speech))
        return project.lstSpTitles.contains(record.itemName.text()) ? ItemState::Present
                                                                    : ItemState::NoTitle;
    const QString list = record.groupName.text();
    if (list == ContinuousMixName)
        return project.lstMuList.isEmpty() ? ItemState::NoLists : ItemState::Present;
    if (!project.lstMuList.contains(list))
        return ItemState::NoList;
    const QStringList tracks = tracksOfMusicList(project, list);
    const QString track = record.itemName.text();
    if (track == PlayFullListName)
        return tracks.isEmpty() ? ItemState::EmptyList : ItemState::Present;
    return tracks.contains(track) ? ItemState::Present : ItemState::NoTrack;
}

QString itemInWords(const Project& project, const TrackRecord& record, const Variant& plays) {
    const QString list = record.groupName.text();
    QString words = list;
    if (plays.is(kind::Speech))
        words = record.itemName.text();
    else if (list != ContinuousMixName)
        words = list + u" / "_s + record.itemName.text();
    return words.append(Reasons[size_t(itemState(project, record, plays))]);
}

}  // namespace tessaly
