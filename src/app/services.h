#pragma once

#include <QString>

#include "card/app_folders.h"
#include "platform/drives.h"
#include "platform/file_system.h"
#include "platform/mp3_tags.h"
#include "platform/prompts.h"
#include "platform/single_instance.h"

namespace tessaly {

/// The outside world as the window sees it. main() hands down the real one, tests their own.
struct Services {
    FileSystem& files;
    const Drives& drives;
    Prompts& prompts;
    const Mp3Tags& tags;
    SingleInstance& instance;
    QString appFolder;   ///< where the program and its support folders stand
    QString userFolder;  ///< for recovery copies and, where need be, temporary files
};

}  // namespace tessaly
