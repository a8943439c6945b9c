// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDir>
#include <algorithm>
#include <string>

#include "platform/drives.h"
#include "platform/error.h"
#include "platform/paths.h"
#include "platform/windows/files.h"

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

struct VolumeDescription {
    QString label;
    QString fileSystem;
    bool isReadOnly = false;
};

struct VolumeSizes {
    qint64 totalBytes = 0;
    qint64 freeBytes = 0;
};

const wchar_t* wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

// With its last separator, without which a bare "E:" would mean the current folder of that drive.
QString absoluteFolder(const QString& path) {
    return withLastSeparator(QDir::toNativeSeparators(
        QDir::cleanPath(QDir().absoluteFilePath(withLastSeparator(path)))));
}

bool isSamePath(const QString& one, const QString& other) {
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

TessalyError notReady(const QString& root) {
    return systemError(ERROR_NOT_READY, root);
}

// `root` as the system writes it. Throws error 71 when it is no drive's root.
QString driveAt(const QString& root) {
    const QString drive = absoluteFolder(root);
    if (root.isEmpty() || !isSamePath(volumeRoot(drive), drive) ||
        ::GetDriveTypeW(wide(drive)) == DRIVE_NO_ROOT_DIR)
        throw notReady(root);
    return drive;
}

DriveType typeOf(const QString& drive) {
    switch (::GetDriveTypeW(wide(drive))) {
        case DRIVE_REMOVABLE:
            return DriveType::Removable;
        case DRIVE_FIXED:
            return DriveType::Fixed;
        case DRIVE_REMOTE:
            return DriveType::Network;
        case DRIVE_CDROM:
            return DriveType::CdRom;
        case DRIVE_RAMDISK:
            return DriveType::RamDisk;
        default:
            return DriveType::Unknown;
    }
}

// Nothing when the drive has no volume in it; the reason is the thread's last error.
std::optional<VolumeDescription> descriptionOf(const QString& drive) {
    wchar_t label[MAX_PATH + 1] = {};
    wchar_t fileSystem[MAX_PATH + 1] = {};
    DWORD flags = 0;
    if (!::GetVolumeInformationW(wide(drive), label, DWORD(std::size(label)), nullptr, nullptr,
                                 &flags, fileSystem, DWORD(std::size(fileSystem))))
        return std::nullopt;
    return VolumeDescription{.label = QString::fromWCharArray(label),
                             .fileSystem = QString::fromWCharArray(fileSystem),
                             .isReadOnly = (flags & FILE_READ_ONLY_VOLUME) != 0};
}

// As above.
std::optional<VolumeSizes> sizesOf(const QString& drive) {
    ULARGE_INTEGER available{};
    ULARGE_INTEGER total{};
    if (!::GetDiskFreeSpaceExW(wide(drive), &available, &total, nullptr))
        return std::nullopt;
    return VolumeSizes{.totalBytes = qint64(total.QuadPart),
                       .freeBytes = qint64(available.QuadPart)};
}

qint64 clusterBytesOf(const QString& drive) {
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD clusters = 0;
    if (!::GetDiskFreeSpaceW(wide(drive), &sectorsPerCluster, &bytesPerSector, &freeClusters,
                             &clusters))
        throw lastSystemError(drive);
    return std::max<qint64>(qint64(sectorsPerCluster) * bytesPerSector, 512);
}

Volume volumeAt(const QString& drive) {
    Volume volume;
    volume.root = drive;
    volume.type = typeOf(drive);
    // A server may be gone, and a drive for discs starts turning.
    if (volume.type == DriveType::Network || volume.type == DriveType::CdRom ||
        volume.type == DriveType::Unknown)
        return volume;
    const auto description = descriptionOf(drive);
    const auto sizes = sizesOf(drive);
    volume.isReady = description && sizes;
    if (!volume.isReady)
        return volume;
    volume.name = description->label;
    volume.totalBytes = sizes->totalBytes;
    volume.freeBytes = sizes->freeBytes;
    return volume;
}

}  // namespace

DriveType LocalDrives::type(const QString& root) const {
    const NoDiskPrompt quiet;
    const QString drive = driveAt(root);
    const DriveType type = typeOf(drive);
    // A reader is a drive with or without a card in it.
    if (type == DriveType::Removable && !descriptionOf(drive)) {
        const TessalyError error = lastSystemError(root);
        if (error.number == error_number::DriveNotReady)
            throw error;
    }
    return type;
}

qint64 LocalDrives::totalBytes(const QString& root) const {
    const NoDiskPrompt quiet;
    const auto sizes = sizesOf(driveAt(root));
    if (!sizes)
        throw lastSystemError(root);
    return sizes->totalBytes;
}

QList<Volume> LocalDrives::volumes() const {
    const NoDiskPrompt quiet;
    QList<Volume> found;
    const DWORD letters = ::GetLogicalDrives();
    for (char16_t letter = u'A'; letter <= u'Z'; ++letter)
        if (letters >> (letter - u'A') & 1)
            found.append(volumeAt(QChar(letter) + uR"(:\)"_s));
    return found;
}

VolumeGeometry LocalDrives::geometry(const QString& path) const {
    constexpr int UsualRootEntries = 512;
    const NoDiskPrompt quiet;
    if (path.isEmpty())
        throw systemError(ERROR_PATH_NOT_FOUND, path);
    const QString folder = absoluteFolder(path);
    const QString root = volumeRoot(folder);
    if (root.isEmpty())
        throw lastSystemError(path);
    const auto description = descriptionOf(root);
    if (!description)
        throw lastSystemError(path);
    const auto sizes = sizesOf(root);
    if (!sizes)
        throw lastSystemError(path);
    VolumeGeometry geometry{.clusterBytes = clusterBytesOf(root),
                            .totalBytes = sizes->totalBytes,
                            .freeBytes = sizes->freeBytes,
                            .isReadOnly = description->isReadOnly};
    // "FAT" stands for FAT12 and FAT16 alike. "0001.mp3" takes one entry: its case goes into flags.
    const bool hasFixedRoot = description->fileSystem == u"FAT"_s;
    geometry.isFat = hasFixedRoot || description->fileSystem == u"FAT32"_s;
    if (hasFixedRoot && isSamePath(root, folder))
        geometry.rootEntries = UsualRootEntries;
    return geometry;
}

QString LocalDrives::medium(const QString&) const {
    return {};  // the volume's serial number is part of every FileIdentity
}

QStringList LocalDrives::mountsInside(const QString&) const {
    return {};  // a volume mounted in a folder is a link there
}

}  // namespace tessaly
