#pragma once

#include <gtest/gtest.h>

#include "triggers/trigger_selector.h"

namespace tessaly::test {

/// Clicks a mode and the first lines of that text, as an operator would; an empty text is no click.
inline TriggerSelector clickSelector(Project& project, TriggerMode mode, const QString& left = {},
                                     const QString& right = {}) {
    TriggerSelector selector = selectTriggerMode(project, mode);
    if (!left.isEmpty())
        selectTriggerLeft(project, selector, int(selector.lstTrigLeft.indexOf(left)));
    if (!right.isEmpty())
        selectTriggerRight(selector, int(selector.lstTrigRight.indexOf(right)));
    EXPECT_TRUE(left.isEmpty() || selector.leftRow >= 0) << left.toStdString();
    EXPECT_TRUE(right.isEmpty() || selector.rightRow >= 0) << right.toStdString();
    return selector;
}

inline TriggerSelection select(Project& project, TriggerMode mode, const QString& left = {},
                               const QString& right = {}) {
    return selectionOf(clickSelector(project, mode, left, right));
}

inline TriggerSelection selectTrack(Project& project, const QString& list,
                                    const QString& track = {}) {
    return select(project, TriggerMode::Music, list, track);
}

inline TriggerSelection selectTitle(Project& project, const QString& title) {
    return select(project, TriggerMode::Speech, title);
}

}  // namespace tessaly::test
