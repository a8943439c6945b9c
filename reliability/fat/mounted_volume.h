#pragma once

#include <QProcess>
#include <QString>
#include <memory>

#include "platform/drives.h"

namespace tessaly::fat {

/// A volume that can be mounted at a folder and taken off again. Both throw TessalyError.
class MountedVolume {
 public:
    MountedVolume(QString image, QString folder)
        : image_(std::move(image)), folder_(std::move(folder)) {}
    virtual ~MountedVolume() = default;

    const QString& image() const { return image_; }
    const QString& folder() const { return folder_; }

    virtual void mount() = 0;
    virtual void unmount() = 0;  ///< everything is in the image afterwards; no error if not mounted

    /// The geometry by which the guards judge the volume. Only while it is mounted.
    virtual VolumeGeometry geometry() const = 0;

    /// Whether a file can be emptied without harm to its volume.
    virtual bool canTruncate() const = 0;

 private:
    QString image_;
    QString folder_;
};

/// By fusefat, which gives every name a long one, shows the label as a file and damages the FAT
/// when a file is emptied: it must be removed instead. The guards get the geometry of the boot
/// sector, for FUSE tells neither the clusters nor that it is FAT.
std::unique_ptr<MountedVolume> fuseVolume(const QString& image, const QString& folder);

/// By the kernel, with mount options, on a machine that is there for nothing else: it takes root,
/// and writes into /run/udev what udev would, which does not run there. The guards get what the
/// program itself finds out; it is compared with the boot sector.
std::unique_ptr<MountedVolume> kernelVolume(const QString& device, const QString& folder,
                                            const QString& options);

}  // namespace tessaly::fat
