// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// What a list box says of a line besides its text.
struct LineNote {
    QString text;        ///< a few words: "loud, trigger 2", "4 of 5"
    QString path = {};   ///< of a track's file, native
    qint64 bytes = 0;    ///< its size
    bool isBad = false;  ///< no card can be made with it as it is

    bool operator==(const LineNote&) const = default;
};

/// The notes of a project as it was when they were made, in one pass over its records. They may be
/// asked for later, by a list that is painted or read aloud, when it has changed.
class LineNotes {
 public:
    explicit LineNotes(const Project& project);
    Q_DISABLE_COPY(LineNotes)

    /// How many tracks a list has, and what plays it: "12 tracks, trigger 1".
    LineNote list(const QString& list) const;

    /// "no file" or "missing", how it is played and what plays it: "loud, loop, power-up". The file
    /// is looked for at each call.
    LineNote track(const QString& list, const QString& track, const FileSystem& files) const;

    /// In how many languages a title has a file: "4 of 5, cancel".
    LineNote title(const QString& title) const;

    /// How many titles have a file in a language: "7 of 8, default".
    LineNote language(const QString& language) const;

 private:
    QString playersOf(QStringView plays, const QString& group, const QString& item) const;

    const Project project_;
    const TrackIndex index_;
    QHash<QString, int> tracks_;     // by list
    QHash<QString, int> titles_;     // by language
    QHash<QString, int> languages_;  // by title
    QHash<QString, const TrackRecord*> firstOfTitle_;
};

}  // namespace tessaly
