// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <QObject>
#include <QStringList>

#include "app/prompts.h"
#include "editor/add_summary.h"
#include "model/project_session.h"

class QLabel;
class QPushButton;
class QStatusBar;

namespace tessaly {

/// The right end of the status bar: what was removed just now, where project and file differ, and
/// the offer to bring back what a cancelled Open closed.
class SessionStatus : public QObject {
    Q_OBJECT

 public:
    SessionStatus(const ProjectSession& session, QStatusBar* bar);

    /// Shows both as they are now: due after everything that may have changed project or file.
    void show();

    /// Says for a while, in place of the summary, why a recovery copy could not be kept.
    void sayCopyFailed(const QString& problem);

    /// Says what was removed, with a link that undoes it; empty: nothing is to be said any more.
    void sayRemoved(const QString& words);

    /// Says that the firmware is a stand-in, whose version "0000" looks like any other.
    void sayStandIn(bool isStandIn) { lblStandIn_->setVisible(isStandIn); }

 signals:
    /// The operator takes the offer.
    void bringBackChosen();
    /// The operator wants back what was just removed.
    void undoChosen();

 private:
    const ProjectSession& session_;
    QStatusBar* bar_;
    QLabel* lblRemoved_;
    QLabel* lblNotSaved_;
    QLabel* lblStandIn_;
    QPushButton* buttBringBack_;
};

// What a card file cannot hold, said before it is saved and, where an MP3 file would be lost,
// already when that is added.

/// Asks about paths and texts whose characters the file lacks, and tells what it leaves out. False
/// when the operator would rather not save.
bool confirmSave(ProjectSession& session, Prompts& prompts);

/// The same without the paths, for a copy of the project that gets other ones.
bool confirmTexts(ProjectSession& session, Prompts& prompts);

/// The first names of a list below each other, and how many more there are.
QString shortList(QStringList names);

/// Tells which of `paths`, of files that were added just now, no card file can hold. Says nothing
/// when it can hold them all.
void tellUnsavablePaths(Prompts& prompts, QStringList paths);

/// Tells what became of files that were added together.
void tellSummary(Prompts& prompts, const AddSummary& summary);

}  // namespace tessaly
