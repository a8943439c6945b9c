// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

namespace tessaly {

/// What a drive is, by the numbers 0 to 5 that drive queries use.
enum class DriveType { Unknown, Removable, Fixed, Network, CdRom, RamDisk };

/// "Unknown", "Removable", "Fixed", "Network", "CD-ROM" or "RAM Disk".
inline QString driveTypeName(DriveType type) {
    static constexpr const char* Names[] = {"Unknown", "Removable", "Fixed",
                                            "Network", "CD-ROM",    "RAM Disk"};
    return QLatin1String(Names[int(type)]);
}

/// One mounted volume.
struct Volume {
    QString root;  ///< ends in its separator
    QString name;  ///< its label, else its device, for people to recognise it by
    DriveType type = DriveType::Unknown;
    qint64 totalBytes = -1;  ///< -1 where the volume was not asked
    qint64 freeBytes = -1;   ///< likewise
    bool isReady = true;     ///< false for a reader without a card
};

/// Which file names a FAT volume keeps in one entry of their folder. Any other name needs a long
/// name beside it, an entry more for each 13 characters.
enum class FatNames {
    OneCase,    ///< 8.3 names with stem and ending of one case each: "0001.mp3"
    UpperCase,  ///< 8.3 names in capitals
    All,        ///< there are no long names
};

/// How the volume of a folder hands out its space.
struct VolumeGeometry {
    qint64 clusterBytes = 4096;
    qint64 totalBytes = 0;
    qint64 freeBytes = 0;
    bool isReadOnly = false;
    bool isFat = false;
    FatNames fatNames = FatNames::OneCase;
    /// Entries that the root folder has room for, nothing where it grows like any folder.
    std::optional<int> rootEntries{};
    /// What the folder itself takes of a FAT volume already, 0 where the system does not tell.
    qint64 folderBytes = 0;
    /// Entries that each name in a FAT folder takes now, empty where the system does not tell.
    QHash<QString, int> entriesByName{};
};

/// The drives of the machine. Roots are given with or without their last separator.
class Drives {
 public:
    virtual ~Drives() = default;

    /// The type of the drive whose root is `root`. Throws error 71 when it holds no medium, or is
    /// no drive's root any more.
    virtual DriveType type(const QString& root) const = 0;

    /// Total size in bytes of the drive whose root is `root`. Throws error 71 as above, also when
    /// the medium was pulled out and the system has not noticed yet.
    virtual qint64 totalBytes(const QString& root) const = 0;

    /// All mounted volumes that a person could put files on. One that may be far away or take long
    /// to answer, as a network share, is listed but asked for nothing.
    virtual QList<Volume> volumes() const = 0;

    /// The geometry of the volume that holds `path`. Throws when there is none.
    virtual VolumeGeometry geometry(const QString& path) const = 0;

    /// Names the medium that `path` leads to: another card in the same drive has another name.
    /// Empty on systems where FileIdentity::volume differs then.
    virtual QString medium(const QString& path) const = 0;

    /// Mount points that erasing the content of `folder` would reach: those inside it, and those
    /// elsewhere where a part of it is mounted. None on systems where mount points are links.
    virtual QStringList mountsInside(const QString& folder) const = 0;
};

/// The drives of this machine.
class LocalDrives : public Drives {
 public:
    DriveType type(const QString& root) const override;
    qint64 totalBytes(const QString& root) const override;
    QList<Volume> volumes() const override;
    VolumeGeometry geometry(const QString& path) const override;
    QString medium(const QString& path) const override;
    QStringList mountsInside(const QString& folder) const override;
};

}  // namespace tessaly
