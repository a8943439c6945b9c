// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <utility>

#include "model/project.h"

namespace tessaly {

/// What one edit changed in a project: enough to take it back and to make it again. Of the table of
/// tracks only the records that changed are kept, and all else is shared with the neighbouring
/// edits, so that a hundred edits of the largest project take some megabytes.
class ProjectChange {
 public:
    ProjectChange(const Project& before, const Project& after);

    /// Puts the project back to what it was before the edit, field by field, or to what it was
    /// after it. `project` must be what the other of the two leaves.
    void undo(Project& project) const { put(project, false); }
    void redo(Project& project) const { put(project, true); }

 private:
    // One field of the records in some ranges of slots, which had one value and got another.
    struct FieldChange {
        int field;
        Variant before, after;
        QList<std::pair<qsizetype, qsizetype>> ranges;  // first, and the one behind the last
    };

    void put(Project& project, bool isAfter) const;
    bool takeMoves(const QList<TrackRecord>& before, const QList<TrackRecord>& after);
    void compare(qsizetype slot, const TrackRecord& before, const TrackRecord& after);

    // The two states without their tables of tracks.
    Project before_, after_;
    // The table: what differs, either by the places of whole records, from and to, or by fields;
    // and the records that only the longer of the two has at its end.
    QList<std::pair<int, int>> moves_;
    QList<FieldChange> fields_;
    QList<TrackRecord> endBefore_, endAfter_;
    qsizetype common_ = 0;
};

}  // namespace tessaly
