#include "triggers/trigger_selector.h"

#include "model/lines.h"
#include "model/music_lists.h"

namespace tessaly {

namespace {

int existingRow(const QStringList& lines, int row) {
    return row >= 0 && row < lines.size() ? row : -1;
}

}  // namespace

TriggerSelector selectTriggerMode(const Project& project, TriggerMode mode) {
    TriggerSelector selector;
    selector.mode = mode;
    if (mode == TriggerMode::Speech) {
        selector.lblTrigSpTitles = "Speech Titles";
        selector.lstTrigLeft = project.lstSpTitles;
    } else {
        selector.lblTrigSpTitles = "Music List Names";
        selector.rightVisible = !project.lstMuList.isEmpty();
        if (selector.rightVisible)
            selector.lstTrigLeft = QStringList(ContinuousMixName.toString()) + project.lstMuList;
    }
    selector.leftRow = existingRow(selector.lstTrigLeft, 0);
    return selector;
}

void selectTriggerLeft(Project& project, TriggerSelector& selector, int row) {
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
    selector.rightRow = existingRow(selector.lstTrigRight, row);
}

TriggerSelection selectionOf(const TriggerSelector& selector) {
    TriggerSelection selection;
    selection.mode = selector.mode;
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
    return selection;
}

}  // namespace tessaly
