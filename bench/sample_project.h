// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/music_lists.h"
#include "model/project.h"

namespace tessaly {

/// Music in lists of 500, so that a project of any size looks like an operator's.
inline Project musicProject(int tracks,
                            const QString& folder = "C:\\Users\\Somebody\\Music\\Collection") {
    Project project;
    UniqueNames names;
    for (int i = 0; i < tracks; ++i) {
        if (i % 500 == 0) {
            addMusicList(project, QString("List %1").arg(i / 500));
            names = UniqueNames();
        }
        TrackRecord record;
        record.kind = "music";
        record.itemName = addMusicTrack(project, QString("Track number %1").arg(i), names);
        record.groupName = project.lstMuList.last();
        record.sourcePath = QString("%1/%2.mp3").arg(folder).arg(i);
        project.TrackTable.append(record);
    }
    return project;
}

}  // namespace tessaly
