// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <optional>
#include <utility>

#include "model/project.h"

namespace tessaly {

/// A place in a project: a name in one of its lists, or a file that the project names.
struct Place {
    enum class Kind { MusicList, Track, Title, Language, MusicFile, SpeechFile, Chime };

    Kind kind;
    QString text;     ///< the name; of a file the one without its folder
    int first = -1;   ///< row of the music list or of the title; -1 where neither belongs to it
    int second = -1;  ///< row of the track or of the language; likewise

    bool operator==(const Place&) const = default;
};

/// The place of the track or title that a record is for; nothing where no line shows it.
std::optional<Place> placeOf(const Project& project, const TrackRecord& record);

/// What a place is and where: "Track in Harbour Morning", "File of Ropes in French".
QString placeInWords(const Project& project, const Place& place);

/// Finds places by their names. It is asked at every keystroke: what it must prepare for a search,
/// it keeps until the project is another one.
class Finder {
 public:
    /// Every place of `project` with `words` in its text, without regard to case and accents, also
    /// in the midst of a word. They come in reading order: music lists, tracks list by list,
    /// titles, languages, then the files of tracks, of titles and of the chime. Blanks around the
    /// words do not count; no words are nowhere.
    QList<Place> find(const Project& project, const QString& words);

 private:
    void prepare(const Project& project);
    void add(const Place& place);
    void addLines(Place::Kind kind, const QStringList& lines, int outer = -1);
    void addFiles(const Project& project);

    Project known_;  ///< shares its tables with the one that was searched last
    QList<std::pair<QString, Place>> places_;  ///< each behind its text without case and accents
};

}  // namespace tessaly
