#pragma once

#include <QString>
#include <random>

namespace tessaly::kill {

/// Kills a process that saves a project of 9,995 records over and over, `runs` times at random
/// moments below `folder`, then once before each change that a save makes. Returns how many times
/// the file was not wholly the old or the new project, or something lay about. Prints both.
int killSaves(int runs, std::mt19937& random, const QString& folder);

/// Kills card runs of the command line, `runs` times at random moments, then once before each
/// change that a run makes. Returns how many times the project, the sources, the verdict on the
/// half-written card or the second run was wrong. Prints both.
int killCardRuns(int runs, std::mt19937& random, const QString& folder);

}  // namespace tessaly::kill
