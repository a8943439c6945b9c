#pragma once

#include <QString>
#include <QStringList>

#include "model/project.h"

// A folder of MP3 files with the same title makes lines that are numbered (Rock, 01 Rock) and
// records that are not (Rock, Rock). So does a project file. The first line plays the first file;
// the others have none.

namespace tessaly {

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
