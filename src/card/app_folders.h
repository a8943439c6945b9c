#pragma once

#include <QString>

#include "platform/file_system.h"

namespace tessaly {

/// Where the program keeps what it needs, all below the folder that it stands in itself. Paths
/// have the platform's separators and none at the end.
struct AppFolders {
    QString appFolder;
    QString filesFolder;     ///< "9998.mp3" and "0007.cfg"
    QString firmwareFolder;  ///< "0000.hex"
    QString chimesFolder;

    QString firmwareFile() const;
    QString calibrationFile() const;
    QString fixedConfigurationFile() const;
};

/// The folders of a program that stands in `appFolder`. They need not exist.
AppFolders appFoldersIn(const QString& appFolder);

}  // namespace tessaly
