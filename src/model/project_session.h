// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <optional>

#include "model/card_file.h"
#include "model/project.h"
#include "model/recovery.h"
#include "platform/file_system.h"

namespace tessaly {

/// The project that is being worked on and the file it belongs to: what New, Open, Save and the
/// recovery copies do, without their windows.
class ProjectSession {
 public:
    /// `project` is the run's one project and outlives the session.
    ProjectSession(Project& project, FileSystem& files);

    Project& project;

    /// The file that Save writes; empty while the project has none.
    const QString& fileName() const { return state_.fileName; }

    /// Where recovery copies go. Without one none are made.
    void setRecovery(RecoveryFolder* recovery) { recovery_ = recovery; }

    /// Whether the project holds anything else than when it was last saved or opened. An empty one
    /// without a file differs from nothing.
    bool differs() const;

    /// Keeps a recovery copy if the project differs and changed since the last one: every now and
    /// then, and before it is discarded. Never throws; returns what went wrong, or nothing.
    QString keepCopy();

    /// Whether the last recovery copy that was due could not be kept.
    bool copyFailed() const { return copyFailed_; }

    /// An empty project without a file, as at the start of the program.
    void startNew();

    /// What Open does before it asks for a file: an empty project without a file; card title, chime
    /// and system texts stay. What was there can be brought back.
    void clear();

    /// Whether clear() took away a project and nothing was done since.
    bool canBringBack() const;

    /// The file of the project that can be brought back; empty when it had none.
    QString closedFile() const { return closed_ ? closed_->state.fileName : QString(); }

    /// Undoes clear(): the project is what it was, with its file and what it differs in. Does
    /// nothing where there is nothing to bring back any more.
    void bringBack();

    /// Reads a file, as openProjectFile() does. The project has that file afterwards only when it
    /// was read to its end; else it differs, as nothing holds what was read. MP3 files that were
    /// found beside it make no difference: the next opening finds them, too. Throws, with the
    /// project empty, when it cannot be read at all.
    ReadReport open(const QString& path);

    /// Takes a recovery copy as a project without a file that still differs. Throws, with the
    /// project untouched, when it cannot be read.
    void recover(const RecoveryCopy& copy);

    /// Writes the project to `path`, which is its file from now on. Throws, with the old file
    /// whole, when that fails.
    void save(const QString& path);

    /// What a save leaves out (tracks without a file, lists without a track), when that was not
    /// said already; else empty.
    QStringList newlyUnsavable();

 private:
    // What is known of a project beside itself.
    struct State {
        QString fileName;
        Project saved;  // as last saved or opened; shares its tables until they change
        Project kept;   // as in the last recovery copy
        QStringList toldUnsavable;
    };
    struct Closed {
        Project project;
        State state;
        WorkStretch work;
    };

    void markClean(const QString& fileName);

    FileSystem& files_;
    RecoveryFolder* recovery_ = nullptr;
    State state_;
    std::optional<Closed> closed_;
    bool copyFailed_ = false;
};

}  // namespace tessaly
