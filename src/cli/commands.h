#pragma once

#include <QString>
#include <optional>

#include "card/app_folders.h"
#include "model/project.h"
#include "platform/file_system.h"

// The commands of tessaly-cli. Each prints its result and returns an exit code; what it cannot do
// it throws as a TessalyError.

namespace tessaly::cli {

struct ImportOptions {
    QString source;  ///< folder or playlist
    QString output;
    bool titlesFromTags = false;
    bool append = false;  ///< to the project that `output` is
};

struct CheckOptions {
    QString project;
    QString card;  ///< empty: judge the project alone
    bool json = false;
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
};

struct FirmwareOptions {
    QString card;
    bool yes = false;
};

struct ShowOptions {
    QString file;
    bool json = false;
};

int importCommand(const ImportOptions& options);
int checkCommand(const CheckOptions& options);
int imageCommand(const ImageOptions& options);
int createCommand(const CreateOptions& options, const AppFolders& folders);
int verifyCommand(const QString& card);
int firmwareCommand(const FirmwareOptions& options, const AppFolders& folders);
int showCommand(const ShowOptions& options);

/// A project file opened by a command. Throws when it is not read to its end.
Project openProject(FileSystem& files, const QString& path);

}  // namespace tessaly::cli
