#pragma once

#include "platform/drives.h"

namespace tessaly::cli {

/// The machine's drives for commands that are given a card's folder by name: any folder has a size,
/// that of the volume it stands on. A folder that does not exist is a drive without a medium.
class FolderDrives : public LocalDrives {
 public:
    qint64 totalBytes(const QString& root) const override;
};

/// Whether `folder` is the root of a removable drive.
bool isRemovableRoot(const Drives& drives, const QString& folder);

}  // namespace tessaly::cli
