// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <random>

#include "model/project.h"

namespace tessaly::test {

/// A record with these four fields and nothing else.
TrackRecord makeRecord(const char* kind, const QString& item, const QString& group,
                       const QString& path);

/// Lists Rock (Song A, Song B) and Pop (Song A); titles Welcome in English and German and Song A in
/// English.
Project crossNamedProject();

/// Appends a music record, and its line and list where they are missing.
void addTrack(Project& project, const QString& list, const QString& track, const QString& path);

/// Appends a speech record, and its title and language where they are missing.
void addSpeech(Project& project, const QString& title, const QString& language,
               const QString& path);

/// Makes a language one of the defaults, as the Setup page does.
void addDefaultLanguage(Project& project, const QString& language);

/// The project of the worked example in docs/formats.md: list Rock with two tracks, the title
/// Welcome in English and German.
Project exampleProject();

enum class Names {
    Plain,  ///< short, each that of one file
    Any,    ///< also long, empty and equal ones, lines without a file, files that share a name
};

/// Frames of silence in MPEG-1 layer III, 44.1 kHz, stereo, 64 kbit/s: 26 ms each.
inline QByteArray silentMp3(int frames = 20) {
    return (QByteArray("\xFF\xFB\x50\x04") + QByteArray(204, '\0')).repeated(frames);
}

/// A project of up to `tracks` music tracks and as many speech titles as there is room for, with
/// names, attributes, triggers and orders drawn at random. Names fit the code page, and no two
/// lines are equal.
Project randomProject(std::mt19937& random, int tracks, Names names = Names::Plain);

/// Whether a handler marks the project as changed.
template <typename Handler>
bool isMarkedBy(Project& project, const Handler& handler) {
    project.unsavedChanges = false;
    handler();
    return project.unsavedChanges;
}

enum class Origin {
    Operator,  ///< made by the handlers
    AnyFile,   ///< read from a file, which may hold what no handler makes
};

/// What does not fit together in the tables of a project, one sentence each; empty when all does,
/// whatever the operator does and whatever a file holds.
QStringList inconsistencies(const Project& project, Origin origin = Origin::Operator);

}  // namespace tessaly::test
