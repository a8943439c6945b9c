// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <functional>
#include <random>

// Child processes that are killed where they change a file.

namespace tessaly::kill {

/// What a process of its own does.
using Work = std::function<void()>;

/// Becomes a program, without input and with its output thrown away.
Work program(const QStringList& command);

/// Does `work` to its end; the exit code, or -1 when a signal ended it.
int run(const Work& work);

/// What stands on the disk after a kill.
struct Finding {
    QString state;    ///< in a word or two, to be counted
    QString problem;  ///< empty when nothing is wrong
};

/// Something that is killed over and over.
struct Victim {
    QString name;
    Work begin;  ///< puts the disk back to how it was
    Work work;   ///< may follow on its own half
    std::function<Finding(bool wasKilled)> look;
    std::function<QString()> finish;  ///< does the work once more; the problem, if there is one
};

/// Kills `victim` once before each change that it makes to a file system (a file made, emptied,
/// written, renamed, removed, flushed), then `runs` times up to two milliseconds behind a random
/// one, which may be in the middle of a write; up to three times in a row. Prints what stood there
/// and returns how many problems there were.
int killEverywhere(const Victim& victim, int runs, std::mt19937& random);

int killSaves(int runs, std::mt19937& random);
int killCardRuns(int runs, std::mt19937& random);

}  // namespace tessaly::kill
