#pragma once

#include <QString>

#include "app/prompts.h"
#include "platform/drives.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"
#include "platform/process.h"
#include "support/support_folders.h"

namespace tessaly {

/// The outside world as the window sees it. main() hands down the real one, tests their own.
struct Services {
    FileSystem& files;
    const Drives& drives;
    Prompts& prompts;
    const Mp3Tags& tags;
    SingleInstance& instance;
    QString appFolder;   ///< where the program stands
    QString userFolder;  ///< for recovery copies, the user's own support folders and, where need
                         ///< be, temporary files
};

}  // namespace tessaly
