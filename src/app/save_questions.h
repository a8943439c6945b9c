#pragma once

#include <QStringList>

#include "app/prompts.h"
#include "model/project_session.h"

// What a card file cannot hold, said before it is saved and, where an MP3 file would be lost,
// already when that is added.

namespace tessaly {

/// Asks about paths and texts whose characters the file lacks, and tells what it leaves out. False
/// when the operator would rather not save.
bool confirmSave(ProjectSession& session, Prompts& prompts);

/// Tells which of `paths`, of files that were added just now, no card file can hold. Says nothing
/// when it can hold them all.
void tellUnsavablePaths(Prompts& prompts, QStringList paths);

}  // namespace tessaly
