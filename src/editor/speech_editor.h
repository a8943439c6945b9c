// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QString>

#include "editor/item_lists.h"
#include "editor/row_moves.h"
#include "model/project.h"

// What the operator does on the page of speech titles and languages. Every operation but the moves
// sets `unsavedChanges`, even when it turns out to do nothing; each needs its whole selection.

namespace tessaly {

/// What is selected: rows of `lstSpTitles` and `lstLangs`.
struct SpeechSelection {
    int title = -1;
    int language = -1;

    bool operator==(const SpeechSelection&) const = default;
};

/// Finds the pairs of many records. Built once for an operation, valid while no title or language
/// changes.
class SpeechRows {
 public:
    explicit SpeechRows(const Project& project);

    /// The pair that a record names, by the first rows of these names; {-1, -1} when it is no
    /// speech or one of its names has no row.
    SpeechSelection of(const TrackRecord& record) const;

    /// A pair by the first rows of its names; {-1, -1} when it does not exist.
    SpeechSelection first(const SpeechSelection& pair) const;

 private:
    SpeechSelection named(const QString& title, const QString& language) const;

    const Project& project_;
    QHash<QString, int> titles_, languages_;
};

/// The one rule for the buttons: the rows that are selected and the texts for a new title and a new
/// language decide, however they came about, and whether there is room for one more language.
EditorControls speechControls(const Project& project, const Rows& titles, const Rows& languages,
                              const QString& newTitle, const QString& newLanguage);

/// Appends a title under the unique form of `name`; an empty name makes none. Nothing is selected.
EditResult addSpeechTitle(Project& project, const QString& name);

/// Appends a language likewise, unless there are 16.
EditResult addLanguage(Project& project, const QString& name);

/// Gives the selected title its MP3 file in the selected language. An empty path, as after Cancel,
/// changes nothing.
EditResult chooseSpeechFile(Project& project, const SpeechSelection& selected, const QString& path);

/// Takes the files of these titles in these languages away; returns how many there were. The
/// attributes of a file go with it: one that is chosen for the pair later starts with those of a
/// new file. Triggers and power-up item stay, as they play the title in whatever language is
/// chosen.
int clearSpeechFiles(Project& project, const QList<SpeechSelection>& pairs);

/// Renames a title wherever it is named, in every language. The row to select is none. An empty
/// answer changes nothing.
EditResult renameSpeechTitle(Project& project, int title, const QString& answer);

/// Renames a language in its files and among the default languages. The row to select is none. An
/// empty answer changes nothing.
EditResult renameLanguage(Project& project, int language, const QString& answer);

/// Removes titles with their files in every language; triggers and power-up item that play them are
/// freed.
EditResult deleteSpeechTitles(Project& project, const Rows& titles);

/// Removes languages with their files and takes them out of the default languages.
EditResult deleteLanguages(Project& project, const Rows& languages);

}  // namespace tessaly
