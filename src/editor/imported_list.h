// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

#include "model/music_lists.h"
#include "model/project.h"
#include "platform/error.h"

// What the imports of a playlist and of a folder have in common.

namespace tessaly {

/// A message box for the operator, with an OK button.
struct ImportMessage {
    QString title = {};  ///< empty: the program's own
    QString text = {};   ///< lines end in CR LF
    QString more = {};   ///< to be said below it, in a quieter voice
};

/// Called before each file or entry with how many are done and how many there are; false cancels
/// the import. An empty function never does.
using KeepGoing = std::function<bool(int done, int total)>;

/// Asks `keepGoing` now and then in a loop whose steps take a few microseconds.
inline bool goesOn(const KeepGoing& keepGoing, qsizetype done, qsizetype total) {
    return !keepGoing || done % 64 != 0 || keepGoing(int(done), int(total));
}

/// What became of an import.
struct ImportResult {
    enum class Outcome {
        Imported,   ///< the list is there, perhaps without a track
        Invalid,    ///< no playlist: nothing was made
        NoFiles,    ///< the folder holds no MP3 file: nothing was made
        Cancelled,  ///< nothing was made
    };
    Outcome outcome = Outcome::Cancelled;
    QString list = {};  ///< final name of the new list
    int tracks = 0;     ///< tracks that were added
    int listRow = -1;   ///< rows to select after Imported and NoFiles, -1 for none;
    int trackRow = -1;  ///< else the selection stays as it is
    QList<ImportMessage> messages = {};  ///< to show one after the other
    QList<ImportMessage> leftOut = {};   ///< one for each entry that was left out
};

/// The boxes of an import: those of the first ten entries that were left out, one that says how
/// many more there are, then its messages.
QList<ImportMessage> boxesOf(const ImportResult& result);

struct ImportedTrack {
    QString name;
    QString path;
};

/// What goes into an imported record's `itemName`.
enum class RecordNames {
    AsListed,  ///< the text of the track's line, which is numbered where names are alike
    AsFound,   ///< the track's name without that number
};

/// Most that one import takes. Names that are alike grow with their number, so that their text is
/// counted, too: as many tracks as a card holds may all have the same name.
constexpr int MostImportedTracks = 100'000;
constexpr qsizetype MostNameCharacters = 100'000'000;

/// Error 555 for more files than MostImportedTracks, brought by what is at `path`.
TessalyError tooManyAtOnce(const QString& path);

/// Appends tracks with their records to the current list, whose name is `list`, and returns their
/// lines. `names` must know the list's tracks. `characters` counts the text of all lines of an
/// import. Throws error 555 beyond MostNameCharacters, half-way: call it on a copy.
QStringList appendTracks(Project& project, const QString& list, const QList<ImportedTrack>& tracks,
                         RecordNames recordNames, UniqueNames& names, qsizetype& characters);

/// Appends a list, cut to 16 characters, "Music" when it has no name, with its tracks and their
/// records. Throws error 555 beyond the limits above, and has changed nothing then.
ImportResult addImportedList(Project& project, const QString& name,
                             const QList<ImportedTrack>& tracks, RecordNames recordNames);

/// The rows to select after an import: the last list, which becomes the current one, and its last
/// track.
void selectLastRows(Project& project, ImportResult& result);

// A folder of MP3 files with the same title makes lines that are numbered (Rock, 01 Rock) and
// records that are not (Rock, Rock). So does a project file. The first line plays the first file;
// the others have none.

/// Whether giveEachItsFile() would change anything in these lists.
bool canGiveEachItsFile(const Project& project, const QStringList& lists);

/// Renames the records of these lists as their lines were numbered: the n-th record of a name gets
/// the n-th line's name. A record keeps its name where that line is gone or has a file of its own,
/// and a line without such a record stays silent. Triggers and power-up item go on playing the file
/// that they played. Sets `unsavedChanges`.
void giveEachItsFile(Project& project, const QStringList& lists);

/// What an import says of the silent tracks of its list, in one sentence: how many have the name of
/// another, and the first ten of them; empty when there is none.
QString namesakesText(const Project& project, const QString& list);

/// What becomes of them.
inline constexpr QStringView NamesakesFate =
    u"A name plays the first of its files only: the others stay silent.";

}  // namespace tessaly
