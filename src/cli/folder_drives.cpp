#include "cli/folder_drives.h"

#include <QDir>

#include "platform/error.h"

namespace tessaly::cli {

qint64 FolderDrives::totalBytes(const QString& root) const {
    if (!QDir(root).exists())
        throw TessalyError(error_number::DriveNotReady,
                           QDir::toNativeSeparators(root) + ": there is no such folder");
    return geometry(root).totalBytes;
}

bool isRemovableRoot(const Drives& drives, const QString& folder) {
    try {
        return drives.type(folder) == DriveType::Removable;
    } catch (const TessalyError&) {
        return false;
    }
}

}  // namespace tessaly::cli
