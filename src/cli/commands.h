// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QString>
#include <optional>

#include "card/card_checks.h"
#include "model/project.h"
#include "platform/drives.h"
#include "platform/error.h"
#include "platform/file_system.h"
#include "support/support_folders.h"

// The commands of tessaly-cli. Each prints its result and returns an exit code; what it cannot do
// it throws as a TessalyError.

namespace tessaly::cli {

struct ImportOptions {
    QString source;  ///< folder or playlist
    QString output;
    bool titlesFromTags = false;
    bool append = false;           ///< to the project that `output` is
    bool exported = false;         ///< a standard playlist, too, by the rules of exported ones
    bool giveEachItsFile = false;  ///< to tracks that have the name of another
};

struct RelinkOptions {
    QString project;
    QString folder;  ///< to look in
    QString card;    ///< written from the project; empty: none is at hand
    bool dryRun = false;
};

struct CheckOptions {
    QString project;
    QString card;  ///< empty: judge the project alone
    bool json = false;
    bool strict = false;  ///< warnings count as what blocks
};

struct ImageOptions {
    QString project;
    QString output;
    QString hexOutput;  ///< empty: none
    std::optional<quint16> identifier;
};

struct CreateOptions {
    QString project;
    QString card;
    bool settingsOnly = false;
    bool noVerify = false;
    bool erase = false;
    bool yes = false;
    bool strict = false;  ///< warnings keep the card from being written
};

struct FirmwareOptions {
    QString card;
    bool yes = false;
};

struct SoundOptions {
    QString project;
    bool json = false;
};

struct PackOptions {
    QString project;
    QString output;
};

struct ShowOptions {
    QString file;
    bool json = false;
};

int importCommand(const ImportOptions& options);
int relinkCommand(const RelinkOptions& options);
int checkCommand(const CheckOptions& options);
int imageCommand(const ImageOptions& options);
int createCommand(const CreateOptions& options, const SupportFolders& folders);
int packCommand(const PackOptions& options);
int verifyCommand(const QString& card);
int firmwareCommand(const FirmwareOptions& options, const SupportFolders& folders);
int showCommand(const ShowOptions& options);
int soundCommand(const SoundOptions& options);

/// A project file opened by a command, as openProjectFile() does. Throws when it is not read to its
/// end.
Project openProject(FileSystem& files, const QString& path);

/// Saves a project. Whatever stood at `path` was somebody's project: it is kept beside the new one,
/// with ".bak" behind its name. What a project file cannot hold is said.
void saveKeepingOld(FileSystem& files, const QString& path, Project& project);

/// Text in one line: a message box has several, and names may hold any control character.
QString oneLine(QString text);

/// Measures a project's files, once, and judges it with the folder `root` as its card, or without
/// one when that is empty.
CardChecks checksOf(const Project& project, const QString& root, const FileSystem& files);

/// A result's text and what it is about, the first `most` by name.
QString inOneLine(const CheckResult& result, qsizetype most);

/// The machine's drives for commands that are given a card's folder by name: any folder has a size,
/// that of the volume it stands on. A folder that does not exist is a drive without a medium.
class FolderDrives : public LocalDrives {
 public:
    qint64 totalBytes(const QString& root) const override {
        if (!QDir(root).exists())
            throw TessalyError(
                error_number::DriveNotReady,
                QDir::toNativeSeparators(root) + QStringLiteral(": there is no such folder"));
        return geometry(root).totalBytes;
    }
};

/// Whether `folder` is the root of a removable drive.
inline bool isRemovableRoot(const Drives& drives, const QString& folder) {
    try {
        return drives.type(folder) == DriveType::Removable;
    } catch (const TessalyError&) {
        return false;
    }
}

}  // namespace tessaly::cli
