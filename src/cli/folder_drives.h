#pragma once

#include <QDir>

#include "platform/drives.h"
#include "platform/error.h"

namespace tessaly::cli {

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
