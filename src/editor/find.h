// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

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

/// Every place with `words` in its text, without regard to case and accents, also in the midst of a
/// word. They come in reading order: music lists, tracks list by list, titles, languages, then the
/// files of tracks, of titles and of the chime. Nothing has no words in it, nor has a blank.
QList<Place> findPlaces(const Project& project, const QString& words);

/// What a place is and where: "Track in Harbour Morning", "File of Ropes in French".
QString placeInWords(const Project& project, const Place& place);

}  // namespace tessaly
