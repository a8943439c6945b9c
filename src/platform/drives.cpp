#include "platform/drives.h"

namespace tessaly {

QString driveTypeName(DriveType type) {
    switch (type) {
        case DriveType::Removable:
            return QStringLiteral("Removable");
        case DriveType::Fixed:
            return QStringLiteral("Fixed");
        case DriveType::Network:
            return QStringLiteral("Network");
        case DriveType::CdRom:
            return QStringLiteral("CD-ROM");
        case DriveType::RamDisk:
            return QStringLiteral("RAM Disk");
        case DriveType::Unknown:
            break;
    }
    return QStringLiteral("Unknown");
}

}  // namespace tessaly
