// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "editor/add_summary.h"
#include "model/project.h"
#include "platform/file_system.h"

// Which file is to take the place of which missing one: planned first, so that the operator can
// look and correct, and done afterwards.

namespace tessaly {

/// A file that is missing, and what was found for it.
struct RelinkLine {
    enum class Outcome {
        // Not sure enough to be ticked
        NotFound,
        Several,    ///< more than one file fits equally well
        Shared,     ///< the file fits another missing one as well or better
        InUse,      ///< only the name fits, and the file is another item's already
        OtherFile,  ///< only the name fits, and what is known of the missing one does not
        // Found
        ByPath,    ///< name and folder
        ByName,    ///< the only file of that name
        BySize,    ///< name and size
        ByLength,  ///< name and playing time
        ByHand,    ///< chosen by the operator
        ByFolder,  ///< where the folder of one that was chosen by hand went
    };

    QString oldPath;           ///< as the project has it
    QString newPath = {};      ///< native; empty: none, and the line cannot be ticked
    QStringList several = {};  ///< the first MostShown of several files that fit
    qsizetype fitting = 0;     ///< how many do
    int parts = 0;             ///< names at the ends of both paths that agree
    Outcome outcome = Outcome::NotFound;
    bool taken = false;  ///< ticked: what the operator may change

    bool isFound() const { return outcome >= Outcome::ByPath; }

    /// What was found, and what becomes of it: "found by name and size", "2 files fit equally
    /// well".
    QString inWords() const;

    static constexpr qsizetype MostShown = 10;
};

struct RelinkPlan {
    QList<RelinkLine> lines;  ///< those that are not found first
    AddSummary leftOut;       ///< as of the search

    /// "11 of 12 found", and what else there is to know: ticks that differ from that, folders that
    /// could not be read.
    QString inWords() const;
    qsizetype taken() const;  ///< how many lines are ticked
};

/// The operator chose the file of one line. What is missing elsewhere below the folder that `path`
/// shows to have moved is looked for where that went, and ticked where it is there. Lines that were
/// found stay as they are. Returns how many others were found so.
qsizetype chooseByHand(RelinkPlan& plan, qsizetype row, const QString& path,
                       const FileSystem& files);

/// Gives the records that name a ticked old path the new one, and so the chime; nothing else
/// changes but `unsavedChanges`, which is set when anything did. Returns how many files were put
/// right.
qsizetype applyRelink(Project& project, const RelinkPlan& plan);

}  // namespace tessaly
