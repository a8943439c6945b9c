#pragma once

#include <QString>
#include <QStringList>

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
    const QString& fileName() const { return fileName_; }

    /// Where recovery copies go. Without one none are made.
    void setRecovery(RecoveryFolder* recovery) { recovery_ = recovery; }

    /// Whether the project holds anything else than when it was last saved or opened.
    bool differs() const;

    /// Before the project is discarded: keeps a recovery copy if it differs. Never throws; returns
    /// what went wrong, or nothing.
    QString letGo();

    /// Every now and then: keeps a recovery copy if the project changed since the last one. Returns
    /// as letGo().
    QString keepCopy();

    /// An empty project without a file, as at the start of the program.
    void startNew();

    /// What Open does before it asks for a file: an empty project without a file; card title, chime
    /// and system texts stay.
    void clear();

    /// Reads a file. The project has that file afterwards only when it was read to its end.
    /// Throws, with the project empty, when it cannot be read at all.
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
    void settled(const QString& fileName);

    FileSystem& files_;
    RecoveryFolder* recovery_ = nullptr;
    QString fileName_;
    Project saved_;  // as last saved or opened; shares its tables until they change
    Project kept_;   // as in the last recovery copy
    QStringList toldUnsavable_;
};

}  // namespace tessaly
