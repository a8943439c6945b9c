#include "triggers/play_item.h"

namespace tessaly {

namespace {

const char* reason(ItemState state) {
    switch (state) {
        case ItemState::Present:
            break;
        case ItemState::NoTitle:
            return " (the title is gone)";
        case ItemState::NoList:
            return " (the list is gone)";
        case ItemState::NoTrack:
            return " (the track is gone)";
        case ItemState::EmptyList:
            return " (the list has no tracks)";
        case ItemState::NoLists:
            return " (there is no music list)";
    }
    return "";
}

}  // namespace

bool namesSelection(const TrackRecord& record, const Variant& plays,
                    const TriggerSelection& selection) {
    switch (selection.item) {
        case SelectedItem::None:
            return false;
        case SelectedItem::Title:
            return plays.is(u"speech") && record.itemName.is(*selection.left);
        case SelectedItem::ContinuousMix:
            return plays.is(u"music") && record.groupName.is(ContinuousMixName);
        case SelectedItem::WholeList:
        case SelectedItem::Track:
            break;
    }
    return plays.is(u"music") && record.groupName.is(*selection.left) &&
           record.itemName.is(*selection.right);
}

ItemState itemState(const Project& project, const TrackRecord& record, const Variant& plays) {
    if (plays.is(u"speech"))
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
    if (plays.is(u"speech"))
        words = record.itemName.text();
    else if (list != ContinuousMixName)
        words = list + " / " + record.itemName.text();
    return words + reason(itemState(project, record, plays));
}

}  // namespace tessaly
