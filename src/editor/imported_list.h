#pragma once

#include <QList>
#include <QString>
#include <functional>

#include "model/project.h"

// What the imports of a playlist and of a folder have in common.

namespace tessaly {

/// A message box for the operator, with an OK button.
struct ImportMessage {
    enum class Icon { Information, Exclamation };
    Icon icon = Icon::Information;
    QString title = {};  ///< empty: the program's own
    QString text = {};   ///< lines end in CR LF
};

/// Called before each file or entry with how many are done and how many there are; false cancels
/// the import. An empty function never does.
using KeepGoing = std::function<bool(int done, int total)>;

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

/// What the records of an import are named by.
enum class RecordNames {
    AsListed,  ///< as the track's line, numbered where names are alike
    AsFound,   ///< as the name was before it was numbered
};

/// Most that one import takes. Names that are alike grow with their number, so that their text is
/// counted, too: as many tracks as a card holds may all have the same name.
constexpr int MostImportedTracks = 100'000;
constexpr qsizetype MostNameCharacters = 100'000'000;

/// Appends a list, cut to 16 characters, "Music" when it has no name, with its tracks and their
/// records. Throws error 555 beyond the limits above, and has changed nothing then.
ImportResult addImportedList(Project& project, const QString& name,
                             const QList<ImportedTrack>& tracks, RecordNames recordNames);

/// The rows to select after an import: the last list, which becomes the current one, and its last
/// track.
void selectLastRows(Project& project, ImportResult& result);

}  // namespace tessaly
