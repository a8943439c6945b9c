// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <utility>

#include "model/project.h"
#include "platform/file_system.h"

namespace tessaly {

/// What a list box says of a line besides its text.
struct LineNote {
    QString text;                         ///< a few words: "loud, trigger 2", "4 of 5"
    QString path = {};                    ///< of a track's file, native
    std::optional<FileStamp> stamp = {};  ///< of that file, if it is there
    const TrackRecord* record = nullptr;  ///< of a track, as long as the notes are
    bool isBad = false;                   ///< no card can be made with it as it is

    bool operator==(const LineNote&) const = default;
};

/// The notes of a project as it was when they were made. They may be asked for later, by a list
/// that is painted or read aloud, when it has changed. What takes a pass over all records is worked
/// out when it is first asked for.
class LineNotes {
 public:
    /// What is known of the sound of a record's file.
    struct Sound {
        qint64 milliseconds = 0;  ///< how long it plays; 0: not known
        bool isWarned = false;    ///< something is wrong with it
    };
    using SoundOf = std::function<Sound(const TrackRecord& record)>;

    explicit LineNotes(const Project& project, SoundOf soundOf = {})
        : project_(project), soundOf_(std::move(soundOf)) {}
    Q_DISABLE_COPY(LineNotes)

    /// Whether these are the notes of the project as it is now. Fast while nothing was edited.
    bool areOf(Project project) const;

    /// How many tracks a list has, how long they play, and what plays it: "12 tracks, 43:10,
    /// trigger 1". Here and below a sign stands in front when a file of it has a problem.
    LineNote list(const QString& list) const;

    /// "no file" or "missing", how it is played and what plays it: "loud, loop, power-up". The file
    /// is looked for at each call.
    LineNote track(const QString& list, const QString& track, const FileSystem& files) const;

    /// In how many languages a title has a file: "4 of 5, cancel".
    LineNote title(const QString& title) const;

    /// How many titles have a file in a language, and how long they play: "7 of 8, 3:20, default".
    LineNote language(const QString& language) const;

 private:
    struct Music {
        TrackIndex index;
        QHash<QString, int> tracks;   // by list
        QHash<QString, Sound> sound;  // by list
    };
    struct Speech {
        QHash<QString, int> titles;     // by language
        QHash<QString, int> languages;  // by title
        QHash<QString, Sound> ofTitle, ofLanguage;
        QHash<QString, const TrackRecord*> firstOfTitle;
    };

    const Music& music() const;
    const Speech& speech() const;
    Sound soundOf(const TrackRecord& record) const { return soundOf_ ? soundOf_(record) : Sound(); }
    QString playersOf(QStringView plays, const QString& group, const QString& item) const;

    const Project project_;
    const SoundOf soundOf_;
    mutable std::optional<Music> music_;
    mutable std::optional<Speech> speech_;
};

}  // namespace tessaly
