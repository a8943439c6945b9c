// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <optional>

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

/// The notes of a project as it was when they were made. They may be asked for later, by a list
/// that is painted or read aloud, when it has changed. What takes a pass over all records is worked
/// out when it is first asked for.
class LineNotes {
 public:
    explicit LineNotes(const Project& project) : project_(project) {}
    Q_DISABLE_COPY(LineNotes)

    /// Whether these are the notes of the project as it is now. Fast while nothing was edited.
    bool areOf(Project project) const;

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
    struct Music {
        TrackIndex index;
        QHash<QString, int> tracks;  // by list
    };
    struct Speech {
        QHash<QString, int> titles;     // by language
        QHash<QString, int> languages;  // by title
        QHash<QString, const TrackRecord*> firstOfTitle;
    };

    const Music& music() const;
    const Speech& speech() const;
    QString playersOf(QStringView plays, const QString& group, const QString& item) const;

    const Project project_;
    mutable std::optional<Music> music_;
    mutable std::optional<Speech> speech_;
};

}  // namespace tessaly
