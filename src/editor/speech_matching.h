// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

#include "editor/add_summary.h"
#include "editor/imported_list.h"
#include "model/project.h"
#include "platform/file_system.h"

// Files of speech that come in together: which is whose is planned first, so that the operator can
// look and correct, and done afterwards.

namespace tessaly {

/// One file, and the pair of title and language that it is for.
struct SpeechPlanLine {
    enum class Obstacle {
        None,
        NoTitle,     ///< the title is empty
        NoLanguage,  ///< the language is empty
        SecondFile,  ///< a line above has this title and language
        NoRoom,      ///< a 17th language
        Already,     ///< the pair has this very file
    };

    QString path;      ///< native
    QString language;  ///< what the operator may correct: these two and `taken`
    QString title;
    bool taken = true;  ///< ticked

    // What follows from that; see judgeSpeechPlan().
    bool isNewTitle = false;
    bool isNewLanguage = false;
    bool replaces = false;  ///< the pair has a file already
    Obstacle obstacle = Obstacle::None;

    // The names that files and folders brought for it, whole. Empty where the project's own name or
    // a given one was taken, and without meaning once the operator has changed the name.
    QString wholeTitle = {};
    QString wholeLanguage = {};
};

struct SpeechPlan {
    QList<SpeechPlanLine> lines;  ///< language by language, as found; in natural order
    AddSummary leftOut;           ///< what no line was made of, such as files that are no MP3
};

/// Plans what was dropped or chosen together: a folder of language folders, one language folder, or
/// loose MP3 files, in any mixture. With `language` and `title` given, all files are for them.
///
/// A file's language is that of its folder, if the folder is called like a language of the project
/// or any language; else the one that its name ends with; else a new one named after the folder and
/// cut to 8 characters. "Called like" means the name, its ISO code, its first two or three letters,
/// in its own language or in English: German, Deutsch, de, deu, ger. A name ends with it as in
/// Harbour_de, Harbour-DE, Harbour (de), Harbour (German), Harbour German.
///
/// Its title is the project's that has the same name, without regard to case, punctuation, a number
/// in front and the language behind; a longer name may match a title that was cut to 16 characters.
/// What matches none is a new title, one for all languages, named without number and language. Two
/// files of one language that differ in nothing else keep their numbers.
///
/// Cancelled, the plan has no lines and its `leftOut` says so.
///
/// Nothing is thrown for what cannot be read: it is left out. Throws error 555 beyond
/// MostImportedTracks files.
SpeechPlan planSpeech(const Project& project, const FileSystem& files, const QStringList& paths,
                      const std::optional<QString>& language = {},
                      const std::optional<QString>& title = {}, const KeepGoing& keepGoing = {});

/// Finds out anew what follows from languages, titles and ticks of a plan. To be called after each
/// correction; planSpeech() has done it.
void judgeSpeechPlan(const Project& project, SpeechPlan& plan);

/// Does what the plan says with all lines that are ticked: adds new languages in the order of the
/// lines and new titles in that of the files' names, and gives the pairs their files as Browse
/// does. Names are taken as they stand, but made unique. Lines with an obstacle are left out and
/// said; those that are not ticked, or lack a title or language, are left out silently.
///
/// The summary has the plan's own `leftOut`, too. `unsavedChanges` is set only when something was
/// added.
AddSummary applySpeechPlan(Project& project, const SpeechPlan& plan);

}  // namespace tessaly
